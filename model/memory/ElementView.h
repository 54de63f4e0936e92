#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>

#include "Payload.h"

namespace nuv::zero::memory {

/// The elements that one property of one element designates, viewed where the model keeps them. An
/// edit of the model does not reach the view.
///
/// A view of several elements shares the stored list and counts it, whatever their number, once; or
/// it counts nothing, where the reader has pinned the model for as long as the view is used. A view
/// of one element is the element. Copies share what the view holds.
class ElementView {
  public:
    ElementView() noexcept = default;
    /// REQUIRES: the word is never set, a reference, or a payload that is a list of elements.
    explicit ElementView(HeldWord held) noexcept {
        const SlotWord word = held.detach();
        bits_ = word.isPayload()   ? bitsOf(word.payload()) | countedList
                : word.isCounted() ? bitsOf(word.target()) | countedSingle
                                   : bitsOf(word.target());
    }
    /// A view for whoever has pinned the model. REQUIRES: the word stands in a slot of that model,
    /// and is as above.
    static ElementView pinned(SlotWord stored) noexcept {
        ElementView view;
        if (stored.isPayload()) {
            stored.payload()->view();
            view.bits_ = bitsOf(stored.payload()) | pinnedList;
        } else if (stored.isCounted()) {
            // An element of another model, which nobody has pinned.
            view = ElementView(HeldWord::lean(stored));
        } else {
            view.bits_ = bitsOf(stored.target());
        }
        return view;
    }
    ElementView(const ElementView& other) noexcept : bits_(other.bits_) {
        if (isCounting()) count();
    }
    ElementView(ElementView&& other) noexcept : bits_(std::exchange(other.bits_, 0)) {}
    ElementView& operator=(const ElementView& other) noexcept { return *this = ElementView(other); }
    ElementView& operator=(ElementView&& other) noexcept {
        const std::uintptr_t bits = std::exchange(other.bits_, 0);
        clear();
        bits_ = bits;
        return *this;
    }
    ~ElementView() {
        if (isCounting()) discount();
    }

    void clear() noexcept {
        if (isCounting()) discount();
        bits_ = 0;
    }
    std::size_t size() const noexcept { return isList() ? payload().size() : (bits_ != 0 ? 1 : 0); }
    /// The element at a place. REQUIRES: `index` is below `size()`.
    const Object* operator[](std::size_t index) const noexcept {
        return isList() ? payload().entries<const Object*>()[index] : single();
    }
    /// The same as a handle that does not count (see `Lending`).
    ModelElement lend(std::size_t index) const noexcept {
        return Lending::lend<ModelElement>((*this)[index]);
    }

  private:
    /// In the two lowest bits of an address: what it is of, and whether the view counts it.
    static constexpr std::uintptr_t listBit = 1;
    static constexpr std::uintptr_t countedList = 1;
    static constexpr std::uintptr_t countedSingle = 2;
    static constexpr std::uintptr_t pinnedList = 3;
    static constexpr std::uintptr_t tags = 3;

    static std::uintptr_t bitsOf(const void* address) noexcept {
        return reinterpret_cast<std::uintptr_t>(address);
    }
    bool isList() const noexcept { return (bits_ & listBit) != 0; }
    bool isCounting() const noexcept {
        const std::uintptr_t tag = bits_ & tags;
        return tag == countedList || tag == countedSingle;
    }
    Payload& payload() const noexcept { return *reinterpret_cast<Payload*>(bits_ & ~tags); }
    const Object* single() const noexcept { return reinterpret_cast<const Object*>(bits_ & ~tags); }
    void count() noexcept {
        if (isList()) {
            payload().retain();
        } else {
            single()->retain();
        }
    }
    void discount() noexcept {
        if (isList()) {
            payload().release();
        } else {
            single()->release();
        }
    }

    std::uintptr_t bits_ = 0;
};

}  // namespace nuv::zero::memory
