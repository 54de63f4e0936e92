#pragma once

#include "ClassPredicate.h"
#include "Export.h"

namespace nuv::zero::traversal MODELING_NUV0_OVER {

/// Orders classes so that a subclass comes before its superclass; unrelated classes by qualified
/// name, code unit by code unit.
///
/// This is no strict weak order: when a subclass's name sorts after its superclass's name, each is
/// less than the other. Standard ordered containers must not be used with it; `CompositeMatcher`
/// keeps its entries in a structure whose result is defined for such an order.
struct MODELING_NUV0_TRAVERSAL_EXPORT ClassHierarchyComparator {
    /// Cheapest test first: identity without asking the framework, then the hierarchy, then names.
    bool operator()(const Class& lhs, const Class& rhs) const;
};

}  // namespace nuv::zero::traversal
