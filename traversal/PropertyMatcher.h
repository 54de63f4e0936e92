#pragma once

#include "ClassPredicate.h"
#include "Export.h"
#include "fwd.h"

namespace nuv::zero::traversal MODELING_NUV0_OVER {

/// One selection rule: a property, the classes it applies to, and the class it is filed under.
///
/// A property converts to the rule that most callers want, the one for all classes:
///
///     builder->prune(owner);                                   // wherever the property appears
///     builder->prune({owner, isSportsCar, sportsCar});         // only where the predicate accepts
///
/// Among the rules for one property, a rule filed under a subclass is asked before one filed under
/// its superclass, as far as their names allow it (see `CompositeMatcher`), and a rule replaces the
/// one filed under the same owner; for `traverse` and `prune` the owner has no other effect.
/// Nothing is validated: an empty predicate is accepted and fails with `std::bad_function_call`
/// when it is asked.
///
/// A copy shares nothing but the framework objects. Safe to read from several threads.
class MODELING_NUV0_TRAVERSAL_EXPORT PropertyMatcher {
  public:
    /// The rule for all classes, filed under the class that declares the property. A null property
    /// has a null owner.
    PropertyMatcher(const Property& property);  // NOLINT(google-explicit-constructor)
    PropertyMatcher(const Property& property, const std::function<bool(const Class&)>& matcher,
                    const Class& owner);
    template <PredicateOverElements F, class = typename RefusedPredicate<F>::Always>
    PropertyMatcher(const Property& property, const F& matcher, const Class& owner) = delete;
    PropertyMatcher(const PropertyMatcher& other);
    /// Leaves no property, no owner and an empty predicate behind.
    PropertyMatcher(PropertyMatcher&& other) noexcept;
    PropertyMatcher& operator=(const PropertyMatcher& other);
    PropertyMatcher& operator=(PropertyMatcher&& other) noexcept;
    ~PropertyMatcher();

    const Property& getProperty() const;
    const std::function<bool(const Class&)>& getMatcher() const;
    const Class& getOwner() const;

    /// What the predicate says of a class; the property and the owner take no part.
    bool matches(const Class& type) const;

  private:
    Property property_;
    ClassPredicate matcher_;
    Class owner_;
};

}  // namespace nuv::zero::traversal
