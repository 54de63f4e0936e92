#include "xmi/EcoreBuilder.h"

#include <algorithm>
#include <charconv>
#include <cstdint>

#include "model/memory/Text.h"
#include "xmi/ReadError.h"
#include "xmi/XmlFormReader.h"

namespace nuv::zero::xmi {
namespace {

meta::Type anyElement() {
    return ModelElement::metaClass();
}

}  // namespace

EcoreBuilder::EcoreBuilder(const EcoreSources& sources, const ReadOptions& options)
    : sources_(sources), options_(options) {}

void EcoreBuilder::extend() {
    State stateBefore = state_;
    LoadedMetamodel loadedBefore(loaded_);
    try {
        build();
    } catch (...) {
        state_ = std::move(stateBefore);
        loaded_ = std::move(loadedBefore);
        throw;
    }
}

void EcoreBuilder::addAlias(const std::string& nsUri, const std::string& meant) {
    loaded_.aliases_[nsUri] = meant;
}

void EcoreBuilder::build() {
    const auto& classifiers = sources_.classifiers();
    const auto& packages = sources_.packages();
    const auto isNew = [&](const EcoreSources::Package& each) {
        return each.place.source >= state_.files && !each.isExcluded;
    };
    const auto first = std::find_if(packages.begin(), packages.end(), isNew);
    if (first == packages.end()) {
        state_.files = sources_.size();
        return;
    }
    loaded_.metamodels_.push_back(
        std::make_shared<memory::Metamodel>(text::toUtf16(first->qualifiedName)));
    metamodel_ = loaded_.metamodels_.back().get();
    writtenNames_.clear();
    state_.classes.resize(classifiers.size());
    state_.dataTypes.resize(classifiers.size());
    for (std::size_t i = state_.classifiers; i < classifiers.size(); ++i) {
        state_.classifierAt.emplace(classifiers[i].place, i);
    }
    for (auto each = first; each != packages.end(); ++each) {
        if (!each->isExcluded) loaded_.packages_[each->nsUri];
    }
    addDataTypes();
    addClasses();
    addWrittenNames();
    addProperties();
    checkFeatureCounts();
    addOpposites();
    state_.files = sources_.size();
    state_.classifiers = classifiers.size();
}

void EcoreBuilder::addDataTypes() {
    const auto& classifiers = sources_.classifiers();
    for (std::size_t i = state_.classifiers; i < classifiers.size(); ++i) {
        const Classifier& each = classifiers[i];
        if (isClass(each)) continue;
        const std::string_view kind = sources_.typeOf(each.place);
        if (kind == "EEnum") {
            std::vector<DataType::Literal> literals;
            const DataType::Kind declared = addLiterals(each.place, literals);
            const std::string name = qualifiedName(each);
            state_.dataTypes[i] = {simpleType(name, DataKind::OtherText),
                                   std::make_shared<DataType>(name, declared, literals)};
            continue;
        }
        if (kind != "EDataType") {
            sources_.fail(each.place, inQuotes(kind) + " is no kind of classifier");
        }
        std::string_view javaClass = sources_.attribute(each.place, "instanceClassName");
        if (javaClass.empty()) javaClass = sources_.attribute(each.place, "instanceTypeName");
        state_.dataTypes[i] = dataType(qualifiedName(each), dataKindOfJavaClass(javaClass));
    }
}

DataType::Kind EcoreBuilder::addLiterals(SourceNode place,
                                         std::vector<DataType::Literal>& literals) const {
    const XmlDocument& document = sources_.document(place.source);
    for (Node child = document.firstChild(place.node); child != noNode;
         child = document.nextSibling(child)) {
        if (document.nameOf(child).local != "eLiterals") continue;
        const SourceNode literal{place.source, child};
        const std::string name(sources_.attribute(literal, "name"));
        const std::string_view* const text = document.attribute(child, "literal");
        literals.push_back({name, text == nullptr ? name : std::string(*text)});
    }
    // Without any, nothing is known of its values.
    return literals.empty() ? DataType::Kind::Text : DataType::Kind::Enumeration;
}

void EcoreBuilder::addClasses() {
    // Superclasses first, so that no class has to be laid out twice. Files may declare them in any
    // order and to any depth, hence a stack of our own.
    enum class Progress : std::uint8_t { New, Open, Done };
    const auto& classifiers = sources_.classifiers();
    std::vector<Progress> states(classifiers.size(), Progress::New);
    std::fill_n(states.begin(), state_.classifiers, Progress::Done);
    struct Frame {
        std::size_t classifier;
        std::vector<std::size_t> superclasses;
        std::size_t next = 0;
    };
    std::vector<Frame> stack;
    for (std::size_t i = state_.classifiers; i < classifiers.size(); ++i) {
        if (states[i] != Progress::New || !isClass(classifiers[i])) continue;
        states[i] = Progress::Open;
        stack.push_back({i, superclassesOf(i)});
        while (!stack.empty()) {
            Frame& top = stack.back();
            if (top.next == top.superclasses.size()) {
                addClass(top.classifier, top.superclasses);
                states[top.classifier] = Progress::Done;
                stack.pop_back();
                continue;
            }
            const std::size_t superclass = top.superclasses[top.next++];
            if (states[superclass] == Progress::Done) continue;
            if (states[superclass] == Progress::Open) {
                sources_.fail(classifiers[top.classifier].place,
                              "the class " + inQuotes(classifiers[top.classifier].name) +
                                  " is its own ancestor");
            }
            states[superclass] = Progress::Open;
            stack.push_back({superclass, superclassesOf(superclass)});
        }
    }
}

void EcoreBuilder::addWrittenNames() {
    // Only now, so that they take no name from a class whose own it is.
    for (const auto& [classifier, name] : writtenNames_) {
        const Classifier& declared = sources_.classifiers()[classifier];
        loaded_.packages_[namespaceOf(declared)].emplace(name, state_.classes[classifier]);
    }
}

std::vector<std::size_t> EcoreBuilder::superclassesOf(std::size_t classifier) {
    const SourceNode place = sources_.classifiers()[classifier].place;
    std::vector<std::size_t> result;
    const auto take = [&](SourceNode from, const EcoreTarget& target) {
        if (!target.isHere()) {
            const bool isEvery = meansEcore(target.file) && target.name() == "EObject";
            if (!isEvery) leaveOut(from, target);
            return;
        }
        const auto found = state_.classifierAt.find(target.place);
        if (found == state_.classifierAt.end() || !isClass(sources_.classifiers()[found->second])) {
            sources_.fail(from, "the superclass " + inQuotes(target.fragment) + " is no class");
        }
        // What every class is, none has to say.
        if (!isEObject(sources_.classifiers()[found->second])) result.push_back(found->second);
    };
    for (const EcoreTarget& each : sources_.references(place, "eSuperTypes")) take(place, each);

    // Instead of plain superclasses, generic ones name their class one level below.
    const XmlDocument& document = sources_.document(place.source);
    for (Node child = document.firstChild(place.node); child != noNode;
         child = document.nextSibling(child)) {
        if (document.nameOf(child).local != "eGenericSuperTypes") continue;
        const SourceNode generic{place.source, child};
        for (const EcoreTarget& each : sources_.references(generic, "eClassifier")) {
            // Nobody inherits from a data type, though real files say so.
            const bool isData = each.declaredType == "ecore:EDataType";
            if (!isData) take(generic, each);
        }
    }
    if (result.size() > 1000) {
        sources_.fail(place, "the class has more than 1000 superclasses");
    }
    // Named once more, a superclass adds nothing.
    auto end = result.begin();
    for (auto each = result.begin(); each != result.end(); ++each) {
        if (std::find(result.begin(), end, *each) == end) *end++ = *each;
    }
    result.erase(end, result.end());
    return result;
}

void EcoreBuilder::addClass(std::size_t classifier, const std::vector<std::size_t>& superclasses) {
    const Classifier& declared = sources_.classifiers()[classifier];
    std::vector<meta::Class> all;
    for (const std::size_t each : superclasses) all.push_back(state_.classes[each]);

    if (state_.heirs.size() >= options_.limits.classes) {
        sources_.fail(declared.place, "the metamodel has more than " +
                                          std::to_string(options_.limits.classes) + " classes");
    }
    std::size_t ancestors = 0;
    for (const meta::Class& each : all) ancestors += each->layout().lineage().size();
    countParts(declared.place, ancestors);

    const meta::Class made = metamodel_->addClass(text::toUtf16(declared.name), all,
                                                  text::toUtf16(qualifiedName(declared)));
    for (const memory::ClassObject* each : made->layout().lineage()) ++state_.heirs[each];
    state_.classes[classifier] = made;
    if (sources_.flag(declared.place, "abstract") || sources_.flag(declared.place, "interface")) {
        loaded_.abstract_.insert(made);
    }
    const std::string& nsUri = namespaceOf(declared);
    loaded_.namespaces_.emplace(made, nsUri);
    if (!loaded_.packages_[nsUri].emplace(declared.name, made).second) {
        sources_.fail(declared.place,
                      "the class " + inQuotes(declared.name) + " stands twice in its package");
    }
    const std::string_view written = writtenName(declared.place);
    if (!written.empty()) writtenNames_.push_back({classifier, std::string(written)});
}

void EcoreBuilder::addProperties() {
    const auto& classifiers = sources_.classifiers();
    XmlFormReader form(sources_, loaded_.xmlForm_, loaded_.aliases_);
    for (std::size_t i = state_.classifiers; i < classifiers.size(); ++i) {
        const meta::Class& owner = state_.classes[i];
        if (!owner) continue;
        const SourceNode place = classifiers[i].place;
        form.addClass(owner, place, namespaceOf(classifiers[i]));
        const XmlDocument& document = sources_.document(place.source);
        for (Node child = document.firstChild(place.node); child != noNode;
             child = document.nextSibling(child)) {
            if (document.nameOf(child).local != "eStructuralFeatures") continue;
            const SourceNode feature{place.source, child};
            countParts(feature, state_.heirs[owner.get()]);
            addProperty(owner, feature);
            form.addFeature(state_.propertyAt.at(feature), feature);
        }
    }
}

void EcoreBuilder::checkFeatureCounts() const {
    for (std::size_t i = state_.classifiers; i < state_.classes.size(); ++i) {
        const meta::Class& type = state_.classes[i];
        if (!type || type->layout().slotCount() <= options_.limits.features) continue;
        const Classifier& declared = sources_.classifiers()[i];
        sources_.fail(declared.place, "the class " + inQuotes(declared.name) + " has more than " +
                                          std::to_string(options_.limits.features) + " features");
    }
}

void EcoreBuilder::addProperty(const meta::Class& owner, SourceNode feature) {
    const std::string_view kind = sources_.typeOf(feature);
    if (kind != "EReference" && kind != "EAttribute") {
        sources_.fail(feature, inQuotes(kind) + " is no kind of feature");
    }
    const std::string_view name = sources_.attribute(feature, "name");
    if (name.empty()) sources_.fail(feature, "the feature has no name");

    const XmlFormReader::Kind written = XmlFormReader::kindOf(sources_, feature);
    const bool isWildcard = written == XmlFormReader::Kind::ElementWildcard;
    const bool isReference = kind == "EReference" || isWildcard;
    memory::PropertyFlags flags = memory::PropertyFlags::None;
    if (isReference) flags = flags | memory::PropertyFlags::Association;
    if (isReference && (isWildcard || sources_.flag(feature, "containment"))) {
        flags = flags | memory::PropertyFlags::Composite;
    }
    // What belongs to a group is computed from the group, which has no property here: the values
    // themselves are all that there is of it.
    if (sources_.flag(feature, "derived") && written != XmlFormReader::Kind::GroupMember) {
        flags = flags | memory::PropertyFlags::Derived;
    }
    const FeatureType type =
        isWildcard ? FeatureType{anyElement(), nullptr} : typeOfFeature(feature, isReference);
    const int upperBound = bound(feature, "upperBound", 1);
    if (upperBound == 0) {
        sources_.fail(feature, "the upper bound '0' is no bound");
    }
    // -1 is without a limit and -2 is not specified.
    const meta::Property made =
        metamodel_->addProperty(owner, text::toUtf16(name), type.type,
                                upperBound < 0 ? memory::unbounded : upperBound, flags);
    state_.propertyAt.emplace(feature, made);
    declare(made, feature, type.declared);
}

void EcoreBuilder::declare(const meta::Property& property, SourceNode feature, DeclaredType type) {
    const std::string_view written = writtenName(feature);
    if (!written.empty() && written != sources_.attribute(feature, "name")) {
        loaded_.writtenAs_[std::string(written)].push_back(property);
    }
    FeatureDeclaration declared;
    const XmlDocument& document = sources_.document(feature.source);
    const std::string_view* const text = document.attribute(feature.node, "defaultValueLiteral");
    if (text != nullptr) declared.defaultText = std::string(*text);
    declared.lowerBound = bound(feature, "lowerBound", 0);
    declared.isUnsettable = sources_.flag(feature, "unsettable");
    declared.isTransient = sources_.flag(feature, "transient");
    const bool saysNothing = !declared.defaultText && declared.lowerBound == 0 &&
                             !declared.isUnsettable && !declared.isTransient;
    if (!saysNothing) loaded_.declarations_.emplace(property, std::move(declared));
    if (type == nullptr) return;
    loaded_.dataTypes_.emplace(property, std::move(type));
    if (sources_.flag(feature, "iD")) loaded_.ids_.insert(property);
}

void EcoreBuilder::addOpposites() {
    for (auto each = state_.propertyAt.lower_bound({state_.files, 0});
         each != state_.propertyAt.end(); ++each) {
        const auto& [place, property] = *each;
        for (const EcoreTarget& target : sources_.references(place, "eOpposite")) {
            if (!target.isHere()) {
                leaveOut(place, target);
                continue;
            }
            const auto opposite = state_.propertyAt.find(target.place);
            if (opposite == state_.propertyAt.end()) {
                sources_.fail(place,
                              "the opposite " + inQuotes(target.fragment) + " is no feature");
            }
            // The other end is built already, and says nothing of this one.
            if (target.place.source < state_.files) continue;
            try {
                metamodel_->setOpposite(property, opposite->second);
            } catch (const memory::ModelError& error) {
                sources_.fail(place, error.what());
            }
        }
    }
}

EcoreBuilder::FeatureType EcoreBuilder::typeOfFeature(SourceNode feature, bool isReference) {
    for (const EcoreTarget& target : sources_.references(feature, "eType")) {
        return typeAt(feature, target, isReference);
    }
    const XmlDocument& document = sources_.document(feature.source);
    for (Node child = document.firstChild(feature.node); child != noNode;
         child = document.nextSibling(child)) {
        if (document.nameOf(child).local != "eGenericType") continue;
        const SourceNode generic{feature.source, child};
        for (const EcoreTarget& target : sources_.references(generic, "eClassifier")) {
            return typeAt(generic, target, isReference);
        }
    }
    // A type parameter, or nothing: whatever the values are, they are elements or texts.
    if (isReference) return {anyElement(), nullptr};
    return dataType("Any", DataKind::OtherText);
}

EcoreBuilder::FeatureType EcoreBuilder::typeAt(SourceNode feature, const EcoreTarget& target,
                                               bool isReference) {
    if (!target.isHere()) return typeInOtherFile(feature, target, isReference);
    const auto found = state_.classifierAt.find(target.place);
    if (found == state_.classifierAt.end()) {
        sources_.fail(feature, "the type " + inQuotes(target.fragment) + " is no classifier");
    }
    const Classifier& classifier = sources_.classifiers()[found->second];
    if (isReference != isClass(classifier)) {
        sources_.fail(
            feature, isReference
                         ? "the type " + inQuotes(classifier.name) + " of a reference is no class"
                         : "the type " + inQuotes(classifier.name) + " of an attribute is a class");
    }
    if (!isReference) return state_.dataTypes[found->second];
    const bool isAny = isEObject(classifier);
    return {isAny ? anyElement() : meta::Type(state_.classes[found->second]), nullptr};
}

EcoreBuilder::FeatureType EcoreBuilder::typeInOtherFile(SourceNode feature,
                                                        const EcoreTarget& target,
                                                        bool isReference) {
    const std::string name(target.name());
    const bool fromEcore = meansEcore(target.file);
    if (isReference) {
        if (!fromEcore || name != "EObject") leaveOut(feature, target);
        return {anyElement(), nullptr};
    }
    if (fromEcore) {
        if (const auto kind = ecoreDataKind(name)) return dataType("ecore::" + name, *kind);
    }
    if (meansXmlTypes(target.file)) return dataType("type::" + name, xmlDataKind(name));
    // What it is, nobody can say without the file; what it prints as is known all the same.
    return dataType(name, name == "String" ? DataKind::String : DataKind::OtherText);
}

EcoreBuilder::FeatureType EcoreBuilder::dataType(const std::string& qualifiedName, DataKind kind) {
    const auto known = state_.otherDataTypes.find({qualifiedName, kind});
    if (known != state_.otherDataTypes.end()) return known->second;
    DataType::Kind declared = DataType::Kind::Text;
    if (kind == DataKind::Integer) declared = DataType::Kind::Integer;
    if (kind == DataKind::Boolean) declared = DataType::Kind::Boolean;
    FeatureType made{simpleType(qualifiedName, kind),
                     std::make_shared<DataType>(qualifiedName, declared)};
    return state_.otherDataTypes.emplace(std::pair(qualifiedName, kind), std::move(made))
        .first->second;
}

meta::Type EcoreBuilder::simpleType(const std::string& qualifiedName, DataKind kind) {
    if (kind == DataKind::String) return meta::StandardTypes::stringMeta();
    const bool isInteger = kind == DataKind::Integer;
    return metamodel_->addPrimitive(
        text::toUtf16(qualifiedName),
        isInteger ? memory::TypeObject::Kind::Integer : memory::TypeObject::Kind::Text);
}

int EcoreBuilder::bound(SourceNode feature, std::string_view name, int otherwise) const {
    const std::string_view text = sources_.attribute(feature, name);
    if (text.empty()) return otherwise;
    int bound = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, code] = std::from_chars(text.data(), end, bound);
    if (code == std::errc() && stop == end) return bound;
    const std::string_view which = name == "upperBound" ? "upper" : "lower";
    sources_.fail(feature,
                  "the " + std::string(which) + " bound " + inQuotes(text) + " is no bound");
}

void EcoreBuilder::countParts(SourceNode place, std::size_t parts) {
    state_.inheritedParts += parts;
    if (state_.inheritedParts <= options_.limits.inheritedParts) return;
    sources_.fail(place, "the classes inherit more than " +
                             std::to_string(options_.limits.inheritedParts) +
                             " ancestors and features in total");
}

std::string_view EcoreBuilder::writtenName(SourceNode place) const {
    const std::string_view* const name = sources_.annotation(place, xmlAnnotation, "name");
    return name == nullptr ? std::string_view() : *name;
}

std::string EcoreBuilder::qualifiedName(const Classifier& classifier) const {
    return sources_.packages()[classifier.package].qualifiedName + "::" + classifier.name;
}

const std::string& EcoreBuilder::namespaceOf(const Classifier& classifier) const {
    return sources_.packages()[classifier.package].nsUri;
}

bool EcoreBuilder::isClass(const Classifier& classifier) const {
    return sources_.typeOf(classifier.place) == "EClass";
}

bool EcoreBuilder::isEObject(const Classifier& classifier) const {
    return classifier.name == "EObject" &&
           sources_.packages()[classifier.package].nsUri == ecoreNamespace;
}

void EcoreBuilder::leaveOut(SourceNode from, const EcoreTarget& target) {
    if (options_.crossFile == CrossFile::LeaveOut) {
        ++loaded_.leftOut_;
        return;
    }
    sources_.fail(from, "the reference " + inQuotes(target.file + "#" + target.fragment) +
                            " leads into a file that was not given");
}

}  // namespace nuv::zero::xmi
