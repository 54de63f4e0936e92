#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "model/memory/Type.h"

namespace nuv::zero::memory {

/// What a property is, combined with `|`.
enum class PropertyFlags : std::uint8_t {
    None = 0,
    /// The property links to other elements; only such properties are ever walked.
    Association = 1,
    /// The value is computed from others; never walked.
    Derived = 2,
    /// The property contains its targets.
    Composite = 4,
};
constexpr PropertyFlags operator|(PropertyFlags a, PropertyFlags b) noexcept {
    return static_cast<PropertyFlags>(static_cast<std::uint8_t>(a) | static_cast<std::uint8_t>(b));
}
constexpr bool has(PropertyFlags flags, PropertyFlags flag) noexcept {
    return (static_cast<std::uint8_t>(flags) & static_cast<std::uint8_t>(flag)) != 0;
}

/// The upper bound of a property without a limit.
inline constexpr int unbounded = -1;

}  // namespace nuv::zero::memory

namespace nuv::zero::meta {

/// A handle of a property: a named, typed slot of a class, perhaps with an opposite end.
class Property : public ModelElement {
  public:
    using Impl = memory::PropertyObject;
    Property() noexcept = default;
    explicit inline Property(const Impl* impl) noexcept;
    inline Impl* operator->() const noexcept;
    inline Impl* get() const noexcept;
};

}  // namespace nuv::zero::meta

namespace nuv::zero::memory {

class MODELING_NUV0_MODEL_EXPORT PropertyObject final : public Object {
  public:
    /// `slot` is the property's slot in the elements of its declaring class.
    PropertyObject(ClassObject& owner, std::u16string_view name, const TypeObject& type,
                   int upperBound, PropertyFlags flags, std::uint32_t slot);
    ~PropertyObject();

    const std::u16string& getName() const noexcept { return name_; }
    const TypeObject& type() const noexcept { return *type_; }
    meta::Type getType() const noexcept { return meta::Type(type_); }
    int getUpperBound() const noexcept { return upperBound_; }
    /// Exactly an upper bound of one means single-valued.
    bool isSingleValued() const noexcept { return upperBound_ == 1; }
    PropertyFlags flags() const noexcept { return flags_; }
    bool isAssociation() const noexcept { return has(flags_, PropertyFlags::Association); }
    bool isDerived() const noexcept { return has(flags_, PropertyFlags::Derived); }
    bool isComposite() const noexcept { return has(flags_, PropertyFlags::Composite); }

    /// Whether a never-set value designates no elements, instead of being none that could.
    bool isEmptyWhenNeverSet() const noexcept { return emptyWhenNeverSet_; }

    /// The property at the other end of the association; null where there is none.
    const meta::Property& getOpposite() const noexcept { return opposite_; }
    /// The type that declares the property.
    meta::StructuredType getOwningType() const noexcept;
    const ClassObject& owner() const noexcept { return *owner_; }

  private:
    friend class ClassLayout;
    friend class Hierarchy;

    ClassObject* owner_;
    const TypeObject* type_;
    std::u16string name_;
    int upperBound_;
    PropertyFlags flags_;
    bool emptyWhenNeverSet_;
    /// The property's slot in its declaring class, and in most subclasses.
    std::uint32_t slotHint_;
    /// Not counted: the storage of the metamodel outlives all its properties.
    meta::Property opposite_;
};

}  // namespace nuv::zero::memory

namespace nuv::zero::meta {

inline Property::Property(const Impl* impl) noexcept : ModelElement(impl) {}
inline Property::Impl* Property::operator->() const noexcept {
    return get();
}
inline Property::Impl* Property::get() const noexcept {
    return static_cast<Impl*>(ModelElement::get());
}

}  // namespace nuv::zero::meta

template <>
struct std::hash<nuv::zero::meta::Property> : std::hash<nuv::zero::ModelElement> {};
