#include "traversal/SubtractiveTraversalImpl.h"

#include "traversal/PruningTraversalDefinitions.h"
#include "traversal/SubtractivePropertyProvider.h"

namespace nuv::zero::traversal MODELING_NUV0_OVER {

template class AbstractTraversal<SubtractiveTraversalImpl>;
template class PruningTraversal<SubtractiveTraversalImpl>;

// NOLINTNEXTLINE(performance-unnecessary-value-param): tokens are empty
SubtractiveTraversalImpl::SubtractiveTraversalImpl(InstantiateToken /*token*/) {}
SubtractiveTraversalImpl::SubtractiveTraversalImpl(const SubtractiveTraversalImpl& other) = default;
SubtractiveTraversalImpl& SubtractiveTraversalImpl::operator=(
    const SubtractiveTraversalImpl& other) = default;
SubtractiveTraversalImpl::~SubtractiveTraversalImpl() = default;

std::shared_ptr<PropertyProvider> SubtractiveTraversalImpl::createPropertyProvider() {
    return makeSubtractiveProvider(matchersMap(), Candidates::AllLinking);
}

}  // namespace nuv::zero::traversal
