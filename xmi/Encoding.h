#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace nuv::zero::xmi {

/// The code point of each byte of a one-byte encoding; -1 for bytes without a meaning.
using EncodingTable = std::array<int, 256>;

/// The table of an encoding that the XML parser does not know by itself; nothing for an encoding
/// that is not supported. Supported are ASCII, ISO-8859-15 and the code pages 1250 to 1252, under
/// their usual names (`Cp1252` as Java writes it, `windows-1252`), in any case.
std::optional<EncodingTable> encodingTable(std::string_view name);

}  // namespace nuv::zero::xmi
