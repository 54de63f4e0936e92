#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "tests/support/ModelBuilder.h"
#include "tests/support/WalkLog.h"

/// How a walk goes through its inputs, and which events it sends for them.
namespace nuv::zero::traversal::internal {
namespace {

using test::Lines;
using test::linesOf;
using test::ModelBuilder;
using test::transcript;

class WalkInputsTest : public testing::TestWithParam<Algo> {
  protected:
    std::shared_ptr<TraversalResult> run(const std::vector<ModelElement>& inputs,
                                         ResultPolicy pseudo = ResultPolicy::WalkOnly) const {
        return Spec::additiveTraversal()
            ->traverse(m["Node.x"], ResultPolicy::Report)
            ->includeInitialPseudoLink(pseudo)
            ->run(inputs, GetParam());
    }

    ModelBuilder m{"Node; Bare; Node.x -> Node *", "A; B; C; Z : Bare"};
};

TEST_P(WalkInputsTest, NoInputsEndAtOnceWithoutAnyEvent) {
    EXPECT_EQ(transcript(run({}, ResultPolicy::Report)), Lines{});
    EXPECT_TRUE(run({})->begin() == TraversalResult::IterationContext());
}

TEST_P(WalkInputsTest, InputWithoutPropertiesSendsItsBracketsAndReportsNothing) {
    EXPECT_EQ(transcript(run({m("Z")})), (Lines{"input Z", "enter Z", "exit Z", "done Z"}));
}

TEST_P(WalkInputsTest, EventsOfAnInputWithoutLinksFireWithinBegin) {
    const auto result = run({m("Z")});
    Lines lines;
    test::EventLog log(lines);
    ResultSetup(result).observe(&log);
    const auto walk = result->begin();
    EXPECT_TRUE(!walk.getCurrent());
    EXPECT_EQ(lines, (Lines{"input Z", "enter Z", "exit Z", "done Z"}));
}

TEST_P(WalkInputsTest, InputsAreWalkedOneAfterAnother) {
    m.extend("B.x = C");
    const Lines postOrder{"input A",  "enter A",   "enter A.x", "exit A.x", "exit A",
                          ">A",       "done A",    "input B",   "enter B",  "enter B.x",
                          "enter C",  "enter C.x", "exit C.x",  "exit C",   "B.x>C",
                          "exit B.x", "exit B",    ">B",        "done B"};
    const Lines preOrder{"input A",   ">A",       "enter A", "enter A.x", "exit A.x",
                         "exit A",    "done A",   "input B", ">B",        "enter B",
                         "enter B.x", "B.x>C",    "enter C", "enter C.x", "exit C.x",
                         "exit C",    "exit B.x", "exit B",  "done B"};
    const Lines breadthFirst{"input A",   ">A",       "enter A",  "enter A.x", "exit A.x",
                             "exit A",    "done A",   "input B",  ">B",        "enter B",
                             "enter B.x", "B.x>C",    "exit B.x", "exit B",    "enter C",
                             "enter C.x", "exit C.x", "exit C",   "done B"};
    const Lines lines = transcript(run({m("A"), m("B")}, ResultPolicy::Report));
    switch (GetParam()) {
        case Algo::DepthFirstPreOrder:
            EXPECT_EQ(lines, preOrder);
            break;
        case Algo::DepthFirstPostOrder:
            EXPECT_EQ(lines, postOrder);
            break;
        case Algo::BreadthFirst:
            EXPECT_EQ(lines, breadthFirst);
            break;
    }
}

TEST_P(WalkInputsTest, InputListedTwiceReportsNothingNewButSendsItsInputEvents) {
    EXPECT_EQ(linesOf(run({m("A"), m("A")}, ResultPolicy::Report)), Lines{">A"});
    EXPECT_EQ(transcript(run({m("A"), m("A")})),
              (Lines{"input A", "enter A", "enter A.x", "exit A.x", "exit A", "done A", "input A",
                     "done A"}));
}

TEST_P(WalkInputsTest, InputReachedFromAnEarlierOneReportsNoPseudoLink) {
    m.extend("A.x = B; B.x = C");
    const Lines onlyFromA = linesOf(run({m("A")}, ResultPolicy::Report));
    EXPECT_EQ(linesOf(run({m("A"), m("B"), m("C")}, ResultPolicy::Report)), onlyFromA);
}

TEST_P(WalkInputsTest, LinkToAnEarlierInputDoesNotCascade) {
    m.extend("B.x = A");
    EXPECT_EQ(linesOf(run({m("A"), m("B")})), Lines{"B.x>A!"});
}

TEST_P(WalkInputsTest, NullInputSendsItsEventsButNoInputExitAndReportsNothing) {
    EXPECT_EQ(transcript(run({ModelElement()}, ResultPolicy::Report)),
              (Lines{"input null", "enter null", "exit null"}));
    EXPECT_EQ(transcript(run({ModelElement(), m("Z"), ModelElement()}, ResultPolicy::WalkOnly)),
              (Lines{"input null", "enter null", "exit null", "input Z", "enter Z", "exit Z",
                     "done Z", "input null"}));
}

TEST_P(WalkInputsTest, EachAdvanceAfterTheEndSendsTheLastInputsExitAgain) {
    const auto result = run({m("A"), m("Z")});
    Lines lines;
    test::EventLog log(lines);
    ResultSetup(result).observe(&log);
    auto walk = result->begin();
    lines.clear();
    walk.advance();
    walk.advance();
    EXPECT_EQ(lines, (Lines{"done Z", "done Z"}));
    EXPECT_TRUE(!walk.getCurrent());
    EXPECT_TRUE(walk == TraversalResult::IterationContext());
    ResultSetup(result).observe(nullptr);
    walk.advance();
    EXPECT_EQ(lines.size(), 2U);
}

INSTANTIATE_TEST_SUITE_P(Orders, WalkInputsTest, testing::ValuesIn(test::everyOrder()),
                         [](const auto& each) { return test::nameOf(each.param); });

}  // namespace
}  // namespace nuv::zero::traversal::internal
