#pragma once

#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

#include "xmi/BlockList.h"
#include "xmi/KeyedHash.h"
#include "xmi/TextArena.h"

namespace nuv::zero::xmi {

/// Numbers texts: equal ones have equal numbers, from 0 in the order in which they came.
///
/// One flat table of numbers, whose hash nobody can foresee. Moving leaves texts where they are,
/// and an empty table behind.
class TextTable {
  public:
    using Number = std::uint32_t;
    static constexpr Number none = 0xFFFFFFFFU;

    Number size() const noexcept { return static_cast<Number>(entries_.size()); }
    std::string_view operator[](Number number) const noexcept {
        return {entries_[number].text, entries_[number].size};
    }
    /// `none` where the text has no number.
    Number find(std::string_view text) const noexcept;
    /// The number, and whether it is new. Throws `std::bad_alloc`, and then has changed nothing.
    std::pair<Number, bool> add(std::string_view text);

  private:
    struct Entry {
        const char* text;
        std::uint32_t size;
        std::uint32_t hash;
    };

    std::uint32_t hashOf(std::string_view text) const noexcept;
    /// The slot that holds the text's number, or the free one where it would stand.
    std::size_t slotOf(std::string_view text, std::uint32_t hash) const noexcept;
    void grow();

    KeyedHash hash_;
    TextArena texts_;
    BlockList<Entry> entries_;
    /// A power of two of numbers, at most two thirds of them taken; `none` where free.
    std::vector<Number> slots_;
};

}  // namespace nuv::zero::xmi
