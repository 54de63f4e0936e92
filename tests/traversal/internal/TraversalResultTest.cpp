#include "traversal/internal/TraversalResult.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <type_traits>
#include <utility>

#include "tests/support/ModelBuilder.h"
#include "tests/support/WalkLog.h"

/// Filters, uniqueness and copies of results; the policy of reported links.
namespace nuv::zero::traversal::internal {
namespace {

using test::Lines;
using test::linesOf;
using test::ModelBuilder;
using test::text;

static_assert(!std::is_default_constructible_v<TraversalResult::privateTag>);
static_assert(std::is_base_of_v<std::enable_shared_from_this<TraversalResult>, TraversalResult>);

class TraversalResultTest : public testing::Test {
  protected:
    std::shared_ptr<TraversalResult> run(ResultPolicy pseudo = ResultPolicy::WalkOnly) const {
        return Spec::subtractiveTraversal()->includeInitialPseudoLink(pseudo)->depthFirst({m("A")});
    }
    std::function<ResultPolicy(Link)> logging(const char* tag, ResultPolicy answer) {
        return [this, tag, answer](const Link& link) {
            asked.push_back(tag + (" " + text(link)));
            return answer;
        };
    }

    ModelBuilder m{"Node; Node.x -> Node *; Node.home -> Node; Node.x <> Node.home",
                   "A.x = B C; B.home = A; C.x = B"};
    Lines asked;
};

TEST_F(TraversalResultTest, BeginOfAResultThatNobodyOwnsFails) {
    TraversalResult unowned(*run());
    EXPECT_THROW(unowned.begin(), std::bad_weak_ptr);
}

TEST_F(TraversalResultTest, OwnedCopyWalksWithTheSameInputsFiltersAndUniqueness) {
    const auto result = run();
    ResultSetup(result)
        .filter([this](const Link& link) {
            return link.getTarget() == m("C") ? ResultPolicy::WalkOnly : ResultPolicy::Report;
        })
        .unique(UniquenessMode::UniqueElements);
    const auto copy = std::make_shared<TraversalResult>(*result);
    // B.home>A! repeats the input's own link, which counts although it is left out.
    const Lines expected{"A.x>B"};
    EXPECT_EQ(linesOf(copy), expected);
    ResultSetup(copy).filter([](const Link&) { return ResultPolicy::WalkOnly; });
    EXPECT_EQ(linesOf(copy), Lines{});
    EXPECT_EQ(linesOf(result), expected) << "the copy has filters of its own";
}

// Symptom: the first walk over a copy was not its number 1.
TEST_F(TraversalResultTest, CopyCountsItsOwnWalks) {
    struct Numbers : WalkListener {
        void onLink(const WalkView& walk, const Link&, Fate, std::size_t) override {
            last = walk.number();
        }
        std::size_t last = 0;
    } numbers;
    const auto result = run();
    ResultSetup(result).trace(&numbers);
    linesOf(result);
    linesOf(result);
    EXPECT_EQ(numbers.last, 2U);
    const auto copy = std::make_shared<TraversalResult>(*result);
    linesOf(copy);
    EXPECT_EQ(numbers.last, 1U);
    linesOf(result);
    EXPECT_EQ(numbers.last, 3U);
}

TEST_F(TraversalResultTest, CopyKeepsLeavingOutPseudoLinks) {
    EXPECT_EQ(linesOf(std::make_shared<TraversalResult>(*run())), linesOf(run()));
    EXPECT_EQ(linesOf(std::make_shared<TraversalResult>(*run(ResultPolicy::Report))),
              linesOf(run(ResultPolicy::Report)));
}

TEST_F(TraversalResultTest, PseudoLinksAreLeftOutExactlyForThePolicyZero) {
    EXPECT_EQ(linesOf(run(ResultPolicy::WalkOnly)).front(), "A.x>B");
    for (const int policy : {1, 2, 3, -1}) {
        EXPECT_EQ(linesOf(run(static_cast<ResultPolicy>(policy))).front(), ">A");
    }
}

TEST_F(TraversalResultTest, LaterFiltersAreNotAskedOnceOneVetoes) {
    const auto result = run();
    ResultSetup(result)
        .filter(logging("first", ResultPolicy::WalkOnly))
        .filter(logging("second", ResultPolicy::Report));
    EXPECT_EQ(linesOf(result), Lines{});
    EXPECT_EQ(asked, (Lines{"first A.x>B", "first B.home>A!", "first A.x>C", "first C.x>B!"}));
}

TEST_F(TraversalResultTest, EveryAnswerButZeroCountsAlike) {
    const auto result = run();
    ResultSetup(result)
        .filter(logging("three", static_cast<ResultPolicy>(3)))
        .filter(logging("minus", static_cast<ResultPolicy>(-1)));
    EXPECT_EQ(linesOf(result), linesOf(run()));
    EXPECT_EQ(asked.size(), 2 * linesOf(run()).size());
    EXPECT_EQ(asked[0], "three A.x>B");
    EXPECT_EQ(asked[1], "minus A.x>B");
}

TEST_F(TraversalResultTest, VetoedLinkIsStillWalked) {
    const auto result = run();
    ResultSetup(result).filter([this](const Link& link) {
        return link.getSource() == m("A") ? ResultPolicy::WalkOnly : ResultPolicy::Report;
    });
    EXPECT_EQ(linesOf(result), (Lines{"B.home>A!", "C.x>B!"}));
}

TEST_F(TraversalResultTest, PseudoLinkFilterComesBeforeAllOthers) {
    const auto result = run(ResultPolicy::WalkOnly);
    ResultSetup(result).filter(logging("mine", ResultPolicy::Report));
    linesOf(result);
    EXPECT_EQ(asked.front(), "mine A.x>B");
    asked.clear();
    const auto reporting = run(ResultPolicy::Report);
    ResultSetup(reporting).filter(logging("mine", ResultPolicy::Report));
    linesOf(reporting);
    EXPECT_EQ(asked.front(), "mine >A");
}

// Uniqueness.

TEST_F(TraversalResultTest, NothingIsLeftOutUnlessAsked) {
    EXPECT_EQ(linesOf(run()), (Lines{"A.x>B", "B.home>A!", "A.x>C", "C.x>B!"}));
}

TEST_F(TraversalResultTest, UniqueLinksLeavesTheReverseOut) {
    const auto result = run();
    ResultSetup(result).unique(UniquenessMode::UniqueLinks);
    EXPECT_EQ(linesOf(result), (Lines{"A.x>B", "A.x>C", "C.x>B!"}));
}

TEST_F(TraversalResultTest, UniqueElementsReportsEachTargetOnceTheInputAmongThem) {
    const auto result = run(ResultPolicy::Report);
    ResultSetup(result).unique(UniquenessMode::UniqueElements);
    EXPECT_EQ(linesOf(result), (Lines{">A", "A.x>B", "A.x>C"}));
}

TEST_F(TraversalResultTest, EveryOtherUniquenessValueLeavesNothingOut) {
    const auto result = run();
    ResultSetup(result).unique(static_cast<UniquenessMode>(7));
    EXPECT_EQ(linesOf(result), linesOf(run()));
}

TEST_F(TraversalResultTest, EachWalkRemembersForItself) {
    const auto result = run();
    ResultSetup(result).unique(UniquenessMode::UniqueElements);
    const Lines once = linesOf(result);
    EXPECT_EQ(linesOf(result), once);
}

TEST_F(TraversalResultTest, VetoedLinkStillCountsAsSeen) {
    const auto result = run();
    bool first = true;
    ResultSetup(result).unique(UniquenessMode::UniqueElements).filter([&](const Link& link) {
        const bool vetoed = link.getTarget() == m("B") && std::exchange(first, false);
        return vetoed ? ResultPolicy::WalkOnly : ResultPolicy::Report;
    });
    EXPECT_EQ(linesOf(result), Lines{"A.x>C"}) << "C.x>B! is a repeat";
}

TEST_F(TraversalResultTest, PseudoLinkThatIsLeftOutStillCountsAsSeen) {
    const auto result = run(ResultPolicy::WalkOnly);
    ResultSetup(result).unique(UniquenessMode::UniqueElements);
    EXPECT_EQ(linesOf(result), (Lines{"A.x>B", "A.x>C"})) << "B.home>A! is a repeat of >A";
}

TEST_F(TraversalResultTest, LinksOfPolicyZeroReachNeitherTheMemoryNorTheFilters) {
    const auto result = Spec::additiveTraversal()
                            ->traverse(m["Node.x"], ResultPolicy::WalkOnly)
                            ->traverse(m["Node.home"], ResultPolicy::Report)
                            ->includeInitialPseudoLink(ResultPolicy::WalkOnly)
                            ->depthFirst({m("A")});
    m.extend("C.home = B");
    ResultSetup(result)
        .unique(UniquenessMode::UniqueElements)
        .filter(logging("asked", ResultPolicy::Report));
    EXPECT_EQ(linesOf(result), Lines{"C.home>B!"}) << "A.x>B was not remembered, >A was";
    EXPECT_EQ(asked, Lines{"asked C.home>B!"});
}

// The policy is asked for each link that is about to be reported.

TEST_F(TraversalResultTest, PredicateWhoseAnswerChangesIsSeenLinkByLink) {
    for (const Algo order : test::everyOrder()) {
        int questions = 0;
        ModelBuilder star("Node; Node.x -> Node *", "A.x = B C D E");
        const auto result =
            Spec::additiveTraversal()
                ->traverse(
                    star["Node.x"], [&questions](const Class&) { return ++questions % 2 == 1; },
                    ResultPolicy::Report)
                ->includeInitialPseudoLink(ResultPolicy::WalkOnly)
                ->run({star("A")}, order);
        // The first question settles that x is followed.
        EXPECT_EQ(linesOf(result), (Lines{"A.x>C", "A.x>E"})) << test::nameOf(order);
        EXPECT_EQ(questions, 5) << test::nameOf(order);
    }
}

TEST_F(TraversalResultTest, PolicyIsAskedForTheClassOfTheSource) {
    ModelBuilder two("Node; Leaf < Node; Node.x -> Node *", "L : Leaf; A.x = L; L.x = A");
    const auto isLeaf = [leaf = two.type("Leaf")](const Class& type) { return type == leaf; };
    EXPECT_EQ(linesOf(Spec::subtractiveTraversal()
                          ->setResultPolicy({two["Node.x"], isLeaf, two.type("Leaf")},
                                            ResultPolicy::Extended)
                          ->includeInitialPseudoLink(ResultPolicy::WalkOnly)
                          ->depthFirst({two("A")})),
              Lines{"L.x>A!"});
}

}  // namespace
}  // namespace nuv::zero::traversal::internal
