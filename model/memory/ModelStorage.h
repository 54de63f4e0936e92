#pragma once

#include <atomic>
#include <cstddef>
#include <memory>
#include <vector>

#include "Class.h"
#include "Payload.h"
#include "Pins.h"
#include "Storage.h"

namespace nuv::zero::memory {

/// The memory of one model's elements.
///
/// Elements lie one behind the other in chunks, each followed by its slots, and are freed with
/// their chunks. The storage pins the metamodels of its elements' classes.
class ModelStorage final : public Storage {
  public:
    ModelStorage() = default;

    /// Makes an element with all its slots never set. Throws `std::bad_alloc`, and then has made
    /// nothing.
    ModelElement create(const ClassObject& elementClass);
    std::size_t size() const noexcept { return size_; }
    /// All elements, in the order in which they were made.
    std::vector<ModelElement> elements() const;

    /// The slot of that number, to be written. Throws `std::bad_alloc`, and then has changed
    /// nothing. REQUIRES: the element is of this storage and its class has that slot.
    SlotWord& slot(const Object& element, ClassLayout::Slot number) {
        auto& writable = const_cast<Object&>(element);
        if (number < element.inlineSlotCount_) return inlineSlots(writable)[number];
        return lateSlot(writable, number);
    }
    /// Puts a word, with what it counts, into a slot. What stood there is released last, when the
    /// slot is right already.
    void replace(SlotWord& slot, SlotWord word) noexcept {
        releaseBySlot(std::exchange(slot, word));
    }

    /// Empties all slots, then gives up the reference with which each element started; handles
    /// keep some of them. Afterwards nothing in this storage refers to anything.
    void giveUpElements() noexcept;

  private:
    struct Chunk {
        std::unique_ptr<std::byte[]> memory;
        std::size_t used;
        std::size_t capacity;
    };

    ~ModelStorage() override;

    /// The place of the next element; grows the storage where needed.
    std::byte* placeFor(std::size_t bytes);
    static std::size_t bytesFor(std::size_t slotCount) noexcept;
    static SlotWord* inlineSlots(Object& element) noexcept {
        return reinterpret_cast<SlotWord*>(&element + 1);
    }
    static SlotWord& lateSlot(Object& element, ClassLayout::Slot number);
    void releaseBySlot(SlotWord word) noexcept {
        if (!word.isCounted()) return;
        if (word.isPayload()) {
            releaseBySlot(*word.payload());
        } else {
            word.target()->release();
        }
    }
    void releaseBySlot(Payload& payload) noexcept;
    void keepWhilePinned(Payload& payload) noexcept;
    void freeViewed() noexcept override;
    template <class Visit>
    void forEachElement(const Visit& visit) const noexcept;

    Pins pins_;
    std::vector<Chunk> chunks_;
    std::size_t size_ = 0;
    /// Lists that slots have let go of while somebody who has pinned the model may read them.
    std::atomic<Payload*> viewed_{nullptr};
};

}  // namespace nuv::zero::memory
