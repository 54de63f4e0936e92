#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "xmi/FileTree.h"

namespace nuv::zero::xmi {

/// Which folders and files a file tree holds, found by their names wherever they are.
///
///     FolderIndex index(tree, 100'000);
///     index.foldersNamed("org.units");    // libraries/org.units, old/libraries/org.units
///
/// The tree is gone through once, when something is asked for the first time; what comes into it
/// later is not known here. May be used by several threads at once.
class FolderIndex {
  public:
    FolderIndex(std::shared_ptr<const FileTree> tree, std::size_t limit);

    /// The paths of all files, in the order of their bytes. Throws `ReadError` when there are more
    /// files and folders than the limit, each time, and `std::bad_alloc`.
    const std::vector<std::string>& files();
    /// The paths of the folders of that name in which there are files: those that are nearer to the
    /// tree's own folder first, then in the order of their bytes. Throws as `files`.
    const std::vector<std::string>& foldersNamed(std::string_view name);
    /// Whether the tree holds the file, and not by a link. Throws as `files`.
    bool holds(std::string_view path);

  private:
    struct Failure {
        std::string file;
        std::string reason;
    };

    void scan();

    std::shared_ptr<const FileTree> tree_;
    std::size_t limit_;
    std::mutex mutex_;
    bool isScanned_ = false;
    /// Null unless it failed.
    std::unique_ptr<const Failure> failure_;
    std::vector<std::string> files_;
    std::map<std::string, std::vector<std::string>, std::less<>> folders_;
};

/// How many steps a path has, those that are names.
std::size_t stepsOf(std::string_view path) noexcept;

}  // namespace nuv::zero::xmi
