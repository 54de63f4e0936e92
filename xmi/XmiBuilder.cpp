#include "xmi/XmiBuilder.h"

#include <algorithm>
#include <charconv>
#include <functional>
#include <unordered_set>
#include <utility>

#include "model/memory/ModelAccess.h"
#include "xmi/Fragment.h"
#include "xmi/ReadError.h"
#include "xmi/Utf16.h"

namespace nuv::zero::xmi {
namespace {

std::optional<std::int64_t> integer(std::string_view text) {
    text = trimmed(text);
    // How models of models write "without a limit".
    if (text == "*") return -1;
    if (text.starts_with('+')) text.remove_prefix(1);
    std::int64_t value = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, code] = std::from_chars(text.data(), end, value);
    if (text.empty() || code != std::errc() || stop != end) return std::nullopt;
    return value;
}

std::string nameOf(const KnownClass& type) {
    return text::toUtf8(type.type->getName());
}

}  // namespace

XmiBuilder::XmiBuilder(const LoadedMetamodel& metamodel, const std::string& file,
                       ByteSource& source, const ReadOptions& options)
    : metamodel_(metamodel),
      file_(file),
      source_(source),
      options_(options),
      features_(metamodel, names_),
      references_(fragments_),
      ownNames_{file, {}} {}

LoadedModel XmiBuilder::build(std::vector<OutgoingReference>* outgoing, Findings* findings) {
    if (findings != nullptr) findings_.emplace(file_, *findings);
    parseXml(file_, source_, options_.limits, names_, *this);
    if (failure_) failAt(failure_->node, failure_->reason);
    if (rootNodes_.empty()) failAt(0, "the file holds no element of a model");
    try {
        finish(outgoing);
    } catch (const Misfit& misfit) {
        failAt(misfit.node(), misfit.what());
    }
    if (findings_) findings_->settle(loaded_, source_);
    if (loaded_.roots_.empty()) {
        const Finding* const first = findings_->first();
        if (first == nullptr) failAt(0, "nothing of the file is an element of a model");
        throw ReadError(file_, first->position, first->message);
    }
    return std::move(loaded_);
}

void XmiBuilder::finish(std::vector<OutgoingReference>* outgoing) {
    // The lists of large containers need not be there while references are resolved. Swapped: an
    // assignment would keep the room.
    decltype(waiting_)().swap(waiting_);
    decltype(list_)().swap(list_);
    for (std::uint32_t i = 0; i < features_.size(); ++i) {
        loaded_.features_.push_back(features_[i].property.get());
    }
    loaded_.rootCount_ = rootNodes_.size();
    loaded_.numbers_.sort(loaded_.elements_);
    loaded_.ids_.settle();
    nameClasses();
    const bool leavesOut = options_.crossFile == CrossFile::LeaveOut ||
                           (options_.crossFile == CrossFile::LeaveOutOfMetamodels && isMetamodel_);
    ReferenceResolver resolver({loaded_, fragments_, contents_, rootNodes_}, features_, ownNames_,
                               leavesOut);
    if (outgoing != nullptr) resolver.collectInto(*outgoing);
    if (findings_) resolver.reportTo(*findings_);
    resolver.resolve(references_);
    loaded_.leftOut_ = resolver.leftOut();
    if (findings_) addRepeatedIds(resolver);
}

void XmiBuilder::nameClasses() {
    std::unordered_set<const memory::ClassObject*> known;
    const memory::ClassObject* last = nullptr;
    for (const ModelElement& each : loaded_.elements_) {
        const memory::ClassObject* const type = each->getClass().get();
        if (std::exchange(last, type) == type || !known.insert(type).second) continue;
        if (metamodel_.hasDerivedId(each->getClass())) loaded_.namedClasses_.push_back(type);
    }
    std::sort(loaded_.namedClasses_.begin(), loaded_.namedClasses_.end(), std::less<>());
}

void XmiBuilder::addRepeatedIds(const ReferenceResolver& resolver) {
    if (loaded_.ids_.repeated().empty()) return;
    std::vector<std::uint32_t> offsets(loaded_.elements_.size());
    for (Node node = 0; node < contents_.size(); ++node) {
        const Index element = contents_[node].element;
        if (element < elementElsewhere) offsets[element] = contents_[node].offset;
    }
    for (const IdTable::Repeated& each : loaded_.ids_.repeated()) {
        // Who refers to it has been told.
        if (resolver.isAskedFor(each)) continue;
        Finding finding;
        finding.reason = Finding::Reason::DuplicateId;
        finding.weight = Finding::Weight::Warning;
        finding.message =
            "the id " + inQuotes(loaded_.ids_.textOf(each)) + " is given to several elements";
        findings_->add(std::move(finding),
                       {offsets[each.second], each.second, offsets[each.first]});
    }
}

std::vector<std::string> XmiBuilder::unknownNamespaces() const {
    std::vector<std::string> all;
    for (TextTable::Number i = 0; i < unknownNamespaces_.size(); ++i) {
        all.emplace_back(unknownNamespaces_[i]);
    }
    return all;
}

void XmiBuilder::fail(Node node, Check check, const std::string& reason) {
    // The text of an element is looked at first and known last, so it may come before a failure.
    if (failure_ && std::pair(failure_->node, failure_->check) <= std::pair(node, check)) return;
    failure_ = Failure{node, check, reason};
}

void XmiBuilder::failAt(Node node, std::string_view reason) {
    throw ReadError(file_, positionAt(source_, contents_[node].offset), reason);
}

template <class Action>
void XmiBuilder::attempt(Index element, const Action& action) {
    try {
        action();
    } catch (const Misfit& misfit) {
        if (!isFinding(misfit)) throw;
        addFinding(misfit, element);
    }
}

void XmiBuilder::addFinding(const Misfit& misfit, Index element) {
    findings_->add(misfit, {contents_[misfit.node()].offset, element});
}

void XmiBuilder::enter(const XmlStart& start) {
    if (unseen_ != 0 || failure_) {
        ++unseen_;
        ++lost_;
        return;
    }
    const Node node = fragments_.add();
    contents_.push_back({static_cast<std::uint32_t>(start.place.offset()), noElement});
    const std::size_t depth = open_.size();
    const std::size_t steps = fragments_.depth();
    try {
        open(node, start);
    } catch (const Misfit& misfit) {
        if (isFinding(misfit)) {
            leaveOut(misfit);
            // Others keep their places beside it.
            if (fragments_.depth() > steps) fragments_.leave();
            return;
        }
        // What was opened before the failure has a text that is to be looked at.
        const bool isOpen = open_.size() > depth;
        unseen_ = isOpen ? 0 : 1;
        fail(misfit.node(), isOpen ? Check::AfterText : Check::BeforeText, misfit.what());
    }
}

void XmiBuilder::leaveOut(const Misfit& misfit) {
    addFinding(misfit, open_.empty() ? noElement : open_.back().element);
    unseen_ = 1;
    lost_ = 1;
    if (open_.empty()) return;
    // What holds elements where it should not is no value and no list of references.
    Role& around = open_.back().role;
    if (around == Role::Value || around == Role::References) around = Role::Skipped;
}

void XmiBuilder::text(std::string_view part) {
    if (unseen_ != 0) return;
    Open& around = open_.back();
    if (around.role == Role::Value || around.role == Role::References) {
        text_.append(part);
    } else if (around.role == Role::Element && !around.hasBadText && !isBlank(part)) {
        around.hasBadText = true;
        const Misfit misfit(around.node,
                            {Misfit::Reason::WrongValue, Misfit::Weight::ValueWrong},
                            "the element " + inQuotes(names_[around.name].local) +
                                " holds text where elements are expected");
        if (findings_) {
            addFinding(misfit, around.element);
        } else {
            fail(misfit.node(), Check::Text, misfit.what());
        }
    }
}

void XmiBuilder::leave() {
    if (unseen_ != 0) {
        --unseen_;
        if (unseen_ == 0 && findings_ && !failure_) findings_->setLost(lost_);
        return;
    }
    const Open closed = open_.back();
    open_.pop_back();
    if (failure_) return;
    if (closed.isStep) fragments_.leave();
    try {
        attempt(closed.element, [&] { close(closed); });
    } catch (const Misfit& misfit) {
        fail(misfit.node(), Check::AfterText, misfit.what());
    }
}

void XmiBuilder::close(const Open& closed) {
    if (closed.role == Role::Element) {
        closeElement(closed);
    } else if (closed.role == Role::Value) {
        const Feature& feature = *closed.feature;
        if (feature.isSingle) {
            refuseSecondValue(closed.node, loaded_.elements_[closed.element], feature.property);
        }
        addOneValue(closed.node, closed.element, feature, text_);
    } else if (closed.role == Role::References) {
        references_.addList({closed.node, closed.element, closed.feature->number}, text_);
    }
}

void XmiBuilder::open(Node node, const XmlStart& start) {
    const XmlName& name = names_[start.name];
    if (open_.empty()) {
        if (name.isXmi && name.local == "XMI") {
            push(node, start.name, Role::Wrapper, noElement, nullptr);
        } else {
            openRoot(node, start);
        }
        return;
    }
    const Open parent = open_.back();
    const bool isSkipped = name.isXmi || parent.role == Role::Skipped;
    if (parent.role == Role::Value) {
        throw Misfit(parent.node,
                     {Misfit::Reason::WrongValue, Misfit::Weight::ValueWrong,
                      nameOf(parent.feature->property)},
                     "the value of " + nameOf(parent.feature->property) + " is no text");
    }
    if (parent.role == Role::References) {
        throw Misfit(
            parent.node,
            {Misfit::Reason::NoFit, Misfit::Weight::ContentsLost, nameOf(parent.feature->property)},
            nameOf(parent.feature->property) + " refers to elements and does not contain them");
    }
    if (isSkipped) {
        push(node, start.name, Role::Skipped, noElement, nullptr);
    } else if (parent.role == Role::Wrapper) {
        openRoot(node, start);
    } else {
        openChild(node, start, parent);
    }
}

void XmiBuilder::push(Node node, NameId name, Role role, Index element, const Feature* feature) {
    open_.push_back({node, name, role, element, nullptr, feature, 0, false});
}

void XmiBuilder::step(Node node, const Feature& feature) {
    if (feature.number >= tags_.size()) tags_.resize(features_.size(), TextTable::none);
    FragmentIndex::Tag& tag = tags_[feature.number];
    if (tag == TextTable::none) {
        tag = fragments_.tagNamed(text::toUtf8(feature.property->getName()));
    }
    fragments_.enter(node, tag);
}

void XmiBuilder::openRoot(Node node, const XmlStart& start) {
    const auto ordinal = static_cast<std::uint32_t>(rootNodes_.size());
    if (ordinal == 0) isMetamodel_ = names_[start.name].uri == ecoreNamespace;
    rootNodes_.push_back(node);
    const std::string_view* nsUri = start.attribute(names_, "nsURI");
    if (isMetamodel_ && nsUri != nullptr) ownNames_.namespaces.add(*nsUri);
    if (start.type == unknownType) failType(node, start);
    const KnownClass& type = classNamed(node, start.type == noName ? start.name : start.type);
    // No path says what a root is called.
    fragments_.enter(node, 0);
    create(node, start, type, noElement, nullptr);
    const Index root = contents_[node].element;
    loaded_.places_[root].ordinal = ordinal;
    loaded_.roots_.push_back(loaded_.elements_[root]);
}

void XmiBuilder::openChild(Node node, const XmlStart& start, const Open& parent) {
    if (!features_.isNamespaceKnown(start.name)) {
        failNamespace(node, start.name, "element", Misfit::Weight::ContentsLost);
    }
    const Feature* const found = features_.find(*parent.type, start.name);
    if (found == nullptr) {
        failFeature(node, *parent.type, start.name, Misfit::Weight::ContentsLost);
    }
    const Feature& feature = *found;
    if (isNil(start)) {
        push(node, start.name, Role::Skipped, parent.element, &feature);
    } else if (feature.kind == Feature::Kind::Reference) {
        openContent(node, start, parent, feature);
    } else {
        text_.clear();
        push(node, start.name, Role::Value, parent.element, &feature);
    }
}

void XmiBuilder::openContent(Node node, const XmlStart& start, const Open& parent,
                             const Feature& feature) {
    const ReferenceLog::Place place{node, parent.element, feature.number};
    const std::string_view* reference =
        feature.target->hasHref ? nullptr : start.attribute(names_, "href");
    if (reference != nullptr) contents_[node].element = elementElsewhere;
    for (const XmlAttribute& each : start.attributes) {
        const XmlName& name = names_[each.name];
        if (reference == nullptr && name.isXmi && name.local == "idref") reference = &each.value;
    }
    if (reference != nullptr) {
        references_.addOne(place, *reference);
        step(node, feature);
        push(node, start.name, Role::Skipped, noElement, nullptr);
        open_.back().isStep = true;
    } else if (feature.isComposite) {
        step(node, feature);
        const KnownClass& type = classOfContent(node, start, feature);
        const bool fits = type.type->canStandFor(feature.property->type());
        const Index container = parent.element;
        if (findings_) checkRoom(node, container, feature, type, fits);
        create(node, start, type, container, &feature);
        contain(node, container, feature, contents_[node].element, fits);
    } else {
        text_.clear();
        push(node, start.name, Role::References, parent.element, &feature);
    }
}

void XmiBuilder::checkRoom(Node node, Index parent, const Feature& feature, const KnownClass& type,
                           bool fits) const {
    const ModelElement& container = loaded_.elements_[parent];
    const meta::Property& property = feature.property;
    if (!fits) {
        throw Misfit(node, {Misfit::Reason::NoFit, weightOf(property), nameOf(property)},
                     "an element of the class " + nameOf(type) + " may not stand in " +
                         nameOf(property));
    }
    if (feature.isUnbounded) return;
    if (feature.isSingle) {
        refuseSecondValue(node, container, property);
        return;
    }
    const int bound = property->getUpperBound();
    if (access::toElements(access::read(container, property)).size() <
        static_cast<std::size_t>(bound)) {
        return;
    }
    throw Misfit(node, {Misfit::Reason::TooManyValues, weightOf(property), nameOf(property)},
                 nameOf(property) + " holds at most " + std::to_string(bound) + " values");
}

void XmiBuilder::create(Node node, const XmlStart& start, const KnownClass& type, Index parent,
                        const Feature* feature) {
    if (type.isAbstract) {
        throw Misfit(node, {Misfit::Reason::AbstractClass, Misfit::Weight::ContentsLost},
                     "the class " + nameOf(type) +
                         " is abstract, so the type of the element is missing (xsi:type)");
    }
    slots_ += type.slotCount;
    if (slots_ > options_.limits.slots) {
        throw Misfit(node, "the model needs more than " + std::to_string(options_.limits.slots) +
                               " places for values");
    }
    const auto index = static_cast<Index>(loaded_.elements_.size());
    loaded_.elements_.push_back(loaded_.model_.create(type.type));
    loaded_.numbers_.add(loaded_.elements_.back(), index);
    loaded_.places_.push_back(
        {parent, LoadedModel::none, 0, feature == nullptr ? 0 : feature->number});
    contents_[node].element = index;
    open_.push_back({node, start.name, Role::Element, index, &type, feature, waiting_.size(), true});
    addAttributes(node, start, index, type);
}

void XmiBuilder::contain(Node node, Index parent, const Feature& feature, Index element,
                         bool fits) {
    const ModelElement& container = loaded_.elements_[parent];
    const ModelElement& content = loaded_.elements_[element];
    const meta::Property& property = feature.property;
    if (feature.isUnbounded && fits) {
        // Of those that wait, its siblings stand in front of its own children.
        const std::size_t place = open_.back().firstChild;
        waiting_.push_back({feature.number, element});
        open_.back().firstChild = place + 1;
        return;
    }
    if (feature.isSingle) refuseSecondValue(node, container, property);
    try {
        feature.isSingle ? loaded_.model_.set(container, property, content)
                         : loaded_.model_.add(container, property, content);
    } catch (const memory::ModelError& error) {
        throw Misfit(node, {Misfit::Reason::NoFit, weightOf(property), nameOf(property)},
                     error.what());
    }
}

void XmiBuilder::closeElement(const Open& closed) {
    loaded_.places_[closed.element].end = static_cast<Index>(loaded_.elements_.size());
    fragments_.forEachChild(closed.node, [&](Node child, std::uint32_t ordinal) {
        const Index element = contents_[child].element;
        if (element < elementElsewhere) loaded_.places_[element].ordinal = ordinal;
    });
    addContents(closed.element, closed.firstChild);
}

void XmiBuilder::addContents(Index element, std::size_t firstChild) {
    const auto begin = waiting_.begin() + static_cast<std::ptrdiff_t>(firstChild);
    // By feature; those of one feature stay in the order of the file.
    if (!std::is_sorted(begin, waiting_.end())) std::sort(begin, waiting_.end());
    for (auto each = begin; each != waiting_.end();) {
        const auto end = std::find_if(each, waiting_.end(), [&](const Waiting& other) {
            return other.feature != each->feature;
        });
        list_.clear();
        const meta::Property& property = features_[each->feature].property;
        for (; each != end; ++each) list_.push_back(loaded_.elements_[each->element]);
        loaded_.model_.set(loaded_.elements_[element], property, list_);
    }
    waiting_.erase(begin, waiting_.end());
}

void XmiBuilder::addAttributes(Node node, const XmlStart& start, Index element,
                               const KnownClass& type) {
    for (const XmlAttribute& each : start.attributes) {
        const XmlName& name = names_[each.name];
        if (name.isXmi && name.local == "id") addXmiId(node, element, each.value);
        if (name.isXmi || name.isXsi || name.isXml) continue;
        attempt(element, [&] { addAttribute(node, each, element, type); });
    }
}

void XmiBuilder::addAttribute(Node node, const XmlAttribute& attribute, Index element,
                              const KnownClass& type) {
    // It may have been a link as well as a value.
    if (!features_.isNamespaceKnown(attribute.name)) {
        failNamespace(node, attribute.name, "attribute", Misfit::Weight::LinkLost);
    }
    const Feature* const found = features_.find(type, attribute.name);
    if (found == nullptr) failFeature(node, type, attribute.name, Misfit::Weight::LinkLost);
    const Feature& feature = *found;
    if (feature.kind == Feature::Kind::Reference) {
        references_.addList({node, element, feature.number}, attribute.value);
    } else if (feature.isSingle) {
        // Of an element that was just made, only another attribute can have set the value.
        if (feature.number >= lastOwner_.size()) lastOwner_.resize(features_.size(), noElement);
        const Index before = std::exchange(lastOwner_[feature.number], element);
        if (before == element) {
            refuseSecondValue(node, loaded_.elements_[element], feature.property);
        }
        addOneValue(node, element, feature, attribute.value);
    } else {
        for (const std::string_view word : splitAtBlanks(attribute.value)) {
            attempt(element, [&] { addOneValue(node, element, feature, word); });
        }
    }
}

void XmiBuilder::addXmiId(Node node, Index element, std::string_view id) {
    if (!IdTable::isId(id)) return;
    const Index before = loaded_.ids_.addXmiId(id, element);
    // Whether somebody refers to it shows in the end.
    if (before == IdTable::none || findings_) return;
    Node first = 0;
    while (contents_[first].element != before) ++first;
    const Position position = positionAt(source_, contents_[first].offset);
    throw Misfit(node, {Misfit::Reason::DuplicateId, Misfit::Weight::Warning},
                 "the id " + inQuotes(id) + " is given twice, first in line " +
                     std::to_string(position.line));
}

const KnownClass& XmiBuilder::classNamed(Node node, NameId id) {
    const KnownClass* const found = features_.findClass(id);
    if (found != nullptr) return *found;
    const XmlName& name = names_[id];
    if (!metamodel_.hasNamespace(name.uri)) {
        failNamespace(node, id, "class", Misfit::Weight::ContentsLost);
    }
    throw Misfit(node, {Misfit::Reason::UnknownClass, Misfit::Weight::ContentsLost},
                 "the package " + inQuotes(name.uri) + " has no class " + inQuotes(name.local));
}

const KnownClass& XmiBuilder::classOfContent(Node node, const XmlStart& start,
                                             const Feature& feature) {
    if (start.type == unknownType) failType(node, start);
    if (start.type != noName) return classNamed(node, start.type);
    if (feature.property->getType() == ModelElement::metaClass()) {
        throw Misfit(node,
                     {Misfit::Reason::UnknownClass, Misfit::Weight::ContentsLost,
                      nameOf(feature.property)},
                     "an element of " + nameOf(feature.property) +
                         " may be of any class, so its type is missing (xsi:type)");
    }
    return *feature.target;
}

void XmiBuilder::failNamespace(Node node, NameId id, std::string_view what,
                               Finding::Weight weight) {
    const XmlName& name = names_[id];
    unknownNamespaces_.add(name.uri);
    const bool isClass = what == "class";
    throw Misfit(
        node, {isClass ? Misfit::Reason::UnknownClass : Misfit::Reason::UnknownFeature, weight},
        "no given metamodel has the namespace " + inQuotes(name.uri) + " of the " +
            std::string(what) + " " + inQuotes(name.local));
}

void XmiBuilder::failFeature(Node node, const KnownClass& type, NameId name,
                             Finding::Weight weight) const {
    throw Misfit(node, {Misfit::Reason::UnknownFeature, weight},
                 "the class " + nameOf(type) + " has no feature " + inQuotes(names_[name].local));
}

void XmiBuilder::failType(Node node, const XmlStart& start) const {
    const auto isType = [&](const XmlAttribute& each) {
        const XmlName& name = names_[each.name];
        return (name.isXmi || name.isXsi) && name.local == "type";
    };
    const auto type = std::find_if(start.attributes.begin(), start.attributes.end(), isType);
    throw Misfit(node, {Misfit::Reason::UnknownClass, Misfit::Weight::ContentsLost},
                 "the prefix of the type " + inQuotes(trimmed(type->value)) + " is not declared");
}

bool XmiBuilder::isNil(const XmlStart& start) const {
    return std::any_of(start.attributes.begin(), start.attributes.end(),
                       [&](const XmlAttribute& each) {
                           const XmlName& name = names_[each.name];
                           return name.isXsi && name.local == "nil" && each.value == "true";
                       });
}

void XmiBuilder::addOneValue(Node node, Index element, const Feature& feature,
                             std::string_view text) {
    const ModelElement& owner = loaded_.elements_[element];
    const meta::Property& property = feature.property;
    try {
        if (feature.kind == Feature::Kind::Integer) {
            const std::optional<std::int64_t> number = integer(text);
            if (!number) {
                throw Misfit(
                    node,
                    {Misfit::Reason::WrongValue, Misfit::Weight::ValueWrong, nameOf(property)},
                    "the value " + inQuotes(text) + " of " + nameOf(property) + " is no integer");
            }
            feature.isSingle ? loaded_.model_.set(owner, property, *number)
                             : loaded_.model_.add(owner, property, *number);
        } else {
            assignUtf16(text16_, text);
            feature.isSingle ? loaded_.model_.set(owner, property, text16_)
                             : loaded_.model_.add(owner, property, text16_);
        }
    } catch (const memory::ModelError& error) {
        throw Misfit(
            node, {Misfit::Reason::TooManyValues, Misfit::Weight::ValueWrong, nameOf(property)},
            error.what());
    }
    if (feature.isId) loaded_.ids_.addValue(text, element);
}

}  // namespace nuv::zero::xmi
