#include "xmi/LoadedMetamodel.h"

#include <utility>

#include "model/memory/Text.h"

namespace nuv::zero::xmi {

LoadedMetamodel::LoadedMetamodel(memory::Metamodel metamodel) : metamodel_(std::move(metamodel)) {}

meta::Class LoadedMetamodel::findClass(std::string_view nsUri, std::string_view name) const {
    const auto package = classes_.find(nsUri);
    if (package == classes_.end()) return {};
    const auto found = package->second.find(name);
    return found == package->second.end() ? meta::Class() : found->second;
}

meta::Property LoadedMetamodel::findProperty(const meta::Class& type, std::string_view name) const {
    const meta::Property plain = type->getProperty(text::toUtf16(name));
    if (plain) return plain;
    const auto candidates = writtenAs_.find(name);
    if (candidates == writtenAs_.end()) return {};
    for (const meta::Property& each : candidates->second) {
        if (type->hasProperty(each)) return each;
    }
    return {};
}

bool LoadedMetamodel::hasNamespace(std::string_view nsUri) const {
    return classes_.find(nsUri) != classes_.end();
}

bool LoadedMetamodel::hasDerivedId(const meta::Class& type) const {
    bool isDerived = false;
    for (const meta::Property& each : type->getAllClassProperties()) {
        if (!isId(each)) continue;
        if (!each->isDerived()) return false;
        isDerived = true;
    }
    return isDerived;
}

std::vector<meta::Class> LoadedMetamodel::classesNamed(std::string_view name) const {
    const std::u16string wanted = text::toUtf16(name);
    std::vector<meta::Class> named;
    for (const meta::Class& type : metamodel_.classes()) {
        if (type->getQualifiedName() == wanted) return {type};
        if (type->getName() == wanted) named.push_back(type);
    }
    return named;
}

}  // namespace nuv::zero::xmi
