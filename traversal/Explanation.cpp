#include "traversal/Explanation.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "traversal/NamedPredicate.h"
#include "traversal/internal/Names.h"

namespace nuv::zero::traversal MODELING_NUV0_OVER {

/// Sees what a result's provider decides.
class ClassExplainer {
  public:
    explicit ClassExplainer(PropertyProvider& provider) : provider_(provider) {}
    static PropertyProvider& providerOf(internal::TraversalResult& result) {
        return *result.provider_;
    }

    Explanation explain(const Class& type) const {
        Explanation explanation{type, {}};
        if (!type) return explanation;
        std::vector<PropertyDecision> decisions = provider_.decide(type);
        std::erase_if(decisions, [&](const PropertyDecision& decision) {
            return !decision.property || !access::hasProperty(type, decision.property);
        });
        const auto others =
            std::stable_partition(decisions.begin(), decisions.end(), mightBeFollowed);
        std::vector<PropertyDecision> arranged(decisions.begin(), others);
        provider_.arrange(arranged);
        for (const PropertyDecision& decision : arranged) add(explanation, decision);
        for (const Property& property : access::allProperties(type)) {
            if (explanation.find(property) != nullptr) continue;
            const auto known = std::find_if(others, decisions.end(), [&](const auto& decision) {
                return decision.property == property;
            });
            add(explanation, known != decisions.end() ? *known : undecided(property));
        }
        return explanation;
    }

  private:
    static bool mightBeFollowed(const PropertyDecision& decision) {
        return decision.isFollowed || decision.reason == Reason::CutByRule ||
               decision.reason == Reason::NoRuleAccepts;
    }
    /// A property that the provider does not look at.
    static PropertyDecision undecided(const Property& property) {
        const auto obstacle = PropertyProvider::obstacleOf(property);
        return {property, false, ResultPolicy::WalkOnly, obstacle.value_or(Reason::NotNamed),
                nullptr};
    }

    void add(Explanation& explanation, const PropertyDecision& decision) const {
        ExplainedProperty explained{decision.property,
                                    decision.isFollowed,
                                    decision.policy,
                                    decision.reason,
                                    std::nullopt,
                                    {},
                                    {}};
        const auto rules = provider_.matchers().find(decision.property);
        const bool wereAsked = decision.rule != nullptr || decision.reason == Reason::NoRuleAccepts;
        if (wereAsked && rules != provider_.matchers().end()) {
            rules->second.rules().forEach([&](const internal::RuleTree::Rule& rule) {
                ExplainedRule described = describe(decision.property, rule);
                if (&rule == decision.rule) {
                    explained.rule = std::move(described);
                } else if (explained.rule) {
                    explained.shadowed.push_back(std::move(described));
                } else {
                    explained.refused.push_back(std::move(described));
                }
            });
        }
        explanation.properties.push_back(std::move(explained));
    }

    static ExplainedRule describe(const Property& property, const internal::RuleTree::Rule& rule) {
        const NamedPredicate* named = namedIn(rule.predicate);
        return {property, rule.owner, rule.number, named == nullptr ? std::string() : named->name,
                rule.policy};
    }

    PropertyProvider& provider_;
};

namespace {

std::string policyText(ResultPolicy policy) {
    switch (policy) {
        case ResultPolicy::WalkOnly:
            return "walked silently";
        case ResultPolicy::Report:
            return "reported";
        case ResultPolicy::Extended:
            return "reported (extended)";
    }
    return "reported (policy " + std::to_string(static_cast<std::int32_t>(policy)) + ")";
}

std::string ruleText(const ExplainedRule& rule) {
    return internal::ruleName(rule.number, rule.name) + " (filed under " +
           internal::qualifiedName(rule.owner) + ")";
}

std::string rulesText(const std::vector<ExplainedRule>& rules) {
    std::string text;
    for (const ExplainedRule& rule : rules) text += (text.empty() ? "" : ", ") + ruleText(rule);
    return text;
}

std::string reasonText(const ExplainedProperty& explained) {
    switch (explained.reason) {
        case Reason::NotAnAssociation:
            return "it is no association";
        case Reason::Derived:
            return "it is derived";
        case Reason::NotAContainment:
            return "it is no containment";
        case Reason::NotNamed:
            return "no rule names it";
        case Reason::CutByRule:
            return "cut by " + ruleText(*explained.rule);
        case Reason::AcceptedByRule:
            return "accepted by " + ruleText(*explained.rule);
        case Reason::NoRuleAccepts:
            return "no rule accepts the class";
        case Reason::NoRules:
            return "no rule is against it";
    }
    return "";
}

}  // namespace

std::string ExplainedProperty::text() const {
    std::string text = isFollowed ? "followed, " + policyText(policy) : "not followed";
    text += "; " + reasonText(*this);
    if (!refused.empty()) text += "; refused by " + rulesText(refused);
    if (!shadowed.empty()) text += "; not asked: " + rulesText(shadowed);
    return text;
}

const ExplainedProperty* Explanation::find(const Property& property) const noexcept {
    const auto found =
        std::find_if(properties.begin(), properties.end(),
                     [&](const ExplainedProperty& each) { return each.property == property; });
    return found == properties.end() ? nullptr : &*found;
}

std::string Explanation::text() const {
    std::string text = internal::qualifiedName(type) + "\n";
    for (const ExplainedProperty& explained : properties) {
        text += "  " + internal::plainName(explained.property) + ": " + explained.text() + "\n";
    }
    return text;
}

Explanation explain(const std::shared_ptr<internal::TraversalResult>& result, const Class& type) {
    if (result == nullptr) throw std::invalid_argument("explain() needs a result.");
    return ClassExplainer(ClassExplainer::providerOf(*result)).explain(type);
}

}  // namespace nuv::zero::traversal
