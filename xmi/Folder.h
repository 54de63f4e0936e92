#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "xmi/FileTree.h"

namespace nuv::zero::xmi {

/// A folder in which files are opened, and outside of which none are.
///
///     const Folder folder("models");
///     FileTree::Opening opening = folder.open("libraries/../system.xmi", limits::fileBytes);
///     if (opening.bytes) std::cout << opening.path;    // system.xmi
///
/// Files name other files, and a file from somewhere else may name anything: absolute paths, paths
/// that climb, links that lead out. Checking a path before opening it does not help, because
/// somebody may change a link in between. So every step of a path is taken by itself, from the
/// folder that was opened before; a link is read and its steps are taken instead of it.
///
/// It stays the same folder when it is given another name. What was opened stays the same file when
/// another takes its place. May be used by several threads at once.
class Folder final : public FileTree {
  public:
    /// Throws `ReadError` when there is no such folder, or it cannot be opened.
    explicit Folder(const std::string& path);
    ~Folder() override;

    /// Its own path without detours and links, as it was when it was opened.
    const std::string& location() const noexcept override { return path_; }
    std::string_view systemPath() const noexcept override { return path_; }
    Opening open(std::string_view path, std::size_t limit) const override;
    /// Throws `ReadError` as well when folders are nested deeper than 100 levels.
    std::vector<std::string> files(std::size_t limit) const override;

  private:
    class Descriptor;
    class Listing;
    class Way;

    std::unique_ptr<const Descriptor> descriptor_;
    std::string path_;
};

}  // namespace nuv::zero::xmi
