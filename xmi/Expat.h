#pragma once

#include <expat.h>

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>

#include "xmi/ByteSource.h"
#include "xmi/Encoding.h"
#include "xmi/ReadError.h"

namespace nuv::zero::xmi {

/// One run of the XML parser, which is C, over the bytes of a source.
class Expat {
  public:
    /// Throws `std::bad_alloc`.
    Expat();

    XML_Parser get() const noexcept { return parser_.get(); }

    /// Parses all bytes, unless a handler stops the parser; says whether all went well. Memory
    /// grows with the longest tag or text, not with the source. Throws what the source throws, and
    /// `std::bad_alloc` when the parser has run out of memory.
    bool parse(ByteSource& source);

    /// Where the tag that is being reported begins, in bytes as the parser got them.
    std::size_t offset() const noexcept;
    Position position() const noexcept;

  private:
    /// How many bytes were taken from the source, and given to the parser.
    struct Fed {
        std::size_t taken;
        std::size_t given;
    };
    void chooseDecoder(ByteSource& source);
    Fed feed(ByteSource& source, std::size_t from, std::size_t wanted);

    struct Freeing {
        void operator()(XML_Parser parser) const noexcept { XML_ParserFree(parser); }
    };
    std::unique_ptr<std::remove_pointer_t<XML_Parser>, Freeing> parser_;
    /// For the one-byte encodings that the parser does not know by itself.
    std::optional<OneByteDecoder> decoder_;
    std::string encoded_;
};

}  // namespace nuv::zero::xmi
