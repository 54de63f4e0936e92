#include "traversal/WalkPicture.h"

#include <gtest/gtest.h>

#include "tests/support/ModelBuilder.h"
#include "tests/support/WalkLog.h"

namespace nuv::zero::traversal {
namespace {

using test::Lines;

/// The lines of a picture, without what is the same in all of them.
Lines linesOf(const WalkPicture& picture) {
    const std::string text = picture.text();
    const std::string head = "digraph walk {\n  node [shape=box];\n";
    const std::size_t legend = text.find("  subgraph cluster_legend {\n");
    EXPECT_EQ(text.substr(0, head.size()), head);
    EXPECT_NE(legend, std::string::npos);
    EXPECT_EQ(text.substr(text.size() - 6), "  }\n}\n");
    Lines lines;
    for (std::size_t from = head.size(); from < legend;) {
        const std::size_t end = text.find('\n', from);
        lines.push_back(text.substr(from + 2, end - from - 2));
        from = end + 1;
    }
    return lines;
}

std::shared_ptr<TraversalResult> traced(std::shared_ptr<TraversalResult> result,
                                        WalkPicture& picture) {
    ResultSetup(result).trace(&picture);
    return result;
}

TEST(WalkPictureTest, DepthFirstShowsFirstDoneAndClosingLinks) {
    const test::ModelBuilder m("Node; Node.x -> Node *", "A.x = B C; B.x = A C");
    WalkPicture picture;
    test::linesOf(traced(Spec::subtractiveTraversal()->depthFirst({m("A")}), picture));
    EXPECT_EQ(linesOf(picture), (Lines{
                                    "n0 [label=\"Node'A'\", style=bold];",
                                    "n1 [label=\"Node'B'\"];",
                                    "n2 [label=\"Node'C'\"];",
                                    "n0 -> n1 [label=\"x\"];",
                                    "n1 -> n0 [label=\"x\", style=dashed, color=red];",
                                    "n1 -> n2 [label=\"x\"];",
                                    "n0 -> n2 [label=\"x\", style=dashed];",
                                }));
}

TEST(WalkPictureTest, PostOrderShowsTheSameInTheOrderOfItsLinks) {
    const test::ModelBuilder m("Node; Node.x -> Node *", "A.x = B; B.x = A");
    WalkPicture picture;
    test::linesOf(traced(Spec::subtractiveTraversal()->depthFirstPostOrder({m("A")}), picture));
    EXPECT_EQ(linesOf(picture), (Lines{
                                    "n0 [label=\"Node'B'\"];",
                                    "n1 [label=\"Node'A'\", style=bold];",
                                    "n0 -> n1 [label=\"x\", style=dashed, color=red];",
                                    "n1 -> n0 [label=\"x\"];",
                                }));
}

TEST(WalkPictureTest, BreadthFirstKnowsOfNoCycles) {
    const test::ModelBuilder m("Node; Node.x -> Node *", "A.x = B; B.x = A B");
    WalkPicture picture;
    test::linesOf(traced(Spec::subtractiveTraversal()->breadthFirst({m("A")}), picture));
    EXPECT_EQ(linesOf(picture), (Lines{
                                    "n0 [label=\"Node'A'\", style=bold];",
                                    "n1 [label=\"Node'B'\"];",
                                    "n0 -> n1 [label=\"x\"];",
                                    "n1 -> n0 [label=\"x\", style=dashed];",
                                    "n1 -> n1 [label=\"x\", style=dashed];",
                                }));
}

TEST(WalkPictureTest, WhatIsNotReportedIsGrey) {
    const test::ModelBuilder m("Node; Node.x -> Node *; Node.y -> Node *",
                               "A.x = B C; A.y = B; C.y = A");
    WalkPicture picture;
    const auto result = traced(Spec::additiveTraversal()
                                   ->includeInitialPseudoLink(ResultPolicy::WalkOnly)
                                   ->traverse(PropertyMatcher(m["Node.x"]), ResultPolicy::WalkOnly)
                                   ->traverse(PropertyMatcher(m["Node.y"]), ResultPolicy::Report)
                                   ->depthFirst({m("A")}),
                               picture);
    ResultSetup(result).filter([&](const Link& link) {
        return link.getTarget() == m("A") ? ResultPolicy::WalkOnly : ResultPolicy::Report;
    });
    test::linesOf(result);
    EXPECT_EQ(linesOf(picture),
              (Lines{
                  "n0 [label=\"Node'A'\", style=bold];",
                  "n1 [label=\"Node'B'\"];",
                  "n2 [label=\"Node'C'\"];",
                  "n0 -> n1 [label=\"x\", color=gray60, fontcolor=gray60];",
                  "n0 -> n2 [label=\"x\", color=gray60, fontcolor=gray60];",
                  "n2 -> n0 [label=\"y\", style=dashed, color=red, fontcolor=gray60];",
                  "n0 -> n1 [label=\"y\", style=dashed];",
              }));
}

class WalkPictureBoundaryTest : public testing::TestWithParam<Algo> {};

TEST_P(WalkPictureBoundaryTest, BoundariesAreMarkedOnceAndTheirTargetsToo) {
    const test::ModelBuilder m("Node; Node.x -> Node *; Node.y -> Node *", "A.x = B C; C.y = B");
    WalkPicture picture;
    const auto result = traced(Spec::subtractiveTraversal()->run({m("A")}, GetParam()), picture);
    ResultSetup(result).descend([&](const Link& link) { return !(link.getTarget() == m("B")); });
    test::linesOf(result);
    const Lines lines = linesOf(picture);
    const auto has = [&](const std::string& line) {
        return std::count(lines.begin(), lines.end(), line) == 1;
    };
    EXPECT_EQ(lines.size(), 6U);
    EXPECT_TRUE(has("n0 [label=\"Node'A'\", style=bold];"));
    EXPECT_TRUE(has("n1 [label=\"Node'B'\", style=dotted];"));
    EXPECT_TRUE(has("n0 -> n1 [label=\"x\", style=dotted, arrowhead=tee];"));
    EXPECT_TRUE(has("n2 -> n1 [label=\"y\", style=dotted, arrowhead=tee];"));
}

INSTANTIATE_TEST_SUITE_P(Orders, WalkPictureBoundaryTest, testing::ValuesIn(test::everyOrder()),
                         [](const auto& each) { return test::nameOf(each.param); });

TEST(WalkPictureTest, CutsAreMarked) {
    const test::ModelBuilder m("Node; Node.x -> Node *; Node.y -> Node *",
                               "A.x = B C D; B.x = E; C.y = E");
    WalkPicture picture;
    auto walk = links(traced(Spec::subtractiveTraversal()->depthFirst({m("A")}), picture));
    for (const Link& link : walk) {
        if (link.getTarget() == m("B")) walk.pruneAllChildren();
        if (link.getTarget() == m("C")) {
            walk.pruneChildren(m["Node.y"]);
            walk.pruneSiblings();
            walk.pruneSiblings();
        }
    }
    EXPECT_EQ(linesOf(picture),
              (Lines{
                  "n0 [label=\"Node'A'\", style=bold];",
                  "n1 [label=\"Node'B'\"];",
                  "n2 [label=\"Node'C'\"];",
                  "n0 -> n1 [label=\"x\"];",
                  "n0 -> n2 [label=\"x\"];",
                  "cut0 [shape=plaintext, label=\"cut\"]; n1 -> cut0 [label=\"all children\", "
                  "style=dotted, arrowhead=none];",
                  "cut1 [shape=plaintext, label=\"cut\"]; n2 -> cut1 [label=\"y\", style=dotted, "
                  "arrowhead=none];",
                  "cut2 [shape=plaintext, label=\"cut\"]; n0 -> cut2 [label=\"rest of x\", "
                  "style=dotted, arrowhead=none];",
              }));
}

TEST(WalkPictureTest, LimitIsToldInThePicture) {
    const test::ModelBuilder m("Node; Node.x -> Node *", "A.x = B C D; B.x = A; C.x = E");
    WalkPicture picture(2);
    auto walk = links(traced(Spec::subtractiveTraversal()->depthFirst({m("A")}), picture));
    for (const Link& link : walk) {
        if (link.getTarget() == m("C")) walk.pruneAllChildren();
    }
    EXPECT_EQ(linesOf(picture),
              (Lines{
                  "n0 [label=\"Node'A'\", style=bold];",
                  "n1 [label=\"Node'B'\"];",
                  "n0 -> n1 [label=\"x\"];",
                  "n1 -> n0 [label=\"x\", style=dashed, color=red];",
                  "limit [shape=note, label=\"Only the first 2 of 4 elements are drawn. Left out: "
                  "links: 2, prunes: 1\"];",
              }));
}

TEST(WalkPictureTest, ElementsThatWereNotEnteredCountAgainstTheLimitAndAreInTheLegend) {
    const test::ModelBuilder m("Node; Node.x -> Node *", "A.x = B C; C.x = D");
    WalkPicture picture(3);
    const auto result = traced(Spec::subtractiveTraversal()->depthFirst({m("A")}), picture);
    ResultSetup(result).descend([&](const Link& link) { return !(link.getTarget() == m("B")); });
    test::linesOf(result);
    EXPECT_EQ(linesOf(picture), (Lines{
                                    "n0 [label=\"Node'A'\", style=bold];",
                                    "n1 [label=\"Node'B'\", style=dotted];",
                                    "n2 [label=\"Node'C'\"];",
                                    "n0 -> n1 [label=\"x\", style=dotted, arrowhead=tee];",
                                    "n0 -> n2 [label=\"x\"];",
                                    "limit [shape=note, label=\"Only the first 3 of 4 elements "
                                    "are drawn. Left out: links: 1\"];",
                                }));
    EXPECT_NE(picture.text().find("[shape=box, style=dotted, label=\"not entered\"];"),
              std::string::npos);
}

TEST(WalkPictureTest, NamesAreEscaped) {
    test::ModelBuilder m("Node; Node.x -> Node *", "A.x = B C");
    const Property name = access::propertyNamed(m.type("Node"), u"name");
    m.model.set(m("B"), name, std::u16string(u"\"q\\N\"\n\té]; x -> y [\u0001"));
    m.model.set(m("C"), name, std::u16string(u"&lt;"));
    WalkPicture picture;
    test::linesOf(traced(Spec::subtractiveTraversal()->depthFirst({m("A")}), picture));
    EXPECT_EQ(linesOf(picture), (Lines{
                                    "n0 [label=\"Node'A'\", style=bold];",
                                    "n1 [label=\"Node'\\\"q\\\\N\\\"\\n \xC3\xA9]; x -> y [ '\"];",
                                    "n2 [label=\"Node'&amp;lt;'\"];",
                                    "n0 -> n1 [label=\"x\"];",
                                    "n0 -> n2 [label=\"x\"];",
                                }));
}

TEST(WalkPictureTest, DrawsTheFirstWalkUntilItIsCleared) {
    const test::ModelBuilder m("Node; Node.x -> Node *", "A.x = B");
    WalkPicture picture;
    const auto result = traced(Spec::subtractiveTraversal()->depthFirst({m("A")}), picture);
    auto walk = result->begin();
    auto copy = walk;
    test::rest(copy);
    EXPECT_EQ(linesOf(picture).size(), 1U) << "the copy is another walk";
    test::rest(walk);
    EXPECT_EQ(linesOf(picture).size(), 3U);
    const WalkPicture kept(picture);
    picture.clear();
    EXPECT_TRUE(linesOf(picture).empty());
    test::linesOf(result);
    EXPECT_EQ(picture.text(), kept.text());
}

/// Walks are numbered for each result: a picture that heard of two results mixed the first walks of
/// both, and so it was with a copy of a result.
TEST(WalkPictureTest, DrawsOneWalkOfOneResult) {
    const test::ModelBuilder m("Node; Node.x -> Node *", "A.x = B; C.x = D");
    WalkPicture picture;
    const auto result = traced(Spec::subtractiveTraversal()->depthFirst({m("A")}), picture);
    const auto copy = std::make_shared<TraversalResult>(*result);
    test::linesOf(result);
    const std::string drawn = picture.text();
    test::linesOf(copy);
    EXPECT_EQ(picture.text(), drawn);
    test::linesOf(traced(Spec::subtractiveTraversal()->depthFirst({m("C")}), picture));
    EXPECT_EQ(picture.text(), drawn);
}

/// A new result may stand where the one that was drawn stood in memory.
TEST(WalkPictureTest, DrawsNoResultThatTakesThePlaceOfAnEarlierOne) {
    const test::ModelBuilder m("Node; Node.x -> Node *", "A.x = B; C.x = D");
    WalkPicture picture;
    test::linesOf(traced(Spec::subtractiveTraversal()->depthFirst({m("A")}), picture));
    const std::string drawn = picture.text();
    for (int again = 0; again < 20; ++again) {
        test::linesOf(traced(Spec::subtractiveTraversal()->depthFirst({m("C")}), picture));
    }
    EXPECT_EQ(picture.text(), drawn);
}

TEST(WalkPictureTest, SeveralInputsAreSeveralBoldNodes) {
    const test::ModelBuilder m("Node; Node.x -> Node *", "A.x = B; C.x = B; D.x = A");
    WalkPicture picture;
    test::linesOf(
        traced(Spec::subtractiveTraversal()->depthFirst({m("A"), m("B"), m("C")}), picture));
    EXPECT_EQ(linesOf(picture), (Lines{
                                    "n0 [label=\"Node'A'\", style=bold];",
                                    "n1 [label=\"Node'B'\"];",
                                    "n2 [label=\"Node'C'\", style=bold];",
                                    "n0 -> n1 [label=\"x\"];",
                                    "n2 -> n1 [label=\"x\", style=dashed];",
                                }));
}

}  // namespace
}  // namespace nuv::zero::traversal
