#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/support/Failures.h"
#include "tests/traversal/internal/LimitedWalks.h"

/// How far walks go that are limited by a distance.
namespace nuv::zero::traversal::internal {
namespace {

using test::Lines;
using test::ModelBuilder;
using test::text;
using Walk = TraversalResult::IterationContext;

class WalkReachTest : public LimitedWalks {
  protected:
    Lines linesUpTo(std::size_t distance, const std::vector<const char*>& names) const {
        const auto result = run(names);
        ResultSetup(result).upTo(distance);
        return sorted(test::linesOf(result));
    }
};

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

/// E is at 2 by way of B, and at 3 by way of C and D.
TEST_P(WalkReachTest, PrunedShortWaysCountForDistances) {
    ModelBuilder two("Node; Node.x -> Node *", "A.x = B C; B.x = E; C.x = D; D.x = E; E.x = F");
    for (const bool isSeveral : {false, true}) {
        const auto result = isSeveral ? run(two, {"A", "A"}) : run(two, {"A"});
        ResultSetup(result).upTo(3);
        LinkRange walk = links(result);
        Lines reached;
        for (const Link& link : walk) {
            if (link.getTarget() == two("B")) walk.pruneAllChildren();
            reached.push_back(text(link.getTarget()));
        }
        EXPECT_GE(std::count(reached.begin(), reached.end(), "E"), 1);
        EXPECT_EQ(std::count(reached.begin(), reached.end(), "F"), 1);
    }
}

/// Where the link from B to E is lost, it counts only for a walk that has looked ahead.
TEST_P(WalkReachTest, LostLinksChangeDistancesOfBreadthFirstWalksFromOneInputAlone) {
    ModelBuilder two("Node; Node.x -> Node *", "A.x = B C; B.x = E; C.x = D; D.x = E; E.x = F");
    for (const bool isSeveral : {false, true}) {
        const auto result = isSeveral ? run(two, {"A", "A"}) : run(two, {"A"});
        Walk walk = result->prepare();
        bool hasThrown = false;
        ResultSetup(result).upTo(3).descend([&](const Link& link) {
            // Not in the silent pass.
            const bool isFirst = !hasThrown && walk.enteredCount() > 0;
            if (isFirst && link.getSource() == two("B")) {
                hasThrown = true;
                throw test::PlannedFailure("at the boundary");
            }
            return true;
        });
        walk = result->prepare();
        Lines reached;
        while (!walk.hasEnded()) {
            try {
                walk.advance();
                if (walk.getCurrent()) reached.push_back(text(walk.getCurrent().getTarget()));
            } catch (const test::PlannedFailure&) {
                EXPECT_TRUE(hasThrown);
            }
        }
        EXPECT_TRUE(hasThrown);
        const bool countsAsItGoes = GetParam() == Algo::BreadthFirst && !isSeveral;
        EXPECT_EQ(std::count(reached.begin(), reached.end(), "F"), countsAsItGoes ? 0 : 1);
    }
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

/// Breadth-first, an element near enough was not gone on from when a longer way led to it after a
/// prune.
TEST_P(WalkReachTest, WhatAPruneLeavesToALongerWayIsGoneOnFrom) {
    ModelBuilder detour("Node; Node.x -> Node *; Node.y -> Node *",
                        "A.x = B; A.y = C; C.x = B; B.x = E; E.x = F");
    const auto result = run(detour, {"A"});
    ResultSetup(result).upTo(2);
    LinkRange walk = links(result);
    Lines reached;
    for (const Link& link : walk) {
        reached.push_back(text(link));
        if (!link.getProperty()) walk.pruneChildren(detour["Node.x"]);
    }
    EXPECT_EQ(std::count(reached.begin(), reached.end(), "B.x>E"), 1);
    EXPECT_EQ(std::count(reached.begin(), reached.end(), "E.x>F"), 0);
}

/// The same where a callback prunes in the middle of a step.
TEST_P(WalkReachTest, WhatACallbackPrunesIsSeenBeforeTheNextTurn) {
    ModelBuilder detour("Node; Node.x -> Node *; Node.y -> Node *",
                        "A.x = B; A.y = C; C.x = B; B.x = E; E.x = F");
    const auto result = Spec::subtractiveTraversal()->run({detour("A")}, GetParam());
    Walk walk;
    ResultSetup(result)
        .upTo(2)
        .onEnterElement([&](const ModelElement& element) {
            if (element == detour("A")) walk.pruneChildren(detour["Node.x"]);
        })
        .filter([&](const Link& link) {
            return !link.getProperty() || link.getTarget() == detour("E");
        });
    walk = result->prepare();
    Lines reached;
    for (walk.advance(); !walk.hasEnded(); walk.advance()) {
        reached.push_back(text(walk.getCurrent()));
    }
    // In post-order nothing is reported before A is left, so the prune has nothing to act on.
    EXPECT_EQ(std::count(reached.begin(), reached.end(), "B.x>E"), 1);
}

/// A predicate that always throws for one class kept a walk with a limit where it was.
TEST_P(WalkReachTest, SilentPassGoesOnBehindAClassWhoseRulesAlwaysThrow) {
    ModelBuilder two("Node; Leaf < Node; Node.x -> Node *",
                     "L : Leaf; A.x = L B; L.x = C; B.x = D");
    const auto result = Spec::additiveTraversal()
                            ->traverse(
                                two["Node.x"],
                                [&](const Class& type) {
                                    if (type == two.type("Leaf")) throw std::runtime_error("Leaf");
                                    return true;
                                },
                                ResultPolicy::Report)
                            ->run({two("A"), two("A")}, GetParam());
    ResultSetup(result).upTo(5);
    Walk walk = result->prepare();
    Lines reached;
    for (std::size_t tries = 0; !walk.hasEnded() && tries < 100; ++tries) {
        try {
            walk.advance();
            if (walk.getCurrent()) reached.push_back(text(walk.getCurrent()));
        } catch (const std::runtime_error&) {
            continue;
        }
    }
    EXPECT_TRUE(walk.hasEnded());
    EXPECT_EQ(std::count(reached.begin(), reached.end(), "B.x>D"), 1);
}

TEST(WalkReach, SilentPassGivesBackWhatItNeededBesides) {
    ModelBuilder chain("Node; Node.x -> Node *", "A");
    ModelElement last = chain("A");
    for (int i = 0; i < 1000; ++i) {
        const ModelElement next = chain.model.create(chain.type("Node"));
        chain.model.add(last, chain["Node.x"], next);
        last = next;
    }
    struct BytesAtTheInput : WalkListener {
        void onLink(const WalkView& walk, const Link&, Fate, std::size_t) override {
            if (walk.enteredCount() == 1) bytes = walk.bytesHeld();
        }
        std::size_t bytes = 0;
    } limited, unlimited;
    const auto heldBy = [&](BytesAtTheInput& held, bool isLimited) {
        const auto result =
            Spec::subtractiveTraversal()->run({chain("A"), chain("A")}, Algo::DepthFirstPreOrder);
        if (isLimited) ResultSetup(result).upTo(5000);
        ResultSetup(result).trace(&held);
        result->begin();
    };
    heldBy(limited, true);
    heldBy(unlimited, false);
    EXPECT_LT(limited.bytes, unlimited.bytes + 2000) << "two bits for each element, and no list";
}

INSTANTIATE_TEST_SUITE_P(Orders, WalkReachTest, testing::ValuesIn(test::everyOrder()),
                         [](const auto& each) { return test::nameOf(each.param); });

}  // namespace
}  // namespace nuv::zero::traversal::internal
