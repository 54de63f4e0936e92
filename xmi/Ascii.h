#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace nuv::zero::xmi {

/// How many characters of ASCII a text begins with. Most texts of files are nothing else, so that
/// it pays to look at eight bytes at a time.
inline std::size_t asciiLength(std::string_view text) noexcept {
    constexpr std::uint64_t beyond = 0x8080808080808080U;
    std::size_t length = 0;
    for (std::uint64_t word = 0; length + sizeof word <= text.size(); length += sizeof word) {
        std::memcpy(&word, text.data() + length, sizeof word);
        if ((word & beyond) != 0) break;
    }
    while (length < text.size() && static_cast<unsigned char>(text[length]) < 0x80U) ++length;
    return length;
}

}  // namespace nuv::zero::xmi
