#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "model/memory/ModelElement.h"
#include "xmi/BlockList.h"
#include "xmi/Fragment.h"
#include "xmi/TextTable.h"

namespace nuv::zero::xmi {

/// Where an element stands in its file. Elements are numbered as in the file, so a subtree is a
/// range.
struct ElementPlace {
    static constexpr std::uint32_t none = 0xFFFFFFFFU;

    std::uint32_t parent = none;
    std::uint32_t end = none;
    /// Which one of its siblings in the same feature, or which one of the roots. What is kept in
    /// other files, or was left out, counts.
    std::uint32_t ordinal = 0;
    /// The number of the feature of the parent; 0 for roots.
    std::uint32_t feature = 0;
};

/// Finds elements of one file by what fragments call them: below their container by feature, by
/// name, by the source of an annotation and by the values of attributes, and in the whole file by
/// name and class. Each costs binary searches, whatever the number of siblings.
///
/// Made once the elements are there with their values; it takes no notice of what changes later.
/// May be asked by several threads at once.
class ContentIndex {
  public:
    using Index = std::uint32_t;
    static constexpr Index none = ElementPlace::none;

    /// The elements with their places, to which numbers refer.
    struct Elements {
        const std::vector<ModelElement>& elements;
        const BlockList<ElementPlace>& places;
        /// By number; see `ElementPlace::feature`.
        const std::vector<const memory::PropertyObject*>& features;
        /// The classes whose elements have ids that are made of names, sorted by address.
        const std::vector<const memory::ClassObject*>& namedClasses;
    };

    explicit ContentIndex(const Elements& all);

    /// One of the contents by its ordinal among those of its feature.
    Index child(Index parent, std::string_view feature, std::size_t ordinal) const;
    /// One of several that have the name. REQUIRES, here and below: the elements are those that the
    /// index was made of.
    Index named(const Elements& all, Index parent, std::string_view name, std::size_t number) const;
    Index withSource(const Elements& all, Index parent, std::string_view source,
                     std::size_t number) const;
    /// The first one of the step's feature whose attributes hold the values of its keys.
    Index withKeys(const Elements& all, Index parent, const FragmentStep& step) const;

    /// What goes by a name in the whole file.
    struct Found {
        Index element = none;
        /// Several elements go by it.
        bool isAmbiguous = false;
    };
    /// The element that `Name?type=Class` means, or `Container/Name?type=Class`: one of a class
    /// whose elements have ids that are made of names.
    Found byNameAndClass(const Elements& all, std::string_view fragment) const;

  private:
    /// A content, and a number of the text that it goes by.
    struct Entry {
        Index parent;
        TextTable::Number text;
        /// The ordinal, or the number of the element.
        std::uint32_t order;
        Index element;
        auto key() const noexcept { return std::tie(parent, text, order); }
        friend bool operator<(const Entry& one, const Entry& other) noexcept {
            return one.key() < other.key();
        }
    };
    using Entries = std::vector<Entry>;
    /// An element by the names of its class, of itself and of its container.
    struct Named {
        TextTable::Number type;
        TextTable::Number name;
        TextTable::Number container;
        Index element;
        auto key() const noexcept { return std::tie(type, name, container, element); }
        friend bool operator<(const Named& one, const Named& other) noexcept {
            return one.key() < other.key();
        }
    };

    /// What is found by names and sources. Made when one of them is asked for.
    struct Names {
        explicit Names(const Elements& all);
        /// Whether the containers of an element are called so; its own name is the last.
        bool hasContainers(const Elements& all, Index element,
                           const std::vector<std::string>& names) const;

        TextTable texts;
        /// By element.
        std::vector<TextTable::Number> ofElements;
        Entries byName;
        Entries bySource;
        std::vector<Named> byClass;
    };

    const Names& names(const Elements& all) const;
    /// Where the contents of the parent with that text begin.
    static Entries::const_iterator firstOf(const Entries& sorted, Index parent,
                                           TextTable::Number text);
    static Index nth(const Entries& sorted, Index parent, TextTable::Number text,
                     std::size_t number);
    /// Null for one set of keys more than there may be.
    const Entries* keyed(const Elements& all, const FragmentStep& step) const;

    TextTable featureNames_;
    Entries byFeature_;
    mutable std::once_flag namesOnce_;
    mutable std::optional<Names> names_;

    mutable std::mutex keysMutex_;
    mutable TextTable values_;
    /// By feature and names of keys. Entries stay where they are.
    mutable std::map<std::string, Entries, std::less<>> byKeys_;
};

}  // namespace nuv::zero::xmi
