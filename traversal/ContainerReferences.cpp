#include "traversal/ContainerReferences.h"

#include <stdexcept>
#include <unordered_set>

namespace nuv::zero::traversal MODELING_NUV0_OVER {
namespace {

bool isFollowable(const Property& property) {
    return access::isAssociation(property) && !access::isDerived(property);
}

/// Takes the property as a rule where it refers to the container by way of the other end.
void takeIfReference(const Property& property, const Property& otherEnd,
                     std::unordered_set<Property>& known, std::vector<PropertyMatcher>& rules) {
    if (!isFollowable(property) || access::isComposite(property)) return;
    if (!isFollowable(otherEnd) || !access::isComposite(otherEnd)) return;
    if (known.insert(property).second) rules.emplace_back(property);
}

}  // namespace

std::vector<PropertyMatcher> containerReferencesOf(const Class& type) {
    return containerReferencesOf(std::vector<Class>(1, type));
}

std::vector<PropertyMatcher> containerReferencesOf(const std::vector<Class>& types) {
    std::unordered_set<Property> known;
    std::vector<PropertyMatcher> rules;
    for (const Class& type : types) {
        if (!type) {
            throw std::invalid_argument("containerReferencesOf needs classes, not a null handle.");
        }
        const std::vector<Property> properties = access::allProperties(type);
        for (const Property& property : properties) {
            const Property opposite = access::oppositeOf(property);
            if (!opposite) continue;
            takeIfReference(property, opposite, known, rules);
            // NOLINTNEXTLINE(readability-suspicious-call-argument): swapped on purpose
            takeIfReference(opposite, property, known, rules);
        }
    }
    return rules;
}

}  // namespace nuv::zero::traversal
