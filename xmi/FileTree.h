#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "xmi/ByteSource.h"

namespace nuv::zero::xmi {

/// What the files of a model are opened in and listed from: a folder, an archive, or texts at hand.
/// Nothing outside of it is ever read.
///
/// Paths are steps with `/` between them. May be used by several threads at once.
class FileTree {
  public:
    enum class Outcome : std::uint8_t {
        Opened,
        /// There is nothing of that name.
        Missing,
        /// The way leads out of the tree.
        Outside,
        /// A folder, a pipe or a device.
        NoFile,
        /// It is there and cannot be opened, for want of rights for example.
        Refused,
    };
    /// What came of opening a file.
    struct Opening {
        Outcome outcome = Outcome::Missing;
        /// Null unless it was opened. They may be read when the tree is gone.
        std::unique_ptr<ByteSource> bytes;
        /// The way to the file without detours and links. Two spellings of one file have one path.
        std::string path;
        /// Why it is refused, to be said of the file: `is longer than 10 bytes`.
        std::string reason;
    };

    FileTree() = default;
    FileTree(const FileTree&) = delete;
    FileTree& operator=(const FileTree&) = delete;
    virtual ~FileTree();

    /// Where the tree lies, as people read it.
    virtual const std::string& location() const noexcept = 0;
    /// Where it lies in the file system, without detours and links; empty for what is no folder.
    virtual std::string_view systemPath() const noexcept { return {}; }

    /// Opens a file of at most so many bytes; a longer one is `Refused`. Throws `std::bad_alloc`
    /// only.
    virtual Opening open(std::string_view path, std::size_t limit) const = 0;

    /// The paths of all files, as `Opening::path` gives them, in the order of their bytes: each
    /// file once, and no links. Folders that cannot be read are left out. Throws `ReadError` when
    /// there are more files and folders than the limit, and `std::bad_alloc`.
    virtual std::vector<std::string> files(std::size_t limit) const = 0;

  protected:
    /// What trees say alike.
    static std::string tooLong(std::size_t limit);
    static std::string tooMany(std::size_t limit);
};

}  // namespace nuv::zero::xmi
