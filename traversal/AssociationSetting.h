#pragma once

#include "ClassPredicate.h"
#include "Export.h"
#include "fwd.h"
#include "support/Lent.h"

namespace nuv::zero::traversal MODELING_NUV0_OVER {

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
    /// The rules that have to be asked for the policy of every link; null where it is the same for
    /// all links.
    const CompositeMatcher* rules() const noexcept { return rules_; }

    /// Prepares for the elements of one class; other elements can be read all the same. The rules
    /// have to outlive the setting.
    void prepareFor(const Class& type, const CompositeMatcher* rules) {
        reader_ = internal::WalkSupport::PropertyReader(type, property_);
        rules_ = rules;
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
    const CompositeMatcher* rules_ = nullptr;
    ResultPolicy policy_ = ResultPolicy::Report;
};

}  // namespace nuv::zero::traversal
