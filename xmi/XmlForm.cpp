#include "xmi/XmlForm.h"

#include <algorithm>

#include "model/memory/Text.h"

namespace nuv::zero::xmi {
namespace {

/// So many global elements may take each other's place; a metamodel may well say that they do so in
/// a circle.
constexpr int longestChain = 100;

}  // namespace

bool XmlForm::Wildcard::takes(std::string_view uri) const {
    if (namespaces.empty()) return true;
    return std::any_of(namespaces.begin(), namespaces.end(), [&](const std::string& each) {
        if (each == "##any") return true;
        if (each == "##other") return !uri.empty() && uri != own;
        if (each == "##local") return uri.empty();
        if (each == "##targetNamespace") return uri == own;
        return uri == each;
    });
}

const XmlForm::Global* XmlForm::global(std::string_view uri, std::string_view local) const {
    const auto named = globals_.find(local);
    if (named == globals_.end()) return nullptr;
    const auto found = named->second.find(uri);
    return found == named->second.end() ? nullptr : &found->second;
}

meta::Class XmlForm::globalElement(const XmlName& name) const {
    const Global* const found = global(name.uri, name.local);
    return found == nullptr ? meta::Class() : found->type;
}

XmlForm::Part XmlForm::named(const meta::Class& owner, std::string_view uri, std::string_view local,
                             Place place, bool isExact) const {
    const auto candidates = features_.find(local);
    if (candidates == features_.end()) return {};
    for (const Named& each : candidates->second) {
        if (isExact && (each.uri != uri || each.place != place)) continue;
        if (owner->hasProperty(each.property)) return {each.property, {}};
    }
    return {};
}

XmlForm::Part XmlForm::feature(const meta::Class& owner, const XmlName& name, Place place) const {
    if (const Part exact = named(owner, name.uri, name.local, place, true)) return exact;
    if (place == Place::Element) {
        const Global* each = global(name.uri, name.local);
        const meta::Class type = each == nullptr ? meta::Class() : each->type;
        for (int i = 0; each != nullptr && type && i < longestChain; ++i) {
            const auto& [uri, local] = each->head;
            if (local.empty()) break;
            Part found = named(owner, uri, local, place, true);
            if (found) return {found.property, type};
            each = global(uri, local);
        }
    }
    // Files that follow no schema call properties by their own names.
    if (const meta::Property own = owner->getProperty(text::toUtf16(name.local))) return {own, {}};
    return named(owner, name.uri, name.local, place, false);
}

const XmlForm::Wrapper* XmlForm::wrapper(const meta::Class& owner, const XmlName& name) const {
    const auto candidates = wrappers_.find(name.local);
    if (candidates == wrappers_.end()) return nullptr;
    for (const Wrapper& each : candidates->second) {
        if (owner->hasProperty(each.property)) return &each;
    }
    return nullptr;
}

template <class Found>
bool XmlForm::anyOfLineage(const meta::Class& owner, const Found& found) const {
    const auto& lineage = owner->layout().lineage();
    return std::any_of(lineage.rbegin(), lineage.rend(), [&](const memory::ClassObject* each) {
        const auto known = ofClasses_.find(each);
        return known != ofClasses_.end() && found(known->second);
    });
}

bool XmlForm::isWildcard(const meta::Class& owner, const XmlName& name, Place place) const {
    return anyOfLineage(owner, [&](const OfClass& each) {
        return std::any_of(each.wildcards.begin(), each.wildcards.end(), [&](const Wildcard& one) {
            return one.place == place && one.takes(name.uri);
        });
    });
}

meta::Property XmlForm::wildcard(const meta::Class& owner, const XmlName& name) const {
    meta::Property property;
    anyOfLineage(owner, [&](const OfClass& each) {
        for (const Wildcard& one : each.wildcards) {
            if (one.holdsElements && one.takes(name.uri)) property = one.property;
        }
        return static_cast<bool>(property);
    });
    return property;
}

meta::Property XmlForm::textContent(const meta::Class& owner) const {
    meta::Property property;
    anyOfLineage(owner, [&](const OfClass& each) {
        property = each.textContent;
        return static_cast<bool>(property);
    });
    return property;
}

bool XmlForm::isMixed(const meta::Class& owner) const {
    return anyOfLineage(owner, [](const OfClass& each) { return each.isMixed; });
}

}  // namespace nuv::zero::xmi
