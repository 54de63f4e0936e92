#include "traversal/CompositeMatcher.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "tests/support/ModelBuilder.h"
#include "tests/support/Predicates.h"

namespace nuv::zero::traversal {
namespace {

using test::always;
using test::never;
using Mode = CompositeMatcher::VisitMode;
using Answer = std::pair<bool, ResultPolicy>;

class CompositeMatcherTest : public testing::Test {
  protected:
    /// Unrelated classes whose names come behind `0`, in the order of their names.
    std::vector<Class> manyClasses(int count) {
        std::vector<Class> classes;
        for (int i = 0; i < count; ++i) {
            const std::string name = std::to_string(1000 + i);
            classes.push_back(m.metamodel.addClass(std::u16string(name.begin(), name.end())));
        }
        return classes;
    }

    test::ModelBuilder m{"B; A < B; D < B; E < B; Other"};
    Class a = m.type("A");
    Class b = m.type("B");
    Class d = m.type("D");
    Class e = m.type("E");
    Class other = m.type("Other");
    CompositeMatcher prune{Mode::Prune};
    CompositeMatcher visit{Mode::Visit};
};

TEST_F(CompositeMatcherTest, EmptyPruneMatcherKeepsEveryClassWithReport) {
    EXPECT_EQ(prune.anyMatches(a), Answer(false, ResultPolicy::Report));
    EXPECT_EQ(prune.getPolicy(a), ResultPolicy::Report);
}

TEST_F(CompositeMatcherTest, EmptyVisitMatcherMatchesNoClassAndGivesWalkOnly) {
    EXPECT_EQ(visit.anyMatches(a), Answer(false, ResultPolicy::WalkOnly));
    EXPECT_EQ(visit.getPolicy(a), ResultPolicy::WalkOnly);
}

TEST_F(CompositeMatcherTest, ComposePolicyWithoutAnEntryChangesNothing) {
    prune.composePolicy(a, ResultPolicy::Extended);
    EXPECT_EQ(prune.anyMatches(a), Answer(false, ResultPolicy::Report));
    visit.composeMatcher(a, always, ResultPolicy::Report);
    visit.composePolicy(b, ResultPolicy::Extended);
    EXPECT_EQ(visit.anyMatches(b), Answer(true, ResultPolicy::Report));
}

TEST_F(CompositeMatcherTest, ComposePolicyKeepsThePredicate) {
    visit.composeMatcher(
        a, [](const Class& type) { return access::nameOf(type) == u"A"; }, ResultPolicy::Report);
    visit.composePolicy(a, ResultPolicy::Extended);
    EXPECT_EQ(visit.anyMatches(a), Answer(true, ResultPolicy::Extended));
    EXPECT_EQ(visit.anyMatches(b), Answer(false, ResultPolicy::WalkOnly));
}

TEST_F(CompositeMatcherTest, ComposedTwiceUnderOneClassTheLastRuleWins) {
    visit.composeMatcher(a, always, ResultPolicy::Report);
    visit.composeMatcher(a, never, ResultPolicy::Extended);
    EXPECT_EQ(visit.anyMatches(a), Answer(false, ResultPolicy::WalkOnly));
    visit.composeMatcher(a, always, ResultPolicy::Extended);
    EXPECT_EQ(visit.anyMatches(a), Answer(true, ResultPolicy::Extended));
}

TEST_F(CompositeMatcherTest, RuleOfTheSubclassAnswersForEveryClassThatBothAccept) {
    for (const bool subclassFirst : {true, false}) {
        CompositeMatcher rules(Mode::Visit);
        if (subclassFirst) rules.composeMatcher(a, always, ResultPolicy::Extended);
        rules.composeMatcher(b, always, ResultPolicy::WalkOnly);
        if (!subclassFirst) rules.composeMatcher(a, always, ResultPolicy::Extended);
        for (const Class& asked : {a, b, d, other}) {
            EXPECT_EQ(rules.anyMatches(asked), Answer(true, ResultPolicy::Extended));
        }
    }
}

TEST_F(CompositeMatcherTest, FirstComposedAnswersWhenTheSubclassNameSortsAfterTheBase) {
    CompositeMatcher baseFirst(Mode::Visit);
    baseFirst.composeMatcher(b, always, ResultPolicy::Report);
    baseFirst.composeMatcher(d, always, ResultPolicy::Extended);
    EXPECT_EQ(baseFirst.anyMatches(d), Answer(true, ResultPolicy::Report));

    CompositeMatcher subclassFirst(Mode::Visit);
    subclassFirst.composeMatcher(d, always, ResultPolicy::Extended);
    subclassFirst.composeMatcher(b, always, ResultPolicy::Report);
    EXPECT_EQ(subclassFirst.anyMatches(b), Answer(true, ResultPolicy::Extended));
}

TEST_F(CompositeMatcherTest, BaseRuleFollowedBySeveralSubclassRulesKeepsTheFirstComposedOrder) {
    visit.composeMatcher(
        b, [this](const Class& type) { return type == other; }, ResultPolicy::Report);
    visit.composeMatcher(e, always, ResultPolicy::Extended);
    visit.composeMatcher(
        d, [this](const Class& type) { return type == d; }, ResultPolicy::WalkOnly);
    EXPECT_EQ(visit.anyMatches(other), Answer(true, ResultPolicy::Report));
    EXPECT_EQ(visit.anyMatches(d), Answer(true, ResultPolicy::WalkOnly));
    EXPECT_EQ(visit.anyMatches(e), Answer(true, ResultPolicy::Extended));
    visit.composeMatcher(b, never, ResultPolicy::Report);
    EXPECT_EQ(visit.anyMatches(other), Answer(true, ResultPolicy::Extended));
}

TEST_F(CompositeMatcherTest, KeyIsNeverComparedWithTheClassAskedAbout) {
    visit.composeMatcher(other, always, ResultPolicy::Extended);
    EXPECT_EQ(visit.anyMatches(a), Answer(true, ResultPolicy::Extended));
    prune.composeMatcher(a, never, ResultPolicy::WalkOnly);
    EXPECT_EQ(prune.anyMatches(a), Answer(false, ResultPolicy::Report));
}

TEST_F(CompositeMatcherTest, RuleThatRejectsEveryClassLeavesThePruneDefault) {
    prune.composeMatcher(a, never, ResultPolicy::Extended);
    EXPECT_EQ(prune.anyMatches(a), Answer(false, ResultPolicy::Report));
    EXPECT_EQ(prune.getPolicy(a), ResultPolicy::Report);
}

TEST_F(CompositeMatcherTest, LaterRulesAreNotAskedOnceOneAccepts) {
    visit.composeMatcher(a, always, ResultPolicy::Report);
    visit.composeMatcher(b, nullptr, ResultPolicy::Report);
    EXPECT_EQ(visit.anyMatches(b), Answer(true, ResultPolicy::Report));
}

TEST_F(CompositeMatcherTest, EmptyPredicateFailsOnceItIsReached) {
    visit.composeMatcher(a, never, ResultPolicy::Report);
    visit.composeMatcher(b, nullptr, ResultPolicy::Report);
    EXPECT_THROW(visit.anyMatches(b), std::bad_function_call);
    EXPECT_THROW(visit.getPolicy(b), std::bad_function_call);
}

TEST_F(CompositeMatcherTest, PredicateMayFileFurtherRulesIntoTheMatcherThatAsksIt) {
    // Filed behind the rule that is being asked, so they are asked next, by name.
    const std::vector<Class> behind = manyClasses(100);
    const Class first = m.metamodel.addClass(u"0");
    const auto file = [&](const Class& owner) {
        const bool isLast = owner == behind.back();
        visit.composeMatcher(owner, isLast ? always : never, ResultPolicy::Extended);
    };
    // What a predicate captures has to stay where it is: here, what it goes on with.
    const auto fileAll = [&behind, &file] {
        for (const Class& owner : behind) file(owner);
        return false;
    };
    visit.composeMatcher(
        first, [&fileAll](const Class&) { return fileAll() || fileAll(); }, ResultPolicy::Report);
    EXPECT_EQ(visit.anyMatches(b), Answer(true, ResultPolicy::Extended));
    EXPECT_EQ(visit.getPolicy(a), ResultPolicy::Extended);
}

TEST_F(CompositeMatcherTest, AnswerOfARuleThatFiledFurtherOnesIsItsOwn) {
    const std::vector<Class> behind = manyClasses(100);
    const Class first = m.metamodel.addClass(u"0");
    prune.composeMatcher(
        first,
        [this, &behind](const Class&) {
            for (const Class& owner : behind) {
                prune.composeMatcher(owner, nullptr, ResultPolicy::WalkOnly);
            }
            return true;
        },
        ResultPolicy::Extended);
    EXPECT_EQ(prune.anyMatches(b), Answer(true, ResultPolicy::Extended));
}

TEST_F(CompositeMatcherTest, IsPruningExactlyForTheValueZero) {
    EXPECT_TRUE(CompositeMatcher(Mode::Prune).isPruning());
    for (const int mode : {1, 2, -1, 1000}) {
        const CompositeMatcher rules(static_cast<Mode>(mode));
        EXPECT_FALSE(rules.isPruning()) << mode;
        EXPECT_EQ(rules.anyMatches(a), Answer(false, ResultPolicy::WalkOnly)) << mode;
    }
}

TEST_F(CompositeMatcherTest, PoliciesPassThroughUninterpreted) {
    const auto odd = static_cast<ResultPolicy>(77);
    prune.composeMatcher(a, always, odd);
    EXPECT_EQ(prune.anyMatches(a), Answer(true, odd));
    EXPECT_EQ(prune.getPolicy(a), odd);
}

TEST_F(CompositeMatcherTest, CopiesAndAssignmentsHaveTheirOwnEntries) {
    visit.composeMatcher(b, always, ResultPolicy::Report);
    CompositeMatcher copy(visit);
    prune = visit;
    visit.composeMatcher(b, never, ResultPolicy::Report);
    copy.composeMatcher(d, always, ResultPolicy::Extended);
    EXPECT_EQ(visit.anyMatches(d), Answer(false, ResultPolicy::WalkOnly));
    EXPECT_EQ(copy.anyMatches(d), Answer(true, ResultPolicy::Report));
    EXPECT_EQ(prune.anyMatches(d), Answer(true, ResultPolicy::Report));
    EXPECT_FALSE(prune.isPruning());
    const CompositeMatcher moved(std::move(copy));
    EXPECT_EQ(moved.anyMatches(d), Answer(true, ResultPolicy::Report));
}

}  // namespace
}  // namespace nuv::zero::traversal
