#include "traversal/PropertyProvider.h"

#include <utility>

namespace nuv::zero::traversal {

PropertyProvider::PropertyProvider(std::unordered_map<Property, CompositeMatcher> matchers)
    : matchers_(std::move(matchers)) {}
PropertyProvider::PropertyProvider(const PropertyProvider& other) = default;
PropertyProvider& PropertyProvider::operator=(const PropertyProvider& other) = default;
PropertyProvider::~PropertyProvider() = default;

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

ResultPolicy PropertyProvider::policyOf(const Class& type, const Property& property) const {
    if (matchers_.empty() || !property) return ResultPolicy::Report;
    const auto rules = matchers_.find(property);
    return rules == matchers_.end() ? ResultPolicy::Report : rules->second.getPolicy(type);
}

}  // namespace nuv::zero::traversal
