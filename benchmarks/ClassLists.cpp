#include "benchmarks/ClassLists.h"

#include <algorithm>

namespace nuv::zero::benchmarks {
namespace {

bool isCut(const Walk& walk, const meta::Property& property, const meta::Class& type) {
    if (!walk.withRules) return false;
    return std::any_of(walk.shape->idleRules.begin(), walk.shape->idleRules.end(),
                       [&](const Shape::Rule& rule) {
                           return rule.property == property && access::conformsTo(type, rule.scope);
                       });
}

std::vector<meta::Property> namedProperties(const Walk& walk, const meta::Class& type) {
    std::vector<meta::Property> properties;
    const auto add = [&](const meta::Property& property) {
        if (access::hasProperty(type, property)) properties.push_back(property);
    };
    for (const meta::Property& property : walk.shape->followed) add(property);
    if (!walk.withRules) return properties;
    for (const Shape::Rule& rule : walk.shape->idleRules) {
        const bool isNew =
            std::find(properties.begin(), properties.end(), rule.property) == properties.end();
        if (isNew && access::conformsTo(type, rule.scope)) add(rule.property);
    }
    return properties;
}

std::vector<meta::Property> remainingProperties(const Walk& walk, const meta::Class& type) {
    std::vector<meta::Property> properties;
    for (const meta::Property& property : access::allProperties(type)) {
        if (!access::isAssociation(property) || access::isDerived(property)) continue;
        if (walk.kind == Kind::Composition && !access::isComposite(property)) continue;
        if (!isCut(walk, property, type)) properties.push_back(property);
    }
    std::stable_sort(properties.begin(), properties.end(),
                     [](const meta::Property& a, const meta::Property& b) {
                         if (access::isComposite(a) != access::isComposite(b)) {
                             return access::isComposite(b);
                         }
                         return access::nameOf(a) < access::nameOf(b);
                     });
    return properties;
}

}  // namespace

PropertyList ClassLists::lookUp(const memory::ClassObject& type) {
    const auto known = lists_.find(&type);
    if (known != lists_.end()) return known->second;
    return lists_.emplace(&type, resolve(type)).first->second;
}

std::vector<const memory::PropertyObject*> ClassLists::resolve(
    const memory::ClassObject& type) const {
    const meta::Class handle(&type);
    std::vector<const memory::PropertyObject*> list;
    for (const meta::Property& property : walk_->kind == Kind::Additive
                                              ? namedProperties(*walk_, handle)
                                              : remainingProperties(*walk_, handle)) {
        list.push_back(property.get());
    }
    return list;
}

}  // namespace nuv::zero::benchmarks
