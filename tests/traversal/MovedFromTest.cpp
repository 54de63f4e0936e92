#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <utility>

#include "tests/support/ModelBuilder.h"
#include "tests/support/Predicates.h"
#include "tests/support/WalkLog.h"
#include "traversal/Traversal.h"

/// What was moved from is empty and can be used like new; what is moved onto itself stays whole.
namespace nuv::zero::traversal {
namespace {

using test::always;
using test::Lines;
using test::linesOf;
using test::never;
using Answer = std::pair<bool, ResultPolicy>;
using Mode = CompositeMatcher::VisitMode;
using Walk = TraversalResult::IterationContext;

class MovedFromTest : public testing::Test {
  protected:
    /// By way of a reference, which compilers do not see through.
    template <class T>
    static void moveOntoItself(T& object) {
        T& same = object;
        object = std::move(same);
    }
    std::shared_ptr<TraversalResult> run() const {
        return Spec::subtractiveTraversal()->depthFirst({m("A")});
    }

    test::ModelBuilder m{"Node; Leaf < Node; Node.x -> Node *", "A.x = B C"};
    Class node = m.type("Node");
    Class leaf = m.type("Leaf");
    Property x = m["Node.x"];
    const Lines all{">A", "A.x>B", "A.x>C"};
};

// NOLINTBEGIN(bugprone-use-after-move): what a move leaves is what is tested

// A composite matcher that had been moved from crashed when it was asked.
TEST_F(MovedFromTest, CompositeMatcherHasNoRules) {
    for (const Mode mode : {Mode::Prune, Mode::Visit}) {
        CompositeMatcher rules(mode);
        rules.composeMatcher(node, always, ResultPolicy::Extended);
        const CompositeMatcher moved(std::move(rules));
        EXPECT_EQ(moved.anyMatches(leaf), Answer(true, ResultPolicy::Extended));
        EXPECT_EQ(rules.anyMatches(leaf), CompositeMatcher(mode).anyMatches(leaf));
        EXPECT_EQ(rules.isPruning(), mode == Mode::Prune);
        const CompositeMatcher copy(rules);
        EXPECT_FALSE(copy.anyMatches(leaf).first);
    }
}

// Asked after it had got a rule again, it never came back.
TEST_F(MovedFromTest, CompositeMatcherTakesRulesAgain) {
    CompositeMatcher rules(Mode::Visit);
    rules.composeMatcher(node, always, ResultPolicy::Extended);
    rules.composeMatcher(leaf, never, ResultPolicy::Extended);
    CompositeMatcher target(Mode::Prune);
    target = std::move(rules);
    rules.composePolicy(node, ResultPolicy::Extended);
    rules.composeMatcher(leaf, never, ResultPolicy::Report);
    EXPECT_EQ(rules.anyMatches(node), Answer(false, ResultPolicy::WalkOnly));
    rules.composeMatcher(node, always, ResultPolicy::Report);
    EXPECT_EQ(rules.anyMatches(node), Answer(true, ResultPolicy::Report));
    rules = target;
    EXPECT_EQ(rules.anyMatches(node), Answer(true, ResultPolicy::Extended));
}

// It crashed when it was asked after it had been moved onto itself.
TEST_F(MovedFromTest, CompositeMatcherThatIsMovedOntoItselfKeepsItsRules) {
    CompositeMatcher rules(Mode::Visit);
    rules.composeMatcher(node, always, ResultPolicy::Extended);
    rules.composeMatcher(leaf, always, ResultPolicy::Report);
    moveOntoItself(rules);
    EXPECT_EQ(rules.anyMatches(leaf), Answer(true, ResultPolicy::Report));
}

TEST_F(MovedFromTest, PropertyMatcherIsARuleForNothing) {
    PropertyMatcher rule(x, always, leaf);
    const PropertyMatcher moved(std::move(rule));
    EXPECT_FALSE(rule.getProperty());
    EXPECT_FALSE(rule.getOwner());
    EXPECT_FALSE(rule.getMatcher());
    EXPECT_THROW(rule.matches(node), std::bad_function_call);
    rule = moved;
    moveOntoItself(rule);
    EXPECT_EQ(rule.getProperty(), x);
    EXPECT_TRUE(rule.matches(node));
}

TEST_F(MovedFromTest, AssociationSettingReadsNothing) {
    AssociationSetting setting(x, ResultPolicy::Extended);
    setting.prepareFor(node, nullptr);
    AssociationSetting moved(std::move(setting));
    EXPECT_FALSE(setting.getProperty());
    EXPECT_EQ(moved.read(m("A")).size(), 2U);
    setting = moved;
    moveOntoItself(setting);
    EXPECT_EQ(setting.getProperty(), x);
    EXPECT_EQ(setting.read(m("A")).size(), 2U);
}

TEST_F(MovedFromTest, LinkIsTheEmptyLink) {
    Link link(m("A"), m("B"), x);
    Link moved(std::move(link));
    EXPECT_TRUE(!link);
    EXPECT_FALSE(link.getOpposite().has_value());
    link = moved;
    moveOntoItself(link);
    EXPECT_TRUE(link == moved);
}

// A range that had been moved from threw when it was begun.
TEST_F(MovedFromTest, RangeIsEmpty) {
    for (const bool isUnderWay : {false, true}) {
        LinkRange range = links(run());
        if (isUnderWay) range.begin();
        LinkRange moved(std::move(range));
        EXPECT_TRUE(range.begin() == range.end());
        range.pruneAllChildren();
        range.pruneChildren(x);
        range.pruneSiblings();
        range = std::move(moved);
        moveOntoItself(range);
        Lines lines;
        for (const Link& link : range) lines.push_back(test::text(link));
        EXPECT_EQ(lines, all);
        EXPECT_TRUE(moved.begin() == moved.end());
    }
}

// Moving a walk copied it, with all that it had met.
TEST_F(MovedFromTest, WalkIsAtItsEnd) {
    Walk walk = run()->begin();
    walk.advance();
    Walk moved(std::move(walk));
    EXPECT_TRUE(walk == Walk());
    EXPECT_TRUE(!walk.getCurrent());
    walk.advance();
    walk.pruneAllChildren();
    EXPECT_TRUE(walk == Walk());
    EXPECT_EQ(test::text(moved.getCurrent()), "A.x>B");
    walk = moved;
    moveOntoItself(walk);
    EXPECT_EQ(test::rest(walk), (Lines{"A.x>B", "A.x>C"}));
    EXPECT_EQ(test::rest(moved), (Lines{"A.x>B", "A.x>C"}));
}

// NOLINTEND(bugprone-use-after-move)

}  // namespace
}  // namespace nuv::zero::traversal
