#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "xmi/FileTree.h"

namespace nuv::zero::xmi {

/// The path without detours: no empty steps, no `.`, and no `..`. Nothing for one that leads out of
/// where it begins, as absolute paths do.
std::optional<std::string> withoutDetours(std::string_view path);

/// What a path has behind the path of a folder, if it leads into that folder; nothing behind it for
/// the folder's own path. An empty folder is where paths begin that are not absolute.
std::optional<std::string_view> pathBelow(std::string_view folder, std::string_view path);

/// The paths of a file tree that is known as a whole, each with a number.
///
///     FilePaths paths;
///     paths.add("parts/pump.xmi", 0);
///     paths.find("parts/./pump.xmi");    // Opened, parts/pump.xmi, 0
class FilePaths {
  public:
    struct Found {
        FileTree::Outcome outcome = FileTree::Outcome::Missing;
        std::string path;
        std::size_t number = 0;
    };

    /// Says whether it is new. REQUIRES: the path is without detours.
    bool add(std::string path, std::size_t number);
    Found find(std::string_view path) const;

    std::size_t size() const noexcept { return numbers_.size(); }
    /// In the order of their bytes.
    std::vector<std::string> all() const;

  private:
    std::map<std::string, std::size_t, std::less<>> numbers_;
};

}  // namespace nuv::zero::xmi
