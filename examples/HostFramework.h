#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "examples/HostModel.h"

/// What makes the traversal library walk the host's model: handles in `nuv::zero` and
/// `nuv::zero::meta`, and the functions of `nuv::zero::access`. `model/FrameworkContract.h` checks
/// them and says what is missing.

namespace nuv::zero {

namespace meta {
class Class;
}

class ModelElement {
  public:
    struct Impl {
        enum class ReflectionPrivateTag { PUBLIC_ACCESS };
    };
    ModelElement() noexcept = default;
    explicit ModelElement(std::shared_ptr<const host::Thing> thing) noexcept
        : thing_(std::move(thing)) {}

    explicit operator bool() const noexcept { return thing_ != nullptr; }
    friend bool operator==(const ModelElement& a, const ModelElement& b) noexcept {
        return a.thing_ == b.thing_;
    }
    const std::shared_ptr<const host::Thing>& thing() const noexcept { return thing_; }
    static const meta::Class& metaClass();

  private:
    std::shared_ptr<const host::Thing> thing_;
};

namespace meta {

class Type : public ModelElement {
  public:
    using ModelElement::ModelElement;
    const Type* operator->() const noexcept { return this; }
    const std::u16string& getQualifiedName() const noexcept { return thing()->name; }
};
class StructuredType : public Type {
  public:
    using Type::Type;
};
class PrimitiveType : public Type {
  public:
    using Type::Type;
};

class Class : public StructuredType {
  public:
    using StructuredType::StructuredType;
    explicit Class(const StructuredType& type) noexcept : StructuredType(type) {}
    const host::Kind& kind() const noexcept { return static_cast<const host::Kind&>(*thing()); }
    static const Class& metaClass() {
        static const Class instance(std::make_shared<host::Kind>(u"Kind"));
        return instance;
    }
};

class Property : public ModelElement {
  public:
    using ModelElement::ModelElement;
    const host::Slot& slot() const noexcept { return static_cast<const host::Slot&>(*thing()); }
};

}  // namespace meta

inline const meta::Class& ModelElement::metaClass() {
    static const meta::Class instance(std::make_shared<host::Kind>(u"Thing"));
    return instance;
}

/// What a slot of a thing holds: some things, or the name of the thing.
struct Value {
    struct Meta {
        meta::Type type;
        const meta::Type& getType() const noexcept { return type; }
    };
    const Meta& getMeta() const noexcept { return meta; }

    Meta meta;
    std::vector<ModelElement> things;
    std::u16string text;
};

namespace access {

inline meta::Class classOf(const host::Kind* kind) {
    if (kind == nullptr) return {};
    return meta::Class(kind->shared_from_this());
}
/// The library asks by reference, so the classes that are in use are kept here.
inline const meta::Class& classOf(const ModelElement& element) {
    thread_local std::map<const host::Kind*, meta::Class> known;
    const host::Kind* kind = element ? element.thing()->kind.get() : nullptr;
    return known.try_emplace(kind, classOf(kind)).first->second;
}

inline const std::u16string& nameOf(const ModelElement& named) {
    return named.thing()->name;
}
inline const std::u16string& qualifiedNameOf(const meta::Class& type) {
    return nameOf(type);
}

inline std::vector<meta::Property> allProperties(const meta::Class& type) {
    if (!type) return {};
    std::vector<meta::Property> all = allProperties(classOf(type.kind().base.get()));
    for (const auto& slot : type.kind().slots) all.emplace_back(slot);
    return all;
}
inline meta::Property propertyNamed(const meta::Class& type, std::u16string_view name) {
    for (const meta::Property& property : allProperties(type)) {
        if (nameOf(property) == name) return property;
    }
    return {};
}
inline bool conformsTo(const meta::Class& type, const meta::Type& other) {
    if (!type) return false;
    return type == other || conformsTo(classOf(type.kind().base.get()), other);
}
inline meta::Class owningClass(const meta::Property& property) {
    return property ? classOf(property.slot().owner) : meta::Class();
}
inline bool hasProperty(const meta::Class& type, const meta::Property& property) {
    return property && conformsTo(type, owningClass(property));
}

inline bool isAssociation(const meta::Property& property) {
    return property && property.slot().holds != host::Slot::Holds::Name;
}
inline bool isComposite(const meta::Property& property) {
    return property && property.slot().holds == host::Slot::Holds::Parts;
}
inline bool isSingleValued(const meta::Property& property) {
    return property.slot().holds < host::Slot::Holds::Many;
}
/// This host computes no slots and knows no opposites.
inline bool isDerived(const meta::Property& /*property*/) {
    return false;
}
inline meta::Property oppositeOf(const meta::Property& /*property*/) {
    return {};
}
inline Value read(const ModelElement& element, const meta::Property& property) {
    Value value;
    value.text = nameOf(element);
    const auto& held = element.thing()->held;
    if (const auto found = held.find(&property.slot()); found != held.end()) {
        for (const auto& thing : found->second) value.things.emplace_back(thing);
    }
    return value;
}
inline bool isSet(const Value& value) {
    return !value.things.empty();
}
inline ModelElement toElement(const Value& value) {
    return value.things.empty() ? ModelElement() : value.things.front();
}
inline std::vector<ModelElement> toElements(const Value& value) {
    return value.things;
}
inline std::u16string toString(const Value& value) {
    return value.text;
}

/// Names of this host are ASCII.
inline std::string toUtf8(std::u16string_view text) {
    std::string narrow;
    for (const char16_t unit : text) narrow.push_back(unit < 0x80 ? static_cast<char>(unit) : '?');
    return narrow;
}

}  // namespace access

}  // namespace nuv::zero

template <>
struct std::hash<nuv::zero::ModelElement> {
    std::size_t operator()(const nuv::zero::ModelElement& element) const noexcept {
        return std::hash<const void*>()(element.thing().get());
    }
};
template <>
struct std::hash<nuv::zero::meta::Class> : std::hash<nuv::zero::ModelElement> {};
template <>
struct std::hash<nuv::zero::meta::Property> : std::hash<nuv::zero::ModelElement> {};
