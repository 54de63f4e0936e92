#pragma once

#include <cstddef>
#include <memory>
#include <string>

#include "xmi/ByteSource.h"

namespace nuv::zero::xmi {

/// The bytes of another source; where that is compressed by gzip, what comes out of it.
///
///     GzipSource source("m.xmi", std::move(bytes), limits::fileBytes);
///     parseXml("m.xmi", source, ...);    // compressed or not
///
/// Its first two bytes tell, not the name. Nothing is read before the first question, and what is
/// compressed is then inflated as a whole: parsers go back and forth. What comes out is counted on
/// the way, so that a small file cannot fill the memory.
///
/// All questions throw `ReadError` when the bytes cannot be read, are damaged or cut off, or more
/// than the limit come out of them.
class GzipSource final : public ByteSource {
  public:
    /// The name is for error texts. REQUIRES: the source is not null.
    GzipSource(std::string name, std::unique_ptr<ByteSource> source, std::size_t limit);
    ~GzipSource() override;

    std::size_t size() override;
    std::size_t read(std::size_t from, char* into, std::size_t wanted) override;

  private:
    /// The source that has the bytes.
    ByteSource& plain();

    std::string name_;
    std::unique_ptr<ByteSource> source_;
    std::size_t limit_;
    bool isKnown_ = false;
};

}  // namespace nuv::zero::xmi
