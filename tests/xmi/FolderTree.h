#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "xmi/FileTree.h"

namespace nuv::zero::xmi::test {

/// A folder for the files of one test, empty in the beginning and gone afterwards.
class FolderTree {
  public:
    FolderTree();
    FolderTree(const FolderTree&) = delete;
    FolderTree& operator=(const FolderTree&) = delete;
    ~FolderTree();

    /// Writes a file, and makes the folders on the way.
    const FolderTree& write(const std::string& path, const std::string& content) const;
    /// Makes a symbolic link.
    const FolderTree& link(const std::string& path, const std::string& target) const;
    std::string path(const std::string& below = {}) const;

  private:
    std::filesystem::path folder_;
};

/// What came of opening a path: the outcome, or the path and the content.
std::string opened(const FileTree& tree, std::string_view path, std::size_t limit = 1'000);
/// All bytes of a source.
std::string contentOf(ByteSource& source);

}  // namespace nuv::zero::xmi::test
