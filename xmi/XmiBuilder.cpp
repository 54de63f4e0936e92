#include "xmi/XmiBuilder.h"

#include <algorithm>
#include <charconv>
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
      fragments_(names_),
      references_(fragments_),
      ownNames_{file, {}} {}

LoadedModel XmiBuilder::build(std::vector<OutgoingReference>* outgoing) {
    parseXml(file_, source_, options_.limits, names_, *this);
    if (failure_) failAt(failure_->node, failure_->reason);
    if (rootNodes_.empty()) failAt(0, "the file holds no element of a model");
    try {
        finish(outgoing);
    } catch (const Misfit& misfit) {
        failAt(misfit.node(), misfit.what());
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
    loaded_.numbers_.sort(loaded_.elements_);
    loaded_.ids_.settle();
    const bool leavesOut = options_.crossFile == CrossFile::LeaveOut ||
                           (options_.crossFile == CrossFile::LeaveOutOfMetamodels && isMetamodel_);
    ReferenceResolver resolver(
        {loaded_.model_, loaded_.elements_, loaded_.ids_, fragments_, contents_, rootNodes_},
        features_, ownNames_, leavesOut);
    if (outgoing != nullptr) resolver.collectInto(*outgoing);
    resolver.resolve(references_);
    loaded_.leftOut_ = resolver.leftOut();
}

void XmiBuilder::fail(Node node, Check check, const std::string& reason) {
    // The text of an element is looked at first and known last, so it may come before a failure.
    if (failure_ && std::pair(failure_->node, failure_->check) <= std::pair(node, check)) return;
    failure_ = Failure{node, check, reason};
}

void XmiBuilder::failAt(Node node, std::string_view reason) {
    throw ReadError(file_, positionAt(source_, contents_[node].offset), reason);
}

void XmiBuilder::enter(const XmlStart& start) {
    if (failure_) {
        ++unseen_;
        return;
    }
    const Node node = fragments_.enter(start.name, start.attributes);
    const bool hasHref = start.attribute(names_, "href") != nullptr;
    contents_.push_back(
        {static_cast<std::uint32_t>(start.place.offset()), hasHref ? elementElsewhere : noElement});
    const std::size_t depth = open_.size();
    try {
        open(node, start);
    } catch (const Misfit& misfit) {
        // What was opened before the failure has a text that is to be looked at.
        const bool isOpen = open_.size() > depth;
        unseen_ = isOpen ? 0 : 1;
        fail(misfit.node(), isOpen ? Check::AfterText : Check::BeforeText, misfit.what());
    }
}

void XmiBuilder::text(std::string_view part) {
    if (unseen_ != 0) return;
    const Open& around = open_.back();
    if (around.role == Role::Value || around.role == Role::References) {
        text_.append(part);
    } else if (around.role == Role::Element && !isBlank(part)) {
        fail(around.node, Check::Text,
             "the element " + inQuotes(names_[around.name].local) +
                 " holds text where elements are expected");
    }
}

void XmiBuilder::leave() {
    if (unseen_ != 0) {
        --unseen_;
        return;
    }
    const Open closed = open_.back();
    open_.pop_back();
    if (failure_) return;
    fragments_.leave();
    try {
        if (closed.role == Role::Element) closeElement(closed);
        if (closed.role == Role::Value) {
            const Feature& feature = *closed.feature;
            if (feature.isSingle) {
                refuseSecondValue(closed.node, loaded_.elements_[closed.element], feature.property);
            }
            addOneValue(closed.node, closed.element, feature, text_);
        } else if (closed.role == Role::References) {
            references_.addList({closed.node, closed.element, closed.feature->number}, text_);
        }
    } catch (const Misfit& misfit) {
        fail(misfit.node(), Check::AfterText, misfit.what());
    }
}

void XmiBuilder::open(Node node, const XmlStart& start) {
    const XmlName& name = names_[start.name];
    if (open_.empty()) {
        if (name.isXmi && name.local == "XMI") {
            open_.push_back({node, start.name, Role::Wrapper, noElement, nullptr, nullptr, 0});
        } else {
            openRoot(node, start);
        }
        return;
    }
    const Open parent = open_.back();
    const bool isSkipped = name.isXmi || parent.role == Role::Skipped;
    if (parent.role == Role::Value) {
        throw Misfit(parent.node,
                     "the value of " + nameOf(parent.feature->property) + " is no text");
    }
    if (parent.role == Role::References) {
        throw Misfit(parent.node, nameOf(parent.feature->property) +
                                      " refers to elements and does not contain them");
    }
    if (isSkipped) {
        open_.push_back({node, start.name, Role::Skipped, noElement, nullptr, nullptr, 0});
    } else if (parent.role == Role::Wrapper) {
        openRoot(node, start);
    } else {
        openChild(node, start, parent);
    }
}

void XmiBuilder::openRoot(Node node, const XmlStart& start) {
    const auto ordinal = static_cast<std::uint32_t>(rootNodes_.size());
    if (ordinal == 0) isMetamodel_ = names_[start.name].uri == ecoreNamespace;
    rootNodes_.push_back(node);
    const std::string_view* nsUri = start.attribute(names_, "nsURI");
    if (isMetamodel_ && nsUri != nullptr) ownNames_.namespaces.add(*nsUri);
    const KnownClass& type = classNamed(node, start.type == noName ? start.name : start.type);
    create(node, start, type, noElement, nullptr);
    const Index root = contents_[node].element;
    loaded_.places_[root].ordinal = ordinal;
    loaded_.roots_.push_back(loaded_.elements_[root]);
}

void XmiBuilder::openChild(Node node, const XmlStart& start, const Open& parent) {
    const XmlName& name = names_[start.name];
    if (!features_.isNamespaceKnown(start.name)) {
        throw Misfit(node, "no given metamodel has the namespace " + inQuotes(name.uri) +
                               " of the element " + inQuotes(name.local));
    }
    const Feature& feature = featureNamed(node, *parent.type, start.name);
    Role role = Role::Skipped;
    if (!isNil(start)) {
        if (feature.kind == Feature::Kind::Reference) {
            openContent(node, start, parent, feature);
            return;
        }
        role = Role::Value;
        text_.clear();
    }
    open_.push_back({node, start.name, role, parent.element, nullptr, &feature, 0});
}

void XmiBuilder::openContent(Node node, const XmlStart& start, const Open& parent,
                             const Feature& feature) {
    const ReferenceLog::Place place{node, parent.element, feature.number};
    const std::string_view* reference =
        feature.target->hasHref ? nullptr : start.attribute(names_, "href");
    for (const XmlAttribute& each : start.attributes) {
        const XmlName& name = names_[each.name];
        if (reference == nullptr && name.isXmi && name.local == "idref") reference = &each.value;
    }
    if (reference != nullptr) {
        references_.addOne(place, *reference);
        open_.push_back({node, start.name, Role::Skipped, noElement, nullptr, nullptr, 0});
    } else if (feature.isComposite) {
        const Index container = parent.element;
        create(node, start, classOfContent(node, start.type, feature), container, &feature);
        contain(node, container, feature, contents_[node].element);
    } else {
        text_.clear();
        open_.push_back({node, start.name, Role::References, parent.element, nullptr, &feature, 0});
    }
}

void XmiBuilder::create(Node node, const XmlStart& start, const KnownClass& type, Index parent,
                        const Feature* feature) {
    if (type.isAbstract) {
        throw Misfit(node, "the class " + nameOf(type) +
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
    open_.push_back({node, start.name, Role::Element, index, &type, feature, waiting_.size()});
    addAttributes(node, start, index, type);
}

void XmiBuilder::contain(Node node, Index parent, const Feature& feature, Index element) {
    const ModelElement& container = loaded_.elements_[parent];
    const ModelElement& content = loaded_.elements_[element];
    const meta::Property& property = feature.property;
    const bool fits = content->getClass()->canStandFor(property->type());
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
        throw Misfit(node, error.what());
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
        if (!features_.isNamespaceKnown(each.name)) {
            throw Misfit(node, "no given metamodel has the namespace " + inQuotes(name.uri) +
                                   " of the attribute " + inQuotes(name.local));
        }
        const Feature& feature = featureNamed(node, type, each.name);
        if (feature.kind == Feature::Kind::Reference) {
            references_.addList({node, element, feature.number}, each.value);
        } else if (feature.isSingle) {
            // Of an element that was just made, only another attribute can have set the value.
            if (feature.number >= lastOwner_.size()) {
                lastOwner_.resize(features_.size(), noElement);
            }
            const Index before = std::exchange(lastOwner_[feature.number], element);
            if (before == element) {
                refuseSecondValue(node, loaded_.elements_[element], feature.property);
            }
            addOneValue(node, element, feature, each.value);
        } else {
            for (const std::string_view word : splitAtBlanks(each.value)) {
                addOneValue(node, element, feature, word);
            }
        }
    }
}

void XmiBuilder::addXmiId(Node node, Index element, std::string_view id) {
    if (!IdTable::isId(id)) return;
    const Index before = loaded_.ids_.addXmiId(id, element);
    if (before == IdTable::none) return;
    Node first = 0;
    while (contents_[first].element != before) ++first;
    const Position position = positionAt(source_, contents_[first].offset);
    throw Misfit(node, "the id " + inQuotes(id) + " is given twice, first in line " +
                           std::to_string(position.line));
}

const KnownClass& XmiBuilder::classNamed(Node node, NameId id) {
    const KnownClass* const found = features_.findClass(id);
    if (found != nullptr) return *found;
    const XmlName& name = names_[id];
    if (!metamodel_.hasNamespace(name.uri)) {
        throw Misfit(node, "no given metamodel has the namespace " + inQuotes(name.uri) +
                               " of the class " + inQuotes(name.local));
    }
    throw Misfit(node,
                 "the package " + inQuotes(name.uri) + " has no class " + inQuotes(name.local));
}

const KnownClass& XmiBuilder::classOfContent(Node node, NameId type, const Feature& feature) {
    if (type != noName) return classNamed(node, type);
    if (feature.property->getType() == ModelElement::metaClass()) {
        throw Misfit(node, "an element of " + nameOf(feature.property) +
                               " may be of any class, so its type is missing (xsi:type)");
    }
    return *feature.target;
}

const Feature& XmiBuilder::featureNamed(Node node, const KnownClass& type, NameId name) {
    const Feature* const feature = features_.find(type, name);
    if (feature != nullptr) return *feature;
    throw Misfit(node,
                 "the class " + nameOf(type) + " has no feature " + inQuotes(names_[name].local));
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
                throw Misfit(node, "the value " + inQuotes(text) + " of " + nameOf(property) +
                                       " is no integer");
            }
            feature.isSingle ? loaded_.model_.set(owner, property, *number)
                             : loaded_.model_.add(owner, property, *number);
        } else {
            assignUtf16(text16_, text);
            feature.isSingle ? loaded_.model_.set(owner, property, text16_)
                             : loaded_.model_.add(owner, property, text16_);
        }
    } catch (const memory::ModelError& error) {
        throw Misfit(node, error.what());
    }
    if (feature.isId) loaded_.ids_.addValue(text, element);
}

}  // namespace nuv::zero::xmi
