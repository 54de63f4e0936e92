#include "traversal/ClassHierarchyComparator.h"

#include <string>

namespace nuv::zero::traversal {

bool ClassHierarchyComparator::operator()(const Class& lhs, const Class& rhs) const {
    if (lhs == rhs) return false;
    // A rule may be filed under no class at all; such a rule comes first.
    if (!lhs || !rhs) return !lhs;
    if (access::conformsTo(lhs, rhs)) return true;
    const auto& rightName = access::qualifiedNameOf(rhs);
    return access::qualifiedNameOf(lhs) < rightName;
}

}  // namespace nuv::zero::traversal
