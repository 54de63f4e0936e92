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
    return lookUp(access::classOf(element));
}

const PropertyProvider::Settings& PropertyProvider::lookUp(const Class& type) {
    const Settings* settings = settingsCache_.find(type);
    if (settings == nullptr) {
        // Computed before anything is stored: a predicate that throws leaves nothing behind.
        auto computed = std::make_shared<std::vector<AssociationSetting>>(computeSettings(type));
        for (AssociationSetting& setting : *computed) setting.prepareFor(type);
        // A predicate may have asked for the class itself; walks rely on the first answer to stay.
        settings = settingsCache_.find(type);
        if (settings == nullptr) settings = &settingsCache_.insert(type, std::move(computed));
    }
    return *settings;
}

}  // namespace nuv::zero::traversal
