#include "benchmarks/ClassLists.h"

#include <algorithm>

#include "benchmarks/RawRead.h"

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

PropertyList ClassLists::resolve(const memory::ClassObject& type) {
    const meta::Class handle(&type);
    const auto properties = walk_->kind == Kind::Additive ? namedProperties(*walk_, handle)
                                                          : remainingProperties(*walk_, handle);
    auto& list = lists_.emplace_back();
    for (const meta::Property& property : properties) {
        list.push_back({property.get(), slotOf(type, *property.get())});
    }
    known_.push_back({&type, list});
    while (!placeKnown()) places_.resize(places_.size() * 2);
    return list;
}

bool ClassLists::placeKnown() {
    std::fill(places_.begin(), places_.end(), Place());
    return std::all_of(known_.begin(), known_.end(), [this](const Place& known) {
        Place& wanted = places_[placeOf(known.type)];
        const bool isFree = wanted.type == nullptr;
        wanted = known;
        return isFree;
    });
}

}  // namespace nuv::zero::benchmarks
