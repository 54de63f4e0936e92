#include "xmi/Utf16.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "model/memory/Text.h"

namespace nuv::zero::xmi {
namespace {

std::size_t asciiLength(std::string_view text) {
    constexpr std::uint64_t beyond = 0x8080808080808080U;
    std::size_t length = 0;
    for (std::uint64_t word = 0; length + sizeof word <= text.size(); length += sizeof word) {
        std::memcpy(&word, text.data() + length, sizeof word);
        if ((word & beyond) != 0) break;
    }
    while (length < text.size() && static_cast<unsigned char>(text[length]) < 0x80U) ++length;
    return length;
}

}  // namespace

void assignUtf16(std::u16string& to, std::string_view text) {
    const std::size_t plain = asciiLength(text);
    to.resize(plain);
    for (std::size_t i = 0; i < plain; ++i) to[i] = static_cast<unsigned char>(text[i]);
    if (plain != text.size()) to += text::toUtf16(text.substr(plain));
}

}  // namespace nuv::zero::xmi
