#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/Failures.h"
#include "tests/support/ModelBuilder.h"
#include "tests/support/WalkLog.h"

/// Callables for single events, which a result owns.
namespace nuv::zero::traversal {
namespace {

using test::EventLog;
using test::Lines;
using test::linesOf;
using test::ModelBuilder;
using test::text;

class EventCallablesTest : public testing::TestWithParam<Algo> {
  protected:
    std::shared_ptr<TraversalResult> run(const std::vector<ModelElement>& inputs) const {
        return Spec::subtractiveTraversal()->run(inputs, GetParam());
    }
    /// Writes an element down, behind a word.
    auto noting(std::string word) {
        return [this, word = std::move(word)](const ModelElement& element) {
            lines.push_back(word + " " + text(element));
        };
    }
    auto notingProperty(std::string word) {
        return [this, word = std::move(word)](const ModelElement& element,
                                              const meta::Property& property) {
            lines.push_back(word + " " + text(element) + "." +
                            access::toUtf8(access::nameOf(property)));
        };
    }

    ModelBuilder m{"Node; Node.x -> Node *", "A.x = B C; B.x = D; H.x = A I"};
    ModelElement a = m("A");
    ModelElement h = m("H");
    Lines lines;
};

TEST_P(EventCallablesTest, CallablesHearWhatAnObserverHears) {
    EventLog log(lines);
    auto result = run({a, h});
    ResultSetup(result).observe(&log);
    auto walk = result->begin();
    test::rest(walk);
    walk.advance();
    const Lines observed = std::exchange(lines, {});

    result = run({a, h});
    ResultSetup(result)
        .onEnterInputElement(noting("input"))
        .onEnterElement(noting("enter"))
        .onEnterProperty(notingProperty("enter"))
        .onExitProperty(notingProperty("exit"))
        .onExitElement(noting("exit"))
        .onExitInputElement(noting("done"));
    walk = result->begin();
    test::rest(walk);
    walk.advance();
    EXPECT_EQ(lines, observed);
}

TEST_P(EventCallablesTest, AreToldInTheOrderInWhichTheyWereGivenTheObserverAmongThem) {
    EventLog log(lines);
    const auto result = run({m("C")});
    ResultSetup(result)
        .onEnterElement(noting("1"))
        .observe(&log)
        .onExitElement(noting("other"))
        .onEnterElement(noting("2"));
    linesOf(result);
    EXPECT_EQ(lines, (Lines{"input C", "1 C", "enter C", "2 C", "enter C.x", "exit C.x", "exit C",
                            "other C", "done C"}));
}

TEST_P(EventCallablesTest, ObserverGivenBeforeThemIsToldBeforeThem) {
    EventLog log(lines);
    const auto result = run({m("C")});
    ResultSetup(result).observe(&log).onEnterInputElement(noting("1"));
    const auto walk = result->begin();
    lines.resize(2);
    EXPECT_EQ(lines, (Lines{"input C", "1 C"}));
}

TEST_P(EventCallablesTest, ObserverThatTakesTheOthersPlaceStandsBehindWhatWasGivenBeforeIt) {
    Lines unheard;
    EventLog first(unheard);
    EventLog second(lines);
    const auto result = run({m("C")});
    ResultSetup(result).observe(&first).onEnterInputElement(noting("1")).observe(&second);
    linesOf(result);
    EXPECT_TRUE(unheard.empty());
    lines.resize(2);
    EXPECT_EQ(lines, (Lines{"1 C", "input C"}));
}

TEST_P(EventCallablesTest, DetachingTheObserverLeavesTheCallables) {
    Lines unheard;
    EventLog log(unheard);
    const auto result = run({a});
    ResultSetup(result).onEnterElement(noting("enter")).observe(&log).observe(nullptr);
    linesOf(result);
    EXPECT_TRUE(unheard.empty());
    EXPECT_EQ(lines.size(), 4U);
}

TEST_P(EventCallablesTest, ElementsEnteredBeforeHearNothingOfALaterCallableInputsDo) {
    const auto result = run({a, h});
    auto walk = result->begin();
    ResultSetup(result).onExitElement(noting("exit")).onExitInputElement(noting("done"));
    test::rest(walk);
    const bool post = GetParam() == Algo::DepthFirstPostOrder;
    // Post-order, the first step has gone down to D before there was a callable.
    EXPECT_EQ(std::count(lines.begin(), lines.end(), "exit A"), 0);
    EXPECT_EQ(std::count(lines.begin(), lines.end(), "exit B"), post ? 0 : 1);
    EXPECT_EQ(std::count(lines.begin(), lines.end(), "exit H"), 1);
    EXPECT_EQ(std::count(lines.begin(), lines.end(), "done A"), 1);
}

TEST_P(EventCallablesTest, ElementsKeepTheListenersThatTheyWereEnteredUnder) {
    const auto result = run({a});
    ResultSetup(result).onExitElement(noting("first"));
    auto walk = result->begin();
    ResultSetup(result).onExitElement(noting("second"));
    Lines unheard;
    EventLog log(unheard);
    ResultSetup(result).observe(&log);
    test::rest(walk);
    EXPECT_EQ(std::count(lines.begin(), lines.end(), "first A"), 1);
    EXPECT_EQ(std::count(lines.begin(), lines.end(), "second A"), 0);
    EXPECT_EQ(std::count(unheard.begin(), unheard.end(), "exit A"), 0);
    EXPECT_EQ(std::count(lines.begin(), lines.end(), "second C"), 1);
    EXPECT_EQ(std::count(unheard.begin(), unheard.end(), "exit C"), 1);
}

TEST_P(EventCallablesTest, CallableMayAddOthersWhichHearTheElementsEnteredLater) {
    const auto result = run({a});
    int added = 0;
    ResultSetup(result).onEnterElement([&](const ModelElement& /*element*/) {
        if (++added < 200)
            ResultSetup(result).onExitElement(
                [&](const ModelElement& element) { lines.push_back(text(element)); });
    });
    EXPECT_EQ(linesOf(result).size(), 4U);
    EXPECT_EQ(added, 4);
    EXPECT_EQ(std::count(lines.begin(), lines.end(), "A"), 0);
}

TEST_P(EventCallablesTest, ResultOwnsThem) {
    const auto alive = std::make_shared<int>(0);
    auto result = run({a});
    ResultSetup(result).onEnterElement([alive](const ModelElement& /*element*/) { ++*alive; });
    EXPECT_EQ(alive.use_count(), 2);
    auto walk = result->begin();
    result.reset();
    test::rest(walk);
    EXPECT_EQ(*alive, 4);
    walk = IterationContext();
    EXPECT_EQ(alive.use_count(), 1);
}

TEST_P(EventCallablesTest, CopyOfAResultHasCopiesOfThemAndTheSameObserver) {
    EventLog log(lines);
    auto result = run({m("C")});
    int calls = 0;
    ResultSetup(result)
        .onEnterElement(
            [&calls, own = 0](const ModelElement& /*element*/) mutable { calls = ++own; })
        .observe(&log);
    const auto copy = std::make_shared<TraversalResult>(*result);
    linesOf(copy);
    linesOf(copy);
    EXPECT_EQ(calls, 2);
    EXPECT_EQ(std::count(lines.begin(), lines.end(), "enter C"), 2);
    linesOf(result);
    EXPECT_EQ(calls, 1) << "the copy's calls are its own";
    ResultSetup(copy).onEnterElement(noting("later"));
    result.reset();
    lines.clear();
    linesOf(copy);
    EXPECT_EQ(calls, 3);
    EXPECT_EQ(std::count(lines.begin(), lines.end(), "later C"), 1);
}

TEST_P(EventCallablesTest, OneThatThrowsKeepsTheEventFromThoseBehindAndEndsTheStep) {
    const auto result = run({m("C")});
    bool fails = true;
    ResultSetup(result)
        .onEnterElement(noting("1"))
        .onEnterElement([&fails](const ModelElement& /*element*/) {
            if (std::exchange(fails, false)) throw test::PlannedFailure("enter");
        })
        .onEnterElement(noting("2"));
    auto walk = result->prepare();
    for (int failures = 0; !walk.hasEnded();) {
        try {
            walk.advance();
        } catch (const test::PlannedFailure&) {
            EXPECT_EQ(++failures, 1);
        }
    }
    EXPECT_EQ(lines, (Lines{"1 C", "1 C", "2 C"})) << "the event comes again, to all";
}

TEST_P(EventCallablesTest, EmptyFunctionFailsWhenItsEventComes) {
    const auto result = run({a});
    ResultSetup(result).onExitProperty(nullptr);
    auto walk = result->prepare();
    EXPECT_THROW(while (!walk.hasEnded()) walk.advance(), std::bad_function_call);
}

TEST_P(EventCallablesTest, CallablesMayPruneTheWalkThatTellsThem) {
    const auto result = run({a});
    auto walk = result->prepare();
    const ModelElement b = m("B");
    ResultSetup(result).onEnterElement([&](const ModelElement& element) {
        if (element == b) walk.pruneAllChildren();
    });
    const auto reportsD = [](const Lines& walked) {
        return std::count(walked.begin(), walked.end(), "B.x>D") == 1;
    };
    walk.advance();
    EXPECT_EQ(reportsD(test::rest(walk)), GetParam() != Algo::DepthFirstPreOrder);
}

// Observers that come and go, one per walk, leave nothing behind but the callables.
TEST_P(EventCallablesTest, AttachingAndDetachingAgainAndAgainTellsEachObserverOnce) {
    const auto result = run({m("C")});
    ResultSetup(result).onEnterElement(noting("own"));
    for (int times = 0; times < 5; ++times) {
        EventLog log(lines);
        ResultSetup(result).observe(&log);
        linesOf(result);
        ResultSetup(result).observe(nullptr);
        EXPECT_EQ(std::count(lines.begin(), lines.end(), "enter C"), 1);
        EXPECT_EQ(std::count(lines.begin(), lines.end(), "own C"), 1);
        lines.clear();
    }
}

INSTANTIATE_TEST_SUITE_P(Orders, EventCallablesTest, testing::ValuesIn(test::everyOrder()),
                         [](const auto& each) { return test::nameOf(each.param); });

}  // namespace
}  // namespace nuv::zero::traversal
