#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "xmi/XmlDocument.h"

namespace nuv::zero::xmi {

/// One step of a fragment path.
struct FragmentStep {
    enum class Kind : std::uint8_t { Feature, Name, Source };
    Kind kind;
    /// The feature of `@feature.N`, the name of `name`, the source of `%source%`.
    std::string text;
    /// Which one of several, counted from 0.
    std::size_t index = 0;
    /// What stands there, as it stands: a name may end in `.N` of its own.
    std::string_view raw;
};

/// A fragment path such as `//@feature.0/@other.1`, `/2/@x` or `//package/Class/feature.1`: which
/// root, and the way down from it.
struct FragmentPath {
    std::size_t root = 0;
    std::vector<FragmentStep> steps;
};

/// Nothing for a text that is no fragment path; paths begin with a slash.
std::optional<FragmentPath> parseFragmentPath(std::string_view text);

/// The text with every `%20` and its like decoded, as fragments of URIs have to be.
std::string percentDecoded(std::string_view text);

/// Splits at white space.
std::vector<std::string_view> splitAtBlanks(std::string_view text);

/// One of several references in one text.
struct ListedReference {
    std::string_view text;
    /// What stands in front of it in place of a type, such as `ecore:EClass`; mostly empty.
    std::string_view declaredType;
};

/// Splits a list of references at white space, and takes types for types.
std::vector<ListedReference> splitReferences(std::string_view text);

/// Finds the XML elements that fragment paths of a file lead to.
///
/// A step costs a binary search, whatever the number of children. The document has to outlive it.
class FragmentResolver {
  public:
    explicit FragmentResolver(const XmlDocument& document);

    /// The element at the end of the path; `noNode` where there is none. The first step starts at
    /// `roots[path.root]`.
    Node resolve(const FragmentPath& path, const std::vector<Node>& roots) const;

    /// How many siblings of the same tag stand before the element.
    std::size_t ordinal(Node node) const noexcept { return ordinals_[node]; }

  private:
    Node step(Node node, const FragmentStep& step) const;
    Node childOfFeature(Node parent, std::string_view feature, std::size_t index) const;
    Node childNamed(Node parent, std::string_view name, std::size_t index) const;

    std::uint32_t tagOf(Node node) const noexcept { return tags_[document_[node].name]; }

    /// An element and the attribute that paths know it by. Kept beside each other: looking the
    /// attribute up costs the number of attributes, which a hostile file makes large.
    struct Keyed {
        Node parent;
        std::string_view key;
        Node node;
    };
    /// The elements that have the attribute, sorted by parent, key and place.
    static std::vector<Keyed> sortedBy(const XmlDocument& document, std::string_view attribute);
    static Node memberOf(const std::vector<Keyed>& sorted, Node parent, std::string_view key,
                         std::size_t index);

    const XmlDocument& document_;
    /// A number for each tag without its namespace.
    std::map<std::string_view, std::uint32_t> tagNumbers_;
    /// The same by `NameId`.
    std::vector<std::uint32_t> tags_;
    std::vector<std::uint32_t> ordinals_;
    /// All elements but the root, sorted by parent, tag and place.
    std::vector<Node> byTag_;
    std::vector<Keyed> byName_;
    std::vector<Keyed> bySource_;
};

}  // namespace nuv::zero::xmi
