#include "xmi/XmiBuilder.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <optional>
#include <utility>

#include "model/memory/ModelAccess.h"
#include "xmi/ReadError.h"

namespace nuv::zero::xmi {
namespace {

/// Whether a text can identify an element: a path could not be told from one.
bool isId(std::string_view text) {
    return !text.empty() && !text.starts_with('/');
}

constexpr std::string_view blanks = " \t\r\n";

std::string_view trimmed(std::string_view text) {
    const std::size_t begin = text.find_first_not_of(blanks);
    if (begin == std::string_view::npos) return {};
    return text.substr(begin, text.find_last_not_of(blanks) - begin + 1);
}

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

std::string nameOf(const meta::Property& property) {
    return text::toUtf8(property->owner().getName()) + "." + text::toUtf8(property->getName());
}

std::string nameOf(const meta::Class& type) {
    return text::toUtf8(type->getName());
}

}  // namespace

XmiBuilder::XmiBuilder(const LoadedMetamodel& metamodel, const XmlDocument& document,
                       const ReadOptions& options)
    : metamodel_(metamodel),
      document_(document),
      options_(options),
      fragments_(document),
      rootNodes_(document.modelRoots()),
      elementAt_(document.size(), LoadedModel::none) {}

LoadedModel XmiBuilder::build() {
    if (rootNodes_.empty()) document_.fail(0, "the file holds no element of a model");
    isMetamodel_ = document_.nameOf(rootNodes_.front()).uri == ecoreNamespace;
    for (const Node root : rootNodes_) {
        const std::string_view* nsUri = document_.attribute(root, "nsURI");
        if (isMetamodel_ && nsUri != nullptr) ownNamespaces_.insert(*nsUri);
    }
    std::size_t nextRoot = 0;
    for (Node node = 0; node < document_.size();) {
        bool descend = true;
        if (nextRoot < rootNodes_.size() && node == rootNodes_[nextRoot]) {
            addRoot(node, nextRoot++);
        } else if (node != 0) {
            const Index parent = elementAt_[document_[node].parent];
            descend = parent != LoadedModel::none && addChild(node, parent);
        }
        node = descend ? node + 1 : document_[node].end;
    }
    for (Index i = 0; i < nodeOf_.size(); ++i) {
        const auto end =
            std::lower_bound(nodeOf_.begin(), nodeOf_.end(), document_[nodeOf_[i]].end);
        loaded_.places_[i].end = static_cast<Index>(end - nodeOf_.begin());
    }
    addIds();
    for (const Pending& each : pending_) resolve(each);
    return std::move(loaded_);
}

void XmiBuilder::addRoot(Node node, std::size_t ordinal) {
    const NameId type = document_[node].type;
    const meta::Class named = classNamed(node, type == noName ? document_[node].name : type);
    const Index element = create(node, named, LoadedModel::none, nullptr, ordinal);
    loaded_.roots_.push_back(loaded_.elements_[element]);
}

bool XmiBuilder::addChild(Node node, Index parent) {
    const XmlName& name = document_.nameOf(node);
    if (name.isXmi) return false;
    if (!name.uri.empty() && !metamodel_.hasNamespace(name.uri)) {
        document_.fail(node, "no given metamodel has the namespace " + inQuotes(name.uri) +
                                 " of the element " + inQuotes(name.local));
    }
    const meta::Property property = propertyOf(node, parent, document_[node].name);
    if (isNil(node)) return false;
    if (property->isAssociation()) return addContent(node, parent, property);
    if (document_.firstChild(node) != noNode) {
        document_.fail(node, "the value of " + nameOf(property) + " is no text");
    }
    addOneValue(node, parent, property, document_[node].text);
    return false;
}

bool XmiBuilder::addContent(Node node, Index parent, const meta::Property& property) {
    const auto& target = static_cast<const memory::ClassObject&>(property->type());
    const std::string_view* href = document_.attribute(node, "href");
    if (href != nullptr && !hasHref(target)) {
        pending_.push_back({node, parent, property, *href, true});
        return false;
    }
    for (const XmlAttribute& each : document_.attributes(node)) {
        const XmlName& name = document_.name(each.name);
        if (!name.isXmi || name.local != "idref") continue;
        pending_.push_back({node, parent, property, each.value, true});
        return false;
    }
    if (property->isComposite()) {
        const meta::Class type = classOfContent(node, property);
        const Index element = create(node, type, parent, property.get(), fragments_.ordinal(node));
        link(node, parent, property, loaded_.elements_[element]);
        return true;
    }
    const bool isReference = document_.firstChild(node) == noNode;
    if (!isReference) {
        document_.fail(node, nameOf(property) + " refers to elements and does not contain them");
    }
    pending_.push_back({node, parent, property, document_[node].text, false});
    return false;
}

XmiBuilder::Index XmiBuilder::create(Node node, const meta::Class& type, Index parent,
                                     const memory::PropertyObject* feature, std::size_t ordinal) {
    if (metamodel_.isAbstract(type)) {
        document_.fail(node, "the class " + nameOf(type) +
                                 " is abstract, so the type of the element is missing (xsi:type)");
    }
    slots_ += type->layout().slotCount();
    if (slots_ > options_.limits.slots) {
        document_.fail(node, "the model needs more than " + std::to_string(options_.limits.slots) +
                                 " places for values");
    }
    if (!trimmed(document_[node].text).empty()) {
        document_.fail(node, "the element " + inQuotes(document_.nameOf(node).local) +
                                 " holds text where elements are expected");
    }
    const auto index = static_cast<Index>(loaded_.elements_.size());
    const ModelElement element = loaded_.model_.create(type);
    loaded_.elements_.push_back(element);
    loaded_.places_.push_back(
        {parent, LoadedModel::none, static_cast<std::uint32_t>(ordinal), feature});
    loaded_.indices_.emplace(element.get(), index);
    elementAt_[node] = index;
    nodeOf_.push_back(node);
    addAttributes(node, index);
    return index;
}

void XmiBuilder::addAttributes(Node node, Index element) {
    for (const XmlAttribute& each : document_.attributes(node)) {
        const XmlName& name = document_.name(each.name);
        if (name.isXmi && name.local == "id") addXmiId(node, element, each.value);
        if (name.isXmi || name.isXsi || name.uri == "http://www.w3.org/XML/1998/namespace") {
            continue;
        }
        if (!name.uri.empty() && !metamodel_.hasNamespace(name.uri)) {
            document_.fail(node, "no given metamodel has the namespace " + inQuotes(name.uri) +
                                     " of the attribute " + inQuotes(name.local));
        }
        const meta::Property property = propertyOf(node, element, each.name);
        if (property->isAssociation()) {
            pending_.push_back({node, element, property, each.value, false});
        } else if (property->isSingleValued()) {
            addOneValue(node, element, property, each.value);
        } else {
            for (const std::string_view word : splitAtBlanks(each.value)) {
                addOneValue(node, element, property, word);
            }
        }
    }
}

void XmiBuilder::addOneValue(Node node, Index element, const meta::Property& property,
                             std::string_view text) {
    const ModelElement& owner = loaded_.elements_[element];
    const bool isSingle = property->isSingleValued();
    if (isSingle) refuseSecond(node, element, property);
    try {
        if (property->type().kind() == memory::TypeObject::Kind::Integer) {
            const std::optional<std::int64_t> number = integer(text);
            if (!number) {
                document_.fail(node, "the value " + inQuotes(text) + " of " + nameOf(property) +
                                         " is no integer");
            }
            isSingle ? loaded_.model_.set(owner, property, *number)
                     : loaded_.model_.add(owner, property, *number);
        } else {
            const std::u16string value = text::toUtf16(text);
            isSingle ? loaded_.model_.set(owner, property, value)
                     : loaded_.model_.add(owner, property, value);
        }
    } catch (const memory::ModelError& error) {
        document_.fail(node, error.what());
    }
    if (metamodel_.isId(property)) idValues_.push_back({element, std::string(text)});
}

void XmiBuilder::refuseSecond(Node node, Index element, const meta::Property& property) const {
    if (!access::isSet(access::read(loaded_.elements_[element], property))) return;
    document_.fail(node, nameOf(property) + " holds one value, and the file gives two");
}

void XmiBuilder::addXmiId(Node node, Index element, std::string_view id) {
    if (!isId(id)) return;
    const auto [place, isNew] = loaded_.ids_.emplace(id, element);
    if (!isNew) {
        const Position first = document_[nodeOf_[place->second]].position;
        document_.fail(node, "the id " + inQuotes(id) + " is given twice, first in line " +
                                 std::to_string(first.line));
    }
    loaded_.idOf_.emplace(element, place->first);
}

void XmiBuilder::addIds() {
    std::unordered_map<std::string_view, Index> first;
    for (const IdValue& each : idValues_) {
        const auto [known, isNew] = first.emplace(each.text, each.element);
        if (!isNew && known->second != each.element) ambiguousIds_.insert(each.text);
    }
    for (const IdValue& each : idValues_) {
        if (!isId(each.text) || ambiguousIds_.contains(each.text)) continue;
        const auto [place, isNew] = loaded_.ids_.emplace(each.text, each.element);
        // The `xmi:id` of another element has precedence.
        if (isNew) loaded_.idOf_.emplace(each.element, place->first);
    }
}

void XmiBuilder::resolve(const Pending& pending) {
    if (pending.isSingleReference) {
        resolveOne(pending, trimmed(pending.text));
        return;
    }
    // Ids of single references may hold blanks.
    if (pending.property->isSingleValued()) {
        const auto whole = loaded_.ids_.find(std::string(trimmed(pending.text)));
        if (whole != loaded_.ids_.end()) {
            link(pending.node, pending.element, pending.property, loaded_.elements_[whole->second]);
            return;
        }
    }
    for (const ListedReference& each : splitReferences(pending.text)) {
        resolveOne(pending, each.text);
    }
}

void XmiBuilder::resolveOne(const Pending& pending, std::string_view reference) {
    const std::size_t hash = reference.find('#');
    const bool hasFile = hash != std::string_view::npos && hash != 0;
    if (hasFile && !meansThisFile(reference.substr(0, hash))) {
        leaveOut(pending, reference);
        return;
    }
    const std::string_view fragment =
        hash == std::string_view::npos ? reference : reference.substr(hash + 1);
    const Index target =
        fragment.starts_with('/') ? targetOfPath(fragment) : targetOfId(pending, fragment);
    if (target == elsewhere) {
        leaveOut(pending, reference);
    } else if (target == LoadedModel::none) {
        document_.fail(pending.node, "the reference " + inQuotes(reference) + " of " +
                                         nameOf(pending.property) +
                                         " leads to nothing in this file");
    } else {
        link(pending.node, pending.element, pending.property, loaded_.elements_[target]);
    }
}

XmiBuilder::Index XmiBuilder::targetOfPath(std::string_view fragment) const {
    const auto path = parseFragmentPath(fragment);
    const Node node = path ? fragments_.resolve(*path, rootNodes_) : noNode;
    if (node == noNode) return LoadedModel::none;
    // What a path leads to may itself be kept in another file.
    const bool isElsewhere =
        elementAt_[node] == LoadedModel::none && document_.attribute(node, "href") != nullptr;
    return isElsewhere ? elsewhere : elementAt_[node];
}

XmiBuilder::Index XmiBuilder::targetOfId(const Pending& pending, std::string_view id) const {
    auto found = loaded_.ids_.find(std::string(id));
    if (found == loaded_.ids_.end()) found = loaded_.ids_.find(percentDecoded(id));
    if (found != loaded_.ids_.end()) return found->second;
    if (ambiguousIds_.contains(std::string(id))) {
        document_.fail(pending.node, "the reference " + inQuotes(id) + " of " +
                                         nameOf(pending.property) +
                                         " is the id of several elements");
    }
    return LoadedModel::none;
}

void XmiBuilder::leaveOut(const Pending& pending, std::string_view reference) {
    const bool allowed = options_.crossFile == CrossFile::LeaveOut ||
                         (options_.crossFile == CrossFile::LeaveOutOfMetamodels && isMetamodel_);
    if (!allowed) {
        document_.fail(pending.node, "the reference " + inQuotes(reference) + " of " +
                                         nameOf(pending.property) + " leads into another file");
    }
    ++loaded_.leftOut_;
}

bool XmiBuilder::meansThisFile(std::string_view file) const {
    if (file == document_.file()) return true;
    const std::filesystem::path own(document_.file());
    if (percentDecoded(file) == own.filename().string()) return true;
    return ownNamespaces_.contains(file);
}

void XmiBuilder::link(Node node, Index element, const meta::Property& property,
                      const ModelElement& target) {
    const ModelElement& owner = loaded_.elements_[element];
    if (property->isSingleValued()) refuseSecond(node, element, property);
    try {
        property->isSingleValued() ? loaded_.model_.set(owner, property, target)
                                   : loaded_.model_.add(owner, property, target);
    } catch (const memory::ModelError& error) {
        document_.fail(node, error.what());
    }
}

meta::Class XmiBuilder::classNamed(Node node, NameId id) const {
    const XmlName& name = document_.name(id);
    const meta::Class found = metamodel_.findClass(name.uri, name.local);
    if (found) return found;
    if (!metamodel_.hasNamespace(name.uri)) {
        document_.fail(node, "no given metamodel has the namespace " + inQuotes(name.uri) +
                                 " of the class " + inQuotes(name.local));
    }
    document_.fail(node,
                   "the package " + inQuotes(name.uri) + " has no class " + inQuotes(name.local));
}

meta::Class XmiBuilder::classOfContent(Node node, const meta::Property& property) const {
    const NameId type = document_[node].type;
    if (type != noName) return classNamed(node, type);
    const auto& declared = static_cast<const memory::ClassObject&>(property->type());
    if (property->getType() == ModelElement::metaClass()) {
        document_.fail(node, "an element of " + nameOf(property) +
                                 " may be of any class, so its type is missing (xsi:type)");
    }
    return declared.handle();
}

meta::Property XmiBuilder::propertyOf(Node node, Index element, NameId name) {
    const meta::Class& type = loaded_.elements_[element]->getClass();
    meta::Property& property = properties_[{type.get(), name}];
    if (!property) property = metamodel_.findProperty(type, document_.name(name).local);
    if (property) return property;
    document_.fail(node, "the class " + nameOf(type) + " has no feature " +
                             inQuotes(document_.name(name).local));
}

bool XmiBuilder::hasHref(const memory::ClassObject& type) {
    const auto [known, isNew] = hasHref_.emplace(&type, false);
    if (isNew) known->second = static_cast<bool>(type.getProperty(u"href"));
    return known->second;
}

bool XmiBuilder::isNil(Node node) const {
    const auto attributes = document_.attributes(node);
    return std::any_of(attributes.begin(), attributes.end(), [&](const XmlAttribute& each) {
        const XmlName& name = document_.name(each.name);
        return name.isXsi && name.local == "nil" && each.value == "true";
    });
}

}  // namespace nuv::zero::xmi
