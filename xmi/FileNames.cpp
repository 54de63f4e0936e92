#include "xmi/FileNames.h"

#include <algorithm>

#include "model/memory/Text.h"
#include "xmi/Fragment.h"

namespace nuv::zero::xmi {

FileNames::FileNames(const LoadedMetamodel& metamodel, const XmlNames& names,
                     FeatureTable& features)
    : metamodel_(metamodel),
      names_(names),
      features_(features),
      form_(metamodel.xmlForm()),
      hasForm_(!metamodel.xmlForm().empty()) {}

const KnownClass& FileNames::classOfRoot(Node node, const XmlStart& start) {
    if (start.type == unknownType) failType(node, start);
    if (start.type != noName) return classNamed(node, start.type);
    // A global element may be called as a class that is not its own.
    const KnownClass* const global = hasForm_ ? features_.globalElement(start.name) : nullptr;
    return global != nullptr ? *global : classNamed(node, start.name);
}

const KnownClass& FileNames::classOfContent(Node node, const XmlStart& start,
                                            const Feature& feature, const KnownClass* said) {
    if (start.type == unknownType) failType(node, start);
    if (start.type != noName) return classNamed(node, start.type);
    if (said != nullptr) return *said;
    if (feature.property->getType() == ModelElement::metaClass()) {
        throw Misfit(
            node,
            {Misfit::Reason::UnknownClass, Misfit::Weight::ContentsLost, nameOf(feature.property)},
            "an element of " + nameOf(feature.property) +
                " may be of any class, so its type is missing (xsi:type)");
    }
    return *feature.target;
}

FileNames::Child FileNames::child(Node node, const XmlStart& start, const KnownClass& owner) {
    if (hasForm_) return childOfForm(node, start, owner);
    if (!names_[start.name].uri.empty() && !features_.isNamespaceKnown(start.name)) {
        failNamespace(node, start.name, "element", Misfit::Weight::ContentsLost);
    }
    const Feature* const feature = features_.find(owner, start.name);
    if (feature == nullptr) {
        failFeature(node, start.name, owner, Misfit::Weight::ContentsLost);
    }
    return {feature};
}

FileNames::Child FileNames::childOfForm(Node node, const XmlStart& start, const KnownClass& owner) {
    const XmlName& name = names_[start.name];
    const bool isKnown = features_.isNamespaceKnown(start.name);
    if (isKnown) {
        if (const XmlForm::Wrapper* const wrapper = form_.wrapper(owner.type, name)) {
            return {nullptr, nullptr, wrapper};
        }
        const KnownPart part = features_.find(owner, start.name, XmlForm::Place::Element);
        if (part.feature != nullptr) return {part.feature, part.type};
    }
    if (form_.isWildcard(owner.type, name)) {
        // What is an element of a model may be kept, where there is a property for it.
        const meta::Property holder = form_.wildcard(owner.type, name);
        const KnownClass* type = nullptr;
        if (holder && isKnown) type = features_.globalElement(start.name);
        if (holder && isKnown && type == nullptr) type = features_.findClass(start.name);
        if (holder && !isKnown) unknownNamespaces_.add(name.uri);
        const bool fits = type != nullptr && type->type->canStandFor(holder->type());
        if (fits) return {&features_.known(holder), type};
        return {nullptr, nullptr, nullptr, true};
    }
    if (!isKnown) failNamespace(node, start.name, "element", Misfit::Weight::ContentsLost);
    failFeature(node, start.name, owner, Misfit::Weight::ContentsLost);
}

FileNames::Child FileNames::inWrapper(Node node, const XmlStart& start,
                                      const XmlForm::Wrapper& wrapper) {
    const Feature& feature = features_.known(wrapper.property);
    const bool needsClass = wrapper.namesClass && feature.isComposite && start.type == noName;
    if (!needsClass) return {&feature};
    const XmlName& name = names_[start.name];
    if (!name.uri.empty()) return {&feature, &classNamed(node, start.name)};
    // Without a namespace it is a class beside the declared one.
    const meta::Class found =
        metamodel_.findClass(metamodel_.namespaceOf(feature.target->type), name.local);
    return {&feature, found ? &features_.known(found) : &classNamed(node, start.name)};
}

const Feature* FileNames::attribute(Node node, NameId name, const KnownClass& owner) {
    // Mostly attributes have none.
    const bool isKnown = names_[name].uri.empty() || features_.isNamespaceKnown(name);
    const Feature* const feature =
        isKnown ? features_.find(owner, name, XmlForm::Place::Attribute).feature : nullptr;
    if (feature != nullptr) return feature;
    if (hasForm_ && form_.isWildcard(owner.type, names_[name], XmlForm::Place::Attribute)) {
        return nullptr;
    }
    // It may have been a link as well as a value.
    if (!isKnown) failNamespace(node, name, "attribute", Misfit::Weight::LinkLost);
    failFeature(node, name, owner, Misfit::Weight::LinkLost);
}

const Feature* FileNames::textOfForm(const KnownClass& owner) {
    const meta::Property property = form_.textContent(owner.type);
    const bool isValue = property && !property->isAssociation();
    return isValue ? &features_.known(property) : nullptr;
}

bool FileNames::mayHoldText(const KnownClass& owner) const {
    return hasForm_ && form_.isMixed(owner.type);
}

bool FileNames::isNil(const XmlStart& start) const {
    return std::any_of(start.attributes.begin(), start.attributes.end(),
                       [&](const XmlAttribute& each) {
                           const XmlName& name = names_[each.name];
                           return name.isXsi && name.local == "nil" && each.value == "true";
                       });
}

std::vector<std::string> FileNames::unknownNamespaces() const {
    std::vector<std::string> all;
    for (TextTable::Number i = 0; i < unknownNamespaces_.size(); ++i) {
        all.emplace_back(unknownNamespaces_[i]);
    }
    return all;
}

const KnownClass& FileNames::classNamed(Node node, NameId id) {
    const KnownClass* const found = features_.findClass(id);
    if (found != nullptr) return *found;
    const XmlName& name = names_[id];
    if (!metamodel_.hasNamespace(name.uri)) {
        failNamespace(node, id, "class", Misfit::Weight::ContentsLost);
    }
    throw Misfit(node, {Misfit::Reason::UnknownClass, Misfit::Weight::ContentsLost},
                 "the package " + inQuotes(name.uri) + " has no class " + inQuotes(name.local));
}

void FileNames::failNamespace(Node node, NameId id, std::string_view what, Finding::Weight weight) {
    const XmlName& name = names_[id];
    unknownNamespaces_.add(name.uri);
    const auto reason =
        what == "class" ? Misfit::Reason::UnknownClass : Misfit::Reason::UnknownFeature;
    throw Misfit(node, {reason, weight},
                 "no given metamodel has the namespace " + inQuotes(name.uri) + " of the " +
                     std::string(what) + " " + inQuotes(name.local));
}

void FileNames::failFeature(Node node, NameId name, const KnownClass& owner,
                            Finding::Weight weight) const {
    throw Misfit(node, {Misfit::Reason::UnknownFeature, weight},
                 "the class " + text::toUtf8(owner.type->getName()) + " has no feature " +
                     inQuotes(names_[name].local));
}

void FileNames::failType(Node node, const XmlStart& start) const {
    const auto isType = [&](const XmlAttribute& each) {
        const XmlName& name = names_[each.name];
        return (name.isXmi || name.isXsi) && name.local == "type";
    };
    const auto type = std::find_if(start.attributes.begin(), start.attributes.end(), isType);
    throw Misfit(node, {Misfit::Reason::UnknownClass, Misfit::Weight::ContentsLost},
                 "the prefix of the type " + inQuotes(trimmed(type->value)) + " is not declared");
}

}  // namespace nuv::zero::xmi
