#include "traversal/ClassPredicates.h"

#include <stdexcept>
#include <string>

namespace nuv::zero::traversal MODELING_NUV0_OVER {
namespace {

void refuseNull(const Class& type, const char* name) {
    if (type) return;
    throw std::invalid_argument(std::string(name) + " needs a class, not a null handle.");
}

}  // namespace

ClassPredicate isKindOf(const Class& type) {
    refuseNull(type, "isKindOf");
    return [type](const Class& asked) { return asked && access::conformsTo(asked, type); };
}

ClassPredicate isExactly(const Class& type) {
    refuseNull(type, "isExactly");
    return [type](const Class& asked) { return asked == type; };
}

}  // namespace nuv::zero::traversal
