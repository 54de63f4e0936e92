#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "xmi/FileTree.h"
#include "xmi/ReadOptions.h"

namespace nuv::zero::xmi {

/// How much one archive may demand.
struct ArchiveLimits {
    /// Bytes of the archive itself.
    std::size_t bytes = limits::fileBytes;
    /// Bytes that come out of it, over all of its files; each counts once.
    std::size_t inflatedBytes = 2 * limits::fileBytes;
    /// Files and folders in it.
    std::size_t files = 100'000;
};

/// A zip file whose files are opened as those of a folder are.
///
///     FileRoots roots;
///     roots.add("model", std::make_shared<Archive>("plant.zip"));
///
/// An archive may come from anywhere. One that holds a name that leads out of it, or has a
/// backslash, or is there twice, is refused as a whole, since others might see other files in it.
/// Links and what is encrypted are refused when they are opened. A file is inflated when it is
/// first read, not when it is opened, and its bytes are counted on the way: what the archive says
/// of its sizes need not be true.
///
/// It stays the same archive when another takes its place. May be used by several threads at once.
class Archive final : public FileTree {
  public:
    /// Throws `ReadError` when there is no such file, it is no archive, is damaged, or demands more
    /// than the limits.
    explicit Archive(const std::string& path, ArchiveLimits limits = {});
    /// The same for bytes at hand. The location is for people. REQUIRES: they are not null.
    Archive(std::string location, std::unique_ptr<ByteSource> bytes, ArchiveLimits limits = {});
    ~Archive() override;

    /// Of a file, its path without detours and links.
    const std::string& location() const noexcept override { return location_; }
    /// What is wrong inside the file is told by `ReadError` when its bytes are read.
    Opening open(std::string_view path, std::size_t limit) const override;
    std::vector<std::string> files(std::size_t limit) const override;

    /// The path of the one file in it that is XML: the model that was archived. Throws `ReadError`
    /// when there is none, and when there are several, which it names.
    std::string onlyModel() const;

  private:
    class Content;
    class EntrySource;

    std::string location_;
    std::shared_ptr<Content> content_;
};

/// Whether the bytes begin as those of a zip file do. Throws `ReadError` when they cannot be read.
bool isArchive(ByteSource& bytes);

}  // namespace nuv::zero::xmi
