#pragma once

#include <cstddef>
#include <string>
#include <unordered_map>
#include <vector>

#include "Export.h"
#include "WalkListener.h"

namespace nuv::zero::traversal MODELING_NUV0_OVER {

/// A listener that counts the links that walks meet and the elements that they enter.
///
///     WalkStatistics statistics;
///     ResultSetup(result).trace(&statistics);
///     for (const Link& link : links(result)) ...
///     std::cout << statistics.text();
///
/// An element counts as entered when the link that entered it is told. Where that link never is,
/// `elementCount` is less than what the walks have entered: a null input, a link that a predicate
/// or a filter loses by throwing, and in post-order what a walk that is broken off has entered and
/// not left.
///
/// Sums up all walks that it hears. Costs a look-up or two for each link, and memory for each row.
/// It holds handles of properties and classes, which keep them alive as any handle does. A copy is
/// independent.
class MODELING_NUV0_TRAVERSAL_EXPORT WalkStatistics : public WalkListener {
  public:
    /// How many links of a property leave elements of a class, with one fate and at one depth.
    /// Links that were not descended into count twice: as such, and with what became of them
    /// otherwise.
    struct LinkRow {
        /// Null, as the property, for the inputs' own links.
        meta::Class type;
        meta::Property property;
        Fate fate = Fate::Reported;
        std::size_t depth = 0;
        std::size_t count = 0;

        bool operator==(const LinkRow& other) const = default;
    };
    /// How many elements of a class were entered at one depth; null elements have no class.
    struct ElementRow {
        meta::Class type;
        std::size_t depth = 0;
        std::size_t count = 0;

        bool operator==(const ElementRow& other) const = default;
    };

    WalkStatistics();
    WalkStatistics(const WalkStatistics& other);
    WalkStatistics& operator=(const WalkStatistics& other);
    ~WalkStatistics() override;

    void onLink(const WalkView& walk, const internal::Link& link, Fate fate,
                std::size_t filter) override;

    /// All rows, by qualified name of the class, name of the property, fate and depth. Where names
    /// are the same, what was met first comes first.
    std::vector<LinkRow> linkRows() const;
    std::vector<ElementRow> elementRows() const;
    /// Sums over rows.
    std::size_t linkCount(Fate fate) const noexcept;
    std::size_t elementCount() const noexcept;
    std::size_t elementCount(const meta::Class& type) const noexcept;
    /// The most that one of the walks held when a link of it was told; see `WalkView::bytesHeld`.
    std::size_t mostBytesHeld() const noexcept { return mostBytesHeld_; }

    /// Three tables for people: links by class, property and fate, elements by class, and both by
    /// depth.
    std::string text() const;
    /// Begins anew.
    void clear() noexcept;

  private:
    struct Hash {
        std::size_t operator()(const LinkRow& row) const noexcept;
        std::size_t operator()(const ElementRow& row) const noexcept;
    };
    /// Whether rows count the same.
    struct IsSame {
        bool operator()(const LinkRow& a, const LinkRow& b) const noexcept;
        bool operator()(const ElementRow& a, const ElementRow& b) const noexcept;
    };
    /// Rows in the order in which they came up, and where each of them stands.
    template <class Row>
    struct Table {
        std::vector<Row> rows;
        std::unordered_map<Row, std::size_t, Hash, IsSame> places;

        /// The row that counts the same; a new one, of no count, where there is none.
        Row& rowOf(const Row& row);
    };

    Table<LinkRow> links_;
    Table<ElementRow> elements_;
    std::size_t mostBytesHeld_ = 0;
};

}  // namespace nuv::zero::traversal
