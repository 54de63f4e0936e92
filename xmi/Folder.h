#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "xmi/ByteSource.h"

namespace nuv::zero::xmi {

/// A folder in which files are opened, and outside of which none are.
///
///     const Folder folder("models");
///     Folder::Opening opening = folder.open("libraries/../system.xmi");
///     if (opening.file) std::cout << opening.path;    // system.xmi
///
/// Files name other files, and a file from somewhere else may name anything: absolute paths, paths
/// that climb, links that lead out. Checking a path before opening it does not help, because
/// somebody may change a link in between. So every step of a path is taken by itself, from the
/// folder that was opened before; a link is read and its steps are taken instead of it.
///
/// A copy opens the same folder, also when it was given another name since. May be used by several
/// threads at once.
class Folder {
  public:
    enum class Outcome : std::uint8_t {
        Opened,
        /// There is nothing of that name.
        Missing,
        /// The way leads out of the folder.
        Outside,
        /// A folder, a pipe or a device.
        NoFile,
        /// The system refuses, for want of rights for example.
        Refused,
    };
    /// What came of opening a file.
    struct Opening {
        Outcome outcome = Outcome::Missing;
        /// Null unless it was opened.
        FilePointer file;
        /// The way to the file without detours and links. Two spellings of one file have one path.
        std::string path;
        /// Why the system refuses, in its own words.
        std::string reason;
    };

    /// Throws `ReadError` when there is no such folder, or it cannot be opened.
    explicit Folder(const std::string& path);

    /// The folder's own path without detours and links, as it was when it was opened.
    const std::string& path() const noexcept { return path_; }

    /// Opens a file by its path from here; steps are separated by `/`. Throws `std::bad_alloc`
    /// only.
    Opening open(std::string_view path) const;

  private:
    class Descriptor;

    std::shared_ptr<const Descriptor> descriptor_;
    std::string path_;
};

}  // namespace nuv::zero::xmi
