#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "../Export.h"
#include "SlotWord.h"

namespace nuv::zero::memory {

/// What a handle designates: an element of a model, or a class, property or type of a metamodel
/// (which are elements too). Handles count their references in it.
///
/// An object starts with one reference, its storage's; references from elements of the same model
/// are not counted, because the storage keeps all its objects as long as one of them is needed.
/// Once the storage's owner has given up that first reference, handles make the object a user of
/// its storage. It stops being one with its last handle, and becomes one again when a new handle is
/// made while something else keeps the storage: a pin, or another object.
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
    const meta::Class& getClass() const noexcept { return *class_; }

    /// The value of one property, as stored or, when never set, as the property's declaration says:
    /// unset for a single-valued property, an empty collection for a many-valued one. Never changes
    /// the object. Throws nothing.
    Value get(const meta::Property& property, ReflectionPrivateTag access) const;

    /// The elements that a property designates, viewed in place: what `get` followed by the
    /// conversion to elements gives, and the same `CannotCastIncompatibleTypes` where that fails,
    /// without copying the values. Like a value, the view keeps its elements.
    ElementView view(const meta::Property& property, ReflectionPrivateTag access) const;

    Storage* storage() const noexcept { return storage_; }

  protected:
    /// Makes an object of the storage with one reference.
    Object(const meta::Class& objectClass, Storage& storage) noexcept
        : class_(&objectClass), storage_(&storage) {}
    ~Object() = default;

  private:
    friend class MetamodelStorage;
    friend class ModelStorage;
    friend class PropertyReader;
    void becomeReferenced() const noexcept;
    void becomeUnreferenced() const noexcept;
    /// Gives up the reference with which the object started. REQUIRES: the storage has another user
    /// until all its objects have done so.
    void giveUp() const noexcept;

    /// What is stored in the slot of that number; never set where there is none.
    SlotWord slotAt(std::size_t number) const noexcept {
        if (number < inlineSlotCount_) return inlineSlots()[number];
        // Also where the class lacks the property: its number is above all others then.
        const std::size_t late = number - inlineSlotCount_;
        if (lateSlots_ == nullptr || late >= lateSlots_->size()) return {};
        return (*lateSlots_)[late];
    }
    /// The slots that were allocated together with the element follow it in memory.
    const SlotWord* inlineSlots() const noexcept {
        return reinterpret_cast<const SlotWord*>(this + 1);
    }

    mutable std::atomic<std::uint32_t> references_{1};
    /// The number of properties that the class had when the element was made.
    std::uint32_t inlineSlotCount_ = 0;
    const meta::Class* class_;
    Storage* storage_;
    /// The slots of properties declared later; null until one of them is set.
    std::vector<SlotWord>* lateSlots_ = nullptr;
};

}  // namespace nuv::zero::memory
