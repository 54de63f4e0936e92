#include "xmi/Utf16.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "model/memory/Text.h"
#include "xmi/Ascii.h"

namespace nuv::zero::xmi {

void assignUtf16(std::u16string& to, std::string_view text) {
    const std::size_t plain = asciiLength(text);
    to.resize(plain);
    const char* from = text.data();
    char16_t* out = to.data();
    std::size_t left = plain;
    // Four characters at a time: each byte of a word moves into a half-word of a larger one, in the
    // same order whichever end memory begins with.
    for (std::uint32_t bytes = 0; left >= sizeof bytes; left -= sizeof bytes) {
        std::memcpy(&bytes, from, sizeof bytes);
        std::uint64_t spread = bytes;
        spread = (spread | (spread << 16U)) & 0x0000FFFF0000FFFFU;
        spread = (spread | (spread << 8U)) & 0x00FF00FF00FF00FFU;
        std::memcpy(out, &spread, sizeof spread);
        from += sizeof bytes;
        out += sizeof bytes;
    }
    for (; left > 0; --left) *out++ = static_cast<unsigned char>(*from++);
    if (plain != text.size()) to += text::toUtf16(text.substr(plain));
}

void assignUtf8(std::string& to, std::u16string_view text) {
    const bool isPlain =
        std::all_of(text.begin(), text.end(), [](char16_t each) { return each < 0x80U; });
    if (!isPlain) {
        to = text::toUtf8(text);
        return;
    }
    to.resize(text.size());
    std::transform(text.begin(), text.end(), to.begin(),
                   [](char16_t each) { return static_cast<char>(each); });
}

}  // namespace nuv::zero::xmi
