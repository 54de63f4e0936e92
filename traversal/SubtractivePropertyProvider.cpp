#include "traversal/SubtractivePropertyProvider.h"

#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

namespace nuv::zero::traversal MODELING_NUV0_OVER {

namespace {

class SubtractivePropertyProvider final : public PropertyProvider {
  public:
    SubtractivePropertyProvider(MatchersMap matchers, Candidates candidates)
        : PropertyProvider(std::move(matchers)), candidates_(candidates) {
        letWalksAskRules();
    }

    std::vector<AssociationSetting> computeSettings(const Class& type) override {
        return settingsBy(decide(type));
    }
    ResultPolicy getResultPolicy(const Class& type, const Property& property) override {
        return policyOf(type, property);
    }

  private:
    std::vector<PropertyDecision> decide(const Class& type) override {
        std::vector<PropertyDecision> decisions;
        if (!type) return decisions;
        for (const Property& property : access::allProperties(type)) {
            decisions.push_back(decide(type, property));
        }
        return decisions;
    }
    PropertyDecision decide(const Class& type, const Property& property) const {
        if (const auto obstacle = obstacleOf(property)) {
            return {property, false, ResultPolicy::WalkOnly, *obstacle, nullptr};
        }
        if (candidates_ == Candidates::CompositeOnly && !access::isComposite(property)) {
            return {property, false, ResultPolicy::WalkOnly, Reason::NotAContainment, nullptr};
        }
        const auto rules = matchers().find(property);
        if (rules == matchers().end()) {
            return {property, true, ResultPolicy::Report, Reason::NoRules, nullptr};
        }
        const auto [rule, policy] = rules->second.answer(type);
        // A selecting rule that rejects the class does not cut: the property is followed with the
        // policy that comes with the miss.
        if (rule == nullptr) return {property, true, policy, Reason::NoRuleAccepts, nullptr};
        const bool isCut = rules->second.isPruning();
        return {property, !isCut, policy, isCut ? Reason::CutByRule : Reason::AcceptedByRule, rule};
    }
    void arrange(std::vector<PropertyDecision>& decisions) override {
        // Stable, so that properties of one name come in the same order everywhere.
        std::stable_sort(decisions.begin(), decisions.end(), comesFirst);
    }
    static bool comesFirst(const PropertyDecision& a, const PropertyDecision& b) {
        const bool aComposite = access::isComposite(a.property);
        const bool bComposite = access::isComposite(b.property);
        if (aComposite != bComposite) return bComposite;
        // Kept while their texts are compared: a framework may give names by value.
        const auto& aName = access::nameOf(a.property);
        const auto& bName = access::nameOf(b.property);
        return std::u16string_view(aName) < std::u16string_view(bName);
    }

    Candidates candidates_;
};

}  // namespace

std::shared_ptr<PropertyProvider> makeSubtractiveProvider(MatchersMap matchers,
                                                          Candidates candidates) {
    return std::make_shared<SubtractivePropertyProvider>(std::move(matchers), candidates);
}

}  // namespace nuv::zero::traversal
