#include "traversal/SubtractiveTraversalImpl.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/BuilderRules.h"
#include "tests/support/Failures.h"
#include "tests/support/ModelBuilder.h"
#include "tests/support/Predicates.h"
#include "tests/support/WalkLog.h"
#include "traversal/PruneRules.h"

/// The subtractive kind, and the rules that it shares with the composition kind.
namespace nuv::zero::traversal {
namespace {

using test::always;
using test::Lines;
using test::linesOf;
using test::rulesOf;
using Answer = std::pair<bool, ResultPolicy>;

class SubtractiveTraversalTest : public testing::Test {
  protected:
    Lines fromA() const { return linesOf(builder->depthFirst({m("A")})); }
    const CompositeMatcher& rules() const { return rulesOf(*builder).at(x); }

    test::ModelBuilder m{
        "Node; Leaf < Node; Twig < Node; Node.x -> Node *; Node.y -> Node; Node.kids => Node *",
        "L : Leaf; A.x = B L; A.y = C; A.kids = D; L.x = A; B.x = L"};
    Property x = m["Node.x"];
    Class node = m.type("Node");
    Class leaf = m.type("Leaf");
    Class twig = m.type("Twig");
    std::function<bool(const Class&)> isLeaf = [this](const Class& type) { return type == leaf; };
    std::shared_ptr<SubtractiveTraversalImpl> builder =
        Spec::subtractiveTraversal()->includeInitialPseudoLink(ResultPolicy::WalkOnly);
};

TEST_F(SubtractiveTraversalTest, FollowsReferencesThenContainments) {
    EXPECT_EQ(fromA(), (Lines{"A.x>B", "B.x>L", "L.x>A!", "A.x>L!", "A.y>C", "A.kids>D"}));
}

TEST_F(SubtractiveTraversalTest, EveryOverloadOfPruneReturnsTheBuilderItself) {
    EXPECT_EQ(builder->prune(x), builder);
    EXPECT_EQ(builder->prune(x, isLeaf), builder);
    EXPECT_EQ(builder->prune({x, m["Node.y"]}), builder);
    EXPECT_EQ(builder->prune({x}), builder);
    EXPECT_EQ(builder->setResultPolicy({x}, ResultPolicy::Report), builder);
    EXPECT_EQ(builder->prune(std::vector<PropertyMatcher>{}), builder);
}

TEST_F(SubtractiveTraversalTest, PruneMakesAPruningEntryOfPolicyZero) {
    builder->prune(x);
    EXPECT_TRUE(rules().isPruning());
    EXPECT_EQ(rules().anyMatches(node), Answer(true, ResultPolicy::WalkOnly));
    EXPECT_EQ(fromA(), (Lines{"A.y>C", "A.kids>D"}));
}

TEST_F(SubtractiveTraversalTest, ClassMatcherOfPruneKeepsPropertyAndOwner) {
    const PropertyMatcher all(x, always, leaf);
    builder->prune(all, [](const Class&) { return false; });
    EXPECT_EQ(rules().anyMatches(leaf), Answer(false, ResultPolicy::Report));
    builder->prune(all);
    EXPECT_EQ(rules().anyMatches(node), Answer(true, ResultPolicy::WalkOnly));
}

TEST_F(SubtractiveTraversalTest, PruneOfANullPropertyIsAKeyLikeAnyOther) {
    builder->prune(PropertyMatcher(Property()));
    EXPECT_EQ(rulesOf(*builder).count(Property()), 1U);
    EXPECT_EQ(fromA().size(), 6U);
}

TEST_F(SubtractiveTraversalTest, SetResultPolicyOfAFreshPropertyMakesASelectingEntry) {
    builder->setResultPolicy({x, isLeaf, leaf}, ResultPolicy::Extended);
    EXPECT_FALSE(rules().isPruning());
    EXPECT_EQ(rules().anyMatches(leaf), Answer(true, ResultPolicy::Extended));
    // Rejected classes are followed, but their links are not reported.
    EXPECT_EQ(fromA(), (Lines{"L.x>A!", "A.y>C", "A.kids>D"}));
}

TEST_F(SubtractiveTraversalTest, SetResultPolicyAfterASelectingEntryChangesNothing) {
    builder->setResultPolicy({x, isLeaf, leaf}, ResultPolicy::Extended);
    builder->setResultPolicy({x, always, node}, ResultPolicy::Report);
    builder->setResultPolicy({x, always, leaf}, ResultPolicy::WalkOnly);
    EXPECT_EQ(rules().anyMatches(leaf), Answer(true, ResultPolicy::Extended));
    EXPECT_EQ(rules().anyMatches(node), Answer(false, ResultPolicy::WalkOnly));
}

TEST_F(SubtractiveTraversalTest, SetResultPolicyOfACoveredOwnerChangesNothing) {
    builder->prune(x);
    builder->setResultPolicy({x, always, leaf}, ResultPolicy::Report);
    EXPECT_EQ(rules().anyMatches(leaf), Answer(true, ResultPolicy::WalkOnly));
    EXPECT_EQ(fromA(), (Lines{"A.y>C", "A.kids>D"}));
}

TEST_F(SubtractiveTraversalTest, SetResultPolicyOfAnUncoveredOwnerFilesARuleThatNeverMatches) {
    for (const ResultPolicy policy :
         {ResultPolicy::WalkOnly, ResultPolicy::Report, ResultPolicy::Extended}) {
        builder = Spec::subtractiveTraversal();
        builder->prune({x, isLeaf, leaf});
        builder->setResultPolicy({x, always, twig}, policy);
        EXPECT_EQ(rules().anyMatches(twig), Answer(false, ResultPolicy::Report));
        EXPECT_EQ(rules().anyMatches(leaf), Answer(true, ResultPolicy::WalkOnly));
        // The rule is there, under its owner, with the policy of the miss.
        builder->prune({x, always, twig});
        EXPECT_EQ(rules().anyMatches(twig), Answer(true, ResultPolicy::WalkOnly));
    }
}

TEST_F(SubtractiveTraversalTest, SetResultPolicyMayReplaceAPruneRuleOfTheSameOwner) {
    // The rule is filed under Twig but accepts leaves only, so the owner is not covered.
    builder->prune({x, isLeaf, twig});
    EXPECT_EQ(rules().anyMatches(leaf), Answer(true, ResultPolicy::WalkOnly));
    builder->setResultPolicy({x, always, twig}, ResultPolicy::Extended);
    EXPECT_EQ(rules().anyMatches(leaf), Answer(false, ResultPolicy::Report));
}

TEST_F(SubtractiveTraversalTest, SetResultPolicyAsksThePredicatesWithTheOwnerClass) {
    std::vector<Class> asked;
    builder->prune({x,
                    [&asked](const Class& type) {
                        asked.push_back(type);
                        return true;
                    },
                    node});
    builder->setResultPolicy({x, always, twig}, ResultPolicy::Report);
    EXPECT_EQ(asked, std::vector<Class>{twig});
}

TEST_F(SubtractiveTraversalTest, PredicateThatThrowsInSetResultPolicyChangesNothing) {
    test::FailurePlan plan(1);
    builder->prune({x,
                    [&plan](const Class&) {
                        plan.call("predicate");
                        return false;
                    },
                    node});
    EXPECT_THROW(builder->setResultPolicy({x, always, twig}, ResultPolicy::Report),
                 test::PlannedFailure);
    EXPECT_EQ(rulesOf(*builder).size(), 1U);
    EXPECT_EQ(fromA().size(), 6U);
}

TEST_F(SubtractiveTraversalTest, PruneAfterSetResultPolicyComposesPolicyZeroAndDoesNotCut) {
    builder->setResultPolicy(x, ResultPolicy::Report);
    builder->prune(x);
    EXPECT_FALSE(rules().isPruning());
    EXPECT_EQ(rules().anyMatches(node), Answer(true, ResultPolicy::WalkOnly));
    // Followed but not reported: L and B are entered.
    m.extend("B.y = E");
    EXPECT_EQ(fromA(), (Lines{"B.y>E", "A.y>C", "A.kids>D"}));
}

TEST_F(SubtractiveTraversalTest, CopyThrowsAfterItsChange) {
    SubtractiveTraversalImpl copy(*builder);
    EXPECT_THROW(copy.prune(x), std::bad_weak_ptr);
    EXPECT_EQ(linesOf(copy.depthFirst({m("A")})), (Lines{"A.y>C", "A.kids>D"}));
    EXPECT_THROW(copy.prune({m["Node.y"], m["Node.kids"]}), std::bad_weak_ptr);
    EXPECT_EQ(linesOf(copy.depthFirst({m("A")})), Lines{"A.kids>D"});
    EXPECT_EQ(fromA().size(), 6U);
}

TEST_F(SubtractiveTraversalTest, FreeFunctionWorksOnAnyMap) {
    std::unordered_map<Property, CompositeMatcher> map;
    doSetResultPolicyForMatchersMap(map, x, ResultPolicy::Extended);
    EXPECT_EQ(map.at(x).anyMatches(node), Answer(true, ResultPolicy::Extended));
    doSetResultPolicyForMatchersMap(map, x, ResultPolicy::WalkOnly);
    EXPECT_EQ(map.at(x).anyMatches(node), Answer(true, ResultPolicy::Extended));
}

}  // namespace
}  // namespace nuv::zero::traversal
