#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "fwd.h"

namespace nuv::zero::memory {

/// One slot of an element: what the element holds for one property, in one word.
///
/// Most slots of real models hold one reference, a number or a short text, and none of these needs
/// more than the word; everything else is a payload. A word is a plain value without destructor:
/// `HeldWord` and the slots of `ModelStorage` own what words refer to.
///
/// The two lowest bits tell the kinds apart:
///
///     00  never set (all bits zero), or a reference that nothing counts
///     10  a counted reference
///     01  a payload, or none where one would stand
///     11  a number (next bit 0), or a text (next bit 1) of so few units below 256 that they fit
class SlotWord {
  public:
    /// The property was never set.
    constexpr SlotWord() noexcept = default;
    /// A reference to an object that something else keeps: in slots, one of the same model.
    static SlotWord own(const Object& target) noexcept { return SlotWord(bitsOf(&target)); }
    /// A reference that the caller has counted.
    static SlotWord counted(const Object& target) noexcept {
        return SlotWord(bitsOf(&target) | countedTag);
    }
    /// A payload, with one of its references.
    static SlotWord holding(Payload& payload) noexcept {
        return SlotWord(bitsOf(&payload) | payloadTag);
    }
    /// The value was taken away: a collection without even an empty payload.
    static constexpr SlotWord withoutPayload() noexcept { return SlotWord(payloadTag); }

    static constexpr bool fits(std::int64_t number) noexcept {
        return number >= (INTPTR_MIN >> inlineBits) && number <= (INTPTR_MAX >> inlineBits);
    }
    /// REQUIRES: it fits.
    static constexpr SlotWord number(std::int64_t number) noexcept {
        return SlotWord((static_cast<std::uintptr_t>(number) << inlineBits) | inlineTag);
    }
    static constexpr bool fits(std::u16string_view text) noexcept {
        if (text.size() > sizeof(std::uintptr_t) - 1) return false;
        std::uint32_t all = 0;
        for (const char16_t unit : text) all |= unit;
        return all <= 0xFF;
    }
    /// REQUIRES: it fits.
    static constexpr SlotWord text(std::u16string_view text) noexcept {
        std::uintptr_t bits = 0;
        for (std::size_t i = text.size(); i-- > 0;) bits = (bits << 8U) | text[i];
        return SlotWord((bits << 8U) | (text.size() << inlineBits) | textTag);
    }

    constexpr bool isNeverSet() const noexcept { return bits_ == 0; }
    constexpr bool isWithoutPayload() const noexcept { return bits_ == payloadTag; }
    constexpr bool isReference() const noexcept { return bits_ != 0 && (bits_ & 1U) == 0; }
    constexpr bool isPayload() const noexcept { return (bits_ & tags) == payloadTag; }
    constexpr bool isNumber() const noexcept { return (bits_ & inlineTags) == inlineTag; }
    constexpr bool isText() const noexcept { return (bits_ & inlineTags) == textTag; }
    /// Whether the word stands for a count of somebody: a counted reference or a payload.
    constexpr bool isCounted() const noexcept {
        return (bits_ & tags) == countedTag ||
               ((bits_ & tags) == payloadTag && bits_ != payloadTag);
    }

    /// REQUIRES: `isReference()` or `isNeverSet()`, which is null.
    const Object* target() const noexcept {
        return reinterpret_cast<const Object*>(bits_ & ~countedTag);
    }
    /// Null for a word without payload. REQUIRES: `isPayload()`.
    Payload* payload() const noexcept { return reinterpret_cast<Payload*>(bits_ & ~payloadTag); }
    /// REQUIRES: `isNumber()`.
    constexpr std::int64_t number() const noexcept {
        return static_cast<std::intptr_t>(bits_) >> inlineBits;
    }
    /// REQUIRES: `isText()`.
    std::u16string text() const {
        std::u16string text((bits_ >> inlineBits) & 7U, u'\0');
        std::uintptr_t rest = bits_ >> 8U;
        for (char16_t& unit : text) {
            unit = static_cast<char16_t>(rest & 0xFFU);
            rest >>= 8U;
        }
        return text;
    }

  private:
    static constexpr std::uintptr_t payloadTag = 1;
    static constexpr std::uintptr_t countedTag = 2;
    static constexpr std::uintptr_t tags = 3;
    static constexpr std::uintptr_t inlineTag = 3;
    static constexpr std::uintptr_t textTag = 7;
    static constexpr std::uintptr_t inlineTags = 7;
    static constexpr unsigned inlineBits = 3;

    constexpr explicit SlotWord(std::uintptr_t bits) noexcept : bits_(bits) {}
    static std::uintptr_t bitsOf(const void* address) noexcept {
        return reinterpret_cast<std::uintptr_t>(address);
    }

    std::uintptr_t bits_ = 0;
};

}  // namespace nuv::zero::memory
