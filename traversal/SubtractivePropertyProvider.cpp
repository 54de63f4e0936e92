#include "traversal/SubtractivePropertyProvider.h"

#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

namespace nuv::zero::traversal {

namespace {

class SubtractivePropertyProvider final : public PropertyProvider {
  public:
    SubtractivePropertyProvider(MatchersMap matchers, Candidates candidates)
        : PropertyProvider(std::move(matchers)), candidates_(candidates) {}

    std::vector<AssociationSetting> computeSettings(const Class& type) override {
        std::vector<AssociationSetting> settings;
        if (!type) return settings;
        for (const Property& property : access::allProperties(type)) {
            if (!isEligible(property)) continue;
            if (candidates_ == Candidates::CompositeOnly && !access::isComposite(property))
                continue;
            const auto rules = matchers().find(property);
            if (rules == matchers().end()) {
                settings.emplace_back(property, ResultPolicy::Report);
                continue;
            }
            const auto [matched, policy] = rules->second.anyMatches(type);
            // A selecting rule that rejects the class does not cut: the property is followed with
            // the policy that comes with the miss.
            if (!(rules->second.isPruning() && matched)) settings.emplace_back(property, policy);
        }
        // Stable, so that properties of one name come in the same order everywhere.
        std::stable_sort(settings.begin(), settings.end(), comesFirst);
        return settings;
    }
    ResultPolicy getResultPolicy(const Class& type, const Property& property) override {
        return policyOf(type, property);
    }

  private:
    static bool comesFirst(const AssociationSetting& a, const AssociationSetting& b) {
        const bool aComposite = access::isComposite(a.property());
        const bool bComposite = access::isComposite(b.property());
        if (aComposite != bComposite) return bComposite;
        // Kept while their texts are compared: a framework may give names by value.
        const auto& aName = access::nameOf(a.property());
        const auto& bName = access::nameOf(b.property());
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
