#pragma once

#include <cstddef>
#include <cstdint>
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

struct ReadSlot {
    friend constexpr auto memberOf(ReadSlot);
};
struct LateSlots {
    friend constexpr auto memberOf(LateSlots);
};
template struct Expose<ReadSlot, &memory::Object::slotAt>;
template struct Expose<LateSlots, &memory::Object::lateSlots_>;

}  // namespace exposed

/// The elements that a property designates, where the model keeps them.
class RawValues {
  public:
    RawValues() noexcept = default;
    explicit RawValues(const memory::Object* single) noexcept : single_(single), count_(1) {}
    RawValues(const memory::Object* const* list, std::size_t count) noexcept
        : list_(list), count_(count) {}

    std::size_t size() const noexcept { return count_; }
    const memory::Object* operator[](std::size_t index) const noexcept {
        return list_ != nullptr ? list_[index] : single_;
    }

  private:
    const memory::Object* const* list_ = nullptr;
    const memory::Object* single_ = nullptr;
    std::size_t count_ = 0;
};

/// What the model stores for a property, found as the model itself finds it: where an element keeps
/// a property is nobody else's knowledge. REQUIRES: the value was not planted.
inline RawValues readRaw(const memory::Object& element, const memory::PropertyObject& property) {
    const memory::ClassLayout& layout = element.getClass().get()->layout();
    const memory::SlotWord word = (element.*memberOf(exposed::ReadSlot()))(layout.slotOf(property));
    if (word.isReference()) return RawValues(word.target());
    if (!word.isPayload() || word.isWithoutPayload()) return {};
    const memory::Payload& payload = *word.payload();
    const auto* entries = payload.entries<const memory::Object*>();
    if (payload.kind() == memory::Payload::Kind::Elements) return {entries, payload.size()};
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
