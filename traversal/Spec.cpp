#include "traversal/Spec.h"

namespace nuv::zero::traversal MODELING_NUV0_OVER {

std::shared_ptr<AdditiveTraversalImpl> Spec::additiveTraversal() {
    return std::make_shared<AdditiveTraversalImpl>(AdditiveTraversalImpl::InstantiateToken{});
}

std::shared_ptr<CompositionTraversalImpl> Spec::compositionTraversal() {
    return std::make_shared<CompositionTraversalImpl>(CompositionTraversalImpl::InstantiateToken{});
}

std::shared_ptr<SubtractiveTraversalImpl> Spec::subtractiveTraversal() {
    return std::make_shared<SubtractiveTraversalImpl>(SubtractiveTraversalImpl::InstantiateToken{});
}

}  // namespace nuv::zero::traversal
