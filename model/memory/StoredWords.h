#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include "ModelStorage.h"
#include "Value.h"

/// How values become what slots hold. Everything that may fail comes before a slot changes.
namespace nuv::zero::memory {

/// A word of its own for each kind of value, with what it counts.
inline HeldWord wordFor(std::u16string_view text) {
    if (SlotWord::fits(text)) return HeldWord(SlotWord::text(text));
    Payload& made = Payload::make(Payload::Kind::Text, text.size());
    for (const char16_t unit : text) made.append(unit);
    return HeldWord(SlotWord::holding(made));
}
inline HeldWord wordFor(std::int64_t number) {
    if (SlotWord::fits(number)) return HeldWord(SlotWord::number(number));
    Payload& made = Payload::make(Payload::Kind::Integer, 1);
    made.append(number);
    return HeldWord(SlotWord::holding(made));
}
/// Null is a value too.
inline HeldWord wordFor(const ModelElement& element) {
    Payload& made = Payload::make(Payload::Kind::Element, 1);
    made.append<const Object*>(element.get());
    made.countElements();
    return HeldWord(SlotWord::holding(made));
}

/// What lists of a kind of entry are made of. `entry` makes what is stored of one value.
template <class Entry>
struct ListOf;
template <>
struct ListOf<ModelElement> {
    using Stored = const Object*;
    static constexpr Payload::Kind kind = Payload::Kind::Elements;
    static Stored entry(const ModelElement& element) noexcept { return element.get(); }
};
template <>
struct ListOf<std::u16string> {
    using Stored = std::u16string;
    static constexpr Payload::Kind kind = Payload::Kind::Texts;
    static Stored entry(std::u16string_view text) { return Stored(text); }
};
template <>
struct ListOf<std::int64_t> {
    using Stored = std::int64_t;
    static constexpr Payload::Kind kind = Payload::Kind::Integers;
    static Stored entry(std::int64_t number) noexcept { return number; }
};

template <class Entry>
HeldWord wordFor(const std::vector<Entry>& entries) {
    using List = ListOf<Entry>;
    Payload& made = Payload::make(List::kind, entries.size());
    HeldWord word(SlotWord::holding(made));
    for (const Entry& entry : entries) {
        made.append<typename List::Stored>(List::entry(entry));
    }
    return word;
}

/// What a planted value holds, all of it counted. A single element is a payload, as a collection
/// is, because a reference would be a collection of one where many are planted.
inline HeldWord plantedWordFor(const Content& content) {
    return std::visit(
        [](const auto& value) {
            using Type = std::decay_t<decltype(value)>;
            if constexpr (std::is_same_v<Type, std::monostate>) {
                return HeldWord(SlotWord::withoutPayload());
            } else {
                HeldWord word = wordFor(value);
                if (word.word().isPayload()) word.word().payload()->countElements();
                return word;
            }
        },
        content);
}

/// Capacities are even: with the payload's own 24 bytes, that is what blocks of the usual
/// allocators hold.
inline std::size_t grownCapacity(std::size_t capacity) {
    return capacity < 2 ? 2 : 2 * capacity;
}

/// A list with the entries of another one, and room for more. Entries are moved where nobody else
/// reads them.
template <class Stored>
HeldWord grown(const ModelStorage& storage, Payload& list) {
    Payload& made = Payload::make(list.kind(), grownCapacity(list.size()));
    HeldWord word(SlotWord::holding(made));
    if (!list.isReadElsewhere(storage)) {
        list.moveInto<Stored>(made);
        return word;
    }
    for (std::size_t i = 0; i < list.size(); ++i) {
        made.append<Stored>(Stored(list.entries<Stored>()[i]));
    }
    if (list.countsElements()) made.countElements();
    return word;
}

/// Appends to a list that stands in a slot. `counts` says whether the entry needs to be counted.
template <class Stored>
void appendTo(ModelStorage& storage, SlotWord& slot, Stored entry, bool counts) {
    Payload* list = slot.payload();
    if (list->isReadElsewhere(storage) || list->size() == list->capacity()) {
        // Somebody may still read the list as it stands, which is then left to them.
        HeldWord larger = grown<Stored>(storage, *list);
        list = larger.word().payload();
        storage.replace(slot, larger.detach());
    }
    if (counts) list->countElements();
    if constexpr (std::is_same_v<Stored, const Object*>) {
        if (list->countsElements()) entry->retain();
    }
    list->append<Stored>(std::move(entry));
}

}  // namespace nuv::zero::memory
