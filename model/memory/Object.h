#pragma once

#include <atomic>
#include <cstdint>

#include <vector>

#include "model/Export.h"
#include "model/memory/SlotWord.h"
#include "model/memory/fwd.h"

namespace nuv::zero::memory {

/// What a handle designates: an element of a model, or a class, property or type of a metamodel
/// (which are elements too). Handles count their references in it.
///
/// An object starts with one reference, its storage's. Once the storage's owner has given that up
/// and the last handle is gone, the object stops being a user of its storage. It becomes one again
/// when a new handle is made while something else keeps the storage: a pin, or another object.
class MODELING_NUV0_MODEL_EXPORT Object {
  public:
    /// How a value is reached when it is read by reflection; the library reads with public access.
    enum class ReflectionPrivateTag : std::uint8_t { PUBLIC_ACCESS };

    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;

    void retain() const noexcept {
        if (references_.fetch_add(1, std::memory_order_relaxed) == 0) becomeReferenced();
    }
    void release() const noexcept {
        if (references_.fetch_sub(1, std::memory_order_acq_rel) == 1) becomeUnreferenced();
    }

    /// The class of this element. The reference lives as long as the metamodel.
    inline const meta::Class& getClass() const noexcept;

    /// The value of one property, as stored or, when never set, as the property's declaration says:
    /// unset for a single-valued property, an empty collection for a many-valued one. Never changes
    /// the object. Throws `std::bad_alloc` only.
    Value get(const meta::Property& property, ReflectionPrivateTag access) const;

    /// The elements that a property designates, viewed in place: what `get` followed by the
    /// conversion to elements gives, and the same `CannotCastIncompatibleTypes` where that fails,
    /// without copying the values. See `ElementView`.
    inline ElementView view(const meta::Property& property, ReflectionPrivateTag access) const;

    Storage* storage() const noexcept { return storage_; }

  protected:
    /// Makes an object of the storage with one reference. Whoever makes it adds it to the users of
    /// the storage as soon as nothing can fail any more.
    Object(const ClassObject* objectClass, Storage& storage) noexcept
        : class_(objectClass), storage_(&storage) {}
    ~Object() = default;

  private:
    friend class ModelStorage;
    friend class PropertyReader;
    void becomeReferenced() const noexcept;
    void becomeUnreferenced() const noexcept;

    /// What is stored for the property; "never set" too for a property that the class lacks.
    inline SlotWord slot(const PropertyObject& property) const noexcept;
    inline SlotWord slotAt(std::size_t number) const noexcept;
    ElementView viewPayload(const PropertyObject& property, SlotWord word) const;
    /// The slots that were allocated together with the element follow it in memory.
    const SlotWord* inlineSlots() const noexcept {
        return reinterpret_cast<const SlotWord*>(this + 1);
    }

    mutable std::atomic<std::uint32_t> references_{1};
    /// The number of properties that the class had when the element was made.
    std::uint32_t inlineSlotCount_ = 0;
    const ClassObject* class_;
    Storage* storage_;
    /// The slots of properties declared later; null until one of them is set.
    std::vector<SlotWord>* lateSlots_ = nullptr;
};

}  // namespace nuv::zero::memory
