#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <stdexcept>
#include <string>
#include <tuple>
#include <vector>
#include <version>

#include "tests/support/CyclicModel.h"
#include "tests/support/Failures.h"
#include "tests/support/WalkLog.h"

// Not every standard library has them.
#ifdef __cpp_lib_jthread
#include <stop_token>
#include <thread>
#endif

/// Walks that pause: the same links and events, whatever the budget.
namespace nuv::zero::traversal::internal {
namespace {

using test::Kind;
using test::Lines;
using test::ModelBuilder;
using test::PlannedFailure;
using test::text;
using Walk = TraversalResult::IterationContext;

class WalkPauseTest : public testing::TestWithParam<std::tuple<Kind, Algo>> {
  protected:
    std::shared_ptr<TraversalResult> run(const std::vector<ModelElement>& inputs) const {
        return test::cyclicResult(m, std::get<Kind>(GetParam()), std::get<Algo>(GetParam()),
                                  inputs);
    }
    std::shared_ptr<TraversalResult> run() const { return run({m("A"), m("H"), m("C")}); }

    ModelBuilder m{test::cyclicMetamodel, test::cyclicModel};
};

TEST_P(WalkPauseTest, EveryBudgetGivesTheSameLinksAndEvents) {
    const auto result = run();
    ResultSetup(result).rememberPaths();
    Lines expected = test::transcript(result);
    for (const std::size_t budget : {1U, 2U, 3U, 7U, 100000U}) {
        Lines lines;
        test::EventLog log(lines);
        ResultSetup(result).observe(&log);
        Walk walk = result->prepare();
        for (Progress progress = Progress::Paused; progress != Progress::Ended;) {
            std::size_t steps = budget;
            progress = walk.advanceWithin(steps);
            EXPECT_LE(steps, budget);
            if (progress == Progress::Paused) {
                EXPECT_EQ(steps, 0U);
            }
            if (progress == Progress::OnLink) lines.push_back(text(walk.getCurrent()));
        }
        EXPECT_TRUE(!walk.getCurrent());
        EXPECT_EQ(lines, expected) << budget;
        ResultSetup(result).observe(nullptr);
    }
}

TEST_P(WalkPauseTest, NoStepsAreNoStepAtAll) {
    Walk walk = run()->prepare();
    const Walk before = walk;
    std::size_t steps = 0;
    EXPECT_EQ(walk.advanceWithin(steps), Progress::Paused);
    EXPECT_EQ(walk.enteredCount(), 0U);
    walk.advance();
    const Link link = walk.getCurrent();
    EXPECT_EQ(walk.advanceWithin(steps), Progress::Paused);
    EXPECT_EQ(walk.getCurrent(), link);
}

TEST_P(WalkPauseTest, PausedWalkKeepsItsLinkAndGoesOnInEitherWay) {
    const auto result = run();
    const Lines expected = test::linesOf(result);
    Walk walk = result->prepare();
    Lines lines;
    for (bool isWhole = false; !walk.hasEnded(); isWhole = !isWhole) {
        const Link before = walk.getCurrent();
        std::size_t steps = 1;
        bool hasMoved = true;
        if (isWhole) {
            walk.advance();
        } else if (walk.advanceWithin(steps) == Progress::Paused) {
            EXPECT_EQ(walk.getCurrent(), before);
            hasMoved = false;
        }
        if (hasMoved && !!walk.getCurrent()) lines.push_back(text(walk.getCurrent()));
    }
    EXPECT_EQ(lines, expected);
}

TEST_P(WalkPauseTest, CopyOfAPausedWalkEqualsItAndGoesOnByItself) {
    Walk walk = run()->prepare();
    while (!walk.hasEnded()) {
        std::size_t steps = 1;
        walk.advanceWithin(steps);
        Walk copy = walk;
        EXPECT_TRUE(copy == walk);
        EXPECT_EQ(copy.depth(), walk.depth());
        EXPECT_EQ(copy.meeting(), walk.meeting());
        Walk other = walk;
        copy.advance();
        other.advance();
        EXPECT_EQ(test::rest(copy), test::rest(other));
    }
}

/// A walk that had paused right before its end equalled one that had ended, and the end of every
/// walk equalled only one of both.
TEST_P(WalkPauseTest, WalkThatPausedBeforeItsEndIsUnequalToOneThatEnded) {
    const auto result = run({m("I")});
    ResultSetup(result).filter([](const Link&) { return ResultPolicy::WalkOnly; });
    Walk paused = result->prepare();
    Walk ended = result->begin();
    while (!paused.hasEnded()) {
        EXPECT_FALSE(paused == ended);
        EXPECT_FALSE(ended == paused);
        EXPECT_FALSE(paused == Walk());
        std::size_t steps = 1;
        paused.advanceWithin(steps);
    }
    EXPECT_TRUE(paused == ended && paused == Walk());
    const auto empty = run(std::vector<ModelElement>());
    EXPECT_FALSE(empty->prepare() == empty->begin());
    EXPECT_FALSE(empty->prepare() == Walk());
}

/// Depth-first, a walk whose input waits to be entered was unequal to one whose input was entered,
/// though both stand on the input's link and have no other on the frontier.
TEST_P(WalkPauseTest, WalkThatIsAboutToEnterItsInputEqualsOneThatHasJustEnteredIt) {
    bool fails = false;
    const auto mayFail = [&](bool answer) {
        return [&fails, answer](const Class&) {
            if (fails) throw PlannedFailure("predicate");
            return answer;
        };
    };
    const auto result = test::cyclicResult(m, std::get<Kind>(GetParam()),
                                           std::get<Algo>(GetParam()), {m("A")}, mayFail);
    Walk waiting = result->prepare();
    fails = true;
    EXPECT_THROW(waiting.advance(), PlannedFailure);
    fails = false;
    Walk entered = result->prepare();
    while (!entered.hasEntered(m("A"))) {
        std::size_t steps = 1;
        entered.advanceWithin(steps);
    }
    if (!entered.getCurrent()) {
        EXPECT_TRUE(waiting == entered);
        EXPECT_TRUE(entered == waiting);
    }
    EXPECT_EQ(waiting.meeting(), Meeting::Input);
    EXPECT_EQ(waiting.waitingCount(), 1U);
}

TEST_P(WalkPauseTest, PausedWalkIsPrunedAsOneThatIsNot) {
    const auto result = run();
    // Behind a link, the steps up to the next pause may have gone past what would have been cut.
    Walk whole = result->begin();
    Walk paused = result->begin();
    while (!whole.hasEnded()) {
        whole.pruneSiblings();
        paused.pruneSiblings();
        std::size_t none = 0;
        EXPECT_EQ(paused.advanceWithin(none), Progress::Paused);
        whole.pruneChildren(m["Node.y"]);
        paused.pruneChildren(m["Node.y"]);
        whole.advance();
        for (Progress progress = Progress::Paused; progress == Progress::Paused;) {
            std::size_t steps = 1;
            progress = paused.advanceWithin(steps);
        }
        EXPECT_TRUE(whole == paused);
    }
}

TEST_P(WalkPauseTest, WhatIsLeftOfTheBudgetIsGivenBackWhenSomethingIsThrown) {
    const auto result = run();
    int calls = 0;
    ResultSetup(result).filter([&](const Link&) -> ResultPolicy {
        if (++calls == 2) throw PlannedFailure("in the filter");
        return ResultPolicy::WalkOnly;
    });
    Walk walk = result->prepare();
    std::size_t steps = 1000;
    EXPECT_THROW(walk.advanceWithin(steps), PlannedFailure);
    EXPECT_LT(steps, 1000U);
    EXPECT_GT(steps, 900U);
    EXPECT_EQ(walk.advanceWithin(steps), Progress::Ended);
}

TEST_P(WalkPauseTest, EndedWalkUsesNoStepsAndTellsNobody) {
    const auto result = run();
    Lines lines;
    test::EventLog log(lines);
    Walk walk = result->begin();
    while (!walk.hasEnded()) walk.advance();
    ResultSetup(result).observe(&log);
    std::size_t steps = 5;
    EXPECT_EQ(walk.advanceWithin(steps), Progress::Ended);
    EXPECT_EQ(steps, 5U);
    EXPECT_EQ(lines, Lines());
    EXPECT_EQ(Walk().advanceWithin(steps), Progress::Ended);
    EXPECT_EQ(steps, 5U);
}

TEST_P(WalkPauseTest, CallbackMayNotTakeStepsEither) {
    const auto result = run();
    Walk walk = result->prepare();
    ResultSetup(result).filter([&](const Link&) {
        std::size_t steps = 3;
        EXPECT_THROW(walk.advanceWithin(steps), std::logic_error);
        EXPECT_EQ(steps, 3U);
        return ResultPolicy::Report;
    });
    std::size_t budget = 100;
    EXPECT_EQ(walk.advanceWithin(budget), Progress::OnLink);
}

TEST_P(WalkPauseTest, CopyMadeByACallbackOfABudgetedStepHasNoBudget) {
    const auto result = run();
    std::unique_ptr<Walk> copy;
    Walk walk = result->prepare();
    ResultSetup(result).filter([&](const Link&) {
        if (copy == nullptr) copy = std::make_unique<Walk>(walk);
        return ResultPolicy::WalkOnly;
    });
    std::size_t steps = 40;
    walk.advanceWithin(steps);
    ASSERT_NE(copy, nullptr);
    copy->advance();
    EXPECT_TRUE(copy->hasEnded());
}

TEST_P(WalkPauseTest, RangeIsBegunWithinABudgetAndItsLoopGoesOnFromThere) {
    const auto result = run();
    const Lines expected = test::linesOf(result);
    for (std::size_t budget = 0; budget < 12; ++budget) {
        LinkRange walk = links(result);
        std::size_t steps = budget;
        walk.advanceWithin(steps);
        Lines lines;
        for (const Link& link : walk) lines.push_back(text(link));
        EXPECT_EQ(lines, expected);
        EXPECT_EQ(walk.advanceWithin(steps), Progress::Ended);
    }
}

TEST_P(WalkPauseTest, RangeKeepsTheWalkThatABudgetHasBegunWhenItsFirstBeginThrows) {
    for (const bool isBegun : {false, true}) {
        const auto result = run();
        bool isThrowing = true;
        ResultSetup(result).filter([&](const Link&) -> ResultPolicy {
            if (isThrowing) throw std::runtime_error("not now");
            return ResultPolicy::Report;
        });
        LinkRange walk = links(result);
        std::size_t steps = 0;
        if (isBegun) {
            ASSERT_EQ(walk.advanceWithin(steps), Progress::Paused);
        }
        EXPECT_THROW((void)walk.begin(), std::runtime_error);
        EXPECT_EQ(walk.enteredCount() > 0, isBegun);
        isThrowing = false;
        std::size_t count = 0;
        for (const Link& link : walk) count += link ? 1 : 0;
        // A link that was lost is not tried again.
        EXPECT_EQ(count + (isBegun ? 1 : 0), test::linesOf(run()).size());
    }
}

#ifdef __cpp_lib_jthread
TEST_P(WalkPauseTest, StopRequestEndsASilentWalkBetweenTwoPauses) {
    const auto result = run();
    ResultSetup(result).filter([](const Link&) { return ResultPolicy::WalkOnly; });
    std::stop_source source;
    std::size_t pauses = 0;
    // What a window does with its progress bar and its cancel button.
    auto walk = links(result);
    std::size_t steps = 2;
    while (!source.stop_requested() && walk.advanceWithin(steps) == Progress::Paused) {
        if (++pauses == 3) source.request_stop();
        steps = 2;
    }
    EXPECT_EQ(pauses, 3U);
    EXPECT_FALSE(!walk.enteredCount());
    EXPECT_TRUE(!walk.getCurrent());
}

TEST_P(WalkPauseTest, ThreadOfItsOwnWalksUntilItIsStopped) {
    const auto result = run();
    const Lines expected = test::linesOf(result);
    Lines found;
    bool hasStopped = false;
    {
        std::jthread worker([&](const std::stop_token& token) {
            while (!token.stop_requested()) {
                auto walk = links(result);
                found.clear();
                Progress progress = Progress::Paused;
                for (std::size_t steps = 1; progress != Progress::Ended; steps = 1) {
                    progress = walk.advanceWithin(steps);
                    if (progress == Progress::OnLink) found.push_back(text(walk.getCurrent()));
                    if (token.stop_requested() && found.size() > 1) break;
                }
            }
            hasStopped = true;
        });
        worker.request_stop();
    }
    EXPECT_TRUE(hasStopped);
    // Stopped before its first walk, in the midst of one or behind it.
    EXPECT_TRUE(std::equal(found.begin(), found.end(), expected.begin()));
    EXPECT_LE(found.size(), expected.size());
}
#endif

INSTANTIATE_TEST_SUITE_P(KindsAndOrders, WalkPauseTest,
                         testing::Combine(testing::ValuesIn(test::everyKind()),
                                          testing::ValuesIn(test::everyOrder())),
                         [](const auto& each) {
                             return std::string(nameOf(std::get<Kind>(each.param))) +
                                    test::nameOf(std::get<Algo>(each.param));
                         });

/// The first step of a silent walk over everything ran to its end at once.
TEST(WalkFirstStepTest, FirstStepOfASilentWalkIsBoundedByItsBudget) {
    ModelBuilder m("Node; Node.x -> Node *", "A.x = B");
    ModelElement last = m("B");
    for (int i = 0; i < 2000; ++i) {
        ModelElement next = m.model.create(m.type("Node"));
        m.model.add(last, m["Node.x"], next);
        m.model.add(m("A"), m["Node.x"], next);
        last = next;
    }
    for (const Algo order : test::everyOrder()) {
        for (const bool isLimited : {false, true}) {
            const auto result = Spec::subtractiveTraversal()->run({m("A"), m("B")}, order);
            ResultSetup(result).filter([](const Link&) { return ResultPolicy::WalkOnly; });
            std::size_t asked = 0;
            ResultSetup(result).descend([&](const Link&) { return ++asked != 0; });
            if (isLimited) ResultSetup(result).upTo(1000);
            Walk walk = result->prepare();
            std::size_t pauses = 0;
            for (Progress progress = Progress::Paused; progress == Progress::Paused; ++pauses) {
                asked = 0;
                std::size_t steps = 10;
                progress = walk.advanceWithin(steps);
                EXPECT_LE(asked, 10U);
            }
            EXPECT_GE(pauses, 400U);
            EXPECT_LE(pauses, isLimited ? 2000U : 1500U);
        }
    }
}

}  // namespace
}  // namespace nuv::zero::traversal::internal
