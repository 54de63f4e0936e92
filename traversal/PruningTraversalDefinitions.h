#pragma once

#include "AbstractTraversalDefinitions.h"
#include "Export.h"
#include "PruneRules.h"
#include "PruningTraversal.h"

/// The bodies of `PruningTraversal`, for the sources of its kinds, which instantiate them.
namespace nuv::zero::traversal MODELING_NUV0_OVER {

template <class Impl>
PruningTraversal<Impl>::PruningTraversal() = default;

template <class Impl>
PruningTraversal<Impl>::PruningTraversal(const PruningTraversal& other) = default;

template <class Impl>
PruningTraversal<Impl>& PruningTraversal<Impl>::operator=(const PruningTraversal& other) = default;

template <class Impl>
PruningTraversal<Impl>::~PruningTraversal() = default;

template <class Impl>
std::shared_ptr<Impl> PruningTraversal<Impl>::prune(const PropertyMatcher& matcher) {
    this->give({RuleCall::Operation::Prune, matcher});
    return this->shared_from_this();
}

template <class Impl>
std::shared_ptr<Impl> PruningTraversal<Impl>::prune(
    const PropertyMatcher& matcher, const std::function<bool(const Class&)>& classMatcher) {
    return prune(PropertyMatcher(matcher.getProperty(), classMatcher, matcher.getOwner()));
}

template <class Impl>
std::shared_ptr<Impl> PruningTraversal<Impl>::prune(const std::vector<PropertyMatcher>& matchers) {
    for (const PropertyMatcher& matcher : matchers) prune(matcher);
    return this->shared_from_this();
}

template <class Impl>
void PruningTraversal<Impl>::apply(const RuleCall& call) {
    if (call.operation == RuleCall::Operation::Prune) {
        internal::pruneInMatchersMap(this->matchersMap(), call.matcher);
    } else {
        AbstractTraversal<Impl>::apply(call);
    }
}

template <class Impl>
void PruningTraversal<Impl>::doSetResultPolicy(const PropertyMatcher& matcher,
                                               ResultPolicy policy) {
    doSetResultPolicyForMatchersMap(this->matchersMap(), matcher, policy);
}

}  // namespace nuv::zero::traversal
