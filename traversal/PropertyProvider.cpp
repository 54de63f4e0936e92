#include "traversal/PropertyProvider.h"

#include <algorithm>
#include <utility>

namespace nuv::zero::traversal MODELING_NUV0_OVER {

PropertyProvider::PropertyProvider(std::unordered_map<Property, CompositeMatcher> matchers)
    : rules_(std::make_shared<IndexedRules>(std::move(matchers))) {}
PropertyProvider::PropertyProvider(const PropertyProvider& other) = default;
PropertyProvider& PropertyProvider::operator=(const PropertyProvider& other) {
    // Copied first, so that a failure changes nothing. Whether walks ask the rules themselves is a
    // matter of the class, and stays as it is.
    auto settingsCache = other.settingsCache_;
    rules_ = other.rules_;
    latest_ = nullptr;
    settingsCache_ = std::move(settingsCache);
    return *this;
}
PropertyProvider::~PropertyProvider() = default;

PropertyProvider::IndexedRules::IndexedRules(MatchersMap given) : matchers(std::move(given)) {
    for (const auto& [property, rules] : matchers) index.insert(property, &rules);
}

std::vector<PropertyDecision> PropertyProvider::decide(const Class& type) {
    std::vector<PropertyDecision> decisions;
    for (AssociationSetting& setting : computeSettings(type)) {
        decisions.push_back({setting.property(), true, setting.policy(), Reason::NoRules, nullptr});
    }
    return decisions;
}

void PropertyProvider::arrange(std::vector<PropertyDecision>& /*decisions*/) {}

std::vector<AssociationSetting> PropertyProvider::settingsBy(
    std::vector<PropertyDecision> decisions) {
    std::erase_if(decisions, [](const PropertyDecision& decision) { return !decision.isFollowed; });
    arrange(decisions);
    std::vector<AssociationSetting> settings;
    settings.reserve(decisions.size());
    for (const PropertyDecision& decision : decisions) {
        settings.emplace_back(decision.property, decision.policy);
    }
    return settings;
}

std::shared_ptr<std::vector<AssociationSetting>> PropertyProvider::getPropertiesToTraverse(
    const ModelElement& element) {
    // An element of no class has nothing to follow.
    if (!element) return std::make_shared<std::vector<AssociationSetting>>();
    const Class& type = access::classOf(element);
    const Settings* known = settingsCache_.find(type);
    return known != nullptr ? *known : compute(type);
}

bool PropertyProvider::isFollowed(const Class& type, const Property& property) {
    const std::vector<AssociationSetting>* known = knownSettingsOf(type);
    return known != nullptr &&
           std::any_of(known->begin(), known->end(), [&](const AssociationSetting& setting) {
               return setting.property() == property;
           });
}

const PropertyProvider::Settings& PropertyProvider::compute(const Class& type) {
    // Before anything is stored: a predicate that throws leaves nothing behind.
    auto computed = std::make_shared<std::vector<AssociationSetting>>(computeSettings(type));
    for (AssociationSetting& setting : *computed) {
        const CompositeMatcher* rules = rulesOf(setting.property());
        setting.prepareFor(type, rules == nullptr || rules->answersAlike() ? nullptr : rules);
    }
    // A predicate may have asked for the class itself; walks rely on the first answer to stay.
    const Settings* known = settingsCache_.find(type);
    return known != nullptr ? *known : settingsCache_.insert(type, std::move(computed));
}

}  // namespace nuv::zero::traversal
