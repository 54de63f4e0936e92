#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>

#include "tests/support/Failures.h"
#include "tests/support/ModelBuilder.h"
#include "tests/support/WalkLog.h"

/// What a walk keeps when a step fails, told by what the next steps do.
namespace nuv::zero::traversal::internal {
namespace {

using test::Lines;
using test::ModelBuilder;
using test::PlannedFailure;
using test::rest;
using test::text;
using Walk = TraversalResult::IterationContext;

/// Fails once, when it is asked about a link to this element.
std::function<ResultPolicy(Link)> failingOnceAt(ModelElement target) {
    auto left = std::make_shared<int>(1);
    return [target = std::move(target), left](const Link& link) {
        if (link.getTarget() == target && (*left)-- > 0) throw PlannedFailure("filter");
        return ResultPolicy::Report;
    };
}

class WalkFailureTest : public testing::TestWithParam<Algo> {
  protected:
    std::shared_ptr<TraversalResult> run(ResultPolicy pseudo = ResultPolicy::WalkOnly) {
        return Spec::subtractiveTraversal()->includeInitialPseudoLink(pseudo)->run({m("A"), m("Z")},
                                                                                   GetParam());
    }
    /// A walk to its end, with a line "failed" for each failure.
    static Lines wholeWalk(const std::shared_ptr<TraversalResult>& result) {
        Lines lines;
        auto walk = std::make_shared<Walk>();
        const auto step = [&lines](auto&& action) {
            try {
                action();
                return true;
            } catch (const PlannedFailure&) {
                lines.emplace_back("failed");
                return false;
            }
        };
        if (!step([&] { walk = std::make_shared<Walk>(result->begin()); })) return lines;
        while (!!walk->getCurrent()) {
            lines.push_back(text(walk->getCurrent()));
            const Link before = walk->getCurrent();
            while (!step([&] { walk->advance(); })) {
                EXPECT_TRUE(walk->getCurrent() == before) << "a failed step moved the walk";
                if (lines.size() > 100) return lines;
            }
        }
        return lines;
    }
    Lines inOrder(const Lines& preOrder, const Lines& postOrder, const Lines& breadthFirst) const {
        switch (GetParam()) {
            case Algo::DepthFirstPreOrder:
                return preOrder;
            case Algo::DepthFirstPostOrder:
                return postOrder;
            case Algo::BreadthFirst:
                break;
        }
        return breadthFirst;
    }

    ModelBuilder m{"Node; Node.x -> Node *; Node.y -> Node *",
                   "A.x = B C; B.x = A D; C.x = E; Z.x = Y"};
};

// setReportedSelf comes before tryReport: the link is not tried again, what is below it is walked.
TEST_P(WalkFailureTest, CascadingLinkWhoseFilterThrowsIsLostAndItsTargetIsWalked) {
    const auto result = run();
    ResultSetup(result).filter(failingOnceAt(m("C")));
    EXPECT_EQ(wholeWalk(result), inOrder({"A.x>B", "B.x>A!", "B.x>D", "failed", "C.x>E", "Z.x>Y"},
                                         {"B.x>A!", "B.x>D", "A.x>B", "C.x>E", "failed", "Z.x>Y"},
                                         {"A.x>B", "failed", "B.x>D", "C.x>E", "B.x>A!", "Z.x>Y"}));
}

// The pop comes before tryReport: the link is not tried again.
TEST_P(WalkFailureTest, NonCascadingLinkWhoseFilterThrowsIsLost) {
    const auto result = run();
    ResultSetup(result).filter([left = 1](const Link& link) mutable {
        if (!link.shouldCascade() && left-- > 0) throw PlannedFailure("filter");
        return ResultPolicy::Report;
    });
    EXPECT_EQ(wholeWalk(result), inOrder({"A.x>B", "failed", "B.x>D", "A.x>C", "C.x>E", "Z.x>Y"},
                                         {"failed"},  // in begin() already: there is no walk
                                         {"A.x>B", "A.x>C", "B.x>D", "C.x>E", "failed", "Z.x>Y"}));
}

TEST_P(WalkFailureTest, FailureInBeginLeavesNoWalkAndTheNextBeginStartsAfresh) {
    const auto result = run(ResultPolicy::Report);
    bool fails = true;
    ResultSetup(result).filter([&fails](const Link&) {
        if (std::exchange(fails, false)) throw PlannedFailure("filter");
        return ResultPolicy::Report;
    });
    EXPECT_THROW(result->begin(), PlannedFailure);
    EXPECT_EQ(wholeWalk(result),
              inOrder({">A", "A.x>B", "B.x>A!", "B.x>D", "A.x>C", "C.x>E", ">Z", "Z.x>Y"},
                      {"B.x>A!", "B.x>D", "A.x>B", "C.x>E", "A.x>C", ">A", "Z.x>Y", ">Z"},
                      {">A", "A.x>B", "A.x>C", "B.x>D", "C.x>E", "B.x>A!", ">Z", "Z.x>Y"}));
}

// The input is moved on before its event: it is lost with its event, its exit is sent.
TEST_P(WalkFailureTest, InputWhoseEnterEventThrowsIsLost) {
    class FailsAtZ : public TraversalProcessor {
      public:
        explicit FailsAtZ(ModelElement z) : z_(std::move(z)) {}
        void onEnterInputElement(const ModelElement& element) override {
            events.push_back("input " + text(element));
            if (element == z_) throw PlannedFailure("event");
        }
        void onExitInputElement(const ModelElement& element) override {
            events.push_back("done " + text(element));
        }
        Lines events;

      private:
        ModelElement z_;
    } observer(m("Z"));
    const auto result = run();
    ResultSetup(result).observe(&observer);
    EXPECT_EQ(wholeWalk(result), inOrder({"A.x>B", "B.x>A!", "B.x>D", "A.x>C", "C.x>E", "failed"},
                                         {"B.x>A!", "B.x>D", "A.x>B", "C.x>E", "A.x>C", "failed"},
                                         {"A.x>B", "A.x>C", "B.x>D", "C.x>E", "B.x>A!", "failed"}));
    EXPECT_EQ(observer.events, (Lines{"input A", "done A", "input Z", "done Z"}));
}

TEST_P(WalkFailureTest, UnreadablePropertyIsSteppedOver) {
    m.model.unset(m("C"), m["Node.x"]);
    m.extend("C.y = E");
    const auto result = run();
    Lines lines;
    auto walk = result->begin();
    while (!!walk.getCurrent()) {
        lines.push_back(text(walk.getCurrent()));
        for (bool moved = false; !moved && lines.size() < 100;) {
            try {
                walk.advance();
                moved = true;
            } catch (const CannotCastIncompatibleTypes& error) {
                EXPECT_EQ(error.arguments(), std::vector<std::u16string>{u"m::Node"});
                lines.emplace_back("failed");
            }
        }
    }
    EXPECT_EQ(lines, inOrder({"A.x>B", "B.x>A!", "B.x>D", "A.x>C", "failed", "C.y>E", "Z.x>Y"},
                             {"B.x>A!", "B.x>D", "A.x>B", "failed", "C.y>E", "A.x>C", "Z.x>Y"},
                             {"A.x>B", "A.x>C", "B.x>D", "failed", "C.y>E", "B.x>A!", "Z.x>Y"}));
}

TEST_P(WalkFailureTest, EmptyFilterAndEmptyPredicateFailWithBadFunctionCall) {
    const auto filtered = run(ResultPolicy::Report);
    ResultSetup(filtered).filter(nullptr);
    EXPECT_THROW(filtered->begin(), std::bad_function_call);
    const auto ruled = Spec::subtractiveTraversal()
                           ->prune({m["Node.x"], nullptr, m.type("Node")})
                           ->run({m("A")}, GetParam());
    EXPECT_THROW(ruled->begin(), std::bad_function_call);
}

// The settings of the input fail: it is entered by the next step.
TEST_P(WalkFailureTest, InputWhosePredicateThrowsIsTriedAgain) {
    auto plan = std::make_shared<test::FailurePlan>(2);
    ModelBuilder two("Node; Other < Node; Node.x -> Node *", "A.x = B; Z : Other; Z.x = B");
    const auto result = Spec::subtractiveTraversal()
                            ->prune(two["Node.x"],
                                    [plan, &two](const Class& type) {
                                        if (type == two.type("Other")) plan->call("predicate");
                                        return false;
                                    })
                            ->includeInitialPseudoLink(ResultPolicy::WalkOnly)
                            ->run({two("A"), two("Z")}, GetParam());
    // The second question about the class is that for the policy of Z.x>B.
    EXPECT_EQ(wholeWalk(result), (Lines{"A.x>B", "failed"}));
    plan = std::make_shared<test::FailurePlan>(1);
    const auto again = Spec::subtractiveTraversal()
                           ->prune(two["Node.x"],
                                   [plan, &two](const Class& type) {
                                       if (type == two.type("Other")) plan->call("predicate");
                                       return false;
                                   })
                           ->includeInitialPseudoLink(ResultPolicy::WalkOnly)
                           ->run({two("A"), two("Z")}, GetParam());
    EXPECT_EQ(wholeWalk(again), (Lines{"A.x>B", "failed", "Z.x>B!"}));
}

// After the failure the walk stands on A.x>B still, but A's cursor stands on y.
TEST(WalkFailurePruneTest, PruneSiblingsAfterAFailureActsWhereTheSourcesCursorStandsNow) {
    ModelBuilder m("Node; Node.x -> Node *; Node.y -> Node *", "A.x = B; A.y = C D");
    const auto result = Spec::subtractiveTraversal()
                            ->includeInitialPseudoLink(ResultPolicy::WalkOnly)
                            ->depthFirst({m("A")});
    ResultSetup(result).filter(failingOnceAt(m("C")));
    auto walk = result->begin();
    EXPECT_THROW(walk.advance(), PlannedFailure);
    EXPECT_EQ(text(walk.getCurrent()), "A.x>B");
    Walk unpruned(walk);
    walk.pruneSiblings();
    EXPECT_EQ(rest(walk), Lines{"A.x>B"});
    EXPECT_EQ(rest(unpruned), (Lines{"A.x>B", "A.y>D"}));
}

INSTANTIATE_TEST_SUITE_P(Orders, WalkFailureTest, testing::ValuesIn(test::everyOrder()),
                         [](const auto& each) { return test::nameOf(each.param); });

}  // namespace
}  // namespace nuv::zero::traversal::internal
