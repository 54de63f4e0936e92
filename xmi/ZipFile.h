#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "xmi/ByteSource.h"

namespace nuv::zero::xmi {

/// A zip file as it is: what stands in its directory, and the bytes behind each entry. Whether its
/// names make sense is for others to say.
///
/// May be used by several threads at once, one of which inflates at a time.
class ZipFile {
  public:
    struct Entry {
        std::string name;
        /// When inflated; as the directory says, which may be wrong.
        std::uint64_t size = 0;
        bool isLink = false;
        bool isEncrypted = false;
        /// Stored or deflated, as nearly all are.
        bool isPlain = true;
    };

    /// Throws `ReadError` when it is no zip file, is damaged, or has more entries than the limit.
    /// The location is for error texts.
    ZipFile(std::string location, std::unique_ptr<ByteSource> bytes, std::size_t limit);
    ZipFile(const ZipFile&) = delete;
    ZipFile& operator=(const ZipFile&) = delete;
    ~ZipFile();

    const std::string& location() const noexcept { return location_; }
    const std::vector<Entry>& entries() const noexcept { return entries_; }

    /// The inflated bytes of an entry, or only so many from its beginning. Throws `ReadError` when
    /// it is damaged, or longer than the limit.
    std::string inflate(std::size_t entry, std::size_t limit) const;
    std::string inflateBeginning(std::size_t entry, std::size_t count) const;

  private:
    class Library;

    std::string location_;
    std::vector<Entry> entries_;
    std::unique_ptr<Library> library_;
};

}  // namespace nuv::zero::xmi
