#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/ModelBuilder.h"
#include "tests/support/WalkLog.h"

/// In which order walks report links, and which of them cascade.
namespace nuv::zero::traversal::internal {
namespace {

using test::Lines;
using test::linesOf;
using test::ModelBuilder;

constexpr auto nodes = "Node; Node.x -> Node *; Node.y -> Node";

/// A model and what the three orders report from its element A without the pseudo-link.
struct OrderedWalk {
    const char* name;
    const char* model;
    Lines preOrder;
    Lines postOrder;
    Lines breadthFirst;
};

const std::vector<OrderedWalk>& scenarios() {
    static const std::vector<OrderedWalk> all{
        {"SingleElement", "A", {}, {}, {}},
        {"Chain",
         "A.x = B; B.x = C; C.x = D",
         {"A.x>B", "B.x>C", "C.x>D"},
         {"C.x>D", "B.x>C", "A.x>B"},
         {"A.x>B", "B.x>C", "C.x>D"}},
        {"Tree",
         "A.x = B C; B.x = D E; C.x = F",
         {"A.x>B", "B.x>D", "B.x>E", "A.x>C", "C.x>F"},
         {"B.x>D", "B.x>E", "A.x>B", "C.x>F", "A.x>C"},
         {"A.x>B", "A.x>C", "B.x>D", "B.x>E", "C.x>F"}},
        {"PropertiesInTurn",
         "A.x = B; A.y = C; B.y = D",
         {"A.x>B", "B.y>D", "A.y>C"},
         {"B.y>D", "A.x>B", "A.y>C"},
         {"A.x>B", "A.y>C", "B.y>D"}},
        {"Cycle",
         "A.x = B; B.x = A",
         {"A.x>B", "B.x>A!"},
         {"B.x>A!", "A.x>B"},
         {"A.x>B", "B.x>A!"}},
        {"SelfReference", "A.x = A", {"A.x>A!"}, {"A.x>A!"}, {"A.x>A!"}},
        {"RepeatedValue",
         "A.x = B B",
         {"A.x>B", "A.x>B!"},
         {"A.x>B", "A.x>B!"},
         {"A.x>B", "A.x>B!"}},
        // Breadth-first, the second link to C waits behind the queue, and so comes after C's own.
        {"Diamond",
         "A.x = B C; B.x = C; C.x = D",
         {"A.x>B", "B.x>C", "C.x>D", "A.x>C!"},
         {"C.x>D", "B.x>C", "A.x>B", "A.x>C!"},
         {"A.x>B", "A.x>C", "C.x>D", "B.x>C!"}},
        {"DiamondOfTwoSides",
         "A.x = B C; B.x = D; C.x = D",
         {"A.x>B", "B.x>D", "A.x>C", "C.x>D!"},
         {"B.x>D", "A.x>B", "C.x>D!", "A.x>C"},
         {"A.x>B", "A.x>C", "B.x>D", "C.x>D!"}},
        {"CycleBelow",
         "A.x = B; B.x = C; C.x = B A",
         {"A.x>B", "B.x>C", "C.x>B!", "C.x>A!"},
         {"C.x>B!", "C.x>A!", "B.x>C", "A.x>B"},
         {"A.x>B", "B.x>C", "C.x>B!", "C.x>A!"}},
    };
    return all;
}

void PrintTo(const OrderedWalk& scenario, std::ostream* out) {
    *out << scenario.name;
}

class WalkOrderTest : public testing::TestWithParam<OrderedWalk> {
  protected:
    ModelBuilder m{nodes, GetParam().model};

    std::shared_ptr<TraversalResult> run(Algo order, ResultPolicy pseudo) {
        return Spec::subtractiveTraversal()
            ->prune(m["Node.y"], [](const Class&) { return false; })
            ->includeInitialPseudoLink(pseudo)
            ->run({m("A")}, order);
    }
    static Lines prefixed(Lines lines) {
        lines.insert(lines.begin(), ">A");
        return lines;
    }
};

TEST_P(WalkOrderTest, PreOrder) {
    EXPECT_EQ(linesOf(run(Algo::DepthFirstPreOrder, ResultPolicy::WalkOnly)), GetParam().preOrder);
}
TEST_P(WalkOrderTest, PostOrder) {
    EXPECT_EQ(linesOf(run(Algo::DepthFirstPostOrder, ResultPolicy::WalkOnly)),
              GetParam().postOrder);
}
TEST_P(WalkOrderTest, BreadthFirst) {
    EXPECT_EQ(linesOf(run(Algo::BreadthFirst, ResultPolicy::WalkOnly)), GetParam().breadthFirst);
}
TEST_P(WalkOrderTest, EveryOtherOrderValueWalksPreOrder) {
    for (const int order : {3, -1, 100}) {
        EXPECT_EQ(linesOf(run(static_cast<Algo>(order), ResultPolicy::WalkOnly)),
                  GetParam().preOrder);
    }
}
TEST_P(WalkOrderTest, PseudoLinkComesFirstPreOrderAndBreadthFirstAndLastPostOrder) {
    EXPECT_EQ(linesOf(run(Algo::DepthFirstPreOrder, ResultPolicy::Report)),
              prefixed(GetParam().preOrder));
    EXPECT_EQ(linesOf(run(Algo::BreadthFirst, ResultPolicy::Extended)),
              prefixed(GetParam().breadthFirst));
    Lines last = GetParam().postOrder;
    last.emplace_back(">A");
    EXPECT_EQ(linesOf(run(Algo::DepthFirstPostOrder, ResultPolicy::Report)), last);
}

INSTANTIATE_TEST_SUITE_P(Models, WalkOrderTest, testing::ValuesIn(scenarios()),
                         [](const auto& each) { return each.param.name; });

/// What holds in each order.
class EveryOrderTest : public testing::TestWithParam<Algo> {};

TEST_P(EveryOrderTest, NullEntryOfACollectionIsATargetLikeAnyOther) {
    ModelBuilder m(nodes, "A; B");
    m.model.plant(m("A"), m["Node.x"],
                  {m.type("Node"), true, std::vector<ModelElement>{m("B"), {}, {}}});
    Lines lines = linesOf(Spec::additiveTraversal()
                              ->traverse(m["Node.x"], ResultPolicy::Report)
                              ->includeInitialPseudoLink(ResultPolicy::WalkOnly)
                              ->run({m("A")}, GetParam()));
    EXPECT_EQ(lines, (Lines{"A.x>B", "A.x>null", "A.x>null!"}));
}

TEST_P(EveryOrderTest, LinksThatAreNotReportedAreStillWalked) {
    ModelBuilder m(nodes, "A.x = B; B.y = C; C.x = D");
    EXPECT_EQ(linesOf(Spec::additiveTraversal()
                          ->traverse(m["Node.x"], ResultPolicy::WalkOnly)
                          ->traverse(m["Node.y"], ResultPolicy::Report)
                          ->includeInitialPseudoLink(ResultPolicy::WalkOnly)
                          ->run({m("A")}, GetParam())),
              Lines{"B.y>C"});
}

INSTANTIATE_TEST_SUITE_P(Orders, EveryOrderTest, testing::ValuesIn(test::everyOrder()),
                         [](const auto& each) { return test::nameOf(each.param); });

}  // namespace
}  // namespace nuv::zero::traversal::internal
