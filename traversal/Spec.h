#pragma once

#include <memory>

#include "AdditiveTraversalImpl.h"
#include "CompositionTraversalImpl.h"
#include "Export.h"
#include "SubtractiveTraversalImpl.h"

namespace nuv::zero::traversal MODELING_NUV0_OVER {

/// Where every traversal begins: makes builders of the three kinds.
///
///     auto walk = links(Spec::additiveTraversal()
///                           ->traverse(ports, ResultPolicy::Report)
///                           ->depthFirst({block}));
///
/// Choose additive when you can name what to follow, composition for everything that elements
/// contain, subtractive for everything reachable but for what you cut. A new builder has no rules
/// and reports the inputs themselves.
class MODELING_NUV0_TRAVERSAL_EXPORT Spec {
  public:
    static std::shared_ptr<AdditiveTraversalImpl> additiveTraversal();
    static std::shared_ptr<CompositionTraversalImpl> compositionTraversal();
    static std::shared_ptr<SubtractiveTraversalImpl> subtractiveTraversal();
};

}  // namespace nuv::zero::traversal
