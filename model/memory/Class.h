#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "../Export.h"
#include "Type.h"

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
    PropertyObject(const meta::Class& metaClass, ClassObject& owner, std::u16string_view name,
                   const TypeObject& type, int upperBound, PropertyFlags flags, std::uint32_t slot);
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

namespace nuv::zero::memory {

/// What a class derives from its place in the hierarchy: its ancestors, and the numbers of the
/// slots that hold its properties in its elements.
///
/// Slot numbers are given as properties become known and never change, so that elements made before
/// a property was declared stay readable.
class ClassLayout {
  public:
    using Slot = std::uint32_t;
    static constexpr Slot noSlot = 0xFFFFFFFFU;

    /// All ancestors, each after its own ancestors, and the class itself last.
    const std::vector<const ClassObject*>& lineage() const noexcept { return lineage_; }
    /// Whether the other layout is of the same class or of an ancestor.
    bool descendsFrom(const ClassLayout& other) const noexcept {
        // Under single inheritance an ancestor stands at the same place in every lineage.
        const std::size_t place = other.lineage_.size() - 1;
        const ClassObject* sought = other.lineage_.back();
        if (place < lineage_.size() && lineage_[place] == sought) return true;
        return !isChain_ && isAmongAncestors(*sought);
    }

    Slot slotOf(const PropertyObject& property) const noexcept {
        const Slot hint = property.slotHint_;
        if (hint < slotOrder_.size() && slotOrder_[hint] == &property) return hint;
        return lookUpSlot(property);
    }
    Slot slotCount() const noexcept { return static_cast<Slot>(slotOrder_.size()); }

  private:
    friend class ClassObject;
    friend class Hierarchy;

    /// The layout of a class below these superclasses. What `before` numbered keeps its number.
    ClassLayout(const ClassObject& self, const std::vector<ClassObject*>& superclasses,
                const ClassLayout* before);

    /// Numbers one more property. Throws `std::bad_alloc`, and then has changed nothing.
    void takeSlot(const PropertyObject& property);
    /// Takes back the latest `takeSlot`.
    void giveBackSlot(const PropertyObject& property) noexcept;

    MODELING_NUV0_MODEL_EXPORT bool isAmongAncestors(const ClassObject& other) const noexcept;
    MODELING_NUV0_MODEL_EXPORT Slot lookUpSlot(const PropertyObject& property) const noexcept;

    std::vector<const ClassObject*> lineage_;
    /// Whether neither the class nor an ancestor has more than one superclass.
    bool isChain_ = true;
    /// The same, sorted by address, to find in.
    std::vector<const ClassObject*> sortedLineage_;
    std::vector<const PropertyObject*> slotOrder_;
    /// Those properties whose number here differs from the one in their declaring class.
    std::unordered_map<const PropertyObject*, Slot> otherSlots_;
};

}  // namespace nuv::zero::memory

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
template <>
struct std::hash<nuv::zero::meta::Property> : std::hash<nuv::zero::ModelElement> {};
