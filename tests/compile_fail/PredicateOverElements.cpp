// A predicate over elements must not pass for one over classes: it was asked about the class, as an
// element, and so never said what it was meant to say.
#include "traversal/Traversal.h"

using namespace nuv::zero::traversal;
using nuv::zero::ModelElement;

#ifdef EXPECT_ERROR
using Asked = ModelElement;
#else
using Asked = Class;
#endif

bool byReference(const Asked& /*asked*/) {
    return true;
}

void fileRules(const Property& property, const Class& owner, CompositeMatcher& rules) {
    const auto additive = Spec::additiveTraversal();
    const auto composition = Spec::compositionTraversal();
    const auto subtractive = Spec::subtractiveTraversal();

    // Wherever a rule is given.
    additive->traverse(
        property, [](const Asked&) { return true; }, ResultPolicy::Report);
    composition->prune(property, [](const Asked&) { return true; });
    subtractive->prune(property, [](const Asked&) { return true; });
    subtractive->prune({property, [](const Asked&) { return true; }, owner});
    rules.composeMatcher(
        owner, [](const Asked&) { return true; }, ResultPolicy::Report);

    // Whatever the callable.
    subtractive->prune(property, [](Asked) noexcept { return true; });
    subtractive->prune(property, [count = 0](const Asked&) mutable { return ++count > 1; });
    subtractive->prune(property, byReference);
    subtractive->prune(property, std::function<bool(const Asked&)>(byReference));
}

// Everything else that a class can be given to is a predicate of a rule, with and without the
// others.
void fileOtherRules(const Property& property, const Class& owner, const ClassPredicate& predicate) {
    const auto generic = [](const auto& type) { return nuv::zero::access::nameOf(type) == u"A"; };
    const auto builder = Spec::subtractiveTraversal();
    builder->prune(property, generic);
    builder->prune(property, [](auto type) { return !type; });
    builder->prune(property, [](const nuv::zero::meta::StructuredType& type) { return !type; });
    builder->prune(property, EveryClass());
    builder->prune(property, predicate);
    builder->prune(property, nullptr);
    builder->prune(PropertyMatcher(property, generic, owner));
    builder->prune({property, nullptr, owner});
    builder->prune({property, std::ref(predicate), owner});
}
