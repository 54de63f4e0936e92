// What is combined are predicates over classes: a class says neither "kind of" nor "exactly", and a
// predicate over elements would be asked about the class.
#include "traversal/ClassPredicates.h"

using namespace nuv::zero::traversal;
using nuv::zero::ModelElement;

bool isAnElement(const ModelElement& element);

ClassPredicate combine(const Class& type, const ClassPredicate& predicate) {
    static_cast<void>(type);
#ifdef EXPECT_ERROR
    return COMBINED;
#else
    return anyOf(
        isKindOf(type), noneOf(isExactly(type), predicate), allOf(),
        [](const Class&) { return true; }, [](const auto&) { return true; });
#endif
}
