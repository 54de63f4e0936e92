#pragma once

#include "traversal/ClassPredicate.h"
#include "traversal/Export.h"
#include "traversal/fwd.h"
#include "traversal/support/Lent.h"

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

    // What follows is for walks, which ask for every link.

    /// The same without copies.
    const Property& property() const noexcept { return property_; }
    ResultPolicy policy() const noexcept { return policy_; }
    /// Whether the policy holds for every link, so that no predicate has to be asked again.
    bool hasFixedPolicy() const noexcept { return hasFixedPolicy_; }

    /// Prepares for the elements of one class; other elements can be read all the same.
    void prepareFor(const Class& type, bool hasFixedPolicy) {
        reader_ = internal::WalkSupport::PropertyReader(type, property_);
        hasFixedPolicy_ = hasFixedPolicy;
    }
    /// What the property of an element designates; nothing for a null element. Throws what the
    /// framework throws.
    internal::WalkSupport::ElementView read(const ModelElement& element) const {
        return element ? reader_.read(element, property_) : internal::WalkSupport::ElementView();
    }

    /// Begins to load what `read` looks at soon, where the framework offers that. REQUIRES: the
    /// element is not null.
    void prefetch(const ModelElement& element) const noexcept { prefetchBy(reader_, element); }

  private:
    template <class Reader>
    static void prefetchBy([[maybe_unused]] const Reader& reader,
                           [[maybe_unused]] const ModelElement& element) noexcept {
        if constexpr (requires { reader.prefetch(element); }) reader.prefetch(element);
    }

    Property property_;
    internal::WalkSupport::PropertyReader reader_;
    ResultPolicy policy_ = ResultPolicy::Report;
    bool hasFixedPolicy_ = false;
};

}  // namespace nuv::zero::traversal
