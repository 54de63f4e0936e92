#include "traversal/internal/TraversalProcessor.h"

#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/ModelBuilder.h"
#include "tests/support/WalkLog.h"

namespace nuv::zero::traversal::internal {
namespace {

using test::EventLog;
using test::Lines;
using test::linesOf;
using test::ModelBuilder;
using test::text;
using test::transcript;

/// Checks while it listens: inputs outermost, one bracket per element, properties inside theirs; in
/// nested walks brackets close in the reverse order of their opening.
class BracketChecker : public TraversalProcessor {
  public:
    explicit BracketChecker(bool nested) : nested_(nested) {}

    void onEnterInputElement(const ModelElement& element) override {
        EXPECT_TRUE(open_.empty()) << text(element) << " begins inside " << open_.back();
        open_.push_back("input " + text(element));
        lastInput_ = open_.back();
    }
    void onEnterElement(const ModelElement& element) override {
        EXPECT_TRUE(entered_.insert(text(element)).second) << text(element) << " entered twice";
        EXPECT_FALSE(open_.empty()) << "an element outside all inputs";
        if (!nested_) {
            EXPECT_EQ(open_.size(), 1U) << text(element) << " nests in " << open_.back();
        }
        open_.push_back(text(element));
    }
    void onEnterProperty(const ModelElement& element, const meta::Property& property) override {
        EXPECT_EQ(open_.back(), text(element));
        open_.push_back(name(element, property));
    }
    void onExitProperty(const ModelElement& element, const meta::Property& property) override {
        close(name(element, property));
    }
    void onExitElement(const ModelElement& element) override { close(text(element)); }
    void onExitInputElement(const ModelElement& element) override {
        if (open_.empty()) {
            EXPECT_EQ("input " + text(element), lastInput_) << "only the last exit is repeated";
            ++repeatedExits_;
            return;
        }
        close("input " + text(element));
    }

    bool allClosed() const { return open_.empty(); }
    std::size_t entered() const { return entered_.size(); }
    int repeatedExits() const { return repeatedExits_; }

  private:
    static std::string name(const ModelElement& element, const meta::Property& property) {
        return text(element) + "." + access::toUtf8(access::nameOf(property));
    }
    void close(const std::string& bracket) {
        ASSERT_FALSE(open_.empty()) << bracket;
        EXPECT_EQ(open_.back(), bracket);
        open_.pop_back();
    }

    bool nested_;
    std::vector<std::string> open_;
    std::set<std::string> entered_;
    std::string lastInput_;
    int repeatedExits_ = 0;
};

class TraversalProcessorTest : public testing::TestWithParam<Algo> {
  protected:
    std::shared_ptr<TraversalResult> run(ResultPolicy pseudo = ResultPolicy::WalkOnly) const {
        return Spec::subtractiveTraversal()->includeInitialPseudoLink(pseudo)->run(
            {m("A"), m("H"), m("C")}, GetParam());
    }

    ModelBuilder m{"Node; Node.x => Node *; Node.y -> Node *; Node.boss -> Node",
                   "A.x = B C; A.y = D B; A.boss = A; B.x = C D; C.y = A E; E.x = F; H.x = I A"};
};

TEST_P(TraversalProcessorTest, BracketsAreBalancedAndEveryElementHasOne) {
    BracketChecker checker(GetParam() != Algo::BreadthFirst);
    const auto result = run();
    ResultSetup(result).observe(&checker);
    auto walk = result->begin();
    test::rest(walk);
    EXPECT_TRUE(checker.allClosed());
    EXPECT_EQ(checker.entered(), 8U);
    EXPECT_EQ(checker.repeatedExits(), 0);
    walk.advance();
    walk.advance();
    EXPECT_EQ(checker.repeatedExits(), 2);
}

TEST_P(TraversalProcessorTest, EachWalkSendsAllItsEvents) {
    const auto result = run();
    Lines lines;
    EventLog log(lines);
    ResultSetup(result).observe(&log);
    linesOf(result);
    const Lines once = lines;
    lines.clear();
    linesOf(result);
    EXPECT_EQ(lines, once);
}

TEST_P(TraversalProcessorTest, ObserverChangesNothingOfTheLinks) {
    const Lines unobserved = linesOf(run(ResultPolicy::Report));
    const auto result = run(ResultPolicy::Report);
    BracketChecker checker(GetParam() != Algo::BreadthFirst);
    ResultSetup(result).observe(&checker);
    EXPECT_EQ(linesOf(result), unobserved);
}

TEST_P(TraversalProcessorTest, BaseClassIgnoresEveryEvent) {
    TraversalProcessor silent;
    const TraversalProcessor copy(silent);
    silent = copy;
    const auto result = run();
    ResultSetup(result).observe(&silent);
    EXPECT_EQ(linesOf(result), linesOf(run()));
}

TEST_P(TraversalProcessorTest, ObserverOfInputExitsHearsOnePerInputAndOneMorePerStepPastTheEnd) {
    class Counter : public TraversalProcessor {
      public:
        void onExitInputElement(const ModelElement& element) override {
            exits.push_back(text(element));
        }
        Lines exits;
    } counter;
    const auto result = run();
    ResultSetup(result).observe(&counter);
    auto walk = result->begin();
    test::rest(walk);
    EXPECT_EQ(counter.exits, (Lines{"A", "H", "C"}));
    walk.advance();
    EXPECT_EQ(counter.exits, (Lines{"A", "H", "C", "C"}));
}

TEST_P(TraversalProcessorTest, AttachedInMidWalkElementsEnteredBeforeStaySilentInputsDoNot) {
    ModelBuilder small("Node; Node.x -> Node *", "A.x = B C; H.x = I");
    const auto result = Spec::subtractiveTraversal()
                            ->includeInitialPseudoLink(ResultPolicy::WalkOnly)
                            ->run({small("A"), small("H")}, GetParam());
    auto walk = result->begin();
    ASSERT_EQ(text(walk.getCurrent()), "A.x>B");
    Lines lines;
    EventLog log(lines);
    ResultSetup(result).observe(&log);
    test::rest(walk);
    const Lines ofC{"enter C", "enter C.x", "exit C.x", "exit C", "done A"};
    Lines ofH{"input H",  "enter H", "enter H.x", "enter I", "enter I.x",
              "exit I.x", "exit I",  "exit H.x",  "exit H",  "done H"};
    if (GetParam() == Algo::BreadthFirst) {
        ofH = {"input H", "enter H",   "enter H.x", "exit H.x", "exit H",
               "enter I", "enter I.x", "exit I.x",  "exit I",   "done H"};
    }
    Lines expected = ofC;
    expected.insert(expected.end(), ofH.begin(), ofH.end());
    EXPECT_EQ(lines, expected);
}

TEST_P(TraversalProcessorTest, DetachedInMidWalkElementsEnteredBeforeKeepTellingIt) {
    ModelBuilder small("Node; Node.x -> Node *", "A.x = B C; H.x = I");
    const auto result = Spec::subtractiveTraversal()
                            ->includeInitialPseudoLink(ResultPolicy::WalkOnly)
                            ->run({small("A"), small("H")}, GetParam());
    Lines lines;
    EventLog log(lines);
    ResultSetup(result).observe(&log);
    auto walk = result->begin();
    ASSERT_EQ(text(walk.getCurrent()), "A.x>B");
    ResultSetup(result).observe(nullptr);
    lines.clear();
    test::rest(walk);
    switch (GetParam()) {
        case Algo::DepthFirstPreOrder:
            EXPECT_EQ(lines,
                      (Lines{"enter B", "enter B.x", "exit B.x", "exit B", "exit A.x", "exit A"}));
            break;
        case Algo::DepthFirstPostOrder:
            EXPECT_EQ(lines, (Lines{"exit A.x", "exit A"}));
            break;
        case Algo::BreadthFirst:
            EXPECT_EQ(lines,
                      (Lines{"exit A.x", "exit A", "enter B", "enter B.x", "exit B.x", "exit B"}));
            break;
    }
}

TEST_P(TraversalProcessorTest, AnotherObserverHearsOfElementsEnteredFromThenOn) {
    ModelBuilder small("Node; Node.x -> Node *", "A.x = B C");
    const auto result = Spec::subtractiveTraversal()
                            ->includeInitialPseudoLink(ResultPolicy::WalkOnly)
                            ->run({small("A")}, GetParam());
    Lines first;
    Lines second;
    EventLog firstLog(first);
    EventLog secondLog(second);
    ResultSetup(result).observe(&firstLog);
    auto walk = result->begin();
    const auto copy = walk;
    ResultSetup(result).observe(&secondLog);
    test::rest(walk);
    EXPECT_EQ(second, (Lines{"enter C", "enter C.x", "exit C.x", "exit C", "done A"}));
    second.clear();
    auto another = copy;
    test::rest(another);
    EXPECT_EQ(second, (Lines{"enter C", "enter C.x", "exit C.x", "exit C", "done A"}));
}

/// Says of each event which observer heard it.
class NamedLog : public EventLog {
  public:
    NamedLog(std::string name, Lines& lines) : EventLog(lines), name_(std::move(name)) {}

  protected:
    void note(std::string line) override { EventLog::note(name_ + ' ' + line); }

  private:
    std::string name_;
};

// Whenever the observer is exchanged and whenever the walk is copied afterwards.
TEST_P(TraversalProcessorTest, CopyTellsTheObserversThatItsOriginalWouldTell) {
    ModelBuilder small("Node; Node.x -> Node *", "A.x = B C D; B.x = E; C.x = F A; D.x = G");
    constexpr int steps = 8;
    const auto restOf = [&](int exchangedAt, int copiedAt, bool isCopy) {
        const auto result = Spec::subtractiveTraversal()->run({small("A")}, GetParam());
        Lines lines;
        NamedLog first("first", lines);
        NamedLog second("second", lines);
        ResultSetup(result).observe(&first);
        auto walk = result->begin();
        for (int step = 0; step < copiedAt; ++step) {
            if (step == exchangedAt) ResultSetup(result).observe(&second);
            walk.advance();
        }
        lines.clear();
        if (isCopy) {
            auto copy = walk;
            test::rest(copy);
        } else {
            test::rest(walk);
        }
        return lines;
    };
    for (int exchangedAt = 0; exchangedAt < steps; ++exchangedAt) {
        for (int copiedAt = exchangedAt + 1; copiedAt < steps; ++copiedAt) {
            EXPECT_EQ(restOf(exchangedAt, copiedAt, true), restOf(exchangedAt, copiedAt, false))
                << exchangedAt << ' ' << copiedAt;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Orders, TraversalProcessorTest, testing::ValuesIn(test::everyOrder()),
                         [](const auto& each) { return test::nameOf(each.param); });

}  // namespace
}  // namespace nuv::zero::traversal::internal
