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
    std::u16string getQualifiedName() const { return u"host." + name; }

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

/// What the library has asked so far, by name: `a.next` was read, the properties of `Part` listed.
struct Calls {
    std::map<std::string, int> reads;
    std::map<std::string, int> listings;

    static Calls& all() {
        static Calls calls;
        return calls;
    }
    static void forget() { all() = Calls(); }
};

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
    bool operator==(const ModelElement& other) const noexcept { return node_ == other.node_; }
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

inline meta::Class classOf(const ModelElement& element) {
    return element ? meta::Class(element->type.lock()) : meta::Class();
}
inline Value read(const ModelElement& element, const meta::Property& property) {
    ++host::Calls::all().reads[toUtf8(element->name) + "." + toUtf8(property->name)];
    Value value;
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

inline std::u16string_view nameOf(const meta::Class& type) {
    return type->name;
}
inline std::u16string_view nameOf(const meta::Property& property) {
    return property->name;
}
inline std::u16string qualifiedNameOf(const meta::Class& type) {
    return type->getQualifiedName();
}

inline std::vector<meta::Property> listProperties(const meta::Class& type) {
    std::vector<meta::Property> properties;
    if (!type) return properties;
    if (type->superclass) properties = listProperties(meta::Class(type->superclass));
    for (const auto& property : type->properties) properties.emplace_back(property);
    return properties;
}
inline std::vector<meta::Property> allProperties(const meta::Class& type) {
    if (type) ++host::Calls::all().listings[toUtf8(type->name)];
    return listProperties(type);
}
inline meta::Property propertyNamed(const meta::Class& type, std::u16string_view name) {
    for (const meta::Property& property : listProperties(type)) {
        if (property->name == name) return property;
    }
    return {};
}
inline bool hasProperty(const meta::Class& type, const meta::Property& property) {
    for (const meta::Property& other : listProperties(type)) {
        if (other == property) return true;
    }
    return false;
}
inline bool conformsTo(const meta::Class& type, const meta::Type& other) {
    for (meta::Class ancestor = type; ancestor; ancestor = meta::Class(ancestor->superclass)) {
        if (ancestor == other) return true;
    }
    return false;
}

inline meta::Class owningClass(const meta::Property& property) {
    return property ? meta::Class(property->owner.lock()) : meta::Class();
}
#ifndef HOST_LACKS_OPPOSITE
inline meta::Property oppositeOf(const meta::Property& property) {
    return meta::Property(property->opposite.lock());
}
#endif
inline bool isAssociation(const meta::Property& property) {
    return property && property->isReference;
}
inline bool isDerived(const meta::Property& /*property*/) {
    return false;
}
#ifndef HOST_LACKS_COMPOSITE_FLAG
inline bool isComposite(const meta::Property& property) {
    return property && property->isContainment;
}
#endif
inline bool isSingleValued(const meta::Property& property) {
    return !property->isMany;
}

inline bool isSet(const Value& value) {
    return value.isText || !value.elements.empty();
}
inline ModelElement toElement(const Value& value) {
    if (value.isText) throw std::invalid_argument("a text is no element");
    return value.elements.empty() ? ModelElement() : value.elements.front();
}
inline std::vector<ModelElement> toElements(const Value& value) {
    if (value.isText) throw std::invalid_argument("a text is no collection of elements");
    return value.elements;
}
inline std::u16string toString(const Value& value) {
    return value.text;
}

}  // namespace nuv::zero::access
