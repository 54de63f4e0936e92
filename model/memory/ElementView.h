#pragma once

#include <cstddef>

#include "model/memory/Payload.h"

namespace nuv::zero::memory {

/// The elements that one property of one element designates, viewed where the model keeps them.
///
/// A view of several elements shares the stored list: one counter update, whatever their number,
/// and an edit of the model does not reach the view. A view of one element is the element. Copies
/// share what the view holds.
class ElementView {
  public:
    ElementView() noexcept = default;
    /// REQUIRES: the word is never set, a reference, or a payload that is a list of elements.
    explicit ElementView(HeldWord word) noexcept : held_(std::move(word)) {}

    void clear() noexcept { held_ = HeldWord(); }
    std::size_t size() const noexcept {
        const SlotWord& word = held_.word();
        return word.isPayload() ? word.payload()->size() : (word.isNeverSet() ? 0 : 1);
    }
    /// The element at a place. REQUIRES: `index` is below `size()`.
    const Object* operator[](std::size_t index) const noexcept {
        const SlotWord& word = held_.word();
        return word.isPayload() ? word.payload()->entries<const Object*>()[index] : word.target();
    }
    /// The same as a handle that does not count (see `Lending`).
    ModelElement lend(std::size_t index) const noexcept {
        return Lending::lend<ModelElement>((*this)[index]);
    }

  private:
    HeldWord held_;
};

}  // namespace nuv::zero::memory
