#pragma once

#include <deque>
#include <string_view>
#include <vector>

#include "model/memory/ClassLayout.h"
#include "model/memory/Property.h"

namespace nuv::zero::meta {

/// A handle of a meta-class: the type of model objects.
class Class : public StructuredType {
  public:
    using Impl = memory::ClassObject;
    Class() noexcept = default;
    explicit inline Class(const Impl* impl) noexcept;
    /// The class that a structured type is; null for a primitive type or a null handle.
    explicit inline Class(const StructuredType& type) noexcept;
    inline Impl* operator->() const noexcept;
    inline Impl* get() const noexcept;

    /// The meta-class of meta-classes: a type that conforms to it is a class.
    MODELING_NUV0_MODEL_EXPORT static const Class& metaClass();
};

}  // namespace nuv::zero::meta

namespace nuv::zero::memory {

class MODELING_NUV0_MODEL_EXPORT ClassObject final : public StructuredTypeObject {
  public:
    /// A null meta-class makes the class an element of itself. REQUIRES: the superclasses are not
    /// null and all differ.
    ClassObject(const ClassObject* metaClass, std::u16string_view name,
                std::u16string_view qualifiedName, Storage& storage,
                std::vector<ClassObject*> superclasses);
    ~ClassObject();

    /// This class as a handle; the reference lives as long as the class.
    const meta::Class& handle() const noexcept { return self_; }

    /// Every property of the class: inherited ones first, superclass by superclass in the order
    /// in which these were given, each once; then the class's own in the order of declaration.
    std::vector<meta::Property> getAllClassProperties() const;
    /// The property of that name, own ones before inherited ones (superclass by superclass, each
    /// with the same precedence); null where there is none.
    meta::Property getProperty(std::u16string_view name) const;
    bool hasProperty(const meta::Property& property) const noexcept;
    /// Whether this class is the other one or a subclass of it.
    bool isKindOf(const ClassObject& other) const noexcept {
        return layout_.descendsFrom(other.layout_);
    }
    std::vector<meta::Class> getSuperclasses() const;

    const std::deque<PropertyObject>& ownProperties() const noexcept { return ownProperties_; }
    const ClassLayout& layout() const noexcept { return layout_; }

  private:
    friend class Hierarchy;

    const PropertyObject* findOwn(std::u16string_view name) const noexcept;

    /// Not counted, or the class would keep itself alive.
    meta::Class self_;
    std::vector<ClassObject*> superclasses_;
    std::vector<ClassObject*> subclasses_;
    std::deque<PropertyObject> ownProperties_;
    ClassLayout layout_;
};

}  // namespace nuv::zero::memory

namespace nuv::zero::meta {

inline Class::Class(const Impl* impl) noexcept : StructuredType(impl) {}
inline Class::Class(const StructuredType& type) noexcept
    : StructuredType(type && type->isClass() ? type : StructuredType()) {}
inline Class::Impl* Class::operator->() const noexcept {
    return get();
}
inline Class::Impl* Class::get() const noexcept {
    return static_cast<Impl*>(ModelElement::get());
}

}  // namespace nuv::zero::meta

template <>
struct std::hash<nuv::zero::meta::Class> : std::hash<nuv::zero::ModelElement> {};
