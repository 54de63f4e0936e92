#pragma once

#include <utility>

#include "AbstractTraversal.h"
#include "Export.h"

/// The bodies of `AbstractTraversal`, for the sources of the kinds, which instantiate them.
namespace nuv::zero::traversal MODELING_NUV0_OVER {

template <class Impl>
AbstractTraversal<Impl>::AbstractTraversal() = default;

template <class Impl>
AbstractTraversal<Impl>::AbstractTraversal(const AbstractTraversal& other) = default;

template <class Impl>
AbstractTraversal<Impl>& AbstractTraversal<Impl>::operator=(const AbstractTraversal& other) {
    if (this != &other) {
        MatchersMap copy(other.matchersMap_);
        std::vector<RuleCall> calls(other.calls_);
        matchersMap_.swap(copy);
        calls_.swap(calls);
        initialPseudoLinkPolicy_ = other.initialPseudoLinkPolicy_;
    }
    return *this;
}

template <class Impl>
AbstractTraversal<Impl>::~AbstractTraversal() = default;

template <class Impl>
std::shared_ptr<Impl> AbstractTraversal<Impl>::includeInitialPseudoLink(ResultPolicy policy) {
    initialPseudoLinkPolicy_ = policy;
    return this->shared_from_this();
}

template <class Impl>
std::shared_ptr<Impl> AbstractTraversal<Impl>::setResultPolicy(const PropertyMatcher& matcher,
                                                               ResultPolicy policy) {
    give({RuleCall::Operation::SetResultPolicy, matcher, policy});
    return this->shared_from_this();
}

template <class Impl>
std::shared_ptr<Impl> AbstractTraversal<Impl>::setResultPolicy(
    const std::vector<PropertyMatcher>& matchers, ResultPolicy policy) {
    // Through the single form: a builder that nobody owns fails at its first matcher.
    for (const PropertyMatcher& matcher : matchers) setResultPolicy(matcher, policy);
    return this->shared_from_this();
}

template <class Impl>
void AbstractTraversal<Impl>::give(RuleCall call) {
    // Room first, so that what has been done is remembered.
    if (calls_.size() == calls_.capacity()) calls_.reserve(2 * calls_.size() + 1);
    apply(call);
    calls_.push_back(std::move(call));
}

template <class Impl>
void AbstractTraversal<Impl>::apply(const RuleCall& call) {
    if (call.matcher.getProperty()) doSetResultPolicy(call.matcher, call.policy);
}

template <class Impl>
void AbstractTraversal<Impl>::forgetRules() {
    matchersMap_.clear();
    calls_.clear();
}

template <class Impl>
std::shared_ptr<internal::TraversalResult> AbstractTraversal<Impl>::createResult(
    const std::vector<ModelElement>& elements, Algo algo, ResultPolicy policy) {
    return std::make_shared<internal::TraversalResult>(
        internal::TraversalResult::privateTag{}, elements, createPropertyProvider(), algo, policy);
}

}  // namespace nuv::zero::traversal
