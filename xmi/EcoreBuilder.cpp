#include "xmi/EcoreBuilder.h"

#include <algorithm>
#include <charconv>
#include <cstdint>

#include "model/memory/Text.h"
#include "xmi/ReadError.h"

namespace nuv::zero::xmi {
namespace {

std::u16string firstPackageName(const EcoreSources& sources) {
    return text::toUtf16(sources.packages().front().qualifiedName);
}

meta::Type anyElement() {
    return ModelElement::metaClass();
}

}  // namespace

EcoreBuilder::EcoreBuilder(const EcoreSources& sources, const ReadOptions& options)
    : sources_(sources),
      options_(options),
      loaded_(memory::Metamodel(firstPackageName(sources))),
      metamodel_(loaded_.metamodel_) {}

LoadedMetamodel EcoreBuilder::build() {
    const auto& classifiers = sources_.classifiers();
    classes_.resize(classifiers.size());
    dataTypes_.resize(classifiers.size());
    for (std::size_t i = 0; i < classifiers.size(); ++i) {
        classifierAt_.emplace(classifiers[i].place, i);
    }
    for (const auto& package : sources_.packages()) loaded_.classes_[package.nsUri];
    addDataTypes();
    addClasses();
    addWrittenNames();
    addProperties();
    checkFeatureCounts();
    addOpposites();
    return std::move(loaded_);
}

void EcoreBuilder::addDataTypes() {
    const auto& classifiers = sources_.classifiers();
    for (std::size_t i = 0; i < classifiers.size(); ++i) {
        const Classifier& each = classifiers[i];
        if (isClass(each)) continue;
        const std::string_view kind = sources_.typeOf(each.place);
        if (kind != "EDataType" && kind != "EEnum") {
            sources_.fail(each.place, inQuotes(kind) + " is no kind of classifier");
        }
        std::string_view javaClass = sources_.attribute(each.place, "instanceClassName");
        if (javaClass.empty()) javaClass = sources_.attribute(each.place, "instanceTypeName");
        dataTypes_[i] =
            dataType(qualifiedName(each),
                     kind == "EEnum" ? DataKind::OtherText : dataKindOfJavaClass(javaClass));
    }
}

void EcoreBuilder::addClasses() {
    // Superclasses first, so that no class has to be laid out twice. Files may declare them in any
    // order and to any depth, hence a stack of our own.
    enum class State : std::uint8_t { New, Open, Done };
    const auto& classifiers = sources_.classifiers();
    std::vector<State> states(classifiers.size(), State::New);
    struct Frame {
        std::size_t classifier;
        Superclasses superclasses;
        std::size_t next = 0;
    };
    std::vector<Frame> stack;
    for (std::size_t i = 0; i < classifiers.size(); ++i) {
        if (states[i] != State::New || !isClass(classifiers[i])) continue;
        states[i] = State::Open;
        stack.push_back({i, superclassesOf(i)});
        while (!stack.empty()) {
            Frame& top = stack.back();
            if (top.next == top.superclasses.here.size()) {
                addClass(top.classifier, top.superclasses);
                states[top.classifier] = State::Done;
                stack.pop_back();
                continue;
            }
            const std::size_t superclass = top.superclasses.here[top.next++];
            if (states[superclass] == State::Done) continue;
            if (states[superclass] == State::Open) {
                sources_.fail(classifiers[top.classifier].place,
                              "the class " + inQuotes(classifiers[top.classifier].name) +
                                  " is its own ancestor");
            }
            states[superclass] = State::Open;
            stack.push_back({superclass, superclassesOf(superclass)});
        }
    }
}

void EcoreBuilder::addWrittenNames() {
    // Only now, so that they take no name from a class whose own it is.
    for (const auto& [classifier, name] : writtenNames_) {
        const auto& package = sources_.packages()[sources_.classifiers()[classifier].package];
        loaded_.classes_[package.nsUri].emplace(name, classes_[classifier]);
    }
}

EcoreBuilder::Superclasses EcoreBuilder::superclassesOf(std::size_t classifier) {
    const SourceNode place = sources_.classifiers()[classifier].place;
    Superclasses result;
    const auto take = [&](SourceNode from, const EcoreTarget& target) {
        if (!target.isHere()) {
            if (meansEcore(target.file) && isEcoreClass(target.name())) {
                if (target.name() != "EObject") {
                    result.others.push_back(ecoreClass(target.name()));
                }
                return;
            }
            leaveOut(from, target);
            return;
        }
        const auto found = classifierAt_.find(target.place);
        if (found == classifierAt_.end() || !isClass(sources_.classifiers()[found->second])) {
            sources_.fail(from, "the superclass " + inQuotes(target.fragment) + " is no class");
        }
        result.here.push_back(found->second);
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
    // Named once more, a superclass adds nothing.
    const auto dropRepeats = [](auto& list) {
        auto end = list.begin();
        for (auto each = list.begin(); each != list.end(); ++each) {
            if (std::find(list.begin(), end, *each) == end) *end++ = *each;
        }
        list.erase(end, list.end());
    };
    if (result.here.size() > 1000) {
        sources_.fail(place, "the class has more than 1000 superclasses");
    }
    dropRepeats(result.here);
    dropRepeats(result.others);
    return result;
}

void EcoreBuilder::addClass(std::size_t classifier, const Superclasses& superclasses) {
    const Classifier& declared = sources_.classifiers()[classifier];
    std::vector<meta::Class> all;
    for (const std::size_t each : superclasses.here) all.push_back(classes_[each]);
    all.insert(all.end(), superclasses.others.begin(), superclasses.others.end());

    if (heirs_.size() >= options_.limits.classes) {
        sources_.fail(declared.place, "the metamodel has more than " +
                                          std::to_string(options_.limits.classes) + " classes");
    }
    std::size_t ancestors = 0;
    for (const meta::Class& each : all) ancestors += each->layout().lineage().size();
    countParts(declared.place, ancestors);

    const meta::Class made = metamodel_.addClass(text::toUtf16(declared.name), all,
                                                 text::toUtf16(qualifiedName(declared)));
    for (const memory::ClassObject* each : made->layout().lineage()) ++heirs_[each];
    classes_[classifier] = made;
    if (sources_.flag(declared.place, "abstract") || sources_.flag(declared.place, "interface")) {
        loaded_.abstract_.insert(made);
    }
    auto& package = loaded_.classes_[sources_.packages()[declared.package].nsUri];
    if (!package.emplace(declared.name, made).second) {
        sources_.fail(declared.place,
                      "the class " + inQuotes(declared.name) + " stands twice in its package");
    }
    const std::string_view written = sources_.writtenName(declared.place);
    if (!written.empty()) writtenNames_.push_back({classifier, std::string(written)});
}

void EcoreBuilder::addProperties() {
    const auto& classifiers = sources_.classifiers();
    for (std::size_t i = 0; i < classifiers.size(); ++i) {
        if (!classes_[i]) continue;
        const SourceNode place = classifiers[i].place;
        const XmlDocument& document = sources_.document(place.source);
        for (Node child = document.firstChild(place.node); child != noNode;
             child = document.nextSibling(child)) {
            if (document.nameOf(child).local != "eStructuralFeatures") continue;
            countParts({place.source, child}, heirs_[classes_[i].get()]);
            addProperty(classes_[i], {place.source, child});
        }
    }
}

void EcoreBuilder::checkFeatureCounts() const {
    for (std::size_t i = 0; i < classes_.size(); ++i) {
        if (!classes_[i] || classes_[i]->layout().slotCount() <= options_.limits.features) continue;
        const Classifier& declared = sources_.classifiers()[i];
        sources_.fail(declared.place, "the class " + inQuotes(declared.name) + " has more than " +
                                          std::to_string(options_.limits.features) + " features");
    }
}

void EcoreBuilder::addProperty(const meta::Class& owner, SourceNode feature) {
    const std::string_view kind = sources_.typeOf(feature);
    const bool isReference = kind == "EReference";
    if (!isReference && kind != "EAttribute") {
        sources_.fail(feature, inQuotes(kind) + " is no kind of feature");
    }
    const std::string_view name = sources_.attribute(feature, "name");
    if (name.empty()) sources_.fail(feature, "the feature has no name");

    memory::PropertyFlags flags = memory::PropertyFlags::None;
    if (isReference) flags = flags | memory::PropertyFlags::Association;
    if (isReference && sources_.flag(feature, "containment")) {
        flags = flags | memory::PropertyFlags::Composite;
    }
    if (sources_.flag(feature, "derived")) flags = flags | memory::PropertyFlags::Derived;
    const meta::Property made =
        metamodel_.addProperty(owner, text::toUtf16(name), typeOfFeature(feature, isReference),
                               upperBound(feature), flags);
    propertyAt_.emplace(feature, made);
    const std::string_view written = sources_.writtenName(feature);
    if (!written.empty() && written != name) {
        loaded_.writtenAs_[std::string(written)].push_back(made);
    }
    if (!isReference && sources_.flag(feature, "iD")) loaded_.ids_.insert(made);
}

void EcoreBuilder::addOpposites() {
    for (const auto& [place, property] : propertyAt_) {
        for (const EcoreTarget& target : sources_.references(place, "eOpposite")) {
            if (!target.isHere()) {
                leaveOut(place, target);
                continue;
            }
            const auto opposite = propertyAt_.find(target.place);
            if (opposite == propertyAt_.end()) {
                sources_.fail(place,
                              "the opposite " + inQuotes(target.fragment) + " is no feature");
            }
            try {
                metamodel_.setOpposite(property, opposite->second);
            } catch (const memory::ModelError& error) {
                sources_.fail(place, error.what());
            }
        }
    }
}

meta::Type EcoreBuilder::typeOfFeature(SourceNode feature, bool isReference) {
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
    return isReference ? anyElement() : dataType("Any", DataKind::OtherText);
}

meta::Type EcoreBuilder::typeAt(SourceNode feature, const EcoreTarget& target, bool isReference) {
    if (!target.isHere()) return typeInOtherFile(feature, target, isReference);
    const auto found = classifierAt_.find(target.place);
    if (found == classifierAt_.end()) {
        sources_.fail(feature, "the type " + inQuotes(target.fragment) + " is no classifier");
    }
    const Classifier& classifier = sources_.classifiers()[found->second];
    if (isReference != isClass(classifier)) {
        sources_.fail(
            feature, isReference
                         ? "the type " + inQuotes(classifier.name) + " of a reference is no class"
                         : "the type " + inQuotes(classifier.name) + " of an attribute is a class");
    }
    if (!isReference) return dataTypes_[found->second];
    return isEObject(classifier) ? anyElement() : meta::Type(classes_[found->second]);
}

meta::Type EcoreBuilder::typeInOtherFile(SourceNode feature, const EcoreTarget& target,
                                         bool isReference) {
    const std::string name(target.name());
    const bool fromEcore = meansEcore(target.file);
    if (isReference) {
        if (fromEcore && isEcoreClass(name)) {
            return name == "EObject" ? anyElement() : meta::Type(ecoreClass(name));
        }
        leaveOut(feature, target);
        return anyElement();
    }
    if (fromEcore) {
        if (const auto kind = ecoreDataKind(name)) return dataType("ecore::" + name, *kind);
    }
    if (meansXmlTypes(target.file)) return dataType("type::" + name, xmlDataKind(name));
    // What it is, nobody can say without the file; what it prints as is known all the same.
    return dataType(name, name == "String" ? DataKind::String : DataKind::OtherText);
}

meta::Class EcoreBuilder::ecoreClass(std::string_view name) {
    const auto known = otherClasses_.find(name);
    if (known != otherClasses_.end()) return known->second;
    const std::u16string plain = text::toUtf16(name);
    const meta::Class made = metamodel_.addClass(plain, {}, u"ecore::" + plain);
    ++heirs_[made.get()];
    otherClasses_.emplace(name, made);
    loaded_.classes_[std::string(ecoreNamespace)].emplace(name, made);
    return made;
}

meta::Type EcoreBuilder::dataType(const std::string& qualifiedName, DataKind kind) {
    if (kind == DataKind::String) return meta::StandardTypes::stringMeta();
    const auto known = otherDataTypes_.find({qualifiedName, kind});
    if (known != otherDataTypes_.end()) return known->second;
    const bool isInteger = kind == DataKind::Integer;
    const meta::Type made = metamodel_.addPrimitive(
        text::toUtf16(qualifiedName),
        isInteger ? memory::TypeObject::Kind::Integer : memory::TypeObject::Kind::Text);
    otherDataTypes_.emplace(std::pair(qualifiedName, kind), made);
    return made;
}

int EcoreBuilder::upperBound(SourceNode feature) const {
    const std::string_view text = sources_.attribute(feature, "upperBound");
    if (text.empty()) return 1;
    int bound = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, code] = std::from_chars(text.data(), end, bound);
    if (code != std::errc() || stop != end || bound == 0) {
        sources_.fail(feature, "the upper bound " + inQuotes(text) + " is no bound");
    }
    // -1 is without a limit and -2 is not specified.
    return bound < 0 ? memory::unbounded : bound;
}

void EcoreBuilder::countParts(SourceNode place, std::size_t parts) {
    inheritedParts_ += parts;
    if (inheritedParts_ <= options_.limits.inheritedParts) return;
    sources_.fail(place, "the classes inherit more than " +
                             std::to_string(options_.limits.inheritedParts) +
                             " ancestors and features in total");
}

std::string EcoreBuilder::qualifiedName(const Classifier& classifier) const {
    return sources_.packages()[classifier.package].qualifiedName + "::" + classifier.name;
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
