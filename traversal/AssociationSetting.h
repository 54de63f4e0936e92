#pragma once

#include "model/Framework.h"
#include "traversal/ClassPredicate.h"
#include "traversal/Export.h"
#include "traversal/fwd.h"

namespace nuv::zero::traversal {

/// A property to follow from the elements of a class, and the policy of the links found there.
class MODELING_NUV0_TRAVERSAL_EXPORT AssociationSetting {
    using WalkSupport = access::WalkSupport<ModelElement>;

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

    /// Prepares to read the property from many elements of one class. Other elements can be read
    /// all the same.
    void prepareFor(const Class& type) { reader_ = WalkSupport::PropertyReader(type, property_); }
    /// What the property of an element designates; nothing for a null element. Throws what the
    /// framework throws.
    WalkSupport::ElementView read(const ModelElement& element) const {
        return element ? reader_.read(element, property_) : WalkSupport::ElementView();
    }

  private:
    Property property_;
    WalkSupport::PropertyReader reader_;
    ResultPolicy policy_ = ResultPolicy::Report;
};

}  // namespace nuv::zero::traversal
