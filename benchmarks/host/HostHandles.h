#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "benchmarks/host/HostStore.h"

/// The handles of the host: pairs of a store and a number in it, which count the store.

namespace nuv::zero {

class ModelElement {
  public:
    struct Impl {
        enum class ReflectionPrivateTag { PUBLIC_ACCESS };
    };
    ModelElement() noexcept = default;
    ModelElement(const host::Store& store, std::uint32_t number) noexcept
        : store_(&store), number_(number) {
        store.retain();
    }
    ModelElement(const ModelElement& other) noexcept
        : store_(other.store_), number_(other.number_) {
        if (store_ != nullptr) store_->retain();
    }
    ModelElement(ModelElement&& other) noexcept
        : store_(std::exchange(other.store_, nullptr)), number_(other.number_) {}
    ModelElement& operator=(ModelElement other) noexcept {
        std::swap(store_, other.store_);
        std::swap(number_, other.number_);
        return *this;
    }
    ~ModelElement() {
        if (store_ != nullptr) store_->release();
    }

    explicit operator bool() const noexcept { return store_ != nullptr; }
    friend bool operator==(const ModelElement& a, const ModelElement& b) noexcept {
        return a.store_ == b.store_ && (a.number_ == b.number_ || a.store_ == nullptr);
    }
    const host::Store& store() const noexcept { return *store_; }
    std::uint32_t number() const noexcept { return number_; }
    static const meta::Class& metaClass();

    /// Makes a null handle designate an element that somebody else keeps alive; `forget` makes it
    /// null again, before it is destroyed.
    void borrow(const host::Store& store, std::uint32_t number) noexcept {
        store_ = &store;
        number_ = number;
    }
    void borrow(const ModelElement& other) noexcept {
        store_ = other.store_;
        number_ = other.number_;
    }
    void forget() noexcept { store_ = nullptr; }

  private:
    const host::Store* store_ = nullptr;
    std::uint32_t number_ = 0;
};

namespace meta {

class Type : public ModelElement {
  public:
    using ModelElement::ModelElement;
    const Type* operator->() const noexcept { return this; }
    const std::u16string& getQualifiedName() const noexcept {
        return store().classes()[number()].name;
    }
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
    Class() noexcept = default;
    explicit Class(const StructuredType& type) noexcept : StructuredType(type) {}
    static const Class& metaClass();
    const host::Store::Graph::Class& facts() const noexcept { return store().classes()[number()]; }
};

class Property : public ModelElement {
  public:
    using ModelElement::ModelElement;
    Property() noexcept = default;
    Property(const host::Store& schema, std::uint32_t index) noexcept
        : ModelElement(schema, static_cast<std::uint32_t>(schema.classes().size()) + index) {}
    std::uint32_t index() const noexcept {
        return number() - static_cast<std::uint32_t>(store().classes().size());
    }
    const host::Store::Graph::Property& facts() const noexcept {
        return store().properties()[index()];
    }
};

}  // namespace meta

struct Value {
    struct Meta {
        meta::Type type;
        const meta::Type& getType() const noexcept { return type; }
    };
    const Meta& getMeta() const noexcept { return meta; }

    Meta meta;
    std::vector<ModelElement> elements;
};

namespace access {

inline const meta::Class& classOf(const ModelElement& element) {
    const host::Store& store = element.store();
    if (store.isSchema()) return ModelElement::metaClass();
    return store.schema().classHandles()[*store.wordsOf(element.number())];
}
inline const std::u16string& nameOf(const meta::Class& type) {
    return type.facts().name;
}
inline const std::u16string& nameOf(const meta::Property& property) {
    return property.facts().name;
}
inline const std::u16string& qualifiedNameOf(const meta::Class& type) {
    return nameOf(type);
}

inline std::vector<meta::Property> allProperties(const meta::Class& type) {
    std::vector<meta::Property> all;
    for (const std::uint32_t index : type.facts().properties) all.emplace_back(type.store(), index);
    return all;
}
inline meta::Property propertyNamed(const meta::Class& type, std::u16string_view name) {
    for (const meta::Property& property : allProperties(type)) {
        if (nameOf(property) == name) return property;
    }
    return {};
}
inline bool hasProperty(const meta::Class& type, const meta::Property& property) {
    const auto& all = type.facts().properties;
    return &type.store() == &property.store() &&
           std::find(all.begin(), all.end(), property.index()) != all.end();
}
inline bool conformsTo(const meta::Class& type, const meta::Type& other) {
    const auto& all = type.facts().conformsTo;
    return &type.store() == &other.store() &&
           std::find(all.begin(), all.end(), other.number()) != all.end();
}
inline meta::Class owningClass(const meta::Property& property) {
    return {property.store(), property.facts().owner};
}
inline bool isAssociation(const meta::Property& /*property*/) {
    return true;
}
inline bool isDerived(const meta::Property& /*property*/) {
    return false;
}
inline bool isComposite(const meta::Property& property) {
    return property.facts().isComposite;
}
inline bool isSingleValued(const meta::Property& property) {
    return property.facts().isSingleValued;
}
/// This host knows no opposites.
inline meta::Property oppositeOf(const meta::Property& /*property*/) {
    return {};
}

/// The numbers of elements that stand in one property of an element.
struct Numbers {
    const std::uint32_t* first = nullptr;
    std::uint32_t count = 0;
};
/// Those of the property at a place among so many.
inline Numbers numbersAt(const std::uint32_t* words, std::size_t place, std::size_t count) {
    const std::uint32_t* ends = words + 1;
    const std::uint32_t begin = place == 0 ? 0 : ends[place - 1];
    return {ends + count + begin, ends[place] - begin};
}
inline Numbers numbersOf(const ModelElement& element, const meta::Property& property) {
    const auto& all = classOf(element).facts().properties;
    const auto found = std::find(all.begin(), all.end(), property.index());
    if (found == all.end()) return {};
    return numbersAt(element.store().wordsOf(element.number()),
                     static_cast<std::size_t>(found - all.begin()), all.size());
}

inline Value read(const ModelElement& element, const meta::Property& property) {
    const Numbers numbers = numbersOf(element, property);
    Value value;
    for (std::uint32_t i = 0; i < numbers.count; ++i) {
        value.elements.emplace_back(element.store(), numbers.first[i]);
    }
    return value;
}
inline bool isSet(const Value& value) {
    return !value.elements.empty();
}
inline ModelElement toElement(const Value& value) {
    return value.elements.empty() ? ModelElement() : value.elements.front();
}
inline std::vector<ModelElement> toElements(const Value& value) {
    return value.elements;
}
/// Nothing here has a text.
inline std::u16string toString(const Value& /*value*/) {
    return {};
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
        const std::uint64_t store = element ? element.store().number() + 1 : 0;
        return static_cast<std::size_t>((store << 32U | element.number()) * 0x9E3779B97F4A7C15U);
    }
};
template <>
struct std::hash<nuv::zero::meta::Class> : std::hash<nuv::zero::ModelElement> {};
template <>
struct std::hash<nuv::zero::meta::Property> : std::hash<nuv::zero::ModelElement> {};
