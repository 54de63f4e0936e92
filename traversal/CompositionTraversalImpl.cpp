#include "traversal/CompositionTraversalImpl.h"

#include "traversal/PruningTraversalDefinitions.h"
#include "traversal/SubtractivePropertyProvider.h"

namespace nuv::zero::traversal MODELING_NUV0_OVER {

template class AbstractTraversal<CompositionTraversalImpl>;
template class PruningTraversal<CompositionTraversalImpl>;

// NOLINTNEXTLINE(performance-unnecessary-value-param): tokens are empty
CompositionTraversalImpl::CompositionTraversalImpl(InstantiateToken /*token*/) {}
CompositionTraversalImpl::CompositionTraversalImpl(const CompositionTraversalImpl& other) = default;
CompositionTraversalImpl& CompositionTraversalImpl::operator=(
    const CompositionTraversalImpl& other) = default;
CompositionTraversalImpl::~CompositionTraversalImpl() = default;

std::shared_ptr<PropertyProvider> CompositionTraversalImpl::createPropertyProvider() {
    return makeSubtractiveProvider(matchersMap(), Candidates::CompositeOnly);
}

}  // namespace nuv::zero::traversal
