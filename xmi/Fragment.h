#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace nuv::zero::xmi {

/// One step of a fragment path.
struct FragmentStep {
    enum class Kind : std::uint8_t { Feature, Name, Source, Keys };
    /// A property and what it holds, as text.
    using Key = std::pair<std::string, std::string>;
    Kind kind;
    /// The feature of `@feature.N` and `@feature[key='value']`, the name of `name`, the source of
    /// `%source%`.
    std::string text;
    /// Which one of several, counted from 0.
    std::size_t index = 0;
    /// What stands there, as it stands: a name may end in `.N` of its own.
    std::string_view raw;
    std::vector<Key> keys = {};
};

/// A fragment path such as `//@feature.0/@other.1`, `/2/@x`, `//package/Class/feature.1` or
/// `//@books[title='A']`: which root, and the way down from it.
struct FragmentPath {
    std::size_t root = 0;
    std::vector<FragmentStep> steps;
};

/// Nothing for a text that is no fragment path; paths begin with a slash.
std::optional<FragmentPath> parseFragmentPath(std::string_view text);

/// The text with every `%20` and its like decoded, as fragments of URIs have to be.
std::string percentDecoded(std::string_view text);

/// Whether there is nothing but white space.
bool isBlank(std::string_view text);

/// The text without the white space around it.
std::string_view trimmed(std::string_view text);

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

}  // namespace nuv::zero::xmi
