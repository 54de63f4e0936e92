#include "xmi/XmlFormReader.h"

#include "xmi/Fragment.h"

namespace nuv::zero::xmi {
namespace {

constexpr std::string_view wrapperAnnotation =
    "http:///org/eclipse/sphinx/emf/serialization/XMLPersistenceMappingExtendedMetaData";

std::string_view saidBy(const EcoreSources& sources, SourceNode place, std::string_view key) {
    const std::string_view* const found = sources.annotation(place, xmlAnnotation, key);
    return found == nullptr ? std::string_view() : *found;
}

}  // namespace

XmlFormReader::Kind XmlFormReader::kindOf(const EcoreSources& sources, SourceNode feature) {
    const std::string_view kind = saidBy(sources, feature, "kind");
    // What a mixed class holds between its elements has this name.
    if (kind == "elementWildcard" && saidBy(sources, feature, "name") != ":mixed") {
        return Kind::ElementWildcard;
    }
    if (kind != "element") return Kind::Ordinary;
    if (sources.annotation(feature, xmlAnnotation, "group") != nullptr) return Kind::GroupMember;
    const XmlDocument& document = sources.document(feature.source);
    const SourceNode owner{feature.source, document[feature.node].parent};
    return saidBy(sources, owner, "kind") == "mixed" ? Kind::GroupMember : Kind::Ordinary;
}

std::string_view XmlFormReader::said(SourceNode place, std::string_view key) const {
    return saidBy(sources_, place, key);
}

std::string XmlFormReader::namespaceOf(SourceNode feature) const {
    const std::string_view written = said(feature, "namespace");
    return written == "##targetNamespace" ? nsUri_ : std::string(written);
}

void XmlFormReader::addClass(const meta::Class& type, SourceNode place, const std::string& nsUri) {
    type_ = &type;
    nsUri_ = nsUri;
    const std::string_view* const name = sources_.annotation(place, xmlAnnotation, "name");
    isDocumentRoot_ = name != nullptr && name->empty();
    if (said(place, "kind") != "mixed") return;
    form_.ofClasses_[type.get()].isMixed = true;
    form_.isEmpty_ = false;
}

void XmlFormReader::addFeature(const meta::Property& property, SourceNode feature) {
    const std::string_view kind = said(feature, "kind");
    const std::string_view written = said(feature, "name");
    const std::string name(written.empty() ? sources_.attribute(feature, "name") : written);
    if (kind == "attributeWildcard" || kind == "elementWildcard") {
        if (name != ":mixed") {
            addWildcard(
                property, feature,
                kind == "elementWildcard" ? XmlForm::Place::Element : XmlForm::Place::Attribute);
        }
    } else if (kind == "simple") {
        form_.ofClasses_[type_->get()].textContent = property;
        form_.isEmpty_ = false;
    } else if (kind == "element" && isDocumentRoot_) {
        addGlobal(property, feature, name);
    } else if (kind == "element" || kind == "attribute") {
        const auto place = kind == "element" ? XmlForm::Place::Element : XmlForm::Place::Attribute;
        form_.features_[name].push_back({namespaceOf(feature), property, place});
        form_.isEmpty_ = false;
    }
    addWrapper(property, feature, name);
}

void XmlFormReader::addGlobal(const meta::Property& property, SourceNode feature,
                              const std::string& name) {
    const std::string uri = namespaceOf(feature);
    XmlForm::Global global;
    if (property->isAssociation() && property->type().isClass()) {
        global.type = meta::Class(meta::StructuredType(
            static_cast<const memory::StructuredTypeObject*>(&property->type())));
    }
    const std::string_view head = said(feature, "affiliation");
    if (!head.empty()) {
        const std::size_t hash = head.rfind('#');
        const bool isWhole = hash != std::string_view::npos && hash != 0;
        global.head = {isWhole ? std::string(head.substr(0, hash)) : uri,
                       std::string(hash == std::string_view::npos ? head : head.substr(hash + 1))};
    }
    form_.globals_[name].emplace(uri, std::move(global));
    form_.isEmpty_ = false;
    // Files then call the package by that namespace.
    if (!uri.empty() && uri != nsUri_) aliases_.emplace(uri, nsUri_);
}

void XmlFormReader::addWildcard(const meta::Property& property, SourceNode feature,
                                XmlForm::Place place) {
    XmlForm::Wildcard wildcard;
    wildcard.property = property;
    wildcard.place = place;
    for (const std::string_view each : splitAtBlanks(said(feature, "wildcards"))) {
        wildcard.namespaces.emplace_back(each);
    }
    wildcard.own = nsUri_;
    wildcard.holdsElements = place == XmlForm::Place::Element && property->isComposite();
    form_.ofClasses_[type_->get()].wildcards.push_back(std::move(wildcard));
    form_.isEmpty_ = false;
}

void XmlFormReader::addWrapper(const meta::Property& property, SourceNode feature,
                               const std::string& name) {
    const auto saysYes = [&](std::string_view key) {
        const std::string_view* const found = sources_.annotation(feature, wrapperAnnotation, key);
        return found != nullptr && *found == "true";
    };
    const std::string_view* const wrapperName =
        sources_.annotation(feature, wrapperAnnotation, "wrapperName");
    const bool isWrapped = saysYes("featureWrapperElement") && wrapperName != nullptr;
    const bool isNamed = saysYes("featureElement");
    const int levels = (isWrapped ? 1 : 0) + (isNamed ? 1 : 0) +
                       (saysYes("classifierWrapperElement") ? 1 : 0) +
                       (saysYes("classifierElement") ? 1 : 0);
    if (levels == 0 || !(isWrapped || isNamed)) return;
    const std::string outer = isWrapped ? std::string(*wrapperName) : name;
    if (levels == 1) {
        if (isWrapped) {
            form_.features_[outer].push_back(
                {namespaceOf(feature), property, XmlForm::Place::Element});
        }
        return;
    }
    XmlForm::Wrapper wrapper;
    wrapper.property = property;
    wrapper.depth = static_cast<std::uint32_t>(levels - 1);
    wrapper.namesClass = saysYes("classifierElement");
    const std::string_view* const suffix =
        sources_.annotation(feature, wrapperAnnotation, "classifierNameSuffix");
    if (suffix != nullptr) wrapper.suffix = *suffix;
    form_.wrappers_[outer].push_back(std::move(wrapper));
    form_.isEmpty_ = false;
}

}  // namespace nuv::zero::xmi
