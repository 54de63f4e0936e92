#include "model/memory/ModelStorage.h"

#include <algorithm>
#include <new>
#include <type_traits>
#include <utility>

namespace nuv::zero::memory {
namespace {

constexpr std::size_t smallestChunk = 1024;
/// Large enough that a chunk costs nothing per element, small enough not to waste much.
constexpr std::size_t largestChunk = std::size_t{256} * 1024;

}  // namespace

static_assert(alignof(Object) >= alignof(SlotWord) && sizeof(Object) % alignof(SlotWord) == 0 &&
                  (sizeof(Object) + sizeof(SlotWord)) % alignof(Object) == 0,
              "elements and their slots lie one behind the other without gaps");
static_assert(alignof(Object) <= __STDCPP_DEFAULT_NEW_ALIGNMENT__);
static_assert(std::is_trivially_destructible_v<SlotWord>);

ModelStorage::~ModelStorage() {
    ModelStorage::freeViewed();
}

void ModelStorage::releaseBySlot(Payload& payload) noexcept {
    // Whoever views the list has pinned those elements that it does not count.
    if (payload.isShared()) payload.countElements();
    if (payload.isViewedIn(*this)) {
        keepWhilePinned(payload);
    } else {
        payload.release();
    }
}

/// Takes over a reference of the payload until nobody pins the storage.
void ModelStorage::keepWhilePinned(Payload& payload) noexcept {
    payload.nextKept_ = viewed_.load(std::memory_order_relaxed);
    while (!viewed_.compare_exchange_weak(payload.nextKept_, &payload, std::memory_order_release,
                                          std::memory_order_relaxed)) {
    }
    // The last pin may have gone meanwhile, on another thread.
    if (!isPinned()) freeViewed();
}

void ModelStorage::freeViewed() noexcept {
    Payload* next = viewed_.exchange(nullptr, std::memory_order_acquire);
    while (next != nullptr) {
        Payload& payload = *next;
        next = payload.nextKept_;
        payload.release();
    }
}

ModelElement ModelStorage::create(const ClassObject& elementClass) {
    pins_.pin(elementClass.storage());
    const ClassLayout::Slot slotCount = elementClass.layout().slotCount();
    std::byte* place = placeFor(bytesFor(slotCount));

    auto* element = new (place) Object(elementClass.handle(), *this);
    element->inlineSlotCount_ = slotCount;
    std::uninitialized_default_construct_n(inlineSlots(*element), slotCount);
    ++size_;
    // Nobody else knows the element yet, so its second reference needs no atomic addition.
    element->references_.store(2, std::memory_order_relaxed);
    return Lending::lend<ModelElement>(element);
}

SlotWord& ModelStorage::lateSlot(Object& element, ClassLayout::Slot number) {
    const std::size_t late = number - element.inlineSlotCount_;
    if (element.lateSlots_ == nullptr) {
        element.lateSlots_ = new std::vector<SlotWord>(late + 1);
    } else if (late >= element.lateSlots_->size()) {
        element.lateSlots_->resize(late + 1);
    }
    return (*element.lateSlots_)[late];
}

void ModelStorage::giveUpElements() noexcept {
    forEachElement([this](Object& element) {
        const SlotWord* slots = inlineSlots(element);
        for (std::size_t i = 0; i < element.inlineSlotCount_; ++i) releaseBySlot(slots[i]);
        if (element.lateSlots_ != nullptr) {
            for (const SlotWord& slot : *element.lateSlots_) releaseBySlot(slot);
            delete std::exchange(element.lateSlots_, nullptr);
        }
        element.giveUp();
    });
    // Nobody can read the slots of a storage that nobody else needs; it is about to be freed.
    if (!isShared()) return;
    forEachElement([](Object& element) {
        std::fill_n(inlineSlots(element), element.inlineSlotCount_, SlotWord());
    });
}

std::vector<ModelElement> ModelStorage::elements() const {
    std::vector<ModelElement> all;
    all.reserve(size_);
    forEachElement([&](const Object& element) { all.emplace_back(&element); });
    return all;
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

template <class Visit>
void ModelStorage::forEachElement(const Visit& visit) const noexcept {
    for (const Chunk& chunk : chunks_) {
        for (std::size_t at = 0; at < chunk.used;) {
            auto& element = *std::launder(reinterpret_cast<Object*>(chunk.memory.get() + at));
            at += bytesFor(element.inlineSlotCount_);
            visit(element);
        }
    }
}

}  // namespace nuv::zero::memory
