#include "traversal/WalkStatistics.h"

#include <gtest/gtest.h>

#include "tests/support/ModelBuilder.h"
#include "tests/support/WalkLog.h"

namespace nuv::zero::traversal {
namespace {

/// Counts what happens to each link of a small model: one is silent, one repeated, one filtered,
/// and one is not descended into.
class WalkStatisticsTest : public testing::TestWithParam<Algo> {
  protected:
    WalkStatisticsTest() {
        ResultSetup(result)
            .unique(UniquenessMode::UniqueElements)
            .filter([this](const Link& link) {
                return link.getTarget() == m("D") ? ResultPolicy::WalkOnly : ResultPolicy::Report;
            })
            .descend([this](const Link& link) { return !(link.getTarget() == m("F")); })
            .trace(&statistics);
    }
    void walk() { test::linesOf(result); }

    using LinkRow = WalkStatistics::LinkRow;
    using ElementRow = WalkStatistics::ElementRow;

    // By way of x, A leads to B and C, both to the leaf D; by way of y, D leads to E and F.
    test::ModelBuilder m{"Node; Leaf=a::Leaf < Node; Node.x -> Node *; Node.y -> Node *",
                         "D : Leaf; F : Leaf; A.x = B C; B.x = D; C.x = D; D.y = E F"};
    std::shared_ptr<TraversalResult> result =
        Spec::subtractiveTraversal()
            ->setResultPolicy(PropertyMatcher(m["Node.y"]), ResultPolicy::WalkOnly)
            ->includeInitialPseudoLink(ResultPolicy::WalkOnly)
            ->run({m("A")}, GetParam());
    WalkStatistics statistics;
    const Class node = m.type("Node");
    const Class leaf = m.type("Leaf");
    const Property x = m["Node.x"];
    const Property y = m["Node.y"];
};

TEST_P(WalkStatisticsTest, RowsTellClassPropertyFateAndDepthSortedByName) {
    walk();
    EXPECT_EQ(statistics.linkRows(), (std::vector<LinkRow>{
                                         {{}, {}, Fate::PseudoLinkLeftOut, 0, 1},
                                         {leaf, y, Fate::Silent, 3, 2},
                                         {leaf, y, Fate::NotDescended, 3, 1},
                                         {node, x, Fate::Reported, 1, 2},
                                         {node, x, Fate::Repeated, 2, 1},
                                         {node, x, Fate::Filtered, 2, 1},
                                     }));
    EXPECT_EQ(statistics.elementRows(), (std::vector<ElementRow>{
                                            {leaf, 2, 1},
                                            {node, 0, 1},
                                            {node, 1, 2},
                                            {node, 3, 1},
                                        }));
}

TEST_P(WalkStatisticsTest, SumsAreThoseOfTheRows) {
    walk();
    EXPECT_EQ(statistics.linkCount(Fate::Reported), 2U);
    EXPECT_EQ(statistics.linkCount(Fate::Silent), 2U);
    EXPECT_EQ(statistics.linkCount(Fate::Repeated), 1U);
    EXPECT_EQ(statistics.linkCount(Fate::Filtered), 1U);
    EXPECT_EQ(statistics.linkCount(Fate::PseudoLinkLeftOut), 1U);
    EXPECT_EQ(statistics.linkCount(Fate::NotDescended), 1U);
    EXPECT_EQ(statistics.elementCount(), 5U);
    EXPECT_EQ(statistics.elementCount(node), 4U);
    EXPECT_EQ(statistics.elementCount(leaf), 1U);
    EXPECT_EQ(statistics.elementCount(Class()), 0U);
    EXPECT_GT(statistics.mostBytesHeld(), 0U);
}

TEST_P(WalkStatisticsTest, TextShowsThreeTables) {
    walk();
    EXPECT_EQ(statistics.text(),
              "links from  property  reported  silent  repeated  left out  filtered  not descended "
              " depth\n"
              "input       [pseudo]         0       0         0         1         0              0 "
              "     0\n"
              "a::Leaf     y                0       2         0         0         0              1 "
              "     3\n"
              "m::Node     x                2       0         1         0         1              0 "
              "   1-2\n"
              "\n"
              "elements of  entered  depth\n"
              "a::Leaf            1      2\n"
              "m::Node            4    0-3\n"
              "\n"
              "depth  entered  reported  silent  repeated  left out  filtered  not descended\n"
              "    0        1         0       0         0         1         0              0\n"
              "    1        2         2       0         0         0         0              0\n"
              "    2        1         0       0         1         0         1              0\n"
              "    3        1         0       2         0         0         0              1\n");
}

TEST_P(WalkStatisticsTest, SeveralWalksAreSummedUpUntilItIsCleared) {
    walk();
    const auto once = statistics.linkRows();
    const WalkStatistics copy(statistics);
    walk();
    auto twice = once;
    for (LinkRow& row : twice) row.count *= 2;
    EXPECT_EQ(statistics.linkRows(), twice);
    EXPECT_EQ(copy.linkRows(), once);
    statistics.clear();
    EXPECT_TRUE(statistics.linkRows().empty());
    EXPECT_EQ(statistics.elementCount() + statistics.mostBytesHeld(), 0U);
    walk();
    EXPECT_EQ(statistics.linkRows(), once);
}

TEST_P(WalkStatisticsTest, ElementIsCountedWhenItsLinkIsTold) {
    const auto inOrder = Spec::subtractiveTraversal()->run({ModelElement(), m("A")}, GetParam());
    WalkStatistics counted;
    ResultSetup(inOrder).trace(&counted);
    auto broken = inOrder->begin();
    // Post-order, the first link is reported with A and B entered and not left.
    const std::size_t open = GetParam() == Algo::DepthFirstPostOrder ? 3 : 0;
    EXPECT_EQ(counted.elementCount() + open + 1, broken.enteredCount()) << "and the null element";
    counted.clear();
    ResultSetup(inOrder).filter([this](const Link& link) {
        if (link.getTarget() == m("B")) throw std::runtime_error("lost");
        return true;
    });
    auto failing = inOrder->prepare();
    for (bool goesOn = true; goesOn;) {
        try {
            failing.advance();
            goesOn = !failing.hasEnded();
        } catch (const std::runtime_error&) {
        }
    }
    EXPECT_EQ(counted.elementCount() + 2, failing.enteredCount()) << "the null element and B";
}

INSTANTIATE_TEST_SUITE_P(Orders, WalkStatisticsTest, testing::ValuesIn(test::everyOrder()),
                         [](const auto& each) { return test::nameOf(each.param); });

/// Classes and properties of the same names are counted apart, in the order in which they are met.
TEST(WalkStatisticsNamesTest, ClassesOfOneNameStayTwoRows) {
    const test::ModelBuilder m(
        "Node; One=m::Same < Node; Two=m::Same < Node; Node.x -> Node *; One.y -> Node; Two.y -> "
        "Node",
        "B : Two; C : One; D : Two; A.x = B C D; B.y = A; C.y = A; D.y = A");
    WalkStatistics statistics;
    const auto result = Spec::subtractiveTraversal()->depthFirst({m("A")});
    ResultSetup(result).trace(&statistics);
    test::linesOf(result);
    const auto elements = statistics.elementRows();
    ASSERT_EQ(elements.size(), 3U);
    EXPECT_EQ(elements[1].type, m.type("Two"));
    EXPECT_EQ(elements[1].count, 2U);
    EXPECT_EQ(elements[2].type, m.type("One"));
    EXPECT_EQ(statistics.linkRows().back(),
              (WalkStatistics::LinkRow{m.type("One"), m["One.y"], Fate::Reported, 2, 1}));
}

TEST(WalkStatisticsNamesTest, NullTargetsHaveNoClass) {
    WalkStatistics statistics;
    const auto result = Spec::subtractiveTraversal()->depthFirst({ModelElement()});
    ResultSetup(result).trace(&statistics);
    test::linesOf(result);
    EXPECT_EQ(statistics.elementCount(), 0U) << "a null input has no link that could be told";
}

}  // namespace
}  // namespace nuv::zero::traversal
