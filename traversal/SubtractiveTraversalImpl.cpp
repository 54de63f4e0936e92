#include "traversal/SubtractiveTraversalImpl.h"

#include "traversal/AbstractTraversalDefinitions.h"
#include "traversal/PruneRules.h"
#include "traversal/internal/PropertyProviders.h"

namespace nuv::zero::traversal {

template class AbstractTraversal<SubtractiveTraversalImpl>;

// NOLINTNEXTLINE(performance-unnecessary-value-param): tokens are empty
SubtractiveTraversalImpl::SubtractiveTraversalImpl(InstantiateToken /*token*/) {}
SubtractiveTraversalImpl::SubtractiveTraversalImpl(const SubtractiveTraversalImpl& other) = default;
SubtractiveTraversalImpl& SubtractiveTraversalImpl::operator=(
    const SubtractiveTraversalImpl& other) = default;
SubtractiveTraversalImpl::~SubtractiveTraversalImpl() = default;

std::shared_ptr<SubtractiveTraversalImpl> SubtractiveTraversalImpl::prune(
    const PropertyMatcher& matcher) {
    internal::pruneInMatchersMap(matchersMap(), matcher);
    return shared_from_this();
}

std::shared_ptr<SubtractiveTraversalImpl> SubtractiveTraversalImpl::prune(
    const PropertyMatcher& matcher, const std::function<bool(const Class&)>& classMatcher) {
    return prune(PropertyMatcher(matcher.getProperty(), classMatcher, matcher.getOwner()));
}

std::shared_ptr<SubtractiveTraversalImpl> SubtractiveTraversalImpl::prune(
    const std::vector<PropertyMatcher>& matchers) {
    for (const PropertyMatcher& matcher : matchers) prune(matcher);
    return shared_from_this();
}

void SubtractiveTraversalImpl::doSetResultPolicy(const PropertyMatcher& matcher,
                                                 ResultPolicy policy) {
    doSetResultPolicyForMatchersMap(matchersMap(), matcher, policy);
}

std::shared_ptr<PropertyProvider> SubtractiveTraversalImpl::createPropertyProvider() {
    return internal::makeSubtractiveProvider(matchersMap(), internal::Candidates::AllLinking);
}

}  // namespace nuv::zero::traversal
