#include "xmi/FeatureTable.h"

#include <bit>
#include <utility>

namespace nuv::zero::xmi {

FeatureTable::FeatureTable(const LoadedMetamodel& metamodel, const XmlNames& names)
    : metamodel_(metamodel), names_(names), ofClasses_(64), factor_(KeyedHash()("feature") | 1U) {}

FeatureTable::OfName& FeatureTable::ofName(NameId name) {
    if (name >= ofNames_.size()) ofNames_.resize(names_.size());
    return ofNames_[name];
}

const KnownClass* FeatureTable::findClass(NameId name) {
    OfName& answers = ofName(name);
    if (answers.isClass == OfName::Answer::Unasked) {
        const meta::Class found = metamodel_.findClass(names_[name].uri, names_[name].local);
        if (found) answers.type = &known(found);
        answers.isClass = found ? OfName::Answer::Yes : OfName::Answer::No;
    }
    return answers.type;
}

bool FeatureTable::isNamespaceKnown(NameId name) {
    OfName& answers = ofName(name);
    if (answers.isNamespaceKnown == OfName::Answer::Unasked) {
        const std::string_view uri = names_[name].uri;
        const bool isKnown = uri.empty() || metamodel_.hasNamespace(uri);
        answers.isNamespaceKnown = isKnown ? OfName::Answer::Yes : OfName::Answer::No;
    }
    return answers.isNamespaceKnown == OfName::Answer::Yes;
}

const KnownClass* FeatureTable::globalElement(NameId name) {
    const meta::Class found = metamodel_.xmlForm().globalElement(names_[name]);
    return found ? &known(found) : nullptr;
}

KnownPart FeatureTable::find(const KnownClass& owner, NameId name, XmlForm::Place place) {
    // No name has this number, so no key is that of a free place.
    const std::uint64_t which =
        (std::uint64_t{owner.number} << 1U) + (place == XmlForm::Place::Attribute ? 1U : 0U);
    const std::uint64_t key = (which << 32U) | (name + std::uint64_t{1});
    OfClass* known = &placeOf(key);
    if (known->part.feature != nullptr) return known->part;

    XmlForm::Part found;
    if (!metamodel_.xmlForm().empty()) {
        found = metamodel_.xmlForm().feature(owner.type, names_[name], place);
    }
    if (!found) found.property = metamodel_.findProperty(owner.type, names_[name].local);
    if (!found) return {};
    const KnownPart part{&this->known(found.property),
                         found.type ? &this->known(found.type) : nullptr};
    if (2 * (taken_ + 1) > ofClasses_.size()) {
        grow();
        known = &placeOf(key);
    }
    *known = {key, part};
    ++taken_;
    return part;
}

const KnownClass& FeatureTable::known(const meta::Class& type) {
    const auto before = byClass_.find(type.get());
    if (before != byClass_.end()) return *before->second;
    classes_.push_back({type, static_cast<std::uint32_t>(classes_.size()),
                        metamodel_.isAbstract(type), static_cast<bool>(type->getProperty(u"href")),
                        type->layout().slotCount()});
    byClass_.emplace(type.get(), &classes_.back());
    return classes_.back();
}

Feature& FeatureTable::known(const meta::Property& property) {
    const auto before = byProperty_.find(property.get());
    if (before != byProperty_.end()) return *before->second;
    const bool isReference = property->isAssociation();
    const bool isInteger = property->type().kind() == memory::TypeObject::Kind::Integer;
    const KnownClass* target = nullptr;
    if (isReference) {
        target = &known(static_cast<const memory::ClassObject&>(property->type()).handle());
    }
    features_.push_back({property, static_cast<std::uint32_t>(features_.size()),
                         isReference ? Feature::Kind::Reference
                         : isInteger ? Feature::Kind::Integer
                                     : Feature::Kind::Text,
                         property->isSingleValued(), property->isComposite(),
                         property->getUpperBound() == memory::unbounded, metamodel_.isId(property),
                         target, metamodel_.dataType(property)});
    byProperty_.emplace(property.get(), &features_.back());
    return features_.back();
}

FeatureTable::OfClass& FeatureTable::placeOf(std::uint64_t key) noexcept {
    // The upper bits of the product, which depend on all bits of the key.
    const int shift = 64 - std::countr_zero(ofClasses_.size());
    const std::size_t mask = ofClasses_.size() - 1;
    for (std::size_t at = (key * factor_) >> static_cast<unsigned>(shift);; at = (at + 1) & mask) {
        OfClass& place = ofClasses_[at];
        if (place.part.feature == nullptr || place.key == key) return place;
    }
}

void FeatureTable::grow() {
    std::vector<OfClass> before(2 * ofClasses_.size());
    before.swap(ofClasses_);
    for (const OfClass& each : before) {
        if (each.part.feature != nullptr) placeOf(each.key) = each;
    }
}

}  // namespace nuv::zero::xmi
