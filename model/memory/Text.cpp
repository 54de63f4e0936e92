#include "model/memory/Text.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace nuv::zero::text {
namespace {

constexpr char32_t replacement = 0xFFFD;

constexpr bool isLeadingSurrogate(char32_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}
constexpr bool isTrailingSurrogate(char32_t unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}
constexpr bool isSurrogate(char32_t unit) {
    return unit >= 0xD800 && unit <= 0xDFFF;
}

void appendUtf8(std::string& out, char32_t point) {
    const auto continuation = [point](unsigned shift) {
        return static_cast<char>(0x80U | ((point >> shift) & 0x3FU));
    };
    if (point < 0x80) {
        out += static_cast<char>(point);
    } else if (point < 0x800) {
        out += static_cast<char>(0xC0U | (point >> 6U));
        out += continuation(0);
    } else if (point < 0x10000) {
        out += static_cast<char>(0xE0U | (point >> 12U));
        out += continuation(6);
        out += continuation(0);
    } else {
        out += static_cast<char>(0xF0U | (point >> 18U));
        out += continuation(12);
        out += continuation(6);
        out += continuation(0);
    }
}

void appendUtf16(std::u16string& out, char32_t point) {
    if (point < 0x10000) {
        out += static_cast<char16_t>(point);
    } else {
        out += static_cast<char16_t>(0xD800U + ((point - 0x10000U) >> 10U));
        out += static_cast<char16_t>(0xDC00U + ((point - 0x10000U) & 0x3FFU));
    }
}

struct Decoded {
    char32_t point;
    std::size_t length;
};

/// The code point at the beginning of a text that is not empty; a byte that begins no valid
/// sequence stands for the replacement character.
Decoded decodeUtf8(std::string_view text) {
    const auto byte = [text](std::size_t i) {
        return static_cast<char32_t>(static_cast<unsigned char>(text[i]));
    };
    const char32_t first = byte(0);
    if (first < 0x80) return {first, 1};

    constexpr std::array<char32_t, 5> leastOfLength = {0, 0, 0x80, 0x800, 0x10000};
    const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    constexpr Decoded invalid{replacement, 1};
    if (first < 0xC2 || first > 0xF4 || text.size() < length) return invalid;

    char32_t point = first & (0xFFU >> (length + 1));
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(i) & 0xC0U) != 0x80U) return invalid;
        point = (point << 6U) | (byte(i) & 0x3FU);
    }
    const bool overlong = point < leastOfLength[length];
    if (overlong || isSurrogate(point) || point > 0x10FFFF) return invalid;
    return {point, length};
}

}  // namespace

std::string toUtf8(std::u16string_view text) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        char32_t point = text[i];
        if (isLeadingSurrogate(point) && i + 1 < text.size() && isTrailingSurrogate(text[i + 1])) {
            point = 0x10000U + ((point - 0xD800U) << 10U) + (text[i + 1] - 0xDC00U);
            ++i;
        } else if (isSurrogate(point)) {
            point = replacement;
        }
        appendUtf8(out, point);
    }
    return out;
}

std::u16string toUtf16(std::string_view text) {
    std::u16string out;
    out.reserve(text.size());
    while (!text.empty()) {
        const Decoded decoded = decodeUtf8(text);
        appendUtf16(out, decoded.point);
        text.remove_prefix(decoded.length);
    }
    return out;
}

}  // namespace nuv::zero::text
