#include "traversal/internal/TraversalResult.h"

#include <gtest/gtest.h>

#include <memory>
#include <type_traits>
#include <utility>

#include "tests/support/ModelBuilder.h"
#include "tests/support/WalkLog.h"

/// Equality, copies and laziness of walks.
namespace nuv::zero::traversal::internal {
namespace {

using test::Lines;
using test::linesOf;
using test::ModelBuilder;
using test::rest;
using test::text;
using Walk = TraversalResult::IterationContext;

static_assert(std::is_default_constructible_v<Walk> && std::is_copy_constructible_v<Walk>);
static_assert(std::is_void_v<decltype(std::declval<Walk&>() = std::declval<const Walk&>())>);
static_assert(std::is_same_v<decltype(std::declval<const Walk&>().getCurrent()), const Link&>);

class IterationContextTest : public testing::TestWithParam<Algo> {
  protected:
    std::shared_ptr<TraversalResult> run(const std::vector<ModelElement>& inputs) const {
        return Spec::subtractiveTraversal()->run(inputs, GetParam());
    }
    std::shared_ptr<TraversalResult> run() const { return run({m("A"), m("E")}); }

    ModelBuilder m{"Node; Node.x -> Node *; Node.y -> Node *",
                   "A.x = B C; A.y = D; B.x = A C; C.y = D B; D.x = A; E.x = C F"};
};

TEST_P(IterationContextTest, DefaultConstructedStandsAtTheEndAndStaysThere) {
    Walk end;
    EXPECT_TRUE(end == Walk());
    EXPECT_TRUE(!end.getCurrent());
    EXPECT_TRUE(end.getCurrent().shouldCascade());
    end.advance();
    EXPECT_TRUE(end == Walk());
}

TEST_P(IterationContextTest, NewWalkStandsOnItsFirstLink) {
    const auto result = run();
    EXPECT_EQ(text(result->begin().getCurrent()), linesOf(result).front());
}

// NOLINTBEGIN(bugprone-use-after-move): what a move leaves is promised
TEST_P(IterationContextTest, WalkThatWasMovedFromIsTheEndOfEveryWalk) {
    const auto result = run();
    Walk source = result->begin();
    Walk assignedFrom = result->begin();
    Walk moved(std::move(source));
    Walk assigned;
    assigned = std::move(assignedFrom);
    for (Walk* left : {&source, &assignedFrom}) {
        EXPECT_TRUE(*left == Walk());
        EXPECT_EQ(text(left->getCurrent()), "-");
        left->advance();
        left->pruneAllChildren();
        EXPECT_TRUE(*left == Walk());
    }
    EXPECT_TRUE(moved == result->begin());
    EXPECT_EQ(rest(moved), linesOf(result));
    EXPECT_EQ(rest(assigned), linesOf(result));
}

TEST_P(IterationContextTest, WalkThatIsMovedToItselfStaysWhereItIs) {
    const auto result = run();
    Walk walk = result->begin();
    Walk& itself = walk;
    walk = std::move(itself);
    EXPECT_EQ(rest(walk), linesOf(result));
}
// NOLINTEND(bugprone-use-after-move)

TEST_P(IterationContextTest, EachBeginIsAWalkOfItsOwn) {
    const auto result = run();
    Walk one = result->begin();
    Walk other = result->begin();
    const Lines whole = linesOf(result);
    Lines interleaved;
    for (; !!one.getCurrent(); one.advance(), other.advance()) {
        EXPECT_TRUE(one == other);
        interleaved.push_back(text(other.getCurrent()));
    }
    EXPECT_EQ(interleaved, whole);
    EXPECT_TRUE(!other.getCurrent());
}

TEST_P(IterationContextTest, CopyAtEveryStepContinuesWithTheSameRest) {
    const auto result = run();
    const Lines whole = linesOf(result);
    Walk walk = result->begin();
    for (std::size_t step = 0; step <= whole.size(); ++step) {
        Walk copy(walk);
        Walk assigned;
        assigned = walk;
        EXPECT_TRUE(copy == walk);
        EXPECT_TRUE(assigned == walk);
        const Lines expected(whole.begin() + static_cast<std::ptrdiff_t>(step), whole.end());
        EXPECT_EQ(rest(copy), expected);
        EXPECT_EQ(rest(assigned), expected);
        if (step < whole.size()) {
            EXPECT_EQ(text(walk.getCurrent()), whole[step]);
            walk.advance();
        }
    }
}

TEST_P(IterationContextTest, CopyOutlivesTheWalkItWasCopiedFromAndTheResultPointer) {
    const Lines whole = linesOf(run());
    auto walk = std::make_unique<Walk>(run()->begin());
    walk->advance();
    Walk copy(*walk);
    walk.reset();
    EXPECT_EQ(rest(copy), Lines(whole.begin() + 1, whole.end()));
}

TEST_P(IterationContextTest, AssignmentReplacesAWalkInMidCourse) {
    const Lines whole = linesOf(run());
    Walk walk = run({m("C")})->begin();
    walk.advance();
    const Walk fresh = run()->begin();
    walk = fresh;
    EXPECT_EQ(rest(walk), whole);
}

TEST_P(IterationContextTest, SelfAssignmentChangesNothing) {
    Walk walk = run()->begin();
    walk.advance();
    const Walk copy(walk);
    const Walk& same = walk;
    walk = same;
    EXPECT_TRUE(walk == copy);
    Walk second(copy);
    EXPECT_EQ(rest(walk), rest(second));
}

TEST_P(IterationContextTest, AssigningTheSentinelEndsAWalk) {
    Walk walk = run()->begin();
    const Walk end;
    walk = end;
    EXPECT_TRUE(walk == Walk());
    walk.advance();
    EXPECT_TRUE(!walk.getCurrent());
}

TEST_P(IterationContextTest, PruningACopyLeavesTheOriginalAlone) {
    Walk walk = run()->begin();
    Walk copy(walk);
    const Lines whole = linesOf(run());
    copy.pruneAllChildren();
    copy.pruneSiblings();
    EXPECT_EQ(rest(walk), whole);
    if (GetParam() != Algo::DepthFirstPostOrder) {
        EXPECT_NE(rest(copy), whole);
    }
}

TEST_P(IterationContextTest, PruningBeforeACopyHoldsInTheCopy) {
    Walk walk = run()->begin();
    walk.pruneChildren(m["Node.x"]);
    walk.pruneChildren(m["Node.y"]);
    Walk copy(walk);
    EXPECT_EQ(rest(copy), rest(walk));
}

// Equality.

TEST_P(IterationContextTest, WalksAtDifferentPlacesAreUnequal) {
    const auto result = run();
    Walk one = result->begin();
    const Walk other = result->begin();
    EXPECT_TRUE(one == other);
    one.advance();
    EXPECT_FALSE(one == other);
}

TEST_P(IterationContextTest, WalksOfDifferentResultsAreUnequal) {
    EXPECT_FALSE(run()->begin() == run()->begin());
}

TEST_P(IterationContextTest, WalkEqualsTheSentinelExactlyWhenItHasEnded) {
    Walk walk = run()->begin();
    EXPECT_FALSE(walk == Walk());
    EXPECT_FALSE(Walk() == walk);
    while (!!walk.getCurrent()) walk.advance();
    EXPECT_TRUE(walk == Walk());
    EXPECT_TRUE(Walk() == walk);
}

TEST_P(IterationContextTest, EqualityIsNotTransitiveThroughTheSentinel) {
    Walk one = run()->begin();
    Walk other = run()->begin();
    rest(one);
    rest(other);
    EXPECT_TRUE(one == Walk());
    EXPECT_TRUE(Walk() == other);
    EXPECT_FALSE(one == other);
}

TEST_P(IterationContextTest, WhatWasPrunedIsNotCompared) {
    const auto result = run();
    Walk one = result->begin();
    const Walk other = result->begin();
    one.pruneAllChildren();
    EXPECT_TRUE(one == other);
}

TEST_P(IterationContextTest, TheLinkReadStaysAReferenceAndACopyOfItStays) {
    Walk walk = run()->begin();
    const Link& current = walk.getCurrent();
    const Link copy = current;
    const std::string before = text(copy);
    walk.advance();
    EXPECT_EQ(&walk.getCurrent(), &current);
    EXPECT_NE(text(current), before);
    EXPECT_EQ(text(copy), before);
}

TEST_P(IterationContextTest, AbandonedWalkLeavesTheModelUsable) {
    {
        Walk walk = run()->begin();
        walk.advance();
        walk.advance();
    }
    EXPECT_EQ(text(m("A")), "A");
    EXPECT_FALSE(linesOf(run()).empty());
}

INSTANTIATE_TEST_SUITE_P(Orders, IterationContextTest, testing::ValuesIn(test::everyOrder()),
                         [](const auto& each) { return test::nameOf(each.param); });

// Laziness: an unreadable value shows when it is read.

class LazinessTest : public testing::Test {
  protected:
    void makeUnreadable(const char* element) { m.model.unset(m(element), m["Node.x"]); }
    ModelBuilder m{"Node; Node.x -> Node *", "A.x = B C; B.x = D; C.x = E; D; E"};
};

TEST_F(LazinessTest, RunningABuilderReadsNothing) {
    for (const char* element : {"A", "B", "C"}) makeUnreadable(element);
    EXPECT_NO_THROW(Spec::subtractiveTraversal()->depthFirst({m("A")}));
}

TEST_F(LazinessTest, PreOrderReadsAnElementOnlyAfterItsLinkWasReported) {
    makeUnreadable("B");
    auto walk = Spec::subtractiveTraversal()->depthFirst({m("A")})->begin();
    walk.advance();
    EXPECT_EQ(text(walk.getCurrent()), "A.x>B");
    EXPECT_THROW(walk.advance(), CannotCastIncompatibleTypes);
    EXPECT_EQ(rest(walk), (Lines{"A.x>B", "A.x>C", "C.x>E"}));
}

TEST_F(LazinessTest, BreadthFirstReadsAnElementOnlyWhenItsTurnComes) {
    makeUnreadable("B");
    auto walk = Spec::subtractiveTraversal()->breadthFirst({m("A")})->begin();
    walk.advance();
    walk.advance();
    EXPECT_EQ(text(walk.getCurrent()), "A.x>C");
    EXPECT_THROW(walk.advance(), CannotCastIncompatibleTypes);
    EXPECT_EQ(rest(walk), (Lines{"A.x>C", "C.x>E"}));
}

TEST_F(LazinessTest, PrunedPropertyIsNeverRead) {
    makeUnreadable("B");
    for (const Algo order : {Algo::DepthFirstPreOrder, Algo::BreadthFirst}) {
        auto walk = Spec::subtractiveTraversal()->run({m("A")}, order)->begin();
        walk.advance();
        ASSERT_EQ(text(walk.getCurrent()), "A.x>B");
        walk.pruneChildren(m["Node.x"]);
        EXPECT_EQ(rest(walk), (Lines{"A.x>B", "A.x>C", "C.x>E"}));
    }
}

TEST_F(LazinessTest, CopyOfAWalkReadsForItself) {
    auto walk = Spec::subtractiveTraversal()->depthFirst({m("A")})->begin();
    walk.advance();
    Walk copy(walk);
    EXPECT_EQ(rest(walk), (Lines{"A.x>B", "B.x>D", "A.x>C", "C.x>E"}));
    m.extend("B.x = E");
    EXPECT_EQ(rest(copy), (Lines{"A.x>B", "B.x>D", "B.x>E", "A.x>C", "C.x>E!"}));
}

}  // namespace
}  // namespace nuv::zero::traversal::internal
