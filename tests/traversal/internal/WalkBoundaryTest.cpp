#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <string>

#include "tests/support/Failures.h"
#include "tests/traversal/internal/LimitedWalks.h"

/// What walks descend into.
namespace nuv::zero::traversal::internal {
namespace {

using test::Lines;
using test::ModelBuilder;
using test::PlannedFailure;
using test::text;
using Walk = TraversalResult::IterationContext;

class WalkBoundaryTest : public LimitedWalks {
  protected:
    /// Of a walk that fails once, at the link A.x>B.
    void expectTheLinkToBAloneIsLost(Walk walk) const {
        Lines lines;
        int failures = 0;
        while (!walk.hasEnded()) {
            const Link before = walk.getCurrent();
            try {
                walk.advance();
                if (!!walk.getCurrent()) lines.push_back(text(walk.getCurrent()));
            } catch (const PlannedFailure&) {
                ++failures;
                EXPECT_EQ(walk.getCurrent(), before);
                EXPECT_EQ(walk.depth(), 1U);
                EXPECT_EQ(walk.meeting(), Meeting::Boundary);
                EXPECT_FALSE(walk.hasEntered(m("B")));
            }
        }
        EXPECT_EQ(failures, 1);
        EXPECT_EQ(sorted(lines),
                  sorted({">A", "A.x>C", "C.y>B", "B.x>E", "E.y>A!", "A.y>D", "D.x>F"}));
    }
};

TEST_P(WalkBoundaryTest, LinkOverABoundaryIsReportedAndItsTargetLeftToALaterLink) {
    const auto result = run();
    ResultSetup(result).descend(notBy("Node.x", "B"));
    EXPECT_EQ(sorted(test::linesOf(result)),
              sorted({">A", "A.x>B!", "A.x>C", "C.y>B", "B.x>E", "E.y>A!", "A.y>D", "D.x>F"}));
}

TEST_P(WalkBoundaryTest, LinkOverABoundaryIsOneThoughItsTargetWasEnteredMeanwhile) {
    ModelBuilder twice("Node; Node.x -> Node *; Node.y -> Node *", "A.x = B; A.y = B");
    const auto result = run(twice, {"A"});
    ResultSetup(result).descend(
        [&](const Link& link) { return link.getProperty() != twice["Node.x"]; });
    Lines lines;
    for (auto walk = result->begin(); !!walk.getCurrent(); walk.advance()) {
        if (!walk.getCurrent().getProperty()) continue;
        lines.push_back(text(walk.getCurrent()) + ' ' + std::to_string(walk.depth()) + ' ' +
                        (walk.meeting() == Meeting::Boundary ? "boundary" : "other"));
    }
    EXPECT_EQ(sorted(lines), (Lines{"A.x>B! 1 boundary", "A.y>B 1 other"}));
}

TEST_P(WalkBoundaryTest, TargetThatNoLinkMayEnterStaysOutside) {
    const auto result = run();
    ResultSetup(result).descend([this](const Link& link) { return link.getTarget() != m("B"); });
    auto walk = result->begin();
    Lines boundaries;
    for (; !!walk.getCurrent(); walk.advance()) {
        if (walk.meeting() == Meeting::Boundary) boundaries.push_back(text(walk.getCurrent()));
    }
    EXPECT_EQ(sorted(boundaries), (Lines{"A.x>B!", "C.y>B!"}));
    EXPECT_FALSE(walk.hasEntered(m("B")));
    EXPECT_FALSE(walk.hasEntered(m("E")));
    EXPECT_EQ(walk.enteredCount(), 4U);
}

TEST_P(WalkBoundaryTest, InputsAreEnteredWithoutBeingAskedFor) {
    const auto result = run({"A", "D"});
    ResultSetup(result).descend([](const Link& link) {
        EXPECT_TRUE(link.getProperty());
        return false;
    });
    EXPECT_EQ(sorted(test::linesOf(result)),
              sorted({">A", "A.x>B!", "A.x>C!", "A.y>D!", ">D", "D.x>F!"}));
}

TEST_P(WalkBoundaryTest, PredicateIsAskedOnceForEachLinkThatWouldEnterAndForNoOther) {
    Lines asked;
    const auto result = run();
    ResultSetup(result).descend([&](const Link& link) {
        EXPECT_TRUE(link.shouldCascade());
        asked.push_back(text(link));
        return true;
    });
    Lines entering;
    for (const Link& link : links(result)) {
        if (link.shouldCascade() && link.getProperty()) entering.push_back(text(link));
    }
    EXPECT_EQ(sorted(asked), sorted(entering));
}

TEST_P(WalkBoundaryTest, PredicatesMustAllAgreeAndTheFirstRefusalEndsTheQuestion) {
    Lines asked;
    const auto result = run();
    ResultSetup(result)
        .descend([&](const Link& link) {
            asked.push_back("first " + text(link.getTarget()));
            return link.getTarget() != m("B");
        })
        .descend([&](const Link& link) {
            asked.push_back("second " + text(link.getTarget()));
            return link.getTarget() != m("C");
        });
    for (const Link& link : links(result)) EXPECT_NE(text(link), "C.y>B");
    EXPECT_EQ(sorted(asked), sorted({"first B", "first C", "second C", "first D", "second D",
                                     "first F", "second F"}));
}

TEST_P(WalkBoundaryTest, PredicateIsAskedBeforeTheTargetIsEnteredAndTheLinkTried) {
    ModelBuilder pair("Node; Node.x -> Node *", "A.x = B");
    const auto result = run(pair, {"A"});
    Lines lines;
    test::EventLog log(lines);
    Walk walk = result->prepare();
    ResultSetup(result)
        .observe(&log)
        .filter([&](const Link& link) {
            lines.push_back("filter " + text(link));
            return ResultPolicy::Report;
        })
        .rememberPaths()
        .descend([&](const Link& link) {
            lines.push_back("descend " + text(link));
            EXPECT_FALSE(walk.hasEntered(link.getTarget()));
            EXPECT_EQ(walk.depth(), 1U);
            EXPECT_EQ(walk.meeting(), Meeting::Boundary);
            return true;
        });
    while (!walk.hasEnded()) walk.advance();
    const auto place = [&](const char* line) {
        return std::find(lines.begin(), lines.end(), line) - lines.begin();
    };
    EXPECT_LT(place("enter A.x"), place("descend A.x>B"));
    EXPECT_LT(place("descend A.x>B"), place("filter A.x>B"));
    EXPECT_LT(place("descend A.x>B"), place("enter B"));
    EXPECT_EQ(std::count(lines.begin(), lines.end(), "descend A.x>B"), 1);
}

TEST_P(WalkBoundaryTest, DepthInsideAPredicateIsThatOfTheLinkAskedAbout) {
    ModelBuilder chain("Node; Node.x -> Node *; Node.y -> Node *",
                       "A.x = B; B.x = C; C.x = D; D.x = E; A.y = F");
    const auto result = run(chain, {"A"});
    Walk walk = result->prepare();
    ResultSetup(result).descend([&](const Link&) { return walk.depth() <= 2; });
    Lines lines;
    while (!walk.hasEnded()) {
        walk.advance();
        if (!!walk.getCurrent()) lines.push_back(text(walk.getCurrent()));
    }
    EXPECT_EQ(sorted(lines), sorted({">A", "A.x>B", "B.x>C", "C.x>D!", "A.y>F"}));
}

TEST_P(WalkBoundaryTest, PredicateThatThrowsLosesItsLinkAndNothingElse) {
    const auto result = run();
    bool isFirst = true;
    ResultSetup(result).descend([&](const Link& link) {
        if (link.getTarget() == m("B") && std::exchange(isFirst, false)) {
            throw PlannedFailure("asked");
        }
        return true;
    });
    expectTheLinkToBAloneIsLost(result->prepare());
}

TEST_P(WalkBoundaryTest, ListenerThatThrowsAtABoundaryLosesTheLinkAsAPredicateDoes) {
    struct ThrowingAtBoundaries : WalkListener {
        void onLink(const WalkView&, const Link&, Fate fate, std::size_t) override {
            if (fate == Fate::NotDescended) throw PlannedFailure("told");
        }
    } throwing;
    const auto result = run();
    ResultSetup(result).descend(notBy("Node.x", "B")).trace(&throwing);
    expectTheLinkToBAloneIsLost(result->prepare());
}

TEST_P(WalkBoundaryTest, WalksUnderWayAskANewPredicateFromTheirNextLinkOn) {
    ModelBuilder chain("Node; Node.x -> Node *", "A.x = B; B.x = C");
    const auto result = run(chain, {"A"});
    Walk walk = result->prepare();
    std::size_t steps = 0;
    while (!walk.hasEntered(chain("B"))) walk.advanceWithin(steps = 1);
    ResultSetup(result).descend([](const Link&) { return false; });
    while (!walk.hasEnded()) walk.advance();
    EXPECT_FALSE(walk.hasEntered(chain("C")));
}

TEST_P(WalkBoundaryTest, CopyMadeByAPredicateGoesOnBehindTheLinkThatWasAskedAbout) {
    ModelBuilder fork("Node; Node.x -> Node *", "A.x = B C; B.x = D");
    for (const bool isLimited : {false, true}) {
        const auto result = run(fork, {"A", "A"});
        std::unique_ptr<Walk> copy;
        Walk walk = result->prepare();
        ResultSetup(result).descend([&](const Link& link) {
            if (link.getTarget() == fork("B") && copy == nullptr && walk.hasEntered(fork("A"))) {
                copy = std::make_unique<Walk>(walk);
            }
            return true;
        });
        if (isLimited) {
            ResultSetup(result).upTo(5);
            walk = result->prepare();
        }
        while (!walk.hasEnded()) walk.advance();
        EXPECT_EQ(walk.enteredCount(), 4U);
        ASSERT_NE(copy, nullptr);
        while (!copy->hasEnded()) copy->advance();
        EXPECT_FALSE(copy->hasEntered(fork("B")));
        EXPECT_TRUE(copy->hasEntered(fork("C")));
        EXPECT_EQ(copy->enteredCount(), 2U);
    }
}

TEST_P(WalkBoundaryTest, EmptyPredicateFailsWhenItIsAsked) {
    const auto result = run();
    ResultSetup(result).descend(std::function<bool(const Link&)>());
    Walk walk = result->prepare();
    EXPECT_THROW(
        {
            while (!walk.hasEnded()) walk.advance();
        },
        std::bad_function_call);
}

INSTANTIATE_TEST_SUITE_P(Orders, WalkBoundaryTest, testing::ValuesIn(test::everyOrder()),
                         [](const auto& each) { return test::nameOf(each.param); });

}  // namespace
}  // namespace nuv::zero::traversal::internal
