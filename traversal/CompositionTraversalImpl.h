#pragma once

#include <functional>
#include <initializer_list>
#include <memory>
#include <vector>

#include "traversal/AbstractTraversal.h"

namespace nuv::zero::traversal {

/// The composition kind: follows everything that elements contain, except what `prune` cuts away.
///
///     auto result = Spec::compositionTraversal()->prune(comments)->depthFirst({model});
///
/// From each element, its containment properties are followed in the order of their names.
///
/// `setResultPolicy` works on a property without rules only: its classes get the policy, and the
/// classes that its predicate rejects are followed with `WalkOnly`. A `prune` after it does not cut
/// the property away but makes its links `WalkOnly`.
class MODELING_NUV0_TRAVERSAL_EXPORT CompositionTraversalImpl
    : public AbstractTraversal<CompositionTraversalImpl> {
  public:
    explicit CompositionTraversalImpl(InstantiateToken token);
    CompositionTraversalImpl(const CompositionTraversalImpl& other);
    CompositionTraversalImpl& operator=(const CompositionTraversalImpl& other);
    ~CompositionTraversalImpl() override;

    /// Does not follow the matcher's property from the classes that it accepts.
    std::shared_ptr<CompositionTraversalImpl> prune(const PropertyMatcher& matcher);
    /// The same with another predicate in place of the matcher's own.
    std::shared_ptr<CompositionTraversalImpl> prune(
        const PropertyMatcher& matcher, const std::function<bool(const Class&)>& classMatcher);
    template <PredicateOverElements F, class = typename RefusedPredicate<F>::Always>
    std::shared_ptr<CompositionTraversalImpl> prune(const PropertyMatcher& matcher,
                                                    const F& classMatcher) = delete;
    std::shared_ptr<CompositionTraversalImpl> prune(const std::vector<PropertyMatcher>& matchers);
    /// For lists in braces, which may hold one property only.
    std::shared_ptr<CompositionTraversalImpl> prune(
        std::initializer_list<PropertyMatcher> matchers) {
        return prune(std::vector<PropertyMatcher>(matchers));
    }

  private:
    void doSetResultPolicy(const PropertyMatcher& matcher, ResultPolicy policy) override;
    std::shared_ptr<PropertyProvider> createPropertyProvider() override;
};

}  // namespace nuv::zero::traversal
