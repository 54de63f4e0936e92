#include "model/memory/ClassLayout.h"

#include <algorithm>
#include <functional>
#include <unordered_set>

#include "model/memory/Class.h"

namespace nuv::zero::memory {

ClassLayout::ClassLayout(const ClassObject& self, const std::vector<ClassObject*>& superclasses,
                         const ClassLayout* before) {
    if (before != nullptr) {
        slotOrder_ = before->slotOrder_;
        otherSlots_ = before->otherSlots_;
    }

    // The lineage of each superclass holds its ancestors in the right order already; what an
    // earlier superclass brought is left out, together with everything above it.
    std::unordered_set<const ClassObject*> seen;
    for (const ClassObject* superclass : superclasses) {
        for (const ClassObject* ancestor : superclass->layout().lineage()) {
            if (seen.insert(ancestor).second) lineage_.push_back(ancestor);
        }
    }
    lineage_.push_back(&self);
    isChain_ = superclasses.empty() ||
               (superclasses.size() == 1 && superclasses.front()->layout().isChain_);
    sortedLineage_ = lineage_;
    std::sort(sortedLineage_.begin(), sortedLineage_.end(), std::less<>());

    for (const ClassObject* ancestor : lineage_) {
        for (const PropertyObject& property : ancestor->ownProperties()) {
            if (slotOf(property) == noSlot) takeSlot(property);
        }
    }
}

bool ClassLayout::isAmongAncestors(const ClassObject& other) const noexcept {
    return std::binary_search(sortedLineage_.begin(), sortedLineage_.end(), &other, std::less<>());
}

ClassLayout::Slot ClassLayout::lookUpSlot(const PropertyObject& property) const noexcept {
    if (otherSlots_.empty()) return noSlot;
    const auto found = otherSlots_.find(&property);
    return found == otherSlots_.end() ? noSlot : found->second;
}

void ClassLayout::takeSlot(const PropertyObject& property) {
    const Slot slot = slotCount();
    slotOrder_.push_back(&property);
    if (slot == property.slotHint_) return;
    try {
        otherSlots_.emplace(&property, slot);
    } catch (...) {
        slotOrder_.pop_back();
        throw;
    }
}

void ClassLayout::giveBackSlot(const PropertyObject& property) noexcept {
    slotOrder_.pop_back();
    otherSlots_.erase(&property);
}

}  // namespace nuv::zero::memory
