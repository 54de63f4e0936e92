#include "traversal/CompositionTraversalImpl.h"

#include "traversal/AbstractTraversalDefinitions.h"
#include "traversal/PruneRules.h"
#include "traversal/internal/PropertyProviders.h"

namespace nuv::zero::traversal {

template class AbstractTraversal<CompositionTraversalImpl>;

// NOLINTNEXTLINE(performance-unnecessary-value-param): tokens are empty
CompositionTraversalImpl::CompositionTraversalImpl(InstantiateToken /*token*/) {}
CompositionTraversalImpl::CompositionTraversalImpl(const CompositionTraversalImpl& other) = default;
CompositionTraversalImpl& CompositionTraversalImpl::operator=(
    const CompositionTraversalImpl& other) = default;
CompositionTraversalImpl::~CompositionTraversalImpl() = default;

std::shared_ptr<CompositionTraversalImpl> CompositionTraversalImpl::prune(
    const PropertyMatcher& matcher) {
    internal::pruneInMatchersMap(matchersMap(), matcher);
    return shared_from_this();
}

std::shared_ptr<CompositionTraversalImpl> CompositionTraversalImpl::prune(
    const PropertyMatcher& matcher, const std::function<bool(const Class&)>& classMatcher) {
    return prune(PropertyMatcher(matcher.getProperty(), classMatcher, matcher.getOwner()));
}

std::shared_ptr<CompositionTraversalImpl> CompositionTraversalImpl::prune(
    const std::vector<PropertyMatcher>& matchers) {
    for (const PropertyMatcher& matcher : matchers) prune(matcher);
    return shared_from_this();
}

void CompositionTraversalImpl::doSetResultPolicy(const PropertyMatcher& matcher,
                                                 ResultPolicy policy) {
    doSetResultPolicyForMatchersMap(matchersMap(), matcher, policy);
}

std::shared_ptr<PropertyProvider> CompositionTraversalImpl::createPropertyProvider() {
    return internal::makeSubtractiveProvider(matchersMap(), internal::Candidates::CompositeOnly);
}

}  // namespace nuv::zero::traversal
