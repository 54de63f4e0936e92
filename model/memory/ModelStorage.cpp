#include "model/memory/ModelStorage.h"

#include <algorithm>
#include <new>
#include <type_traits>

#include "model/memory/Class.h"

namespace nuv::zero::memory {
namespace {

constexpr std::size_t smallestChunk = 1024;
/// Large enough that a chunk costs nothing per element, small enough not to waste much.
constexpr std::size_t largestChunk = 256 * 1024;

}  // namespace

static_assert(alignof(Object) >= alignof(SlotWord) && sizeof(Object) % alignof(SlotWord) == 0 &&
                  (sizeof(Object) + sizeof(SlotWord)) % alignof(Object) == 0,
              "elements and their slots lie one behind the other without gaps");
static_assert(alignof(Object) <= __STDCPP_DEFAULT_NEW_ALIGNMENT__);
static_assert(std::is_trivially_destructible_v<SlotWord>);

ModelStorage::~ModelStorage() = default;

Object& ModelStorage::create(const ClassObject& elementClass) {
    pins_.pin(elementClass.storage());
    const ClassLayout::Slot slotCount = elementClass.layout().slotCount();
    std::byte* place = placeFor(bytesFor(slotCount));

    auto* element = new (place) Object(&elementClass, *this);
    element->inlineSlotCount_ = slotCount;
    std::uninitialized_default_construct_n(inlineSlots(*element), slotCount);
    retain();
    ++size_;
    return *element;
}

SlotWord& ModelStorage::slot(const Object& element, const PropertyObject& property) {
    auto& writable = const_cast<Object&>(element);
    const std::size_t slot = element.class_->layout().slotOf(property);
    if (slot < element.inlineSlotCount_) return inlineSlots(writable)[slot];

    const std::size_t late = slot - element.inlineSlotCount_;
    if (writable.lateSlots_ == nullptr) {
        writable.lateSlots_ = new std::vector<SlotWord>(late + 1);
    } else if (late >= writable.lateSlots_->size()) {
        writable.lateSlots_->resize(late + 1);
    }
    return (*writable.lateSlots_)[late];
}

void ModelStorage::giveUpElements() noexcept {
    forEachElement([](Object& element) {
        SlotWord* slots = inlineSlots(element);
        for (std::size_t i = 0; i < element.inlineSlotCount_; ++i) slots[i].release();
        if (element.lateSlots_ == nullptr) return;
        for (SlotWord& slot : *element.lateSlots_) slot.release();
        delete std::exchange(element.lateSlots_, nullptr);
    });
    forEachElement([](Object& element) { element.release(); });
}

std::byte* ModelStorage::placeFor(std::size_t bytes) {
    if (chunks_.empty() || chunks_.back().capacity - chunks_.back().used < bytes) {
        const std::size_t grown = chunks_.empty() ? smallestChunk : 2 * chunks_.back().capacity;
        const std::size_t capacity = std::max(bytes, std::min(grown, largestChunk));
        // Not filled with zeros, as make_unique would do.
        chunks_.push_back({std::unique_ptr<std::byte[]>(new std::byte[capacity]), 0, capacity});
    }
    Chunk& chunk = chunks_.back();
    std::byte* place = chunk.memory.get() + chunk.used;
    chunk.used += bytes;
    return place;
}

std::size_t ModelStorage::bytesFor(std::size_t slotCount) noexcept {
    return sizeof(Object) + slotCount * sizeof(SlotWord);
}

SlotWord* ModelStorage::inlineSlots(Object& element) noexcept {
    return reinterpret_cast<SlotWord*>(&element + 1);
}

template <class Visit>
void ModelStorage::forEachElement(const Visit& visit) noexcept {
    for (const Chunk& chunk : chunks_) {
        for (std::size_t at = 0; at < chunk.used;) {
            auto& element = *std::launder(reinterpret_cast<Object*>(chunk.memory.get() + at));
            at += bytesFor(element.inlineSlotCount_);
            visit(element);
        }
    }
}

}  // namespace nuv::zero::memory
