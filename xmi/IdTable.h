#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "xmi/TextTable.h"

namespace nuv::zero::xmi {

/// Which element of a file has which id.
///
/// An id is an `xmi:id`, or the value of an attribute that the metamodel declares as iD. The first
/// kind has precedence, and what several elements share identifies none of them, so values count
/// only when all of them are known (`settle`).
class IdTable {
  public:
    /// A number of an element, in the order of the file.
    using Index = std::uint32_t;
    static constexpr Index none = 0xFFFFFFFFU;

    /// Several elements with one id, which therefore is nobody's.
    struct Repeated {
        /// A number of the text, by which it is told from others.
        TextTable::Number id;
        Index first;
        Index second;
    };

    /// The first element that has the `xmi:id`; `none` where it is new. REQUIRES: the text is an
    /// id, see `isId`.
    Index addXmiId(std::string_view id, Index element);
    void addValue(std::string_view value, Index element);
    /// REQUIRES: everything was added.
    void settle();

    /// The element; `none` where nothing has the id.
    Index find(std::string_view id) const noexcept;
    /// Whether several elements share it, as their `xmi:id` or, where it is nobody's, as a value.
    bool isShared(std::string_view id) const noexcept { return numberOfShared(id) != none; }
    /// The number of the text; `none` unless it is shared.
    TextTable::Number numberOfShared(std::string_view id) const noexcept;
    /// The ids that are shared, in the order in which that was met.
    const std::vector<Repeated>& repeated() const noexcept { return repeated_; }
    std::string_view textOf(const Repeated& repeated) const noexcept { return texts_[repeated.id]; }
    /// The id of an element, its first where it has several; nothing where it has none.
    std::optional<std::string_view> idOf(Index element) const noexcept;
    /// All ids, in no order.
    std::vector<std::string> all() const;

    /// Whether a text can identify an element: a path could not be told from one.
    static bool isId(std::string_view text) noexcept {
        return !text.empty() && !text.starts_with('/');
    }

  private:
    /// The last two are owned by several elements, and by none.
    enum class Kind : std::uint8_t { XmiId, Value, Shared, Nobody };
    /// An element and what a text is of it, in one word: no file has room for 2^30 elements.
    class Owner {
      public:
        Owner() noexcept = default;
        Owner(Index element, Kind kind) noexcept
            : bits_((element << 2U) | static_cast<std::uint32_t>(kind)) {}
        Index element() const noexcept { return bits_ >> 2U; }
        Kind kind() const noexcept { return static_cast<Kind>(bits_ & 3U); }
        bool hasId() const noexcept { return kind() == Kind::XmiId || kind() == Kind::Value; }

      private:
        std::uint32_t bits_ = 0;
    };

    void giveId(Index element, TextTable::Number text);
    void share(TextTable::Number text, Index second);

    TextTable texts_;
    /// By the number of the text.
    BlockList<Owner> owners_;
    /// The number of its id by element, up to the last element that has one.
    std::vector<TextTable::Number> idOf_;
    std::vector<Repeated> repeated_;
    /// Those that are shared as `xmi:id`. A shared value may still become the `xmi:id` of one.
    std::unordered_set<TextTable::Number> sharedXmiIds_;
};

}  // namespace nuv::zero::xmi
