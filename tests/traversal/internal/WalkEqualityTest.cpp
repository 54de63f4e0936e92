#include <gtest/gtest.h>

#include "tests/support/Failures.h"
#include "tests/support/ModelBuilder.h"
#include "tests/support/WalkLog.h"

namespace nuv::zero::traversal::internal {
namespace {

using test::ModelBuilder;
using test::PlannedFailure;
using test::text;
using Walk = TraversalResult::IterationContext;

/// Fails when the same element is entered as an input for the second time.
struct FailingAtTheSecondInput : TraversalProcessor {
    void onEnterInputElement(const ModelElement& /*element*/) override {
        if (++inputs == 2) throw PlannedFailure("input");
    }
    int inputs = 0;
};

/// The frontier, the link and the input's element are alike then; only one of the walks has the
/// second input still before it.
TEST(WalkEqualityTest, WalksThatTookDifferentNumbersOfInputsAreUnequal) {
    const ModelBuilder m("Node; Node.next -> Node", "A.next = A");
    const auto result = Spec::subtractiveTraversal()->breadthFirst({m("A"), m("A")});
    FailingAtTheSecondInput observer;
    ResultSetup(result).observe(&observer);

    Walk walk = result->begin();
    walk.advance();
    const Walk before(walk);
    EXPECT_EQ(text(walk.getCurrent()), "A.next>A!");
    EXPECT_TRUE(walk == before);
    EXPECT_THROW(walk.advance(), PlannedFailure);
    EXPECT_EQ(text(walk.getCurrent()), "A.next>A!");
    EXPECT_FALSE(walk == before);
}

/// A cursor's place among links that are not reported is not compared: the links on the path are.
TEST(WalkEqualityTest, DepthFirstWalkThatHasPausedAmongSilentLinksEqualsOneThatHasNot) {
    const ModelBuilder m("Node; Node.back -> Node *; Node.next -> Node",
                         "A.back = A A A; A.next = B");
    const auto result =
        Spec::subtractiveTraversal()
            ->setResultPolicy(PropertyMatcher(m["Node.back"]), ResultPolicy::WalkOnly)
            ->depthFirst(m("A"));
    Walk walk = result->begin();
    const Walk before(walk);
    std::size_t steps = 3;
    EXPECT_EQ(walk.advanceWithin(steps), Progress::Paused);
    EXPECT_TRUE(walk == before);
    steps = 100;
    EXPECT_EQ(walk.advanceWithin(steps), Progress::OnLink);
    EXPECT_FALSE(walk == before);
}

}  // namespace
}  // namespace nuv::zero::traversal::internal
