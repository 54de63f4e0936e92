#include "traversal/ClassHierarchyComparator.h"

#include <string_view>

namespace nuv::zero::traversal MODELING_NUV0_OVER {

bool ClassHierarchyComparator::operator()(const Class& lhs, const Class& rhs) const {
    if (lhs == rhs) return false;
    // A rule may be filed under no class at all; such a rule comes first.
    if (!lhs || !rhs) return !lhs;
    if (access::conformsTo(lhs, rhs)) return true;
    // Kept while their texts are compared: a framework may give names by value.
    const auto& rightName = access::qualifiedNameOf(rhs);
    const auto& leftName = access::qualifiedNameOf(lhs);
    return std::u16string_view(leftName) < std::u16string_view(rightName);
}

}  // namespace nuv::zero::traversal
