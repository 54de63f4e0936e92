#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/EngineAccess.h"
#include "tests/support/Failures.h"
#include "tests/support/ModelBuilder.h"
#include "tests/support/Predicates.h"
#include "tests/support/SettingNames.h"

namespace nuv::zero::traversal::internal {
namespace {

using test::always;
using test::ModelBuilder;
using test::named;
using test::never;
using Names = std::vector<std::string>;
using Mode = CompositeMatcher::VisitMode;

class AdditiveProviderTest : public testing::Test {
  protected:
    /// Follows a property; rules for several owner classes go into one matcher.
    void follow(const std::string& property, const ClassPredicate& predicate = always,
                ResultPolicy policy = ResultPolicy::Report) {
        const Property& key = properties.emplace_back(m[property]);
        const auto entry = rules.try_emplace(key, Mode::Visit).first;
        entry->second.composeMatcher(access::owningClass(key), predicate, policy);
    }
    std::shared_ptr<PropertyProvider> provider() const {
        return testing_support::makeAdditiveProvider(rules, properties);
    }

    ModelBuilder m{
        "Node; Leaf < Node; Other; Node.zeta -> Node *; Node.alpha => Node *; Leaf.own -> Node; "
        "Node.plain -- String; Node.computed ~> Node *",
        "A; B; L : Leaf; X : Other"};
    std::unordered_map<Property, CompositeMatcher> rules;
    std::vector<Property> properties;
};

TEST_F(AdditiveProviderTest, FollowsTheNamedPropertiesInTheirOrderUnsorted) {
    follow("Node.zeta", always, ResultPolicy::Extended);
    follow("Node.alpha");
    EXPECT_EQ(named(provider()->getPropertiesToTraverse(m("A"))), (Names{"zeta=2", "alpha=1"}));
}

TEST_F(AdditiveProviderTest, ElementsOfOneClassShareOneVectorOthersDoNot) {
    follow("Node.zeta");
    const auto provided = provider();
    const auto settings = provided->getPropertiesToTraverse(m("A"));
    EXPECT_EQ(provided->getPropertiesToTraverse(m("B")), settings);
    EXPECT_NE(provided->getPropertiesToTraverse(m("L")), settings);
}

TEST_F(AdditiveProviderTest, ClassWithoutPropertiesToFollowHasAnEmptyVectorThatIsCached) {
    const auto provided = provider();
    const auto settings = provided->getPropertiesToTraverse(m("X"));
    ASSERT_NE(settings, nullptr);
    EXPECT_TRUE(settings->empty());
    EXPECT_EQ(provided->getPropertiesToTraverse(m("X")), settings);
}

TEST_F(AdditiveProviderTest, LeavesOutPropertiesThatAreNoLinksOrDerived) {
    follow("Node.plain");
    follow("Node.computed");
    follow("Node.zeta");
    EXPECT_EQ(named(provider()->getPropertiesToTraverse(m("A"))), Names{"zeta=1"});
}

TEST_F(AdditiveProviderTest, LeavesOutAPropertyThatTheClassLacksThoughThePredicateAcceptsIt) {
    follow("Leaf.own");
    EXPECT_EQ(named(provider()->getPropertiesToTraverse(m("A"))), Names{});
    EXPECT_EQ(named(provider()->getPropertiesToTraverse(m("L"))), Names{"own=1"});
}

TEST_F(AdditiveProviderTest, AsksThePredicateOnlyForEligiblePropertiesThatTheClassHas) {
    Names asked;
    const auto asking = [&asked](const char* property) {
        return [&asked, property](const Class& type) {
            asked.push_back(property + (":" + access::toUtf8(access::nameOf(type))));
            return true;
        };
    };
    follow("Node.plain", asking("plain"));
    follow("Node.computed", asking("computed"));
    follow("Leaf.own", asking("own"));
    follow("Node.zeta", asking("zeta"));
    const auto provided = provider();
    provided->getPropertiesToTraverse(m("A"));
    provided->getPropertiesToTraverse(m("B"));
    provided->getPropertiesToTraverse(m("L"));
    EXPECT_EQ(asked, (Names{"zeta:Node", "own:Leaf", "zeta:Leaf"}));
}

TEST_F(AdditiveProviderTest, DoesNotFollowAPropertyWhoseRulesRejectTheClass) {
    follow("Node.zeta", never);
    follow("Node.alpha");
    EXPECT_EQ(named(provider()->getPropertiesToTraverse(m("A"))), Names{"alpha=1"});
}

/// A property without rules ended every walk with an out-of-range error.
TEST_F(AdditiveProviderTest, NamedPropertyWithoutRulesIsSkipped) {
    follow("Node.zeta");
    properties.insert(properties.begin(), m["Node.alpha"]);
    EXPECT_EQ(named(provider()->getPropertiesToTraverse(m("A"))), Names{"zeta=1"});
}

TEST_F(AdditiveProviderTest, NullPropertyIsSkipped) {
    properties.emplace_back();
    rules.try_emplace(Property(), Mode::Visit)
        .first->second.composeMatcher(Class(), always, ResultPolicy::Report);
    follow("Node.zeta");
    EXPECT_EQ(named(provider()->getPropertiesToTraverse(m("A"))), Names{"zeta=1"});
}

TEST_F(AdditiveProviderTest, NullElementHasNoProperties) {
    follow("Node.zeta", nullptr);
    EXPECT_TRUE(provider()->getPropertiesToTraverse(ModelElement())->empty());
}

TEST_F(AdditiveProviderTest, ResultPolicyIsReportForNoPropertyAndForOneWithoutRules) {
    follow("Node.zeta", always, ResultPolicy::Extended);
    // Even where rules are filed under no property.
    rules.try_emplace(Property(), Mode::Visit)
        .first->second.composeMatcher(Class(), always, ResultPolicy::WalkOnly);
    const auto provided = provider();
    const Class node = m.type("Node");
    EXPECT_EQ(provided->getResultPolicy(node, Property()), ResultPolicy::Report);
    EXPECT_EQ(provided->getResultPolicy(node, m["Node.alpha"]), ResultPolicy::Report);
    EXPECT_EQ(provided->getResultPolicy(node, m["Node.zeta"]), ResultPolicy::Extended);
}

TEST_F(AdditiveProviderTest, ResultPolicyOfARejectedClassIsWalkOnly) {
    follow("Node.zeta", never);
    EXPECT_EQ(provider()->getResultPolicy(m.type("Node"), m["Node.zeta"]), ResultPolicy::WalkOnly);
}

TEST_F(AdditiveProviderTest, ResultPolicyIsComputedAgainForEachQuestion) {
    int answers = 0;
    follow("Node.zeta", [&answers](const Class&) { return ++answers % 2 == 1; });
    const auto provided = provider();
    EXPECT_EQ(provided->getResultPolicy(m.type("Node"), m["Node.zeta"]), ResultPolicy::Report);
    EXPECT_EQ(provided->getResultPolicy(m.type("Node"), m["Node.zeta"]), ResultPolicy::WalkOnly);
    EXPECT_EQ(answers, 2);
}

TEST_F(AdditiveProviderTest, PredicateThatThrowsLeavesNothingBehindAndTheNextElementTriesAgain) {
    test::FailurePlan plan(1);
    follow("Node.zeta", [&plan](const Class&) {
        plan.call("predicate");
        return true;
    });
    const auto provided = provider();
    EXPECT_THROW(provided->getPropertiesToTraverse(m("A")), test::PlannedFailure);
    EXPECT_EQ(named(provided->getPropertiesToTraverse(m("B"))), Names{"zeta=1"});
    EXPECT_EQ(plan.calls(), 2);
}

TEST_F(AdditiveProviderTest, EmptyPredicateFailsWhenASettingIsComputed) {
    follow("Node.zeta", nullptr);
    EXPECT_THROW(provider()->getPropertiesToTraverse(m("A")), std::bad_function_call);
}

// A predicate may walk the same result: the answer stored meanwhile stays, and stays the only one.
TEST_F(AdditiveProviderTest, PredicateThatAsksForTheSameClassDoesNotReplaceTheAnswer) {
    std::shared_ptr<PropertyProvider> provided;
    std::shared_ptr<std::vector<AssociationSetting>> inner;
    int depth = 0;
    follow("Node.zeta", [&](const Class&) {
        if (++depth == 1) inner = provided->getPropertiesToTraverse(m("B"));
        return true;
    });
    provided = provider();
    const auto outer = provided->getPropertiesToTraverse(m("A"));
    EXPECT_EQ(outer, inner);
    EXPECT_EQ(provided->getPropertiesToTraverse(m("A")), inner);
}

/// A provider that can be copied as its base allows, and asks the rules for policies.
class CountingProvider : public PropertyProvider {
  public:
    using PropertyProvider::PropertyProvider;
    std::vector<AssociationSetting> computeSettings(const Class& /*type*/) override {
        ++computed;
        std::vector<AssociationSetting> settings;
        for (const auto& entry : matchers()) {
            settings.emplace_back(entry.first, ResultPolicy::Report);
        }
        return settings;
    }
    ResultPolicy getResultPolicy(const Class& type, const Property& property) override {
        return policyOf(type, property);
    }
    int computed = 0;
};

TEST_F(AdditiveProviderTest, CopyOfAProviderSharesTheAnswersComputedSoFar) {
    CountingProvider original(rules);
    const auto settings = original.getPropertiesToTraverse(m("A"));
    CountingProvider copy(original);
    EXPECT_EQ(copy.getPropertiesToTraverse(m("B")), settings);
    EXPECT_EQ(copy.computed, 1) << "the copied count, nothing computed again";
    EXPECT_NE(copy.getPropertiesToTraverse(m("L")), nullptr);
    EXPECT_EQ(original.computed, 1);
    CountingProvider assigned(rules);
    assigned = original;
    EXPECT_EQ(assigned.getPropertiesToTraverse(m("A")), settings);
}

TEST_F(AdditiveProviderTest, CopiesAndAssignedProvidersKeepTheRules) {
    follow("Node.zeta", always, ResultPolicy::Extended);
    auto original = std::make_unique<CountingProvider>(rules);
    const auto copy = std::make_unique<CountingProvider>(*original);
    CountingProvider assigned{decltype(rules)()};
    assigned = *original;
    assigned = *&assigned;
    original.reset();
    const Class& type = access::classOf(m("A"));
    EXPECT_EQ(copy->getResultPolicy(type, m["Node.zeta"]), ResultPolicy::Extended);
    EXPECT_EQ(assigned.getResultPolicy(type, m["Node.zeta"]), ResultPolicy::Extended);
    EXPECT_EQ(assigned.getResultPolicy(type, m["Node.alpha"]), ResultPolicy::Report);
}

// What was computed before the copy was made refers to the rules by which it was computed.
TEST_F(AdditiveProviderTest, AnswersThatACopySharesAskRulesThatOutliveTheOriginal) {
    follow("Node.zeta", always, ResultPolicy::Extended);
    auto original = std::make_unique<CountingProvider>(rules);
    original->getPropertiesToTraverse(m("A"));
    CountingProvider copy(*original);
    CountingProvider assigned{decltype(rules)()};
    assigned = *original;
    original.reset();
    for (CountingProvider* provided : {&copy, &assigned}) {
        const auto settings = provided->getPropertiesToTraverse(m("A"));
        ASSERT_EQ(settings->size(), 1U);
        const CompositeMatcher* asked = settings->front().rules();
        ASSERT_NE(asked, nullptr);
        EXPECT_EQ(asked->getPolicy(m.type("Node")), ResultPolicy::Extended);
    }
}

TEST_F(AdditiveProviderTest, SettingsOutliveTheProvider) {
    follow("Node.zeta");
    auto provided = provider();
    const auto settings = provided->getPropertiesToTraverse(m("A"));
    provided.reset();
    EXPECT_EQ(named(settings), Names{"zeta=1"});
}

}  // namespace
}  // namespace nuv::zero::traversal::internal
