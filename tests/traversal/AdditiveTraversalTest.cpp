#include "traversal/AdditiveTraversalImpl.h"

#include <gtest/gtest.h>

#include "tests/support/BuilderRules.h"
#include "tests/support/Failures.h"
#include "tests/support/ModelBuilder.h"
#include "tests/support/WalkLog.h"

namespace nuv::zero::traversal {
namespace {

using test::Lines;
using test::linesOf;
using test::rulesOf;
using Answer = std::pair<bool, ResultPolicy>;

class AdditiveTraversalTest : public testing::Test {
  protected:
    Lines fromA() const { return linesOf(builder->depthFirst({m("A")})); }
    const CompositeMatcher& rules(const char* property) const {
        return rulesOf(*builder).at(m[property]);
    }

    test::ModelBuilder m{
        "Node; Leaf < Node; Node.x -> Node *; Node.y -> Node; Node.z => Node; Leaf.own -> Node",
        "L : Leaf; A.x = B L; A.y = C; A.z = D; B.y = E; L.own = A; L.y = B"};
    Property x = m["Node.x"];
    Property y = m["Node.y"];
    Property z = m["Node.z"];
    Class node = m.type("Node");
    Class leaf = m.type("Leaf");
    std::function<bool(const Class&)> isLeaf = [this](const Class& type) { return type == leaf; };
    std::shared_ptr<AdditiveTraversalImpl> builder =
        Spec::additiveTraversal()->includeInitialPseudoLink(ResultPolicy::WalkOnly);
};

TEST_F(AdditiveTraversalTest, FollowsNothingThatWasNotNamed) {
    EXPECT_EQ(fromA(), Lines{});
}

TEST_F(AdditiveTraversalTest, EveryOverloadReturnsTheBuilderItself) {
    EXPECT_EQ(builder->traverse(x, ResultPolicy::Report), builder);
    EXPECT_EQ(builder->traverse(x, isLeaf, ResultPolicy::Report), builder);
    EXPECT_EQ(builder->traverse({x, y}, ResultPolicy::Report), builder);
    EXPECT_EQ(builder->traverse({x}, ResultPolicy::Report), builder);
    EXPECT_EQ(builder->traverse(std::vector<PropertyMatcher>{}, ResultPolicy::Report), builder);
}

TEST_F(AdditiveTraversalTest, PropertiesAreFollowedInTheOrderOfTheirFirstNaming) {
    builder->traverse(z, ResultPolicy::Report)
        ->traverse(y, ResultPolicy::Report)
        ->traverse(x, ResultPolicy::Report)
        ->traverse(z, ResultPolicy::Report)
        ->traverse({x, z}, ResultPolicy::Report);
    EXPECT_EQ(fromA(), (Lines{"A.z>D", "A.y>C", "A.x>B", "B.y>E", "A.x>L", "L.y>B!"}));
}

// A named property without rules made every walk throw std::out_of_range.
TEST_F(AdditiveTraversalTest, PropertyWhoseRulesWereTakenAwayIsNotFollowed) {
    builder->traverse(x, ResultPolicy::Report)->traverse(y, ResultPolicy::Report);
    test::changeableRulesOf(*builder).erase(x);
    EXPECT_EQ(fromA(), Lines{"A.y>C"});
    builder->traverse(x, ResultPolicy::Report);
    EXPECT_EQ(fromA().front(), "A.x>B");
}

TEST_F(AdditiveTraversalTest, NamedUnderTwoOwnersAPropertyHasOneEntryAndIsFollowedOnce) {
    builder->traverse({x, isLeaf, leaf}, ResultPolicy::Extended)->traverse(x, ResultPolicy::Report);
    EXPECT_EQ(rulesOf(*builder).size(), 1U);
    EXPECT_EQ(rules("Node.x").anyMatches(leaf), Answer(true, ResultPolicy::Extended));
    EXPECT_EQ(rules("Node.x").anyMatches(node), Answer(true, ResultPolicy::Report));
    EXPECT_EQ(fromA(), (Lines{"A.x>B", "A.x>L"}));
}

TEST_F(AdditiveTraversalTest, EntriesSelectInsteadOfPruning) {
    builder->traverse(x, isLeaf, ResultPolicy::Report);
    EXPECT_FALSE(rules("Node.x").isPruning());
    EXPECT_EQ(fromA(), Lines{});
    EXPECT_EQ(linesOf(builder->depthFirst({m("L")})), Lines{});
}

TEST_F(AdditiveTraversalTest, ClassMatcherTakesThePlaceOfTheMatchersOwnPredicate) {
    const PropertyMatcher never(
        x, [](const Class&) { return false; }, leaf);
    builder->traverse(
        never, [](const Class&) { return true; }, ResultPolicy::Extended);
    EXPECT_EQ(rules("Node.x").anyMatches(node), Answer(true, ResultPolicy::Extended));
    // The owner is kept: the same owner again replaces the rule.
    builder->traverse(never, ResultPolicy::Report);
    EXPECT_EQ(rules("Node.x").anyMatches(node), Answer(false, ResultPolicy::WalkOnly));
}

TEST_F(AdditiveTraversalTest, VectorNamesItsPropertiesInOrder) {
    builder->traverse({y, x, z}, ResultPolicy::Report);
    EXPECT_EQ(fromA(), (Lines{"A.y>C", "A.x>B", "B.y>E", "A.x>L", "L.y>B!", "A.z>D"}));
}

TEST_F(AdditiveTraversalTest, PolicyZeroIsWalkedThroughWithoutAReport) {
    builder->traverse(x, ResultPolicy::WalkOnly)->traverse(y, ResultPolicy::Report);
    EXPECT_EQ(fromA(), (Lines{"B.y>E", "L.y>B!", "A.y>C"}));
}

TEST_F(AdditiveTraversalTest, NullPropertyIsAKeyLikeAnyOtherAndFollowsNothing) {
    builder->traverse(PropertyMatcher(Property()), ResultPolicy::Report)
        ->traverse(y, ResultPolicy::Report);
    EXPECT_EQ(rulesOf(*builder).size(), 2U);
    EXPECT_EQ(rulesOf(*builder).count(Property()), 1U);
    EXPECT_EQ(fromA(), Lines{"A.y>C"});
}

TEST_F(AdditiveTraversalTest, SetResultPolicyForAPropertyThatWasNotNamedIsDropped) {
    EXPECT_EQ(builder->setResultPolicy(x, ResultPolicy::Report), builder);
    EXPECT_TRUE(rulesOf(*builder).empty());
    EXPECT_EQ(fromA(), Lines{});
}

TEST_F(AdditiveTraversalTest, SetResultPolicyRefinesTheRuleOfTheSameOwnerAndKeepsItsPredicate) {
    builder->traverse({y, isLeaf, node}, ResultPolicy::Report);
    builder->setResultPolicy({y, [](const Class&) { return true; }, node}, ResultPolicy::Extended);
    EXPECT_EQ(rules("Node.y").anyMatches(leaf), Answer(true, ResultPolicy::Extended));
    EXPECT_EQ(rules("Node.y").anyMatches(node), Answer(false, ResultPolicy::WalkOnly));
    builder->setResultPolicy({y, isLeaf, leaf}, ResultPolicy::WalkOnly);
    EXPECT_EQ(rules("Node.y").anyMatches(leaf), Answer(true, ResultPolicy::Extended));
}

TEST_F(AdditiveTraversalTest, CopyThrowsAfterItsChange) {
    AdditiveTraversalImpl copy(*builder);
    EXPECT_THROW(copy.traverse(y, ResultPolicy::Report), std::bad_weak_ptr);
    EXPECT_EQ(linesOf(copy.depthFirst({m("A")})), Lines{"A.y>C"});
    EXPECT_THROW(copy.traverse(y, isLeaf, ResultPolicy::Report), std::bad_weak_ptr);
    EXPECT_EQ(linesOf(copy.depthFirst({m("A")})), Lines{});
    EXPECT_THROW(copy.traverse({z, x}, ResultPolicy::Report), std::bad_weak_ptr);
    EXPECT_EQ(linesOf(copy.depthFirst({m("A")})), Lines{"A.z>D"}) << "the first of the vector";
    EXPECT_EQ(fromA(), Lines{}) << "the original has no rules";
}

TEST_F(AdditiveTraversalTest, AssignmentTakesTheOrderOfNaming) {
    builder->traverse({z, y}, ResultPolicy::Report);
    const auto other = Spec::additiveTraversal()->traverse(x, ResultPolicy::Report);
    *other = *builder;
    EXPECT_EQ(linesOf(other->depthFirst({m("A")})), (Lines{"A.z>D", "A.y>C"}));
}

TEST_F(AdditiveTraversalTest, PropertyOfTheSubclassIsFollowedFromItsElementsOnly) {
    builder->traverse({x, m["Leaf.own"]}, ResultPolicy::Report);
    EXPECT_EQ(fromA(), (Lines{"A.x>B", "A.x>L", "L.own>A!"}));
}

}  // namespace
}  // namespace nuv::zero::traversal
