#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <variant>
#include <vector>

#include "model/memory/MemoryFramework.h"

/// Reads of stored values that count nothing: what a hand-written loop with access to the model's
/// own memory would do. Only the baselines use them; the model offers no such access on purpose,
/// since what they give is valid only as long as nobody edits the model.
namespace nuv::zero::benchmarks {

namespace exposed {

/// Explicit instantiations may name private members, so a friend of one can hand them out. Nothing
/// in the model has to know its benchmarks.
template <class Tag, auto Member>
struct Expose {
    friend constexpr auto memberOf(Tag /*tag*/) { return Member; }
};

struct InlineSlots {
    friend constexpr auto memberOf(InlineSlots);
};
struct LateSlots {
    friend constexpr auto memberOf(LateSlots);
};
struct SlotOrder {
    friend constexpr auto memberOf(SlotOrder);
};
template struct Expose<SlotOrder, &memory::ClassLayout::slotOrder_>;
template struct Expose<InlineSlots, &memory::Object::inlineSlots>;
template struct Expose<LateSlots, &memory::Object::lateSlots_>;

}  // namespace exposed

/// The elements that a property designates, where the model keeps them.
class RawValues {
  public:
    RawValues() noexcept = default;
    RawValues(const void* first, std::size_t count) noexcept : first_(first), count_(count) {}

    std::size_t size() const noexcept { return count_; }
    const memory::Object* operator[](std::size_t index) const noexcept {
        // Both a slot that refers to one element and an entry of a list are one address.
        const memory::Object* object = nullptr;
        std::memcpy(&object, static_cast<const std::byte*>(first_) + index * sizeof object,
                    sizeof object);
        return object;
    }

  private:
    const void* first_ = nullptr;
    std::size_t count_ = 0;
};
static_assert(sizeof(memory::SlotWord) == sizeof(void*) && sizeof(ModelElement) == sizeof(void*));

/// The place of a property among the slots of the elements of a class. REQUIRES: the class has the
/// property.
inline std::size_t slotOf(const memory::ClassObject& type, const memory::PropertyObject& property) {
    const auto& order = type.layout().*memberOf(exposed::SlotOrder());
    return static_cast<std::size_t>(std::find(order.begin(), order.end(), &property) -
                                    order.begin());
}

/// REQUIRES: the element was made after all properties of its class were declared, and the value
/// was not planted.
inline RawValues readRaw(const memory::Object& element, std::size_t slot) {
    const memory::SlotWord* word = (element.*memberOf(exposed::InlineSlots()))() + slot;
    if (word->isReference()) return {word, 1};
    if (!word->isPayload() || word->payload() == nullptr) return {};
    const memory::Payload::Data& data = word->payload()->data;
    if (const auto* list = std::get_if<std::vector<ModelElement>>(&data)) {
        return {list->data(), list->size()};
    }
    if (const auto* single = std::get_if<ModelElement>(&data)) {
        return {single, *single ? 1U : 0U};
    }
    return {};
}

/// A mark inside an element. It borrows the pointer to the slots of late-declared properties, which
/// no element of the benchmark models has; marks must be taken out before the model is edited or
/// destroyed.
class InnerMark {
  public:
    /// Whether the element did not carry this mark yet.
    static bool set(const memory::Object& element, std::uintptr_t mark) noexcept {
        Held& held = heldBy(element);
        const auto wanted = reinterpret_cast<Held>(mark);
        if (held == wanted) return false;
        held = wanted;
        return true;
    }
    static void clear(const memory::Object& element) noexcept { heldBy(element) = nullptr; }

  private:
    using Held = std::vector<memory::SlotWord>*;
    static Held& heldBy(const memory::Object& element) noexcept {
        return const_cast<memory::Object&>(element).*memberOf(exposed::LateSlots());
    }
};

}  // namespace nuv::zero::benchmarks
