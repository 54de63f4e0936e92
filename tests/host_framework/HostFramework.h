#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// A model framework that has nothing in common with the in-memory model: handles are shared
/// pointers, slots are maps by name, names are handed out by value or as views, and no operation
/// that the contract leaves optional is there.

namespace nuv::zero {
class ModelElement;
namespace meta {
class Class;
}
}  // namespace nuv::zero

namespace host {

/// Everything is a node: elements, classes, properties and types.
struct Node {
    enum class ReflectionPrivateTag { PUBLIC_ACCESS };

    Node() = default;
    Node(const Node&) = delete;
    Node& operator=(const Node&) = delete;
    virtual ~Node();

    /// The class of the node; a class keeps itself out of the count.
    std::weak_ptr<Node> type;
    /// What references lead to, by property; the world keeps it alive.
    std::map<std::u16string, std::vector<std::weak_ptr<Node>>> links;
    std::u16string name;
};

struct ClassNode final : Node {
    const std::u16string& getQualifiedName() const { return qualifiedName; }

    std::u16string qualifiedName;
    std::shared_ptr<ClassNode> superclass;
    std::vector<std::shared_ptr<Node>> properties;
};

struct PropertyNode final : Node {
    std::weak_ptr<ClassNode> owner;
    std::weak_ptr<PropertyNode> opposite;
    bool isReference = false;
    bool isContainment = false;
    bool isMany = false;
};

// Names as the host has them; whatever they are, they convert to views.
#ifdef HOST_NAMES_COMPARE_OTHERWISE
/// Its `<` compares addresses.
using ClassName = const char16_t*;
/// Its `<` is the opposite of that of views.
struct PropertyName {
    std::u16string text;
    operator std::u16string_view() const { return text; }  // NOLINT(google-explicit-constructor)
    friend bool operator<(const PropertyName& a, const PropertyName& b) { return b.text < a.text; }
};
#else
using ClassName = std::u16string_view;
using PropertyName = std::u16string_view;
#endif

/// What the library has asked so far.
struct Calls {
    /// How often, by name: `a.next` was read, the properties of `Part` listed.
    std::map<std::string, int> reads;
    std::map<std::string, int> listings;
    /// How often two handles were compared.
    long comparisons = 0;
    /// Whose qualified names were fetched, in order.
    std::vector<std::string> qualifiedNames;
    /// Operations that were given a null handle. A host need not have an answer to that.
    std::vector<std::string> onNull;
    /// Hears of each operation before it answers, and may throw in its place.
    std::function<void(const std::string& operation)> before;

    static Calls& all() {
        static Calls calls;
        return calls;
    }
    static void forget() { all() = Calls(); }
};

/// Called by every operation that the library asks of the host.
template <class... Handles>
void asked(const char* operation, const Handles&... handles) {
    Calls& calls = Calls::all();
    if (!(static_cast<bool>(handles) && ...)) calls.onNull.emplace_back(operation);
    if (calls.before) calls.before(operation);
}

/// Names are in ASCII here.
inline std::string toUtf8(std::u16string_view text) {
    std::string narrow;
    for (const char16_t unit : text) narrow.push_back(unit < 0x80 ? static_cast<char>(unit) : '?');
    return narrow;
}

}  // namespace host

namespace nuv::zero {

class ModelElement {
  public:
    using Impl = host::Node;
    ModelElement() noexcept = default;
    explicit ModelElement(std::shared_ptr<host::Node> node) noexcept : node_(std::move(node)) {}
    explicit operator bool() const noexcept { return node_ != nullptr; }
    bool operator==(const ModelElement& other) const noexcept {
        ++host::Calls::all().comparisons;
        return node_ == other.node_;
    }
    host::Node* operator->() const noexcept { return node_.get(); }
    const std::shared_ptr<host::Node>& node() const noexcept { return node_; }

    static const meta::Class& metaClass();

#if defined(HOST_COPIES_MAY_THROW) || defined(HOST_ASSIGNMENTS_MAY_THROW)
    ModelElement(ModelElement&& other) noexcept = default;
    ModelElement& operator=(ModelElement&& other) noexcept = default;
#endif
#if defined(HOST_COPIES_MAY_THROW)
    ModelElement(const ModelElement& other) : node_(other.node_) {}
    ModelElement& operator=(const ModelElement& other) noexcept = default;
#elif defined(HOST_ASSIGNMENTS_MAY_THROW)
    ModelElement(const ModelElement& other) noexcept = default;
    ModelElement& operator=(const ModelElement& other) noexcept(false) = default;
#endif

  protected:
    std::shared_ptr<host::Node> node_;
};

}  // namespace nuv::zero

template <>
struct std::hash<nuv::zero::ModelElement> {
    std::size_t operator()(const nuv::zero::ModelElement& element) const noexcept {
        return std::hash<std::shared_ptr<host::Node>>()(element.node());
    }
};

namespace nuv::zero::meta {

class Type : public ModelElement {
  public:
    using Impl = host::ClassNode;
    using ModelElement::ModelElement;
    host::ClassNode* operator->() const noexcept {
        return static_cast<host::ClassNode*>(node_.get());
    }
};

class StructuredType : public Type {
  public:
    using Type::Type;
};

class PrimitiveType : public StructuredType {
  public:
    using StructuredType::StructuredType;
};

class Class : public StructuredType {
  public:
    using StructuredType::StructuredType;
    Class() noexcept = default;
    explicit Class(const StructuredType& type) noexcept : StructuredType(type.node()) {}

    static const Class& metaClass();
};

class Property : public ModelElement {
  public:
    using ModelElement::ModelElement;
    host::PropertyNode* operator->() const noexcept {
        return static_cast<host::PropertyNode*>(node_.get());
    }
};

}  // namespace nuv::zero::meta

template <>
struct std::hash<nuv::zero::meta::Class> : std::hash<nuv::zero::ModelElement> {};
#ifndef HOST_LACKS_HASH_OF_PROPERTY
template <>
struct std::hash<nuv::zero::meta::Property> : std::hash<nuv::zero::ModelElement> {};
#endif

namespace nuv::zero {

/// Elements, or the text of a name; which of them a value is shows in `isText`.
class Value {
  public:
    struct Meta {
        meta::Type type;
        meta::Type getType() const { return type; }
    };
    Meta getMeta() const { return {}; }

    std::vector<ModelElement> elements;
    std::u16string text;
    bool isText = false;
};

}  // namespace nuv::zero

namespace nuv::zero::access {

using host::toUtf8;

// A null handle is answered all the same, so that a test can say where they came from.

inline meta::Class classOf(const ModelElement& element) {
    host::asked("classOf", element);
    return element ? meta::Class(element->type.lock()) : meta::Class();
}
inline Value read(const ModelElement& element, const meta::Property& property) {
    host::asked("read", element, property);
    Value value;
    if (!element || !property) return value;
    ++host::Calls::all().reads[toUtf8(element->name) + "." + toUtf8(property->name)];
    if (property->isReference) {
        const auto links = element->links.find(property->name);
        if (links == element->links.end()) return value;
        for (const auto& target : links->second) value.elements.emplace_back(target.lock());
    } else {
        value.isText = true;
        value.text = element->name;
    }
    return value;
}

inline host::ClassName nameOf(const meta::Class& type) {
    host::asked("nameOf class", type);
    return type ? host::ClassName(type->name.c_str()) : u"";
}
inline host::PropertyName nameOf(const meta::Property& property) {
    host::asked("nameOf property", property);
    return property ? host::PropertyName{property->name} : host::PropertyName{};
}
inline host::ClassName qualifiedNameOf(const meta::Class& type) {
    host::asked("qualifiedNameOf", type);
    if (!type) return u"";
    host::Calls::all().qualifiedNames.push_back(toUtf8(type->name));
    return type->qualifiedName.c_str();
}

inline std::vector<meta::Property> listProperties(const meta::Class& type) {
    std::vector<meta::Property> properties;
    if (!type) return properties;
    if (type->superclass) properties = listProperties(meta::Class(type->superclass));
    for (const auto& property : type->properties) properties.emplace_back(property);
    return properties;
}
inline std::vector<meta::Property> allProperties(const meta::Class& type) {
    host::asked("allProperties", type);
    if (type) ++host::Calls::all().listings[toUtf8(type->name)];
    return listProperties(type);
}
inline meta::Property propertyNamed(const meta::Class& type, std::u16string_view name) {
    host::asked("propertyNamed", type);
    for (const meta::Property& property : listProperties(type)) {
        if (property->name == name) return property;
    }
    return {};
}
inline bool hasProperty(const meta::Class& type, const meta::Property& property) {
    host::asked("hasProperty", type, property);
    for (const meta::Property& other : listProperties(type)) {
        if (other == property) return true;
    }
    return false;
}
inline bool conformsTo(const meta::Class& type, const meta::Type& other) {
    host::asked("conformsTo", type, other);
    for (meta::Class ancestor = type; ancestor; ancestor = meta::Class(ancestor->superclass)) {
        if (ancestor == other) return true;
    }
    return false;
}

inline meta::Class owningClass(const meta::Property& property) {
    host::asked("owningClass", property);
    return property ? meta::Class(property->owner.lock()) : meta::Class();
}
#ifndef HOST_LACKS_OPPOSITE
inline meta::Property oppositeOf(const meta::Property& property) {
    host::asked("oppositeOf", property);
    return property ? meta::Property(property->opposite.lock()) : meta::Property();
}
#endif
inline bool isAssociation(const meta::Property& property) {
    host::asked("isAssociation", property);
    return property && property->isReference;
}
inline bool isDerived(const meta::Property& property) {
    host::asked("isDerived", property);
    return false;
}
#ifndef HOST_LACKS_COMPOSITE_FLAG
inline bool isComposite(const meta::Property& property) {
    host::asked("isComposite", property);
    return property && property->isContainment;
}
#endif
inline bool isSingleValued(const meta::Property& property) {
    host::asked("isSingleValued", property);
    return property && !property->isMany;
}

inline bool isSet(const Value& value) {
    host::asked("isSet");
    return value.isText || !value.elements.empty();
}
inline ModelElement toElement(const Value& value) {
    host::asked("toElement");
    if (value.isText) throw std::invalid_argument("a text is no element");
    return value.elements.empty() ? ModelElement() : value.elements.front();
}
inline std::vector<ModelElement> toElements(const Value& value) {
    host::asked("toElements");
    if (value.isText) throw std::invalid_argument("a text is no collection of elements");
    return value.elements;
}
inline std::u16string toString(const Value& value) {
    host::asked("toString");
    return value.text;
}

}  // namespace nuv::zero::access
