#pragma once

#include <memory>

#include "Export.h"
#include "PruningTraversal.h"

namespace nuv::zero::traversal MODELING_NUV0_OVER {

/// The composition kind: follows everything that elements contain, except what `prune` cuts away.
///
///     auto result = Spec::compositionTraversal()->prune(comments)->depthFirst({model});
///
/// From each element, its containment properties are followed in the order of their names.
class MODELING_NUV0_TRAVERSAL_EXPORT CompositionTraversalImpl
    : public PruningTraversal<CompositionTraversalImpl> {
  public:
    explicit CompositionTraversalImpl(InstantiateToken token);
    CompositionTraversalImpl(const CompositionTraversalImpl& other);
    CompositionTraversalImpl& operator=(const CompositionTraversalImpl& other);
    ~CompositionTraversalImpl() override;

  private:
    std::shared_ptr<PropertyProvider> createPropertyProvider() override;
};

}  // namespace nuv::zero::traversal
