#pragma once

#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <vector>

#include "model/Export.h"
#include "model/memory/Property.h"

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

    /// The layout of a class below these superclasses. What `before` numbered keeps its number.
    MODELING_NUV0_MODEL_EXPORT ClassLayout(const ClassObject& self,
                                           const std::vector<ClassObject*>& superclasses,
                                           const ClassLayout* before);

    /// All ancestors, each after its own ancestors, and the class itself last.
    const std::vector<const ClassObject*>& lineage() const noexcept { return lineage_; }
    inline bool hasInLineage(const ClassObject& other) const noexcept;

    Slot slotOf(const PropertyObject& property) const noexcept {
        const Slot hint = property.slotHint_;
        if (hint < slotOrder_.size() && slotOrder_[hint] == &property) return hint;
        return lookUpSlot(property);
    }
    Slot slotCount() const noexcept { return static_cast<Slot>(slotOrder_.size()); }

    /// Numbers one more property. Throws `std::bad_alloc`, and then has changed nothing.
    MODELING_NUV0_MODEL_EXPORT void takeSlot(const PropertyObject& property);
    /// Takes back the latest `takeSlot`.
    MODELING_NUV0_MODEL_EXPORT void giveBackSlot(const PropertyObject& property) noexcept;

  private:
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
