#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace nuv::zero::xmi {

/// What a reference has behind a prefix, if it begins with it. A prefix covers whole segments:
/// `platform:/plugin/a` is a prefix of `platform:/plugin/a/m.xmi`, which has `m.xmi` behind it, and
/// not of `platform:/plugin/ab/m.xmi`. A reference that is the prefix itself has nothing behind it.
std::optional<std::string_view> behindPrefix(std::string_view reference, std::string_view prefix);

/// What a reference says that names a folder, or a root, in place of a path that leads to it.
struct NamedFolder {
    /// Decoded.
    std::string name;
    /// The path from there, not decoded.
    std::string_view rest;
    /// Whether the name may also be that of a folder, wherever that is.
    bool isAnywhere = false;
};
/// Understands `platform:/plugin/NAME/REST`, `platform:/resource/NAME/REST` and
/// `pathmap://NAME/REST`. Nothing for any other reference.
std::optional<NamedFolder> namedFolderIn(std::string_view reference);

/// A prefix that means another reference, without anybody having said so.
struct BuiltInPrefix {
    std::string_view prefix;
    std::string_view meaning;
};
/// For files that everybody who makes such models has, under names that lead to no place.
std::span<const BuiltInPrefix> builtInPrefixes() noexcept;

}  // namespace nuv::zero::xmi
