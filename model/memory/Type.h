#pragma once

#include <string>
#include <string_view>

#include "ModelElement.h"

namespace nuv::zero::memory {

/// A type of values: a class or a primitive type.
class MODELING_NUV0_MODEL_EXPORT TypeObject : public Object {
  public:
    /// What the type is. Only classes are structured types here.
    enum class Kind : std::uint8_t { Class, Text, Integer };

    const std::u16string& getName() const noexcept { return name_; }
    const std::u16string& getQualifiedName() const noexcept { return qualifiedName_; }
    Kind kind() const noexcept { return kind_; }
    bool isClass() const noexcept { return kind_ == Kind::Class; }

    /// Whether this type is the other one or a subclass of it. Every class conforms to
    /// `ModelElement::metaClass()` and, being a class, to `meta::Class::metaClass()`.
    bool conformsTo(const meta::Type& other) const noexcept;
    /// Whether an element of this type may stand where an element of the other one is declared.
    /// Unlike `conformsTo`, an ordinary element is no class here.
    bool canStandFor(const TypeObject& declared) const noexcept;

  protected:
    TypeObject(Kind kind, std::u16string_view name, std::u16string_view qualifiedName,
               const meta::Class& metaClass, Storage& storage);
    ~TypeObject() = default;

  private:
    std::u16string name_;
    std::u16string qualifiedName_;
    Kind kind_;
};

class MODELING_NUV0_MODEL_EXPORT StructuredTypeObject : public TypeObject {
  protected:
    using TypeObject::TypeObject;
    ~StructuredTypeObject() = default;
};

/// A primitive type says by its kind what its values are: texts or integers.
class MODELING_NUV0_MODEL_EXPORT PrimitiveTypeObject final : public StructuredTypeObject {
  public:
    PrimitiveTypeObject(Kind kind, std::u16string_view qualifiedName, const meta::Class& metaClass,
                        Storage& storage);
};

}  // namespace nuv::zero::memory

namespace nuv::zero::meta {

/// A handle of any type of a value.
class Type : public ModelElement {
  public:
    using Impl = memory::TypeObject;
    Type() noexcept = default;
    explicit Type(const Impl* impl) noexcept : ModelElement(impl) {}
    Impl* operator->() const noexcept { return get(); }
    Impl* get() const noexcept { return static_cast<Impl*>(ModelElement::get()); }
};

/// A handle of the type that owns a property.
class StructuredType : public Type {
  public:
    using Impl = memory::StructuredTypeObject;
    StructuredType() noexcept = default;
    explicit StructuredType(const Impl* impl) noexcept : Type(impl) {}
    Impl* operator->() const noexcept { return get(); }
    Impl* get() const noexcept { return static_cast<Impl*>(ModelElement::get()); }
};

/// A handle of a primitive value type, such as the standard string type.
class PrimitiveType : public StructuredType {
  public:
    using Impl = memory::PrimitiveTypeObject;
    PrimitiveType() noexcept = default;
    explicit PrimitiveType(const Impl* impl) noexcept : StructuredType(impl) {}
    Impl* operator->() const noexcept { return get(); }
    Impl* get() const noexcept { return static_cast<Impl*>(ModelElement::get()); }
};

/// The types that every model shares.
struct StandardTypes {
    /// The standard string type, qualified name `String`. Bound on first use.
    MODELING_NUV0_MODEL_EXPORT static const PrimitiveType& stringMeta();
};

namespace internal {
/// The primitive type registered for the whole process under a name; null where there is none.
/// The registry holds "String".
MODELING_NUV0_MODEL_EXPORT PrimitiveType getPrimitiveTypeFromMetaRegistry(std::u16string_view name);
}  // namespace internal

}  // namespace nuv::zero::meta

template <>
struct std::hash<nuv::zero::meta::Type> : std::hash<nuv::zero::ModelElement> {};
