#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/support/Failures.h"
#include "tests/support/ModelBuilder.h"
#include "tests/support/WalkLog.h"

/// Where a walk stands: depth, meeting, path and cycle, at links and between them.
namespace nuv::zero::traversal::internal {
namespace {

using test::Lines;
using test::ModelBuilder;
using test::text;
using Walk = TraversalResult::IterationContext;

const char* text(Meeting meeting) {
    constexpr const char* names[] = {"nothing", "input", "first", "open", "done", "boundary"};
    return names[static_cast<std::size_t>(meeting)];
}

std::string text(const std::vector<Link>& links) {
    std::string line;
    for (const Link& link : links) line += (line.empty() ? "" : " ") + test::text(link);
    return line;
}

/// As in `1 first: >A A.x>B`.
std::string standing(const Walk& walk) {
    return std::to_string(walk.depth()) + ' ' + text(walk.meeting()) + ": " + text(walk.path());
}

/// Notes where the walk stands at each event.
class StandingLog : public test::EventLog {
  public:
    StandingLog(Lines& lines, const Walk& walk) : EventLog(lines), walk_(walk) {}

  protected:
    void note(std::string line) override { EventLog::note(line + ", " + standing(walk_)); }

  private:
    const Walk& walk_;
};

class WalkPositionTest : public testing::Test {
  protected:
    std::shared_ptr<TraversalResult> run(Algo order, const std::vector<ModelElement>& inputs) {
        auto result = Spec::subtractiveTraversal()->run(inputs, order);
        ResultSetup(result).rememberPaths();
        return result;
    }
    std::shared_ptr<TraversalResult> run(Algo order) { return run(order, {m("A")}); }
    /// Where a walk stands at each of its links, and at its end.
    static Lines standings(const std::shared_ptr<TraversalResult>& result) {
        Lines lines;
        auto walk = result->begin();
        for (; !!walk.getCurrent(); walk.advance()) lines.push_back(standing(walk));
        lines.push_back(standing(walk));
        return lines;
    }

    ModelBuilder m{"Node; Node.x -> Node *; Node.y -> Node *",
                   "A.x = B C; A.y = A; B.x = C; C.x = A"};
};

TEST_F(WalkPositionTest, EveryLinkKnowsItsDepthItsMeetingAndItsPath) {
    EXPECT_EQ(standings(run(Algo::DepthFirstPreOrder)),
              (Lines{"0 input: >A", "1 first: >A A.x>B", "2 first: >A A.x>B B.x>C",
                     "3 open: >A A.x>B B.x>C C.x>A!", "1 done: >A A.x>C!", "1 open: >A A.y>A!",
                     "0 nothing: "}));
    EXPECT_EQ(
        standings(run(Algo::DepthFirstPostOrder)),
        (Lines{"3 open: >A A.x>B B.x>C C.x>A!", "2 first: >A A.x>B B.x>C", "1 first: >A A.x>B",
               "1 done: >A A.x>C!", "1 open: >A A.y>A!", "0 input: >A", "0 nothing: "}));
    EXPECT_EQ(standings(run(Algo::BreadthFirst)),
              (Lines{"0 input: >A", "1 first: >A A.x>B", "1 first: >A A.x>C", "1 done: >A A.y>A!",
                     "2 done: >A A.x>B B.x>C!", "2 done: >A A.x>C C.x>A!", "0 nothing: "}));
}

TEST_F(WalkPositionTest, DepthsAndPathsBeginAnewWithEachInput) {
    ModelBuilder two("Node; Node.x -> Node *", "A.x = B; C.x = D; D.x = B");
    const auto inputs = {two("A"), two("C")};
    EXPECT_EQ(standings(run(Algo::DepthFirstPreOrder, inputs)),
              (Lines{"0 input: >A", "1 first: >A A.x>B", "0 input: >C", "1 first: >C C.x>D",
                     "2 done: >C C.x>D D.x>B!", "0 nothing: "}));
    EXPECT_EQ(standings(run(Algo::BreadthFirst, inputs)),
              (Lines{"0 input: >A", "1 first: >A A.x>B", "0 input: >C", "1 first: >C C.x>D",
                     "2 done: >C C.x>D D.x>B!", "0 nothing: "}));
}

TEST_F(WalkPositionTest, InputThatWasReachedIsNoStationOfTheWalk) {
    for (const Algo order : test::everyOrder()) {
        auto once = standings(run(order));
        EXPECT_EQ(standings(run(order, {m("A"), m("C"), m("A")})), once) << test::nameOf(order);
    }
}

TEST_F(WalkPositionTest, BeforeTheFirstStepAndAtTheEndTheWalkStandsOnNothing) {
    for (const Algo order : test::everyOrder()) {
        auto walk = run(order)->prepare();
        EXPECT_EQ(standing(walk), "0 nothing: ");
        EXPECT_FALSE(walk.hasEnded());
        EXPECT_FALSE(walk.hasEntered(m("A")));
        EXPECT_EQ(walk.enteredCount() + walk.waitingCount(), 0U);
        EXPECT_EQ(text(walk.pathTo(m("A"))), "");
        while (!walk.hasEnded()) walk.advance();
        EXPECT_EQ(standing(walk), "0 nothing: ");
        EXPECT_TRUE(walk.hasEntered(m("C")));
        EXPECT_EQ(walk.enteredCount(), 3U);
        EXPECT_EQ(walk.waitingCount(), 0U);
        EXPECT_EQ(text(walk.cycle()), "");
    }
    const Walk end;
    EXPECT_EQ(standing(end), "0 nothing: ");
    EXPECT_TRUE(end.hasEnded());
    EXPECT_EQ(text(end.pathTo(m("A"))), "");
    EXPECT_FALSE(end.hasEntered(m("A")));
    EXPECT_EQ(end.enteredCount() + end.waitingCount(), 0U);
}

/// A breadth-first walk that has met a null entry gave the path to that as the path at its end.
TEST_F(WalkPositionTest, EndHasNoPathThoughANullEntryWasEntered) {
    m.model.plant(m("B"), m["Node.y"],
                  {m.type("Node"), true, std::vector<ModelElement>{ModelElement()}});
    for (const Algo order : test::everyOrder()) {
        auto walk = run(order)->begin();
        std::string toNull;
        for (; !!walk.getCurrent(); walk.advance()) {
            if (!walk.getCurrent().getTarget()) toNull = standing(walk);
        }
        EXPECT_EQ(toNull, "2 first: >A A.x>B B.y>null") << test::nameOf(order);
        EXPECT_EQ(standing(walk), "0 nothing: ") << test::nameOf(order);
        EXPECT_TRUE(walk.hasEntered(ModelElement()));
        EXPECT_EQ(text(walk.pathTo(ModelElement())), ">A A.x>B B.y>null");
    }
}

/// Depth-first a null input was met as an input, with the empty link for a path; breadth-first it
/// was met as nothing.
TEST_F(WalkPositionTest, NullInputIsNothingToStandOn) {
    for (const Algo order : test::everyOrder()) {
        const auto result = run(order, {ModelElement()});
        Walk walk = result->prepare();
        Lines lines;
        StandingLog log(lines, walk);
        ResultSetup(result).observe(&log);
        walk.advance();
        EXPECT_EQ(
            lines,
            (Lines{"input null, 0 nothing: ", "enter null, 0 nothing: ", "exit null, 0 nothing: "}))
            << test::nameOf(order);
        EXPECT_TRUE(walk.hasEnded());
    }
}

/// Breadth-first the events of an element stood on the link that happened to be found last.
TEST_F(WalkPositionTest, EventsOfAnElementStandOnTheLinkThatLedThereInEveryOrder) {
    ModelBuilder chain("Node; Node.x -> Node *; Node.y -> Node *", "A.x = B; A.y = B");
    for (const Algo order : test::everyOrder()) {
        const auto result = run(order, {chain("A")});
        Walk walk = result->prepare();
        Lines lines;
        StandingLog log(lines, walk);
        ResultSetup(result).observe(&log);
        while (!walk.hasEnded()) walk.advance();
        for (const std::string& line : lines) {
            const bool isOfInput = line.find("input") == 0 || line.find("done") == 0;
            const bool isOfA = line.find("enter A") == 0 || line.find("exit A") == 0;
            const std::string expected =
                isOfInput ? "0 nothing: " : (isOfA ? "0 input: >A" : "1 first: >A A.x>B");
            EXPECT_EQ(line.substr(line.find(", ") + 2), expected)
                << line << ' ' << test::nameOf(order);
        }
        EXPECT_EQ(lines.size(), 14U);
    }
}

TEST_F(WalkPositionTest, FiltersStandOnTheLinkThatTheyAreAskedAbout) {
    for (const Algo order : test::everyOrder()) {
        const auto result = run(order);
        Walk walk = result->prepare();
        ResultSetup(result).filter([&](const Link& link) {
            EXPECT_EQ(test::text(walk.path().back()), test::text(link));
            EXPECT_EQ(walk.depth() + 1, walk.path().size());
            EXPECT_EQ(walk.meeting() == Meeting::First || walk.meeting() == Meeting::Input,
                      link.shouldCascade());
            return ResultPolicy::WalkOnly;
        });
        walk.advance();
        EXPECT_TRUE(walk.hasEnded());
    }
}

TEST_F(WalkPositionTest, RulesAskedAboutAnInputStandOnItsLinkInEveryOrder) {
    for (const Algo order : test::everyOrder()) {
        std::function<void()> onAsked = [] {};
        const auto result = Spec::additiveTraversal()
                                ->traverse(
                                    m["Node.x"],
                                    [&](const Class&) {
                                        onAsked();
                                        return true;
                                    },
                                    ResultPolicy::Report)
                                ->run({m("A")}, order);
        ResultSetup(result).rememberPaths();
        Walk walk = result->prepare();
        Lines lines;
        onAsked = [&] {
            lines.push_back(standing(walk) + ", entered " + std::to_string(walk.enteredCount()));
            if (lines.size() == 1) throw test::PlannedFailure("asked");
        };
        EXPECT_THROW(walk.advance(), test::PlannedFailure);
        EXPECT_EQ(standing(walk), "0 input: >A");
        EXPECT_EQ(walk.waitingCount(), 1U);
        walk.advance();
        EXPECT_EQ(lines.front(), "0 input: >A, entered 0") << test::nameOf(order);
        EXPECT_EQ(lines.at(1), lines.front());
    }
}

TEST_F(WalkPositionTest, AfterAFailedStepTheWalkStandsOnTheLinkThatFailed) {
    for (const Algo order : test::everyOrder()) {
        const auto result = run(order);
        Walk walk = result->begin();
        const Link before = walk.getCurrent();
        ResultSetup(result).filter(
            [](const Link&) -> ResultPolicy { throw test::PlannedFailure("in the filter"); });
        EXPECT_THROW(walk.advance(), test::PlannedFailure);
        EXPECT_EQ(walk.getCurrent(), before) << test::nameOf(order);
        EXPECT_EQ(standing(walk), order == Algo::DepthFirstPostOrder ? "2 first: >A A.x>B B.x>C"
                                                                     : "1 first: >A A.x>B")
            << test::nameOf(order);
    }
}

TEST_F(WalkPositionTest, CycleHoldsTheLinksThatAnOpenLinkClosesDepthFirst) {
    for (const Algo order : {Algo::DepthFirstPreOrder, Algo::DepthFirstPostOrder}) {
        std::map<std::string, std::string> cycles;
        for (auto walk = run(order)->begin(); !!walk.getCurrent(); walk.advance()) {
            cycles[test::text(walk.getCurrent())] = text(walk.cycle());
        }
        EXPECT_EQ(cycles.at("C.x>A!"), "A.x>B B.x>C C.x>A!");
        EXPECT_EQ(cycles.at("A.y>A!"), "A.y>A!");
        EXPECT_EQ(cycles.at("A.x>C!"), "");
        EXPECT_EQ(cycles.at(">A"), "");
    }
    for (auto walk = run(Algo::BreadthFirst)->begin(); !!walk.getCurrent(); walk.advance()) {
        EXPECT_EQ(text(walk.cycle()), "");
    }
}

TEST_F(WalkPositionTest, CycleBeginsWhereThePathComesToTheTarget) {
    ModelBuilder lasso("Node; Node.x -> Node *", "A.x = B; B.x = C; C.x = D; D.x = B");
    auto walk = run(Algo::DepthFirstPreOrder, {lasso("A")})->begin();
    while (walk.meeting() != Meeting::Open) walk.advance();
    EXPECT_EQ(text(walk.cycle()), "B.x>C C.x>D D.x>B!");
}

TEST_F(WalkPositionTest, WithoutMemoryPathsBreadthFirstNameTheCallToMake) {
    auto walk = Spec::subtractiveTraversal()->breadthFirst({m("A")})->begin();
    const auto expectRefusal = [](const auto& ask) {
        try {
            ask();
            ADD_FAILURE() << "was answered";
        } catch (const std::logic_error& error) {
            EXPECT_NE(std::string(error.what()).find("rememberPaths()"), std::string::npos);
        }
    };
    expectRefusal([&] { (void)walk.path(); });
    expectRefusal([&] { (void)walk.pathTo(m("A")); });
    EXPECT_EQ(text(walk.pathTo(m("C"))), "") << "not entered yet";
    EXPECT_EQ(walk.depth(), 0U);
    EXPECT_EQ(walk.meeting(), Meeting::Input);
}

/// At the end of a walk that remembers no paths, `path` threw; before the first step of a range it
/// did not.
TEST_F(WalkPositionTest, WithoutMemoryThePathToNoLinkIsEmpty) {
    struct PathAtPrune : WalkListener {
        void onPrune(const WalkView& walk, const Link& link, Pruning, const meta::Property&,
                     Pruned) override {
            EXPECT_FALSE(link);
            EXPECT_EQ(text(walk.path()), "");
            ++count;
        }
        int count = 0;
    };
    for (const Algo order : test::everyOrder()) {
        const auto result = Spec::subtractiveTraversal()->run({m("A")}, order);
        PathAtPrune listener;
        ResultSetup(result).trace(&listener);
        auto walk = result->prepare();
        EXPECT_EQ(text(walk.path()), "") << test::nameOf(order);
        walk.pruneAllChildren();
        while (!walk.hasEnded()) walk.advance();
        EXPECT_EQ(text(walk.path()), "") << test::nameOf(order);
        walk.pruneAllChildren();
        EXPECT_EQ(listener.count, 2);
        LinkRange range = links(result);
        EXPECT_TRUE(range.path().empty());
        for (const Link& link : range) (void)link;
        EXPECT_TRUE(range.path().empty()) << test::nameOf(order);
    }
}

TEST_F(WalkPositionTest, WithoutMemoryPathsDepthFirstReachAsFarAsThePathOfTheWalk) {
    auto walk = Spec::subtractiveTraversal()->depthFirst({m("A")})->begin();
    while (test::text(walk.getCurrent()) != "C.x>A!") walk.advance();
    EXPECT_EQ(text(walk.path()), ">A A.x>B B.x>C C.x>A!");
    EXPECT_EQ(text(walk.pathTo(m("B"))), ">A A.x>B");
    while (test::text(walk.getCurrent()) != "A.y>A!") walk.advance();
    EXPECT_EQ(text(walk.pathTo(m("A"))), ">A");
    EXPECT_THROW((void)walk.pathTo(m("B")), std::logic_error);
}

TEST_F(WalkPositionTest, BreadthFirstPathIsAShortestOne) {
    ModelBuilder shortcut("Node; Node.x -> Node *", "A.x = B D; B.x = C; C.x = E; D.x = E");
    for (auto walk = run(Algo::BreadthFirst, {shortcut("A")})->begin(); !!walk.getCurrent();
         walk.advance()) {
        if (walk.getCurrent().getTarget() == shortcut("E") && walk.getCurrent().shouldCascade()) {
            EXPECT_EQ(text(walk.path()), ">A A.x>D D.x>E");
        }
    }
}

TEST_F(WalkPositionTest, CopyRemembersWhatTheOriginalRememberedAndGoesOnByItself) {
    for (const Algo order : test::everyOrder()) {
        const auto result = run(order);
        Lines expected;
        Walk walk = result->begin();
        for (Walk other = walk; !!other.getCurrent(); other.advance()) {
            expected.push_back(standing(other) + " B: " + text(other.pathTo(m("B"))));
        }
        Lines found;
        while (!!walk.getCurrent()) {
            Walk copy = walk;
            EXPECT_EQ(standing(copy), standing(walk));
            walk.advance();
            found.push_back(standing(copy) + " B: " + text(copy.pathTo(m("B"))));
            copy.advance();
            EXPECT_EQ(standing(copy), standing(walk)) << test::nameOf(order);
        }
        EXPECT_EQ(found, expected) << test::nameOf(order);
    }
}

TEST_F(WalkPositionTest, WalksUnderWayDoNotBeginToRemember) {
    const auto result = Spec::subtractiveTraversal()->breadthFirst({m("A")});
    auto walk = result->begin();
    ResultSetup(result).rememberPaths();
    EXPECT_THROW((void)walk.path(), std::logic_error);
    EXPECT_EQ(text(result->begin().path()), ">A");
}

TEST_F(WalkPositionTest, RangeStandsWhereItsWalkDoes) {
    for (const Algo order : test::everyOrder()) {
        LinkRange walk = links(run(order));
        EXPECT_EQ(walk.depth() + walk.enteredCount() + walk.waitingCount(), 0U);
        EXPECT_EQ(walk.meeting(), Meeting::None);
        EXPECT_TRUE(walk.path().empty() && walk.cycle().empty() && walk.pathTo(m("A")).empty());
        EXPECT_FALSE(walk.hasEntered(m("A")));
        EXPECT_TRUE(!walk.getCurrent());
        auto other = run(order)->begin();
        for (const Link& link : walk) {
            EXPECT_EQ(link, walk.getCurrent());
            EXPECT_EQ(std::to_string(walk.depth()) + ' ' + text(walk.meeting()) + ": " +
                          text(walk.path()),
                      standing(other));
            EXPECT_EQ(text(walk.cycle()), text(other.cycle()));
            EXPECT_EQ(text(walk.pathTo(m("B"))), text(other.pathTo(m("B"))));
            EXPECT_EQ(walk.hasEntered(m("B")), other.hasEntered(m("B")));
            EXPECT_EQ(walk.enteredCount(), other.enteredCount());
            EXPECT_EQ(walk.waitingCount(), other.waitingCount());
            other.advance();
        }
        EXPECT_TRUE(other.hasEnded());
    }
}

}  // namespace
}  // namespace nuv::zero::traversal::internal
