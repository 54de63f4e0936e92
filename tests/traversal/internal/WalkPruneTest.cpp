#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>

#include "tests/support/ModelBuilder.h"
#include "tests/support/WalkLog.h"

/// Pruning between two steps of a walk.
namespace nuv::zero::traversal::internal {
namespace {

using test::Lines;
using test::ModelBuilder;
using test::text;
using Walk = TraversalResult::IterationContext;

class WalkPruneTest : public testing::Test {
  protected:
    explicit WalkPruneTest(const char* model = "A.x = B C; A.y = D; B.x = E; B.y = F; C.x = G")
        : m("Node; Node.x -> Node *; Node.y -> Node *", model) {}

    /// What a walk from A reports when it is pruned at the links named.
    Lines walk(Algo order, const std::map<std::string, std::function<void(Walk&)>>& pruning,
               ResultPolicy pseudo = ResultPolicy::WalkOnly) {
        const auto result =
            Spec::subtractiveTraversal()->includeInitialPseudoLink(pseudo)->run({m("A")}, order);
        Lines lines;
        for (auto walk = result->begin(); !!walk.getCurrent(); walk.advance()) {
            const std::string link = text(walk.getCurrent());
            lines.push_back(link);
            if (const auto found = pruning.find(link); found != pruning.end()) found->second(walk);
        }
        return lines;
    }
    static void allChildren(Walk& walk) { walk.pruneAllChildren(); }
    static void siblings(Walk& walk) { walk.pruneSiblings(); }
    std::function<void(Walk&)> children(const std::string& property) {
        return [this, property](Walk& walk) { walk.pruneChildren(m["Node." + property]); };
    }

    ModelBuilder m;
};

TEST_F(WalkPruneTest, PruneAllChildrenLeavesOutEverythingBelowTheTarget) {
    EXPECT_EQ(walk(Algo::DepthFirstPreOrder, {{"A.x>B", allChildren}}),
              (Lines{"A.x>B", "A.x>C", "C.x>G", "A.y>D"}));
    EXPECT_EQ(walk(Algo::BreadthFirst, {{"A.x>B", allChildren}}),
              (Lines{"A.x>B", "A.x>C", "A.y>D", "C.x>G"}));
}

TEST_F(WalkPruneTest, PruneAllChildrenOfTheInputEndsIt) {
    for (const Algo order : {Algo::DepthFirstPreOrder, Algo::BreadthFirst}) {
        EXPECT_EQ(walk(order, {{">A", allChildren}}, ResultPolicy::Report), Lines{">A"});
    }
}

TEST_F(WalkPruneTest, PostOrderThereIsNothingLeftToPruneBelowTheTarget) {
    const Lines unpruned = walk(Algo::DepthFirstPostOrder, {});
    EXPECT_EQ(walk(Algo::DepthFirstPostOrder, {{"A.x>B", allChildren}, {"C.x>G", allChildren}}),
              unpruned);
    EXPECT_EQ(walk(Algo::DepthFirstPostOrder, {{"A.x>B", children("x")}}), unpruned);
}

TEST_F(WalkPruneTest, PruneChildrenLeavesOutOneProperty) {
    EXPECT_EQ(walk(Algo::DepthFirstPreOrder, {{"A.x>B", children("y")}}),
              (Lines{"A.x>B", "B.x>E", "A.x>C", "C.x>G", "A.y>D"}));
    EXPECT_EQ(walk(Algo::DepthFirstPreOrder, {{"A.x>B", children("x")}}),
              (Lines{"A.x>B", "B.y>F", "A.x>C", "C.x>G", "A.y>D"}));
    EXPECT_EQ(walk(Algo::BreadthFirst, {{"A.x>B", children("x")}}),
              (Lines{"A.x>B", "A.x>C", "A.y>D", "B.y>F", "C.x>G"}));
}

TEST_F(WalkPruneTest, EveryPruneRequestForAnElementHoldsNotOnlyTheLast) {
    const auto both = [this](Walk& walk) {
        walk.pruneChildren(m["Node.y"]);
        walk.pruneChildren(m["Node.x"]);
    };
    EXPECT_EQ(walk(Algo::DepthFirstPreOrder, {{"A.x>B", both}}),
              (Lines{"A.x>B", "A.x>C", "C.x>G", "A.y>D"}));
    EXPECT_EQ(walk(Algo::BreadthFirst, {{"A.x>B", both}}),
              (Lines{"A.x>B", "A.x>C", "A.y>D", "C.x>G"}));
}

TEST_F(WalkPruneTest, PruneSiblingsLeavesOutTheRestOfTheProperty) {
    EXPECT_EQ(walk(Algo::DepthFirstPreOrder, {{"A.x>B", siblings}}),
              (Lines{"A.x>B", "B.x>E", "B.y>F", "A.y>D"}));
    EXPECT_EQ(walk(Algo::DepthFirstPostOrder, {{"A.x>B", siblings}}),
              (Lines{"B.x>E", "B.y>F", "A.x>B", "A.y>D"}));
    EXPECT_EQ(walk(Algo::BreadthFirst, {{"A.x>B", siblings}}),
              (Lines{"A.x>B", "A.y>D", "B.x>E", "B.y>F"}));
}

TEST_F(WalkPruneTest, PruningAfterAPseudoLinkThatHasNoSourceIsIgnored) {
    for (const Algo order : test::everyOrder()) {
        EXPECT_EQ(walk(order, {{">A", siblings}}, ResultPolicy::Report),
                  walk(order, {}, ResultPolicy::Report));
    }
}

TEST_F(WalkPruneTest, PruningTheEndSentinelIsIgnored) {
    Walk end;
    end.pruneAllChildren();
    end.pruneChildren(m["Node.x"]);
    end.pruneSiblings();
    end.advance();
    EXPECT_TRUE(end == Walk());
    EXPECT_TRUE(!end.getCurrent());
}

TEST_F(WalkPruneTest, PruningAWalkThatHasEndedIsIgnored) {
    for (const Algo order : test::everyOrder()) {
        auto walk = Spec::subtractiveTraversal()->run({m("A")}, order)->begin();
        while (!!walk.getCurrent()) walk.advance();
        walk.pruneAllChildren();
        walk.pruneChildren(m["Node.x"]);
        walk.pruneSiblings();
        walk.advance();
        EXPECT_TRUE(walk == Walk());
    }
}

TEST_F(WalkPruneTest, PruningAPropertyThatTheTargetDoesNotHaveIsIgnored) {
    const Property foreign =
        m.metamodel.addProperty(m.metamodel.addClass(u"Other"), u"z", m.type("Node"), 1,
                                memory::PropertyFlags::Association);
    const auto pruning = [&](Walk& walk) {
        walk.pruneChildren(foreign);
        walk.pruneChildren(Property());
    };
    for (const Algo order : test::everyOrder()) {
        EXPECT_EQ(walk(order, {{"A.x>B", pruning}}), walk(order, {}));
    }
}

class WalkPruneOnCyclesTest : public WalkPruneTest {
  protected:
    WalkPruneOnCyclesTest() : WalkPruneTest("A.x = B C; A.y = D; B.x = A E; C.x = B F") {}
};

TEST_F(WalkPruneOnCyclesTest, PruningOnABackEdgeStopsTheAncestorsCursor) {
    EXPECT_EQ(walk(Algo::DepthFirstPreOrder, {{"B.x>A!", allChildren}}),
              (Lines{"A.x>B", "B.x>A!", "B.x>E"}));
    EXPECT_EQ(walk(Algo::DepthFirstPostOrder, {{"B.x>A!", allChildren}}),
              (Lines{"B.x>A!", "B.x>E", "A.x>B"}));
}

TEST_F(WalkPruneOnCyclesTest, PruningAPropertyOnABackEdgeActsOnTheAncestorsCursor) {
    EXPECT_EQ(walk(Algo::DepthFirstPreOrder, {{"B.x>A!", children("x")}}),
              (Lines{"A.x>B", "B.x>A!", "B.x>E", "A.y>D"}));
    EXPECT_EQ(walk(Algo::DepthFirstPreOrder, {{"B.x>A!", children("y")}}),
              (Lines{"A.x>B", "B.x>A!", "B.x>E", "A.x>C", "C.x>B!", "C.x>F"}));
}

TEST_F(WalkPruneOnCyclesTest, PruningALinkToAnElementThatIsFinishedChangesNothing) {
    for (const Algo order : test::everyOrder()) {
        EXPECT_EQ(walk(order, {{"C.x>B!", allChildren}}), walk(order, {})) << test::nameOf(order);
    }
}

// Breadth-first, a back edge is handled after its target's turn, and queued links stay queued.
TEST_F(WalkPruneOnCyclesTest, PruningNeverTouchesTheFrontier) {
    EXPECT_EQ(walk(Algo::BreadthFirst, {{"A.y>D", siblings}, {"B.x>E", siblings}}),
              (Lines{"A.x>B", "A.x>C", "A.y>D", "B.x>E", "C.x>F", "B.x>A!", "C.x>B!"}));
}

// The source's cursor may have moved on: what it stands on now is pruned, not the link's property.
class WalkPruneSiblingsLateTest : public WalkPruneTest {
  protected:
    WalkPruneSiblingsLateTest() : WalkPruneTest("A.x = B; A.y = C D; B.x = C") {}
};

TEST_F(WalkPruneSiblingsLateTest, PruneSiblingsActsOnThePropertyWhereTheSourceStandsNow) {
    // B.x>C! waits behind the queue; B's cursor is finished when it is reported.
    EXPECT_EQ(walk(Algo::BreadthFirst, {{"B.x>C!", siblings}}),
              (Lines{"A.x>B", "A.y>C", "A.y>D", "B.x>C!"}));
    // Pre-order, A stands on y when its second link is reported.
    EXPECT_EQ(walk(Algo::DepthFirstPreOrder, {{"A.y>C!", siblings}}),
              (Lines{"A.x>B", "B.x>C", "A.y>C!"}));
    EXPECT_EQ(walk(Algo::DepthFirstPreOrder, {{"A.x>B", siblings}}),
              (Lines{"A.x>B", "B.x>C", "A.y>C!", "A.y>D"}));
}

TEST_F(WalkPruneTest, EventsOfPrunedElementsAreThoseOfTheirCursors) {
    const auto result = Spec::subtractiveTraversal()
                            ->includeInitialPseudoLink(ResultPolicy::WalkOnly)
                            ->depthFirst({m("A")});
    Lines lines;
    test::EventLog log(lines);
    ResultSetup(result).observe(&log);
    auto walk = result->begin();
    walk.pruneAllChildren();
    walk.advance();
    walk.pruneSiblings();
    walk.pruneChildren(m["Node.y"]);
    while (!!walk.getCurrent()) walk.advance();
    EXPECT_EQ(lines,
              (Lines{"input A",   "enter A",  "enter A.x", "enter C",  "enter C.x", "enter G",
                     "enter G.x", "exit G.x", "enter G.y", "exit G.y", "exit G",    "exit C.x",
                     "enter C.y", "exit C.y", "exit C",    "exit A.x", "enter A.y", "enter D",
                     "enter D.x", "exit D.x", "enter D.y", "exit D.y", "exit D",    "exit A.y",
                     "exit A",    "done A"}));
}

/// An element whose last property had run out, but whose exit event had failed, was said to be cut.
TEST_F(WalkPruneTest, NothingIsCutWhereTheLastPropertyHasRunOut) {
    for (const Algo order : {Algo::DepthFirstPreOrder, Algo::BreadthFirst}) {
        const auto result = Spec::additiveTraversal()
                                ->traverse(m["Node.x"], ResultPolicy::Report)
                                ->run({m("A")}, order);
        bool fails = true;
        ResultSetup(result)
            .onExitProperty([&](const ModelElement&, const Property&) {
                if (std::exchange(fails, false)) throw std::runtime_error("exit");
            })
            .filter([&](const Link& link) { return link.getTarget() == m("A"); });
        LinkRange walk = links(result);
        auto step = walk.begin();
        try {
            ++step;
        } catch (const std::runtime_error&) {
            fails = false;
        }
        // Breadth-first it is A that has run out; depth-first C, whose link was not reported.
        const Pruned expected = order == Algo::BreadthFirst ? Pruned::TooLate : Pruned::Cut;
        EXPECT_EQ(walk.pruneAllChildren(), expected);
    }
}

}  // namespace
}  // namespace nuv::zero::traversal::internal
