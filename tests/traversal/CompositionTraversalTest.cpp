#include "traversal/CompositionTraversalImpl.h"

#include <gtest/gtest.h>

#include "tests/support/BuilderRules.h"
#include "tests/support/ModelBuilder.h"
#include "tests/support/Predicates.h"
#include "tests/support/WalkLog.h"

namespace nuv::zero::traversal {
namespace {

using test::always;
using test::Lines;
using test::linesOf;
using test::rulesOf;
using Answer = std::pair<bool, ResultPolicy>;

class CompositionTraversalTest : public testing::Test {
  protected:
    const CompositeMatcher& rules() const { return rulesOf(*builder).at(kids); }
    Lines fromA() const { return linesOf(builder->depthFirst({m("A")})); }

    test::ModelBuilder m{
        "Node; Leaf < Node; Node.kids => Node *; Node.alt => Node; Node.ref -> Node *",
        "L : Leaf; A.kids = B L; A.alt = C; A.ref = D; B.kids = E; L.kids = F; L.ref = A"};
    Property kids = m["Node.kids"];
    Class node = m.type("Node");
    Class leaf = m.type("Leaf");
    std::function<bool(const Class&)> isLeaf = [this](const Class& type) { return type == leaf; };
    std::shared_ptr<CompositionTraversalImpl> builder =
        Spec::compositionTraversal()->includeInitialPseudoLink(ResultPolicy::WalkOnly);
};

TEST_F(CompositionTraversalTest, FollowsEveryContainmentByNameAndNoReference) {
    EXPECT_EQ(fromA(), (Lines{"A.alt>C", "A.kids>B", "B.kids>E", "A.kids>L", "L.kids>F"}));
}

TEST_F(CompositionTraversalTest, EveryOverloadReturnsTheBuilderItself) {
    EXPECT_EQ(builder->prune(kids), builder);
    EXPECT_EQ(builder->prune(kids, isLeaf), builder);
    EXPECT_EQ(builder->prune({kids, m["Node.alt"]}), builder);
    EXPECT_EQ(builder->prune({kids}), builder);
    EXPECT_EQ(builder->prune({kids, isLeaf, leaf}), builder);
}

TEST_F(CompositionTraversalTest, PruningAListCutsEachOfItsProperties) {
    builder->prune({kids, m["Node.alt"]});
    EXPECT_EQ(fromA(), Lines{});
}

TEST_F(CompositionTraversalTest, PruneCutsThePropertyEverywhere) {
    builder->prune(kids);
    EXPECT_EQ(fromA(), Lines{"A.alt>C"});
    EXPECT_TRUE(rulesOf(*builder).at(kids).isPruning());
}

TEST_F(CompositionTraversalTest, PruneWithAClassMatcherCutsWhereItAccepts) {
    builder->prune(kids, isLeaf);
    EXPECT_EQ(fromA(), (Lines{"A.alt>C", "A.kids>B", "B.kids>E", "A.kids>L"}));
}

TEST_F(CompositionTraversalTest, PruneOfAReferenceChangesNothing) {
    builder->prune(m["Node.ref"]);
    EXPECT_EQ(fromA(), (Lines{"A.alt>C", "A.kids>B", "B.kids>E", "A.kids>L", "L.kids>F"}));
}

TEST_F(CompositionTraversalTest, SetResultPolicyNeverBringsAReferenceIn) {
    builder->setResultPolicy(m["Node.ref"], ResultPolicy::Report);
    EXPECT_EQ(fromA(), (Lines{"A.alt>C", "A.kids>B", "B.kids>E", "A.kids>L", "L.kids>F"}));
}

TEST_F(CompositionTraversalTest, SetResultPolicyOfAFreshPropertyMakesASelectingEntry) {
    builder->setResultPolicy({kids, isLeaf, leaf}, ResultPolicy::Extended);
    EXPECT_FALSE(rules().isPruning());
    EXPECT_EQ(rules().anyMatches(leaf), Answer(true, ResultPolicy::Extended));
    EXPECT_EQ(rules().anyMatches(node), Answer(false, ResultPolicy::WalkOnly));
    EXPECT_EQ(fromA(), (Lines{"A.alt>C", "L.kids>F"}));
}

TEST_F(CompositionTraversalTest, SetResultPolicyAfterPruneFilesARuleThatNeverMatches) {
    for (const ResultPolicy policy :
         {ResultPolicy::WalkOnly, ResultPolicy::Report, ResultPolicy::Extended}) {
        builder = Spec::compositionTraversal();
        builder->prune({kids, isLeaf, leaf});
        builder->setResultPolicy({kids, always, node}, policy);
        EXPECT_TRUE(rules().isPruning());
        EXPECT_EQ(rules().anyMatches(leaf), Answer(true, ResultPolicy::WalkOnly));
        EXPECT_EQ(rules().anyMatches(node), Answer(false, ResultPolicy::Report));
        // It is there, under the owner that was not covered, until another rule replaces it.
        builder->prune({kids, always, node});
        EXPECT_EQ(rules().anyMatches(node), Answer(true, ResultPolicy::WalkOnly));
    }
}

TEST_F(CompositionTraversalTest, SecondSetResultPolicyChangesNothing) {
    builder->setResultPolicy({kids, isLeaf, leaf}, ResultPolicy::Extended);
    builder->setResultPolicy({kids, always, leaf}, ResultPolicy::Report);
    builder->setResultPolicy({kids, always, node}, ResultPolicy::Report);
    EXPECT_EQ(rules().anyMatches(leaf), Answer(true, ResultPolicy::Extended));
    EXPECT_EQ(rules().anyMatches(node), Answer(false, ResultPolicy::WalkOnly));
}

TEST_F(CompositionTraversalTest, PruneAfterSetResultPolicyComposesWalkOnlyAndDoesNotCut) {
    builder->setResultPolicy(kids, ResultPolicy::Report);
    builder->prune(kids);
    EXPECT_FALSE(rules().isPruning());
    EXPECT_EQ(rules().anyMatches(node), Answer(true, ResultPolicy::WalkOnly));
    // Followed but not reported: B is entered.
    m.extend("B.alt = G");
    EXPECT_EQ(fromA(), (Lines{"A.alt>C", "B.alt>G"}));
}

TEST_F(CompositionTraversalTest, SameRulesAsTheSubtractiveKindDifferOnlyInTheReferences) {
    const auto subtractive =
        Spec::subtractiveTraversal()->includeInitialPseudoLink(ResultPolicy::WalkOnly);
    builder->prune(kids, isLeaf)->setResultPolicy(m["Node.alt"], ResultPolicy::WalkOnly);
    subtractive->prune(kids, isLeaf)->setResultPolicy(m["Node.alt"], ResultPolicy::WalkOnly);
    EXPECT_EQ(fromA(), (Lines{"A.kids>B", "B.kids>E", "A.kids>L"}));
    EXPECT_EQ(linesOf(subtractive->depthFirst({m("A")})),
              (Lines{"A.ref>D", "A.kids>B", "B.kids>E", "A.kids>L", "L.ref>A!"}));
}

}  // namespace
}  // namespace nuv::zero::traversal
