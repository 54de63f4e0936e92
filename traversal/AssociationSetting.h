#pragma once

#include "traversal/ClassPredicate.h"
#include "traversal/Export.h"
#include "traversal/fwd.h"

namespace nuv::zero::traversal {

/// A property to follow from the elements of a class, and the policy of the links found there.
class MODELING_NUV0_TRAVERSAL_EXPORT AssociationSetting {
  public:
    /// No property, policy `Report`.
    AssociationSetting();
    AssociationSetting(const Property& property, ResultPolicy policy);
    AssociationSetting(const AssociationSetting& other);
    AssociationSetting(AssociationSetting&& other) noexcept;
    AssociationSetting& operator=(const AssociationSetting& other);
    AssociationSetting& operator=(AssociationSetting&& other) noexcept;
    ~AssociationSetting();

    Property getProperty();
    ResultPolicy getPolicy();

    /// The property without a copy, for the walk's inner loop.
    const Property& property() const noexcept { return property_; }

  private:
    Property property_;
    ResultPolicy policy_ = ResultPolicy::Report;
};

}  // namespace nuv::zero::traversal
