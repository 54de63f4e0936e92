#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "model/memory/Object.h"
#include "model/memory/Pins.h"
#include "model/memory/SlotWord.h"
#include "model/memory/Storage.h"

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
    Object& create(const ClassObject& elementClass);
    std::size_t size() const noexcept { return size_; }

    /// The slot of a property, to be written. Throws `std::bad_alloc`, and then has changed
    /// nothing. REQUIRES: the element is of this storage and its class has the property.
    SlotWord& slot(const Object& element, const PropertyObject& property);

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
    static SlotWord* inlineSlots(Object& element) noexcept;
    template <class Visit>
    void forEachElement(const Visit& visit) noexcept;

    Pins pins_;
    std::vector<Chunk> chunks_;
    std::size_t size_ = 0;
};

}  // namespace nuv::zero::memory
