#pragma once

#include <cstdint>

#include "model/Export.h"
#include "model/memory/fwd.h"

namespace nuv::zero::memory {

class PayloadPointer;

/// One slot of an element: what the element holds for one property, in one word.
///
/// Most slots of real models are references to one element or lists, so a reference is the target
/// itself and everything else is a payload. A slot is a plain word without destructor: its owner
/// calls `release` before it overwrites or frees it.
class SlotWord {
  public:
    /// The property was never set.
    constexpr SlotWord() noexcept = default;
    /// A reference to one element, counted. REQUIRES: the target is not null.
    MODELING_NUV0_MODEL_EXPORT static SlotWord reference(const Object& target) noexcept;
    /// A payload; takes over its reference. REQUIRES: the pointer is not null.
    MODELING_NUV0_MODEL_EXPORT static SlotWord holding(PayloadPointer payload) noexcept;
    /// The value was taken away: a collection without even an empty payload.
    static constexpr SlotWord withoutPayload() noexcept { return SlotWord(payloadTag); }

    constexpr bool isNeverSet() const noexcept { return bits_ == 0; }
    constexpr bool isReference() const noexcept { return bits_ != 0 && (bits_ & payloadTag) == 0; }
    constexpr bool isPayload() const noexcept { return (bits_ & payloadTag) != 0; }

    /// REQUIRES: `isReference()`.
    const Object* target() const noexcept { return reinterpret_cast<const Object*>(bits_); }
    /// Null for a slot without payload. REQUIRES: `isPayload()`.
    Payload* payload() const noexcept { return reinterpret_cast<Payload*>(bits_ & ~payloadTag); }

    /// Gives up what the slot holds and leaves it as never set.
    MODELING_NUV0_MODEL_EXPORT void release() noexcept;

  private:
    static constexpr std::uintptr_t payloadTag = 1;
    constexpr explicit SlotWord(std::uintptr_t bits) noexcept : bits_(bits) {}

    std::uintptr_t bits_ = 0;
};

}  // namespace nuv::zero::memory
