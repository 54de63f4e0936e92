#include "model/memory/Storage.h"

#include "model/memory/Payload.h"

namespace nuv::zero::memory {

Storage::~Storage() {
    freeKept();
}

void Storage::keepWhilePinned(Payload& payload) noexcept {
    payload.nextKept_ = kept_.load(std::memory_order_relaxed);
    while (!kept_.compare_exchange_weak(payload.nextKept_, &payload, std::memory_order_release,
                                        std::memory_order_relaxed)) {
    }
    // The last pin may have gone meanwhile, on another thread.
    if (!isPinned()) freeKept();
}

void Storage::freeKept() noexcept {
    Payload* next = kept_.exchange(nullptr, std::memory_order_acquire);
    while (next != nullptr) {
        Payload& payload = *next;
        next = payload.nextKept_;
        payload.release();
    }
}

}  // namespace nuv::zero::memory
