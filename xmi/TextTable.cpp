#include "xmi/TextTable.h"

#include <algorithm>
#include <cstddef>

namespace nuv::zero::xmi {

TextTable::Number TextTable::find(std::string_view text) const noexcept {
    return slots_.empty() ? none : slots_[slotOf(text, hashOf(text))];
}

std::pair<TextTable::Number, bool> TextTable::add(std::string_view text) {
    const std::uint32_t hash = hashOf(text);
    std::size_t slot = slots_.empty() ? 0 : slotOf(text, hash);
    if (!slots_.empty() && slots_[slot] != none) return {slots_[slot], false};
    if (entries_.size() * 3 >= slots_.size() * 2) {
        grow();
        slot = slotOf(text, hash);
    }
    const std::string_view kept = texts_.keep(text);
    entries_.push_back({kept.data(), static_cast<std::uint32_t>(kept.size()), hash});
    slots_[slot] = size() - 1;
    return {slots_[slot], true};
}

std::uint32_t TextTable::hashOf(std::string_view text) const noexcept {
    return static_cast<std::uint32_t>(hash_(text));
}

std::size_t TextTable::slotOf(std::string_view text, std::uint32_t hash) const noexcept {
    const std::size_t mask = slots_.size() - 1;
    for (std::size_t slot = hash & mask;; slot = (slot + 1) & mask) {
        const Number number = slots_[slot];
        if (number == none) return slot;
        if (entries_[number].hash == hash && (*this)[number] == text) return slot;
    }
}

void TextTable::grow() {
    std::vector<Number> larger(std::max<std::size_t>(16, 2 * slots_.size()), none);
    const std::size_t mask = larger.size() - 1;
    for (Number number = 0; number < size(); ++number) {
        std::size_t slot = entries_[number].hash & mask;
        while (larger[slot] != none) slot = (slot + 1) & mask;
        larger[slot] = number;
    }
    slots_ = std::move(larger);
}

}  // namespace nuv::zero::xmi
