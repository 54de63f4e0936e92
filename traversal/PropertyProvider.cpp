#include "traversal/PropertyProvider.h"

#include <utility>

namespace nuv::zero::traversal {

PropertyProvider::PropertyProvider(std::unordered_map<Property, CompositeMatcher> matchers)
    : matchers_(std::move(matchers)), ruleIndex_(indexOf(matchers_)) {}
PropertyProvider::PropertyProvider(const PropertyProvider& other)
    : matchers_(other.matchers_),
      ruleIndex_(indexOf(matchers_)),
      settingsCache_(other.settingsCache_) {}
PropertyProvider& PropertyProvider::operator=(const PropertyProvider& other) {
    if (this == &other) return *this;
    MatchersMap matchers = other.matchers_;
    RuleIndex ruleIndex = indexOf(matchers);
    auto settingsCache = other.settingsCache_;
    // From here on nothing can fail, and the rules stay where the index has them.
    matchers_.swap(matchers);
    ruleIndex_ = std::move(ruleIndex);
    settingsCache_ = std::move(settingsCache);
    return *this;
}
PropertyProvider::~PropertyProvider() = default;

PropertyProvider::RuleIndex PropertyProvider::indexOf(const MatchersMap& matchers) {
    RuleIndex index;
    for (const auto& [property, rules] : matchers) index.insert(property, &rules);
    return index;
}

std::shared_ptr<std::vector<AssociationSetting>> PropertyProvider::getPropertiesToTraverse(
    const ModelElement& element) {
    // An element of no class has nothing to follow.
    if (!element) return std::make_shared<std::vector<AssociationSetting>>();
    const Class& type = access::classOf(element);
    const Settings* known = settingsCache_.find(type);
    return known != nullptr ? *known : compute(type);
}

const PropertyProvider::Settings& PropertyProvider::compute(const Class& type) {
    // Before anything is stored: a predicate that throws leaves nothing behind.
    auto computed = std::make_shared<std::vector<AssociationSetting>>(computeSettings(type));
    for (AssociationSetting& setting : *computed) {
        const CompositeMatcher* rules = rulesOf(setting.property());
        setting.prepareFor(type, rules == nullptr || rules->answersAlike());
    }
    // A predicate may have asked for the class itself; walks rely on the first answer to stay.
    const Settings* known = settingsCache_.find(type);
    return known != nullptr ? *known : settingsCache_.insert(type, std::move(computed));
}

}  // namespace nuv::zero::traversal
