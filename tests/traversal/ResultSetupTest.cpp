#include "traversal/ResultSetup.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "tests/support/ModelBuilder.h"
#include "tests/support/WalkLog.h"

namespace nuv::zero::traversal {
namespace {

using test::Lines;
using test::linesOf;
using test::rest;
using test::text;

class ResultSetupTest : public testing::Test {
  protected:
    std::function<ResultPolicy(Link)> veto(const char* target) {
        return [this, target](const Link& link) {
            return link.getTarget() == m(target) ? ResultPolicy::WalkOnly : ResultPolicy::Report;
        };
    }

    test::ModelBuilder m{"Node; Node.x -> Node *", "A.x = B C D; B.x = C"};
    std::shared_ptr<TraversalResult> result = Spec::subtractiveTraversal()
                                                  ->includeInitialPseudoLink(ResultPolicy::WalkOnly)
                                                  ->depthFirst({m("A")});
};

TEST_F(ResultSetupTest, NullResultIsRefused) {
    EXPECT_THROW(ResultSetup(nullptr), std::invalid_argument);
}

TEST_F(ResultSetupTest, OperationsChain) {
    Lines lines;
    test::EventLog log(lines);
    ResultSetup(result).observe(&log).filter(veto("B")).filter(veto("D")).unique(
        UniquenessMode::UniqueElements);
    EXPECT_EQ(linesOf(result), Lines{"B.x>C"});
    EXPECT_EQ(lines.front(), "input A");
}

TEST_F(ResultSetupTest, LastUniquenessModeAndLastObserverWin) {
    Lines first;
    Lines second;
    test::EventLog firstLog(first);
    test::EventLog secondLog(second);
    ResultSetup(result)
        .observe(&firstLog)
        .observe(&secondLog)
        .unique(UniquenessMode::UniqueElements)
        .unique(UniquenessMode::NoUniqueness);
    EXPECT_EQ(linesOf(result).size(), 4U);
    EXPECT_TRUE(first.empty());
    EXPECT_FALSE(second.empty());
}

TEST_F(ResultSetupTest, FiltersThatTakeTheirLinkByReferenceJoinTheOthers) {
    ResultSetup setup(result);
    for (const char* target : {"B", "C"}) {
        setup.filter([left = m(target)](const Link& link) {
            return link.getTarget() == left ? ResultPolicy::WalkOnly : ResultPolicy::Report;
        });
    }
    EXPECT_EQ(linesOf(result), Lines{"A.x>D"});
}

bool leadsToAName(const Link& link) {
    return text(link.getTarget()) != "C";
}

TEST_F(ResultSetupTest, FiltersThatAnswerBoolReportWhereTheySayTrue) {
    const std::function<bool(Link)> notD = [this](const Link& link) {
        return link.getTarget() != m("D");
    };
    ResultSetup(result).filter([this](const Link& link) { return link.getSource() == m("A"); });
    EXPECT_EQ(linesOf(result), (Lines{"A.x>B", "A.x>C!", "A.x>D"}));
    ResultSetup(result).filter(notD);
    EXPECT_EQ(linesOf(result), (Lines{"A.x>B", "A.x>C!"}));
    ResultSetup(result).filter(leadsToAName);
    EXPECT_EQ(linesOf(result), Lines{"A.x>B"});
    ResultSetup(result).filter([](const auto& link) { return !link.shouldCascade(); });
    EXPECT_EQ(linesOf(result), Lines{});
}

TEST_F(ResultSetupTest, MembersOfALinkAndMutableCallablesAreFilters) {
    ResultSetup(result).filter(&Link::shouldCascade);
    EXPECT_EQ(linesOf(result), (Lines{"A.x>B", "B.x>C", "A.x>D"}));
    ResultSetup(result).filter([asked = 0](Link /*link*/) mutable { return ++asked % 2 == 1; });
    EXPECT_EQ(linesOf(result), (Lines{"A.x>B", "A.x>D"}));
}

TEST_F(ResultSetupTest, FiltersOfBothKindsAreAskedInTheOrderGiven) {
    Lines asked;
    ResultSetup(result)
        .filter([&](const Link& /*link*/) {
            asked.emplace_back("bool");
            return true;
        })
        .filter([&](const Link& /*link*/) {
            asked.emplace_back("policy");
            return ResultPolicy::WalkOnly;
        })
        .filter([&](const Link& /*link*/) {
            asked.emplace_back("never");
            return true;
        });
    EXPECT_EQ(linesOf(result), Lines{});
    EXPECT_EQ(asked.size(), 8U);
    asked.resize(2);
    EXPECT_EQ(asked, (Lines{"bool", "policy"}));
}

TEST_F(ResultSetupTest, EmptyFilterThatAnswersBoolFailsWhenItIsAsked) {
    bool (*none)(const Link&) = nullptr;
    ResultSetup(result).filter(none);
    EXPECT_THROW(linesOf(result), std::bad_function_call);
}

TEST_F(ResultSetupTest, LaterFilterReachesTheNextLinkOfAWalkUnderWay) {
    auto walk = result->begin();
    EXPECT_EQ(text(walk.getCurrent()), "A.x>B");
    ResultSetup(result).filter(veto("C"));
    EXPECT_EQ(rest(walk), (Lines{"A.x>B", "A.x>D"}));
}

TEST_F(ResultSetupTest, LaterUniquenessDoesNotReachAWalkUnderWay) {
    auto walk = result->begin();
    ResultSetup(result).unique(UniquenessMode::UniqueElements);
    EXPECT_EQ(rest(walk), (Lines{"A.x>B", "B.x>C", "A.x>C!", "A.x>D"}));
    EXPECT_EQ(linesOf(result), (Lines{"A.x>B", "B.x>C", "A.x>D"}));
}

TEST_F(ResultSetupTest, SetupSharesTheResult) {
    auto setup = std::make_unique<ResultSetup>(result);
    result.reset();
    EXPECT_NO_THROW(setup->filter(veto("B")));
}

}  // namespace
}  // namespace nuv::zero::traversal
