#include "model/memory/SlotWord.h"

#include "model/memory/Payload.h"

namespace nuv::zero::memory {

static_assert(alignof(Object) > 1 && alignof(Payload) > 1, "the lowest bit of an address is free");

SlotWord SlotWord::reference(const Object& target) noexcept {
    target.retain();
    return SlotWord(reinterpret_cast<std::uintptr_t>(&target));
}

SlotWord SlotWord::holding(PayloadPointer payload) noexcept {
    return SlotWord(reinterpret_cast<std::uintptr_t>(payload.detach()) | payloadTag);
}

void SlotWord::release() noexcept {
    const SlotWord released = *this;
    // Emptied first: what is released may be the last thing that refers to other objects.
    bits_ = 0;
    if (released.isReference()) {
        released.target()->release();
    } else if (released.isPayload()) {
        PayloadPointer last(released.payload());
    }
}

}  // namespace nuv::zero::memory
