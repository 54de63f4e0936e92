#include "xmi/LoadedMetamodel.h"

#include <algorithm>
#include <utility>

#include "model/memory/Text.h"

namespace nuv::zero::xmi {

std::vector<meta::Class> LoadedMetamodel::classes() const {
    std::vector<meta::Class> all;
    for (const auto& each : metamodels_) {
        const std::vector<meta::Class> some = each->classes();
        all.insert(all.end(), some.begin(), some.end());
    }
    return all;
}

const LoadedMetamodel::Package* LoadedMetamodel::package(std::string_view nsUri) const {
    const auto own = packages_.find(nsUri);
    if (own != packages_.end()) return &own->second;
    const auto alias = aliases_.find(nsUri);
    if (alias == aliases_.end()) return nullptr;
    const auto meant = packages_.find(alias->second);
    return meant == packages_.end() ? nullptr : &meant->second;
}

meta::Class LoadedMetamodel::findClass(std::string_view nsUri, std::string_view name) const {
    const Package* const found = package(nsUri);
    if (found == nullptr) return {};
    const auto type = found->find(name);
    return type == found->end() ? meta::Class() : type->second;
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
    return package(nsUri) != nullptr;
}

std::vector<meta::Class> LoadedMetamodel::classesNamed(std::string_view name) const {
    const std::u16string wanted = text::toUtf16(name);
    std::vector<meta::Class> qualified;
    std::vector<meta::Class> named;
    for (const meta::Class& type : classes()) {
        if (type->getQualifiedName() == wanted) qualified.push_back(type);
        if (type->getName() == wanted) named.push_back(type);
    }
    return qualified.empty() ? named : qualified;
}

std::string_view LoadedMetamodel::namespaceOf(const meta::Class& type) const {
    const auto found = namespaces_.find(type);
    return found == namespaces_.end() ? std::string_view() : found->second;
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

const DataType* LoadedMetamodel::dataType(const meta::Property& property) const {
    const auto found = dataTypes_.find(property);
    return found == dataTypes_.end() ? nullptr : found->second.get();
}

const FeatureDeclaration& LoadedMetamodel::declaration(const meta::Property& property) const {
    static const FeatureDeclaration nothing;
    const auto found = declarations_.find(property);
    return found == declarations_.end() ? nothing : found->second;
}

}  // namespace nuv::zero::xmi
