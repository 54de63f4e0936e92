// A callable for an event takes what the event tells: an element, and for properties both.
#include "traversal/Traversal.h"

using namespace nuv::zero::traversal;
using nuv::zero::ModelElement;

void hearsLinks(const Link& link);
void hearsElements(const ModelElement& element);

void setUp(const std::shared_ptr<TraversalResult>& result) {
    ResultSetup(result)
        .onEnterInputElement([](const ModelElement&) {})
        .onEnterElement([](const auto&) { return true; })
        .onEnterProperty([](const ModelElement&, const Property&) {})
        .onExitProperty([](const auto&, const auto&) {})
        .onExitElement([](ModelElement) {})
        .onExitInputElement([](auto) {});
#ifdef EXPECT_ERROR
    ResultSetup(result).EVENT;
#endif
}
