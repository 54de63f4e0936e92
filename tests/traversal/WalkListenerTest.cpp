#include "traversal/WalkListener.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "tests/support/ModelBuilder.h"
#include "tests/support/WalkLog.h"

namespace nuv::zero::traversal {
namespace {

using test::Lines;
using test::text;
using Walk = TraversalResult::IterationContext;

/// Writes down what it hears, as in `1 reported A.x>B` and `1 prunes children y of A.x>B: cut`.
class ListenerLog : public WalkListener {
  public:
    void onLink(const WalkView& walk, const Link& link, Fate fate, std::size_t filter) override {
        constexpr const char* fates[] = {"reported", "silent",   "repeated",
                                         "left out", "filtered", "refused"};
        std::string line = std::to_string(walk.number()) + " " +
                           fates[static_cast<std::size_t>(fate)] + " " + text(link);
        if (fate == Fate::Filtered) line += " by " + std::to_string(filter);
        lines.push_back(line);
    }
    void onPrune(const WalkView& walk, const Link& link, Pruning pruning,
                 const meta::Property& property, Pruned outcome) override {
        constexpr const char* prunings[] = {"all", "children", "siblings"};
        constexpr const char* outcomes[] = {"nothing", "too late", "cut"};
        std::string line = std::to_string(walk.number()) + " prunes " +
                           prunings[static_cast<std::size_t>(pruning)];
        if (property) line += " " + access::toUtf8(access::nameOf(property));
        lines.push_back(line + " of " + text(link) + ": " +
                        outcomes[static_cast<std::size_t>(outcome)]);
    }

    Lines lines;
};

class WalkListenerTest : public testing::TestWithParam<Algo> {
  protected:
    std::shared_ptr<TraversalResult> traced(WalkListener& listener) {
        const auto result = Spec::subtractiveTraversal()->run({m("A")}, GetParam());
        ResultSetup(result).trace(&listener);
        return result;
    }

    test::ModelBuilder m{"Node; Node.x -> Node *; Node.y -> Node *", "A.x = B C; B.y = D"};
    ListenerLog log;
};

TEST_P(WalkListenerTest, NullListenerIsRefused) {
    const auto result = traced(log);
    EXPECT_THROW(ResultSetup(result).trace(nullptr), std::invalid_argument);
}

TEST_P(WalkListenerTest, ListenersHearInTheOrderInWhichTheyWereAttached) {
    struct Second : WalkListener {
        explicit Second(ListenerLog& earlier) : first(earlier) {}
        void onLink(const WalkView&, const Link&, Fate, std::size_t) override {
            heard.push_back(first.lines.size());
        }
        ListenerLog& first;
        std::vector<std::size_t> heard;
    } second(log);
    const auto result = traced(log);
    ResultSetup(result).trace(&second);
    test::linesOf(result);
    EXPECT_EQ(second.heard, (std::vector<std::size_t>{1, 2, 3, 4}));
}

TEST_P(WalkListenerTest, ListenerThatDoesNothingChangesNothing) {
    WalkListener idle;
    const auto plain = Spec::subtractiveTraversal()->run({m("A")}, GetParam());
    EXPECT_EQ(test::transcript(traced(idle)), test::transcript(plain));
}

TEST_P(WalkListenerTest, ListenerStandsOnTheLinkThatItHearsOf) {
    struct Standing : WalkListener {
        void onLink(const WalkView& walk, const Link& link, Fate, std::size_t) override {
            EXPECT_EQ(walk.path().back(), link);
            EXPECT_EQ(walk.path().size(), walk.depth() + 1);
            EXPECT_EQ(walk.path(), walk.pathTo(link.getTarget()));
            EXPECT_EQ(walk.meeting(), link.getProperty() ? Meeting::First : Meeting::Input);
            EXPECT_TRUE(walk.hasEntered(link.getTarget()));
            EXPECT_TRUE(walk.cycle().empty());
            EXPECT_GE(walk.enteredCount(), 1U);
            EXPECT_GE(walk.waitingCount(), 1U);
            order = walk.order();
            ++heard;
        }
        Algo order{};
        int heard = 0;
    } standing;
    const auto result = traced(standing);
    ResultSetup(result).rememberPaths();
    test::linesOf(result);
    EXPECT_EQ(standing.heard, 4);
    EXPECT_EQ(standing.order, GetParam());
}

TEST_P(WalkListenerTest, PrunesAreToldWithWhatBecameOfThem) {
    const auto result = traced(log);
    Walk walk = result->begin();
    while (!(walk.getCurrent().getTarget() == m("B"))) walk.advance();
    log.lines.clear();
    walk.pruneChildren(m["Node.x"]);
    walk.pruneChildren(m["Node.y"]);
    walk.pruneSiblings();
    walk.pruneSiblings();
    walk.pruneAllChildren();
    if (GetParam() == Algo::DepthFirstPostOrder) {
        EXPECT_EQ(
            log.lines,
            (Lines{"1 prunes children x of A.x>B: too late",
                   "1 prunes children y of A.x>B: too late", "1 prunes siblings x of A.x>B: cut",
                   "1 prunes siblings x of A.x>B: too late", "1 prunes all of A.x>B: too late"}));
    } else {
        EXPECT_EQ(
            log.lines,
            (Lines{"1 prunes children x of A.x>B: cut", "1 prunes children y of A.x>B: cut",
                   "1 prunes siblings x of A.x>B: cut", "1 prunes siblings x of A.x>B: too late",
                   "1 prunes all of A.x>B: too late"}));
    }
    while (!walk.hasEnded()) walk.advance();
    log.lines.clear();
    walk.pruneAllChildren();
    walk.pruneSiblings();
    EXPECT_EQ(log.lines, (Lines{"1 prunes all of -: nothing", "1 prunes siblings of -: nothing"}));
}

TEST_P(WalkListenerTest, PruneOfWhichAListenerThrowsIsMadeAllTheSame) {
    struct Throwing : WalkListener {
        void onPrune(const WalkView&, const Link&, Pruning, const meta::Property&,
                     Pruned) override {
            throw std::runtime_error("heard");
        }
    } throwing;
    Walk walk = traced(throwing)->begin();
    while (!(walk.getCurrent().getTarget() == m("B"))) walk.advance();
    EXPECT_THROW(walk.pruneSiblings(), std::runtime_error);
    const Lines left = test::rest(walk);
    EXPECT_EQ(std::count(left.begin(), left.end(), "A.x>C"), 0);
}

TEST_P(WalkListenerTest, CopiesHaveTheirOwnNumber) {
    const auto result = traced(log);
    const Walk first = result->begin();
    const Walk second = result->begin();
    Walk copy(second);
    log.lines.clear();
    copy.pruneSiblings();
    ASSERT_EQ(log.lines.size(), 1U);
    EXPECT_EQ(log.lines.front().substr(0, 2), "3 ");
}

TEST_P(WalkListenerTest, WhatAListenerThrowsEndsTheStepAndTheReportIsLost) {
    struct ThrowingAtOneElement : WalkListener {
        explicit ThrowingAtOneElement(const ModelElement& from) : element(from) {}
        void onLink(const WalkView&, const Link& link, Fate, std::size_t) override {
            if (link.getTarget() == element) throw std::runtime_error("not this one");
        }
        const ModelElement element;
    } throwing(m("B"));
    const auto result = traced(log);
    ResultSetup(result).trace(&throwing);
    Walk walk = result->prepare();
    Lines links;
    int thrown = 0;
    while (!walk.hasEnded()) {
        try {
            walk.advance();
            links.push_back(text(walk.getCurrent()));
        } catch (const std::runtime_error&) {
            ++thrown;
        }
    }
    Lines expected = test::linesOf(Spec::subtractiveTraversal()->run({m("A")}, GetParam()));
    std::erase(expected, "A.x>B");
    expected.emplace_back("-");
    EXPECT_EQ(links, expected);
    EXPECT_EQ(thrown, 1);
    EXPECT_EQ(log.lines.size(), 4U) << "the listener before it has heard of the link";
}

TEST_P(WalkListenerTest, ListenerMayPruneAndAttachAnother) {
    struct Pruning : WalkListener {
        void onLink(const WalkView&, const Link& link, Fate, std::size_t) override {
            if (!hasAttached) ResultSetup(result).trace(&log);
            hasAttached = true;
            if (walk != nullptr && !!link) walk->pruneSiblings();
        }
        std::shared_ptr<TraversalResult> result;
        Walk* walk = nullptr;
        ListenerLog log;
        bool hasAttached = false;
    } pruning;
    pruning.result = traced(pruning);
    Walk walk = pruning.result->begin();
    pruning.walk = &walk;
    while (!walk.hasEnded()) walk.advance();
    pruning.result.reset();
    EXPECT_GE(pruning.log.lines.size(), 4U);
}

TEST_P(WalkListenerTest, WalkCannotBeAdvancedFromAListener) {
    struct Advancing : WalkListener {
        void onLink(const WalkView&, const Link&, Fate, std::size_t) override {
            if (walk == nullptr) return;
            EXPECT_THROW(walk->advance(), std::logic_error);
            ++refused;
        }
        Walk* walk = nullptr;
        int refused = 0;
    } advancing;
    Walk walk = traced(advancing)->prepare();
    advancing.walk = &walk;
    while (!walk.hasEnded()) walk.advance();
    EXPECT_EQ(advancing.refused, 4);
}

INSTANTIATE_TEST_SUITE_P(Orders, WalkListenerTest, testing::ValuesIn(test::everyOrder()),
                         [](const auto& each) { return test::nameOf(each.param); });

TEST(WalkListenerFateTest, EveryFateIsToldWithTheFilterThatLeftTheLinkOut) {
    const test::ModelBuilder m("Node; Node.x -> Node *; Node.y -> Node *",
                               "A.x = B C D B; A.y = E; B.x = F");
    const auto result = Spec::subtractiveTraversal()
                            ->includeInitialPseudoLink(ResultPolicy::WalkOnly)
                            ->setResultPolicy(PropertyMatcher(m["Node.y"]), ResultPolicy::WalkOnly)
                            ->depthFirst({m("A")});
    const auto leavingOut = [&](const char* target) {
        return [element = m(target)](const Link& link) {
            return link.getTarget() == element ? ResultPolicy::WalkOnly : ResultPolicy::Report;
        };
    };
    ListenerLog log;
    ResultSetup(result)
        .filter(leavingOut("C"))
        .filter(leavingOut("D"))
        .unique(UniquenessMode::UniqueElements)
        .descend([&](const Link& link) { return !(link.getTarget() == m("F")); })
        .trace(&log);
    EXPECT_EQ(test::linesOf(result), (Lines{"A.x>B", "B.x>F!"}));
    EXPECT_EQ(log.lines, (Lines{"1 left out >A", "1 reported A.x>B", "1 refused B.x>F!",
                                "1 reported B.x>F!", "1 filtered A.x>C by 0",
                                "1 filtered A.x>D by 1", "1 repeated A.x>B!", "1 silent A.y>E"}));
}

}  // namespace
}  // namespace nuv::zero::traversal
