#include "model/memory/Roots.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>
#include <variant>

#include "model/memory/Class.h"

namespace nuv::zero::memory {
namespace {

using ObjectSet = std::unordered_set<const Object*>;

/// The properties by which elements of a class contain others.
std::vector<meta::Property> containmentsOf(const ClassObject& type) {
    std::vector<meta::Property> containments = type.getAllClassProperties();
    const auto isNone = [](const meta::Property& property) {
        return !property->isComposite() || !property->isAssociation() || property->isDerived();
    };
    containments.erase(std::remove_if(containments.begin(), containments.end(), isNone),
                       containments.end());
    return containments;
}

void addTargets(const Object& element, const meta::Property& property, ObjectSet& targets) {
    const Content content =
        element.get(property, Object::ReflectionPrivateTag::PUBLIC_ACCESS).content();
    if (const auto* single = std::get_if<ModelElement>(&content)) targets.insert(single->get());
    if (const auto* list = std::get_if<std::vector<ModelElement>>(&content)) {
        for (const ModelElement& target : *list) targets.insert(target.get());
    }
}

}  // namespace

std::vector<ModelElement> rootsAmong(std::vector<ModelElement> elements) {
    ObjectSet contained;
    std::unordered_map<const ClassObject*, std::vector<meta::Property>> containments;
    for (const ModelElement& element : elements) {
        const ClassObject* type = element->getClass().get();
        const auto [known, isNew] = containments.try_emplace(type);
        if (isNew) known->second = containmentsOf(*type);
        for (const meta::Property& property : known->second) {
            addTargets(*element.get(), property, contained);
        }
    }
    const auto isContained = [&](const ModelElement& element) {
        return contained.contains(element.get());
    };
    elements.erase(std::remove_if(elements.begin(), elements.end(), isContained), elements.end());
    return elements;
}

}  // namespace nuv::zero::memory
