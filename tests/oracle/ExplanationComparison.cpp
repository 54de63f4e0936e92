#include "tests/oracle/ExplanationComparison.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/EngineAccess.h"
#include "traversal/Explanation.h"

namespace nuv::zero::oracle {
namespace {

using traversal::explain;
using traversal::ExplainedProperty;
using traversal::ExplainedRule;
using traversal::Explanation;
using traversal::Reason;

/// Refuses every class, and so learns which rules there are.
class RefusingAll final : public Callbacks {
  public:
    bool predicate(int predicate, int /*type*/) override {
        asked.push_back(predicate);
        return false;
    }
    int filter(int /*filter*/, const IndexedLink& /*link*/) override { return 1; }
    void event(int /*observer*/, Event /*event*/, int /*element*/, int /*property*/) override {}

    std::vector<int> asked;
};

/// Learns which rules are asked until one accepts.
class Noting final : public Callbacks {
  public:
    explicit Noting(const PlainWorld& world) : recorder_(world) {}
    bool predicate(int predicate, int type) override {
        asked.push_back(predicate);
        return recorder_.predicate(predicate, type);
    }
    int filter(int /*filter*/, const IndexedLink& /*link*/) override { return 1; }
    void event(int /*observer*/, Event /*event*/, int /*element*/, int /*property*/) override {}

    std::vector<int> asked;

  private:
    CallRecorder recorder_;
};

struct Decision {
    Reason reason;
    /// The predicates of the rules that were asked; the last one accepted, where one did.
    std::vector<int> asked;
    /// Those of all rules, in order.
    std::vector<int> all;
};

/// What is decided about a property, by the oracle's means.
Decision decisionOf(const CalmCase& random, int type, int property) {
    const PropertyDefinition& definition =
        random.world().properties[static_cast<std::size_t>(property)];
    if (!definition.association) return {Reason::NotAnAssociation, {}, {}};
    if (definition.derived) return {Reason::Derived, {}, {}};
    if (random.kind() == Kind::Composition && !definition.composite) {
        return {Reason::NotAContainment, {}, {}};
    }
    const auto rules = random.rules().sets.find(property);
    if (rules == random.rules().sets.end()) {
        return {random.kind() == Kind::Additive ? Reason::NotNamed : Reason::NoRules, {}, {}};
    }
    RefusingAll refusing;
    rules->second.anyMatches(type, refusing);
    Noting noting(random.world());
    if (!rules->second.anyMatches(type, noting).first) {
        return {Reason::NoRuleAccepts, noting.asked, refusing.asked};
    }
    return {rules->second.prunes() ? Reason::CutByRule : Reason::AcceptedByRule, noting.asked,
            refusing.asked};
}

/// The named rules of a list; rules that never apply are filed without a name.
std::vector<std::string> namesOf(const std::vector<ExplainedRule>& rules) {
    std::vector<std::string> names;
    for (const ExplainedRule& rule : rules) {
        if (!rule.name.empty()) names.push_back(rule.name);
    }
    return names;
}

std::vector<std::string> namesOf(std::vector<int>::const_iterator from,
                                 std::vector<int>::const_iterator to) {
    std::vector<std::string> names;
    for (; from != to; ++from) names.push_back("r" + std::to_string(*from));
    return names;
}

void compareRules(const CalmCase& random, const ExplainedProperty& explained,
                  const Decision& decision) {
    const bool isAnswered =
        decision.reason == Reason::CutByRule || decision.reason == Reason::AcceptedByRule;
    ASSERT_EQ(explained.rule.has_value(), isAnswered);
    const auto refusedEnd = decision.asked.end() - (isAnswered ? 1 : 0);
    EXPECT_EQ(namesOf(explained.refused), namesOf(decision.asked.begin(), refusedEnd));
    if (!isAnswered) {
        EXPECT_EQ(decision.asked, decision.all);
        EXPECT_TRUE(explained.shadowed.empty());
        return;
    }
    EXPECT_EQ(explained.rule->name, "r" + std::to_string(decision.asked.back()));
    EXPECT_EQ(namesOf(explained.shadowed),
              namesOf(decision.all.begin() + static_cast<std::ptrdiff_t>(decision.asked.size()),
                      decision.all.end()));
    EXPECT_EQ(explained.rule->number,
              static_cast<std::size_t>(random.numberOf(decision.asked.back())));
    EXPECT_EQ(explained.rule->policy, explained.policy);
    EXPECT_EQ(explained.rule->property, explained.property);
}

}  // namespace

void compareExplanation(CalmCase& random, int type) {
    const auto result = random.run({}, 0);
    random.takeAsked();
    const meta::Class metaclass = random.model().classAt(type);
    const Explanation explanation = explain(result, metaclass);

    // Asked as often as the oracle's provider asks, and in the same order.
    CallRecorder recorder(random.world());
    NaiveProvider naive(random.world(), random.rules());
    const Settings settings = naive.settingsOf(type, recorder);
    EXPECT_EQ(random.takeAsked(), recorder.take());
    EXPECT_EQ(explain(result, metaclass), explanation);

    // What is followed, in which order and with which policy.
    std::vector<std::pair<int, int>> explained;
    for (const ExplainedProperty& each : explanation.properties) {
        if (!each.isFollowed) continue;
        explained.emplace_back(random.model().indexOf(each.property),
                               static_cast<int>(each.policy));
    }
    std::vector<std::pair<int, int>> expected;
    for (const Setting& setting : *settings)
        expected.emplace_back(setting.property, setting.policy);
    EXPECT_EQ(explained, expected);
    std::vector<std::pair<int, int>> computed;
    traversal::PropertyProvider& provider = testing_support::providerOf(*result);
    for (traversal::AssociationSetting& setting : provider.computeSettings(metaclass)) {
        const int property = random.model().indexOf(setting.getProperty());
        computed.emplace_back(property, static_cast<int>(setting.getPolicy()));
        EXPECT_EQ(setting.getPolicy(), provider.getResultPolicy(metaclass, setting.getProperty()));
    }
    EXPECT_EQ(explained, computed);

    // Every property of the class, once, and why.
    std::set<int> all;
    for (const ExplainedProperty& each : explanation.properties) {
        const int property = random.model().indexOf(each.property);
        EXPECT_TRUE(all.insert(property).second);
        EXPECT_EQ(explanation.find(each.property), &each);
        const Decision decision = decisionOf(random, type, property);
        EXPECT_EQ(each.reason, decision.reason) << propertyName(property);
        compareRules(random, each, decision);
    }
    const std::vector<int> properties = random.world().propertiesOf(type);
    // The framework's lists know what a class has, not "name", which every class of the model has.
    for (const int property : properties) EXPECT_EQ(all.count(property), 1U);
}

}  // namespace nuv::zero::oracle
