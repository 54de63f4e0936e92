#include "traversal/internal/PropertyProviders.h"

#include <algorithm>
#include <string>
#include <utility>

namespace nuv::zero::traversal::internal {

namespace {

/// Whether a property is ever followed: it links to other elements and holds its values itself.
bool isEligible(const Property& property) {
    return access::isAssociation(property) && !access::isDerived(property);
}

class AdditivePropertyProvider final : public PropertyProvider {
  public:
    AdditivePropertyProvider(MatchersMap matchers, std::vector<Property> properties)
        : PropertyProvider(std::move(matchers)), traversedProperties_(std::move(properties)) {}

    std::vector<AssociationSetting> computeSettings(const Class& type) override {
        std::vector<AssociationSetting> settings;
        for (const Property& property : traversedProperties_) {
            if (!isEligible(property)) continue;
            const CompositeMatcher& rules = matchers().at(property);
            if (!access::hasProperty(type, property)) continue;
            const auto [matched, policy] = rules.anyMatches(type);
            if (matched) settings.emplace_back(property, policy);
        }
        return settings;
    }
    ResultPolicy getResultPolicy(const Class& type, const Property& property) override {
        return policyOf(type, property);
    }

  private:
    std::vector<Property> traversedProperties_;
};

class SubtractivePropertyProvider final : public PropertyProvider {
  public:
    SubtractivePropertyProvider(MatchersMap matchers, Candidates candidates)
        : PropertyProvider(std::move(matchers)), candidates_(candidates) {}

    std::vector<AssociationSetting> computeSettings(const Class& type) override {
        std::vector<AssociationSetting> settings;
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
        const auto& bName = access::nameOf(b.property());
        return access::nameOf(a.property()) < bName;
    }

    Candidates candidates_;
};

}  // namespace

std::shared_ptr<PropertyProvider> makeAdditiveProvider(
    std::unordered_map<Property, CompositeMatcher> matchers, std::vector<Property> properties) {
    return std::make_shared<AdditivePropertyProvider>(std::move(matchers), std::move(properties));
}

std::shared_ptr<PropertyProvider> makeSubtractiveProvider(
    std::unordered_map<Property, CompositeMatcher> matchers, Candidates candidates) {
    return std::make_shared<SubtractivePropertyProvider>(std::move(matchers), candidates);
}

}  // namespace nuv::zero::traversal::internal
