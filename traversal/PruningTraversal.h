#pragma once

#include <functional>
#include <initializer_list>
#include <memory>
#include <vector>

#include "AbstractTraversal.h"
#include "Export.h"

namespace nuv::zero::traversal MODELING_NUV0_OVER {

/// What the composition and the subtractive kind share: they follow all that is theirs to follow,
/// except what `prune` cuts away. They differ in what that is.
///
/// `setResultPolicy` sets policies on a property without rules only: the classes that its predicate
/// accepts get the policy, and those that it rejects are followed with `WalkOnly`. On a property
/// that `prune` knows it sets none, but may replace the rule under the same owner by one that never
/// applies. A `prune` after it does not cut
/// the property away but makes its links `WalkOnly`.
template <class Impl>
class PruningTraversal : public AbstractTraversal<Impl> {
  public:
    PruningTraversal();
    PruningTraversal(const PruningTraversal& other);
    PruningTraversal& operator=(const PruningTraversal& other);
    ~PruningTraversal() override;

    /// Does not follow the matcher's property from the classes that it accepts.
    std::shared_ptr<Impl> prune(const PropertyMatcher& matcher);
    /// The same with another predicate in place of the matcher's own.
    std::shared_ptr<Impl> prune(const PropertyMatcher& matcher,
                                const std::function<bool(const Class&)>& classMatcher);
    template <PredicateOverElements F, class = typename RefusedPredicate<F>::Always>
    std::shared_ptr<Impl> prune(const PropertyMatcher& matcher, const F& classMatcher) = delete;
    std::shared_ptr<Impl> prune(const std::vector<PropertyMatcher>& matchers);
    /// For lists in braces, which may hold one property only.
    std::shared_ptr<Impl> prune(std::initializer_list<PropertyMatcher> matchers) {
        return prune(std::vector<PropertyMatcher>(matchers));
    }

  private:
    void apply(const RuleCall& call) override;
    void doSetResultPolicy(const PropertyMatcher& matcher, ResultPolicy policy) override;
};

// Compiled once, inside the library.
extern template class MODELING_NUV0_TRAVERSAL_EXPORT PruningTraversal<CompositionTraversalImpl>;
extern template class MODELING_NUV0_TRAVERSAL_EXPORT PruningTraversal<SubtractiveTraversalImpl>;

}  // namespace nuv::zero::traversal
