#pragma once

#include <memory>

#include "Export.h"
#include "PruningTraversal.h"

namespace nuv::zero::traversal MODELING_NUV0_OVER {

/// The subtractive kind: follows every property that links to other elements, except what `prune`
/// cuts away.
///
///     auto result = Spec::subtractiveTraversal()->prune(owner)->breadthFirst({model});
///
/// From each element, references are followed before containment properties, both in the order of
/// their names.
class MODELING_NUV0_TRAVERSAL_EXPORT SubtractiveTraversalImpl
    : public PruningTraversal<SubtractiveTraversalImpl> {
  public:
    explicit SubtractiveTraversalImpl(InstantiateToken token);
    SubtractiveTraversalImpl(const SubtractiveTraversalImpl& other);
    SubtractiveTraversalImpl& operator=(const SubtractiveTraversalImpl& other);
    ~SubtractiveTraversalImpl() override;

  private:
    std::shared_ptr<PropertyProvider> createPropertyProvider() override;
};

}  // namespace nuv::zero::traversal
