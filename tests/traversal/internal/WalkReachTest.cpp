#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/Failures.h"
#include "tests/support/ModelBuilder.h"
#include "tests/support/WalkLog.h"

/// How far a walk goes: boundaries, and the limit on the distance.
namespace nuv::zero::traversal::internal {
namespace {

using test::Lines;
using test::ModelBuilder;
using test::PlannedFailure;
using test::text;
using Walk = TraversalResult::IterationContext;

Lines sorted(Lines lines) {
    std::sort(lines.begin(), lines.end());
    return lines;
}

class WalkReachTest : public testing::TestWithParam<Algo> {
  protected:
    std::shared_ptr<TraversalResult> run(const ModelBuilder& model,
                                         const std::vector<const char*>& names) const {
        std::vector<ModelElement> inputs;
        for (const char* name : names) inputs.push_back(model(name));
        return Spec::subtractiveTraversal()->run(inputs, GetParam());
    }
    std::shared_ptr<TraversalResult> run(const std::vector<const char*>& names = {"A"}) const {
        return run(m, names);
    }
    /// Does not go into an element by way of one property.
    std::function<bool(const Link&)> notBy(const char* property, const char* target) const {
        return [=, this](const Link& link) {
            return !(link.getProperty() == m[property] && link.getTarget() == m(target));
        };
    }
    Lines linesUpTo(std::size_t distance, const std::vector<const char*>& names) const {
        const auto result = run(names);
        ResultSetup(result).upTo(distance);
        return sorted(test::linesOf(result));
    }

    ModelBuilder m{"Node; Node.x -> Node *; Node.y -> Node *",
                   "A.x = B C; A.y = D; B.x = E; C.y = B; D.x = F; E.y = A"};
};

TEST_P(WalkReachTest, LinkOverABoundaryIsReportedAndItsTargetLeftToALaterLink) {
    const auto result = run();
    ResultSetup(result).descend(notBy("Node.x", "B"));
    EXPECT_EQ(sorted(test::linesOf(result)),
              sorted({">A", "A.x>B!", "A.x>C", "C.y>B", "B.x>E", "E.y>A!", "A.y>D", "D.x>F"}));
}

TEST_P(WalkReachTest, LinkOverABoundaryIsOneThoughItsTargetWasEnteredMeanwhile) {
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

TEST_P(WalkReachTest, TargetThatNoLinkMayEnterStaysOutside) {
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

TEST_P(WalkReachTest, InputsAreEnteredWithoutBeingAskedFor) {
    const auto result = run({"A", "D"});
    ResultSetup(result).descend([](const Link& link) {
        EXPECT_TRUE(link.getProperty());
        return false;
    });
    EXPECT_EQ(sorted(test::linesOf(result)),
              sorted({">A", "A.x>B!", "A.x>C!", "A.y>D!", ">D", "D.x>F!"}));
}

TEST_P(WalkReachTest, PredicateIsAskedOnceForEachLinkThatWouldEnterAndForNoOther) {
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

TEST_P(WalkReachTest, PredicatesMustAllAgreeAndTheFirstRefusalEndsTheQuestion) {
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

TEST_P(WalkReachTest, PredicateIsAskedBeforeTheTargetIsEnteredAndTheLinkTried) {
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

TEST_P(WalkReachTest, DepthInsideAPredicateIsThatOfTheLinkAskedAbout) {
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

TEST_P(WalkReachTest, PredicateThatThrowsLosesItsLinkAndNothingElse) {
    const auto result = run();
    bool isFirst = true;
    ResultSetup(result).descend([&](const Link& link) {
        if (link.getTarget() == m("B") && std::exchange(isFirst, false)) {
            throw PlannedFailure("asked");
        }
        return true;
    });
    Walk walk = result->prepare();
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
    EXPECT_EQ(sorted(lines), sorted({">A", "A.x>C", "C.y>B", "B.x>E", "E.y>A!", "A.y>D", "D.x>F"}));
}

TEST_P(WalkReachTest, WalksUnderWayAskANewPredicateFromTheirNextLinkOn) {
    ModelBuilder chain("Node; Node.x -> Node *", "A.x = B; B.x = C");
    const auto result = run(chain, {"A"});
    Walk walk = result->prepare();
    std::size_t steps = 0;
    while (!walk.hasEntered(chain("B"))) walk.advanceWithin(steps = 1);
    ResultSetup(result).descend([](const Link&) { return false; });
    while (!walk.hasEnded()) walk.advance();
    EXPECT_FALSE(walk.hasEntered(chain("C")));
}

TEST_P(WalkReachTest, UpToReportsTheLinksThatLeaveElementsBelowTheDistance) {
    const std::vector<const char*> a{"A"};
    EXPECT_EQ(linesUpTo(0, a), Lines{">A"});
    EXPECT_EQ(linesUpTo(1, a), sorted({">A", "A.x>B", "A.x>C", "A.y>D"}));
    const Lines all = linesUpTo(100, a);
    EXPECT_EQ(all.size(), 8U);
    EXPECT_EQ(linesUpTo(3, a).size(), 8U);
    EXPECT_EQ(linesUpTo(2, a).size(), 7U);
}

TEST_P(WalkReachTest, UpToFindsWhatAShorterWayReachesThoughALongerOneCameFirst) {
    // Depth-first, E is entered from C, at a depth of 3.
    ModelBuilder detour("Node; Node.x -> Node *", "A.x = B E; B.x = C; C.x = E; E.x = F; F.x = G");
    const auto result = run(detour, {"A"});
    ResultSetup(result).upTo(2);
    Lines reached;
    for (const Link& link : links(result)) reached.push_back(text(link.getTarget()));
    EXPECT_EQ(std::count(reached.begin(), reached.end(), "F"), 1);
    EXPECT_EQ(std::count(reached.begin(), reached.end(), "G"), 0);
}

TEST_P(WalkReachTest, UpToCountsFromTheNearestOfAllInputs) {
    // C is far from A, and near to D, which comes later.
    ModelBuilder two("Node; Node.x -> Node *", "A.x = B; B.x = C; C.x = E; E.x = F; D.x = C");
    const auto result = run(two, {"A", "D"});
    ResultSetup(result).upTo(2);
    Lines reached = test::linesOf(result);
    for (std::string& line : reached)
        line.erase(std::remove(line.begin(), line.end(), '!'), line.end());
    EXPECT_EQ(sorted(reached), sorted({">A", "A.x>B", "B.x>C", "C.x>E", ">D", "D.x>C"}));
}

TEST_P(WalkReachTest, UpToCountsOverLinksThatBoundariesLetPassOnly) {
    // B is at 1, but for the boundary at 2: by way of C.
    const auto result = run();
    ResultSetup(result).upTo(2).descend(notBy("Node.x", "B"));
    Lines reached = test::linesOf(result);
    EXPECT_EQ(std::count(reached.begin(), reached.end(), "C.y>B"), 1);
    EXPECT_EQ(std::count(reached.begin(), reached.end(), "B.x>E"), 0);
    const auto further = run();
    ResultSetup(further).upTo(3).descend(notBy("Node.x", "B"));
    reached = test::linesOf(further);
    EXPECT_EQ(std::count(reached.begin(), reached.end(), "B.x>E"), 1);
}

TEST_P(WalkReachTest, PolicyAndFiltersTakeNoPartInDistances) {
    const auto result = Spec::subtractiveTraversal()
                            ->setResultPolicy(m["Node.x"], ResultPolicy::WalkOnly)
                            ->run({m("A"), m("A")}, GetParam());
    ResultSetup(result).upTo(2).filter([this](const Link& link) {
        return link.getTarget() == m("B") ? ResultPolicy::WalkOnly : ResultPolicy::Report;
    });
    EXPECT_EQ(sorted(test::linesOf(result)), (Lines{">A", "A.y>D"}));
}

TEST_P(WalkReachTest, NullEntriesAndNullInputsAreWithinNoDistance) {
    ModelBuilder holes("Node; Node.x -> Node *", "A.x = B");
    holes.model.plant(holes("A"), holes["Node.x"],
                      {holes.type("Node"), true,
                       std::vector<ModelElement>{holes("B"), ModelElement(), ModelElement()}});
    const auto result = Spec::subtractiveTraversal()->run({ModelElement(), holes("A")}, GetParam());
    Lines asked;
    ResultSetup(result).upTo(5).descend([&](const Link& link) {
        asked.push_back(text(link));
        return true;
    });
    EXPECT_EQ(sorted(test::linesOf(result)), sorted({">A", "A.x>B", "A.x>null!", "A.x>null!"}));
    // Once in the silent pass and once in the walk; the null input has been entered.
    EXPECT_EQ(asked, (Lines{"A.x>B", "A.x>B"}));
}

TEST_P(WalkReachTest, LastDistanceWinsAndWalksUnderWayDoNotSeeIt) {
    const auto result = run();
    ResultSetup(result).upTo(0).upTo(1);
    Walk walk = result->prepare();
    ResultSetup(result).upTo(0);
    EXPECT_EQ(test::linesOf(result), Lines{">A"});
    std::size_t links = 0;
    for (walk.advance(); !walk.hasEnded(); walk.advance()) ++links;
    EXPECT_EQ(links, 4U);
}

/// Pruning an element at the distance, from which nothing is followed, asked the rules of its class
/// what would be, and so did loading ahead.
TEST_P(WalkReachTest, RulesAreNotAskedAboutClassesThatAreOnlyBeyondTheDistance) {
    ModelBuilder two("Node; Leaf < Node; Node.x -> Node *",
                     "L1 : Leaf; L2 : Leaf; L3 : Leaf; L4 : Leaf; L5 : Leaf; L6 : Leaf; L7 : Leaf; "
                     "L8 : Leaf; A.x = L1 L2 L3 L4 L5 L6 L7 L8; L1.x = L2");
    for (const bool isSeveral : {false, true}) {
        std::vector<ModelElement> inputs(isSeveral ? 2 : 1, two("A"));
        const auto result = Spec::additiveTraversal()
                                ->traverse(
                                    two["Node.x"],
                                    [&](const Class& type) {
                                        EXPECT_NE(type, two.type("Leaf"));
                                        return true;
                                    },
                                    ResultPolicy::Report)
                                ->run(inputs, GetParam());
        ResultSetup(result).upTo(1);
        LinkRange walk = links(result);
        std::size_t count = 0;
        for (const Link& link : walk) {
            ++count;
            if (!link.getProperty()) continue;
            EXPECT_EQ(walk.pruneAllChildren(), Pruned::TooLate);
            EXPECT_EQ(walk.pruneChildren(two["Node.x"]), Pruned::Nothing);
        }
        EXPECT_EQ(count, 9U);
    }
}

TEST_P(WalkReachTest, CopyOfAPausedSilentPassGoesOnByItself) {
    const auto result = run({"A", "F"});
    ResultSetup(result).upTo(2);
    const Lines expected = test::linesOf(result);
    for (std::size_t pause = 0; pause < 12; ++pause) {
        Walk walk = result->prepare();
        std::size_t steps = pause;
        if (walk.advanceWithin(steps) != Progress::Paused) break;
        Walk copy = walk;
        EXPECT_TRUE(copy == walk);
        copy.advance();
        walk.advance();
        EXPECT_EQ(test::rest(copy), expected) << pause;
        EXPECT_EQ(test::rest(walk), expected) << pause;
    }
}

/// A predicate that asks where the walk stands cannot mean anything before the walk has begun.
TEST_P(WalkReachTest, InTheSilentPassTheWalkStandsOnNothing) {
    const auto result = run({"A", "F"});
    Walk walk = result->prepare();
    std::size_t silent = 0;
    ResultSetup(result).upTo(3).descend([&](const Link&) {
        if (walk.enteredCount() == 0) {
            ++silent;
            EXPECT_EQ(walk.meeting(), Meeting::None);
            EXPECT_EQ(walk.depth() + walk.waitingCount(), 0U);
        }
        return true;
    });
    walk = result->prepare();
    while (!walk.hasEnded()) walk.advance();
    EXPECT_EQ(silent, 4U) << "B, C, D and E; F is an input";
}

TEST_P(WalkReachTest, CopyMadeByAPredicateGoesOnBehindTheLinkThatWasAskedAbout) {
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

TEST_P(WalkReachTest, EmptyPredicateFailsWhenItIsAsked) {
    const auto result = run();
    ResultSetup(result).descend(std::function<bool(const Link&)>());
    Walk walk = result->prepare();
    EXPECT_THROW(
        {
            while (!walk.hasEnded()) walk.advance();
        },
        std::bad_function_call);
}

INSTANTIATE_TEST_SUITE_P(Orders, WalkReachTest, testing::ValuesIn(test::everyOrder()),
                         [](const auto& each) { return test::nameOf(each.param); });

}  // namespace
}  // namespace nuv::zero::traversal::internal
