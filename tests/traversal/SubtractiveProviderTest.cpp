#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/Failures.h"
#include "tests/support/ModelBuilder.h"
#include "tests/support/Predicates.h"
#include "tests/support/SettingNames.h"
#include "traversal/SubtractivePropertyProvider.h"

namespace nuv::zero::traversal::internal {
namespace {

using test::always;
using test::ModelBuilder;
using test::named;
using test::never;
using Names = std::vector<std::string>;
using Mode = CompositeMatcher::VisitMode;
using Rules = std::unordered_map<Property, CompositeMatcher>;

/// One rule for one property, filed under its declaring class.
Rules rule(const Property& property, Mode mode, const ClassPredicate& predicate,
           ResultPolicy policy) {
    Rules rules;
    const auto entry = rules.try_emplace(property, mode).first;
    entry->second.composeMatcher(access::owningClass(property), predicate, policy);
    return rules;
}

class SubtractiveProviderTest : public testing::Test {
  protected:
    Names followed(const Rules& rules, Candidates candidates = Candidates::AllLinking,
                   const char* element = "A") {
        return named(
            makeSubtractiveProvider(rules, candidates)->getPropertiesToTraverse(m(element)));
    }

    ModelBuilder m{
        "Node; Leaf < Node; Empty; Node.gamma => Node *; Node.beta -> Node *; Node.alpha -> Node; "
        "Node.plain -- String; Node.computed ~> Node *; Leaf.aaa => Node",
        "A; B; L : Leaf; X : Empty"};
    Property beta = m["Node.beta"];
    Property gamma = m["Node.gamma"];
};

TEST_F(SubtractiveProviderTest, ReferencesComeFirstThenContainmentsEachByName) {
    EXPECT_EQ(followed({}), (Names{"alpha=1", "beta=1", "gamma=1"}));
    EXPECT_EQ(followed({}, Candidates::AllLinking, "L"),
              (Names{"alpha=1", "beta=1", "aaa=1", "gamma=1"}));
}

TEST_F(SubtractiveProviderTest, NamesAreOrderedByUnsignedCodeUnitShorterFirst) {
    memory::Metamodel metamodel(u"m");
    const Class type = metamodel.addClass(u"C");
    for (const char16_t* name : {u"\uFF5E", u"b", u"\U00010000", u"ab", u"Z", u"a", u"\u8000"}) {
        metamodel.addProperty(type, name, type, 1, memory::PropertyFlags::Association);
    }
    memory::Model model;
    const auto settings = makeSubtractiveProvider({}, Candidates::AllLinking)
                              ->getPropertiesToTraverse(model.create(type));
    std::vector<std::u16string> names;
    for (const AssociationSetting& setting : *settings) {
        names.push_back(access::nameOf(setting.property()));
    }
    EXPECT_EQ(names, (std::vector<std::u16string>{u"Z", u"a", u"ab", u"b", u"\u8000", u"\U00010000",
                                                  u"\uFF5E"}));
}

TEST_F(SubtractiveProviderTest, CompositeOnlyNeverFollowsReferencesEvenWhenARuleNamesThem) {
    EXPECT_EQ(followed({}, Candidates::CompositeOnly), Names{"gamma=1"});
    EXPECT_EQ(
        followed(rule(beta, Mode::Visit, always, ResultPolicy::Report), Candidates::CompositeOnly),
        Names{"gamma=1"});
}

TEST_F(SubtractiveProviderTest, NeverFollowsPropertiesThatAreNoLinksOrDerivedEvenWithARule) {
    EXPECT_EQ(followed(rule(m["Node.computed"], Mode::Visit, always, ResultPolicy::Report)),
              (Names{"alpha=1", "beta=1", "gamma=1"}));
    EXPECT_EQ(followed(rule(m["Node.plain"], Mode::Visit, always, ResultPolicy::Report)),
              (Names{"alpha=1", "beta=1", "gamma=1"}));
}

TEST_F(SubtractiveProviderTest, PruneRuleCutsWhereItAcceptsTheClass) {
    EXPECT_EQ(followed(rule(beta, Mode::Prune, always, ResultPolicy::WalkOnly)),
              (Names{"alpha=1", "gamma=1"}));
    EXPECT_EQ(followed(rule(beta, Mode::Prune, never, ResultPolicy::WalkOnly)),
              (Names{"alpha=1", "beta=1", "gamma=1"}));
}

TEST_F(SubtractiveProviderTest, PruneRuleCutsWhateverItsPolicy) {
    EXPECT_EQ(followed(rule(beta, Mode::Prune, always, ResultPolicy::Extended)),
              (Names{"alpha=1", "gamma=1"}));
}

TEST_F(SubtractiveProviderTest, VisitRuleGivesItsPolicyAndAMissIsStillFollowedWithWalkOnly) {
    EXPECT_EQ(followed(rule(beta, Mode::Visit, always, ResultPolicy::Extended)),
              (Names{"alpha=1", "beta=2", "gamma=1"}));
    EXPECT_EQ(followed(rule(beta, Mode::Visit, never, ResultPolicy::Extended)),
              (Names{"alpha=1", "beta=0", "gamma=1"}));
}

TEST_F(SubtractiveProviderTest, ResultPolicyIsReportForNoPropertyAndForOneWithoutRules) {
    const auto provider = makeSubtractiveProvider(
        rule(beta, Mode::Visit, always, ResultPolicy::Extended), Candidates::AllLinking);
    EXPECT_EQ(provider->getResultPolicy(m.type("Node"), Property()), ResultPolicy::Report);
    EXPECT_EQ(provider->getResultPolicy(m.type("Node"), gamma), ResultPolicy::Report);
    EXPECT_EQ(provider->getResultPolicy(m.type("Node"), beta), ResultPolicy::Extended);
}

TEST_F(SubtractiveProviderTest, ResultPolicyFollowsTheRules) {
    const auto policyUnder = [this](Mode mode, const ClassPredicate& predicate) {
        return makeSubtractiveProvider(rule(beta, mode, predicate, ResultPolicy::WalkOnly),
                                       Candidates::AllLinking)
            ->getResultPolicy(m.type("Node"), beta);
    };
    EXPECT_EQ(policyUnder(Mode::Prune, always), ResultPolicy::WalkOnly);
    EXPECT_EQ(policyUnder(Mode::Prune, never), ResultPolicy::Report);
    EXPECT_EQ(policyUnder(Mode::Visit, never), ResultPolicy::WalkOnly);
}

TEST_F(SubtractiveProviderTest, ElementsOfOneClassShareOneVectorAndAnEmptyOneIsCachedToo) {
    const auto provider = makeSubtractiveProvider({}, Candidates::AllLinking);
    EXPECT_EQ(provider->getPropertiesToTraverse(m("A")), provider->getPropertiesToTraverse(m("B")));
    EXPECT_NE(provider->getPropertiesToTraverse(m("A")), provider->getPropertiesToTraverse(m("L")));
    const auto none = provider->getPropertiesToTraverse(m("X"));
    ASSERT_NE(none, nullptr);
    EXPECT_TRUE(none->empty());
    EXPECT_EQ(provider->getPropertiesToTraverse(m("X")), none);
}

TEST_F(SubtractiveProviderTest, PredicateThatThrowsLeavesNothingBehindAndTheNextElementTriesAgain) {
    test::FailurePlan plan(1);
    const auto failing = [&plan](const Class&) {
        plan.call("predicate");
        return false;
    };
    const auto provider = makeSubtractiveProvider(
        rule(beta, Mode::Prune, failing, ResultPolicy::WalkOnly), Candidates::AllLinking);
    EXPECT_THROW(provider->getPropertiesToTraverse(m("A")), test::PlannedFailure);
    EXPECT_EQ(named(provider->getPropertiesToTraverse(m("B"))),
              (Names{"alpha=1", "beta=1", "gamma=1"}));
}

TEST_F(SubtractiveProviderTest, EmptyPredicateFailsWhenSettingsAreComputed) {
    const auto provider = makeSubtractiveProvider(
        rule(beta, Mode::Prune, nullptr, ResultPolicy::WalkOnly), Candidates::AllLinking);
    EXPECT_THROW(provider->getPropertiesToTraverse(m("A")), std::bad_function_call);
    EXPECT_THROW(provider->getResultPolicy(m.type("Node"), beta), std::bad_function_call);
}

TEST_F(SubtractiveProviderTest, NullElementHasNoProperties) {
    EXPECT_TRUE(makeSubtractiveProvider({}, Candidates::AllLinking)
                    ->getPropertiesToTraverse(ModelElement())
                    ->empty());
}

}  // namespace
}  // namespace nuv::zero::traversal::internal
