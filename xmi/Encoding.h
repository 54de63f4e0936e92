#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

namespace nuv::zero::xmi {

/// The code point of each byte of a one-byte encoding; -1 for bytes without a meaning.
using EncodingTable = std::array<int, 256>;

/// The table of an encoding that the XML parser does not know by itself; nothing for an encoding
/// that is not supported. Supported are ASCII, ISO-8859-15 and the code pages 1250 to 1252, under
/// their usual names (`Cp1252` as Java writes it, `windows-1252`), in any case.
std::optional<EncodingTable> encodingTable(std::string_view name);

/// The name of the encoding in the XML declaration at the beginning of a file; empty where there is
/// none, or where the declaration is not all there and right.
std::string_view declaredEncoding(std::string_view begin);

/// Converts bytes of a one-byte encoding to UTF-8. A byte without a meaning stays one that UTF-8
/// cannot hold.
class OneByteDecoder {
  public:
    explicit OneByteDecoder(const EncodingTable& table);

    /// How many bytes of UTF-8 the bytes make.
    std::size_t decodedSize(std::string_view bytes) const noexcept;
    /// Writes them; there has to be room for so many.
    void decode(std::string_view bytes, char* to) const noexcept;

  private:
    struct Sequence {
        std::array<char, 3> bytes;
        unsigned char size;
    };
    std::array<Sequence, 256> sequences_;
};

}  // namespace nuv::zero::xmi
