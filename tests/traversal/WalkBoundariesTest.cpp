#include "traversal/WalkBoundaries.h"

#include <gtest/gtest.h>

#include "tests/support/ModelBuilder.h"
#include "tests/support/WalkLog.h"

namespace nuv::zero::traversal {
namespace {

using test::Lines;
using test::text;
using Walk = TraversalResult::IterationContext;

Lines textsOf(const std::vector<Link>& links) {
    Lines lines;
    for (const Link& link : links) lines.push_back(text(link));
    return lines;
}

class WalkBoundariesTest : public testing::TestWithParam<Algo> {
  protected:
    void refuse(const char* target) {
        ResultSetup(result).descend(
            [this, target](const Link& link) { return !(link.getTarget() == m(target)); });
    }
    /// A walk that stands on the link to an element that it has just entered.
    Walk walkTo(const char* target) {
        Walk walk = result->begin();
        while (!(walk.getCurrent().getTarget() == m(target))) walk.advance();
        return walk;
    }

    test::ModelBuilder m{"Node; Node.x -> Node *; Node.y -> Node *",
                         "A.x = B C; A.y = F; B.x = D; B.y = E; C.x = D"};
    std::shared_ptr<TraversalResult> result =
        Spec::subtractiveTraversal()->run({m("A")}, GetParam());
    WalkBoundaries boundaries;
    ResultSetup setup = ResultSetup(result).trace(&boundaries);
};

TEST_P(WalkBoundariesTest, RefusalsAreRememberedWithTheirWalk) {
    refuse("D");
    test::linesOf(result);
    test::linesOf(result);
    Lines lines;
    for (const auto& [walk, link] : boundaries.refusals()) {
        lines.push_back(std::to_string(walk) + " " + text(link));
    }
    EXPECT_EQ(lines, (Lines{"1 B.x>D!", "1 C.x>D!", "2 B.x>D!", "2 C.x>D!"}));
    EXPECT_EQ(boundaries.findRefusal(Link(m("C"), m("D"), m["Node.x"])),
              &boundaries.refusals().at(1));
    EXPECT_EQ(boundaries.findRefusal(Link(m("C"), m("D"), m["Node.y"])), nullptr);
    EXPECT_TRUE(boundaries.cuts().empty());
}

TEST_P(WalkBoundariesTest, NeverEnteredAreTargetsThatNoOtherLinkHasEntered) {
    ResultSetup(result).descend([this](const Link& link) {
        return !(link.getSource() == m("B") ||
                 (link.getSource() == m("A") && link.getTarget() == m("F")));
    });
    auto walk = links(result);
    EXPECT_TRUE(boundaries.neverEntered(walk).empty()) << "before the first step";
    while (walk.begin() != walk.end() && !!walk.getCurrent()) ++walk.begin();
    EXPECT_EQ(boundaries.refusals().size(), 3U);
    EXPECT_EQ(textsOf(boundaries.neverEntered(walk)).size(), 2U) << "D was entered from C";
    boundaries.clear();
    EXPECT_TRUE(boundaries.neverEntered(walk).empty());
    EXPECT_TRUE(boundaries.refusals().empty());
}

TEST_P(WalkBoundariesTest, EndOfEveryWalkHasEnteredNothingAndLeftNothing) {
    refuse("D");
    test::linesOf(result);
    EXPECT_TRUE(boundaries.neverEntered(Walk()).empty());
}

TEST_P(WalkBoundariesTest, ListenerMayAskInMidWalk) {
    struct Asking : WalkListener {
        explicit Asking(const WalkBoundaries& boundaries) : asked(boundaries) {}
        void onLink(const WalkView& walk, const Link&, Fate, std::size_t) override {
            most = std::max(most, asked.neverEntered(walk).size());
        }
        const WalkBoundaries& asked;
        std::size_t most = 0;
    } asking(boundaries);
    refuse("D");
    ResultSetup(result).trace(&asking);
    test::linesOf(result);
    EXPECT_EQ(asking.most, 2U);
}

TEST_P(WalkBoundariesTest, PrunesThatCutAreRememberedAndWhatTheyCutIsRead) {
    Walk walk = walkTo("B");
    walk.pruneAllChildren();
    walk.pruneAllChildren();
    while (!walk.hasEnded()) walk.advance();
    if (GetParam() == Algo::DepthFirstPostOrder) {
        EXPECT_TRUE(boundaries.cuts().empty()) << "children are walked before";
        EXPECT_TRUE(boundaries.neverEntered(walk).empty());
        return;
    }
    ASSERT_EQ(boundaries.cuts().size(), 1U) << "the second one came too late";
    const WalkBoundaries::Cut& cut = boundaries.cuts().front();
    EXPECT_EQ(cut.walk, 1U);
    EXPECT_EQ(text(cut.link), "A.x>B");
    EXPECT_EQ(cut.pruning, Pruning::AllChildren);
    EXPECT_EQ(cut.property, Property());
    EXPECT_EQ(cut.element(), m("B"));
    EXPECT_EQ(boundaries.findCut(m("B"), m["Node.x"]), &cut);
    EXPECT_EQ(boundaries.findCut(m("A"), m["Node.x"]), nullptr);
    EXPECT_EQ(textsOf(boundaries.neverEntered(walk)), Lines{"B.y>E"}) << "D was entered from C";
}

TEST_P(WalkBoundariesTest, ChildrenOfOnePropertyAreCutAlone) {
    Walk walk = walkTo("B");
    walk.pruneChildren(m["Node.y"]);
    while (!walk.hasEnded()) walk.advance();
    if (GetParam() == Algo::DepthFirstPostOrder) {
        EXPECT_TRUE(boundaries.cuts().empty()) << "children are walked before";
        return;
    }
    EXPECT_EQ(boundaries.findCut(m("B"), m["Node.x"]), nullptr);
    ASSERT_NE(boundaries.findCut(m("B"), m["Node.y"]), nullptr);
    EXPECT_EQ(textsOf(boundaries.neverEntered(walk)), Lines{"B.y>E"});
}

TEST_P(WalkBoundariesTest, SiblingsAreCutFromThePropertyWhereTheCursorOfTheSourceStands) {
    Walk walk = walkTo("B");
    walk.pruneSiblings();
    while (!walk.hasEnded()) walk.advance();
    ASSERT_EQ(boundaries.cuts().size(), 1U);
    EXPECT_EQ(boundaries.cuts().front().pruning, Pruning::Siblings);
    EXPECT_EQ(boundaries.cuts().front().property, m["Node.x"]);
    EXPECT_EQ(boundaries.cuts().front().element(), m("A"));
    EXPECT_EQ(textsOf(boundaries.neverEntered(walk)), Lines{"A.x>C"});
}

/// A prune of siblings from a callback was told of the property of the link that had been reported,
/// although the walk had come to the next property meanwhile.
TEST(WalkBoundariesInCallbacksTest, PruneOfSiblingsTellsThePropertyThatIsCut) {
    const test::ModelBuilder m("Node; Node.x -> Node *; Node.y -> Node *", "A.x = B; A.y = C D");
    const auto result = Spec::subtractiveTraversal()->depthFirst({m("A")});
    WalkBoundaries boundaries;
    Walk walk;
    ResultSetup(result).trace(&boundaries).filter([&](const Link& link) {
        if (link.getTarget() == m("C")) walk.pruneSiblings();
        return ResultPolicy::Report;
    });
    walk = result->begin();
    EXPECT_EQ(test::rest(walk), (Lines{">A", "A.x>B", "A.y>C"}));
    ASSERT_EQ(boundaries.cuts().size(), 1U);
    EXPECT_EQ(text(boundaries.cuts().front().link), "A.x>B");
    EXPECT_EQ(boundaries.cuts().front().property, m["Node.y"]);
    EXPECT_EQ(textsOf(boundaries.neverEntered(walk)), Lines{"A.y>D"});
}

INSTANTIATE_TEST_SUITE_P(Orders, WalkBoundariesTest, testing::ValuesIn(test::everyOrder()),
                         [](const auto& each) { return test::nameOf(each.param); });

}  // namespace
}  // namespace nuv::zero::traversal
