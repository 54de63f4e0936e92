#pragma once

#include <filesystem>
#include <string>

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

}  // namespace nuv::zero::xmi::test
