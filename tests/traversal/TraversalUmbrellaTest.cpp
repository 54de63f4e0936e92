#include "traversal/Traversal.h"

#include <gtest/gtest.h>

#include <type_traits>

#include "model/memory/Model.h"

namespace nuv::zero {
namespace {

// The engine's types that users meet have names in the public namespace.
static_assert(std::is_same_v<traversal::Link, traversal::internal::Link>);
static_assert(std::is_same_v<traversal::TraversalResult, traversal::internal::TraversalResult>);
static_assert(
    std::is_same_v<traversal::TraversalProcessor, traversal::internal::TraversalProcessor>);

// The numbers are part of the interface.
using traversal::Algo;
using traversal::ResultPolicy;
using traversal::UniquenessMode;
static_assert(std::is_same_v<std::underlying_type_t<Algo>, std::int32_t>);
static_assert(std::is_same_v<std::underlying_type_t<ResultPolicy>, std::int32_t>);
static_assert(std::is_same_v<std::underlying_type_t<UniquenessMode>, std::int32_t>);
static_assert(static_cast<int>(Algo::DepthFirstPreOrder) == 0);
static_assert(static_cast<int>(Algo::DepthFirstPostOrder) == 1);
static_assert(static_cast<int>(Algo::BreadthFirst) == 2);
static_assert(static_cast<int>(ResultPolicy::WalkOnly) == 0);
static_assert(static_cast<int>(ResultPolicy::Report) == 1);
static_assert(static_cast<int>(ResultPolicy::Extended) == 2);
static_assert(static_cast<int>(UniquenessMode::UniqueLinks) == 0);
static_assert(static_cast<int>(UniquenessMode::UniqueElements) == 1);
static_assert(static_cast<int>(UniquenessMode::NoUniqueness) == 2);
static_assert(static_cast<int>(traversal::CompositeMatcher::VisitMode::Prune) == 0);
static_assert(static_cast<int>(traversal::CompositeMatcher::VisitMode::Visit) == 1);

TEST(TraversalUmbrellaTest, OneIncludeServesAWholeProgram) {
    using namespace traversal;
    memory::Metamodel metamodel(u"m");
    const meta::Class node = metamodel.addClass(u"Node");
    const meta::Property next =
        metamodel.addProperty(node, u"next", node, 1, memory::PropertyFlags::Association);
    metamodel.addProperty(node, u"name", meta::StandardTypes::stringMeta());
    memory::Model model;
    const ModelElement a = model.create(node, u"a");
    model.set(a, next, model.create(node, u"b"));

    TraversalProcessor observer;
    const std::shared_ptr<TraversalResult> result =
        Spec::additiveTraversal()->traverse(next, ResultPolicy::Report)->breadthFirst({a});
    ResultSetup(result).observe(&observer);
    std::string text = dumpElement(a);
    for (const Link& link : links(result)) text += "; " + dumpLink(link);
    EXPECT_EQ(text, "Node'a'; Not an element-[pseudo]-Node'a'; Node'a'-[next]-Node'b'");
}

}  // namespace
}  // namespace nuv::zero
