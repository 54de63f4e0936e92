#include "xmi/EscapedText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <optional>

namespace nuv::zero::xmi {
namespace {

struct Character {
    std::uint32_t code;
    std::size_t length;
};

/// The character that a text begins with; nothing where its first byte begins none.
std::optional<Character> firstOf(std::string_view text) {
    const auto byte = [&](std::size_t index) {
        return static_cast<std::uint32_t>(static_cast<unsigned char>(text[index]));
    };
    const std::uint32_t first = byte(0);
    if (first < 0x80) return Character{first, 1};
    const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    if (first < 0xC2 || first > 0xF4 || text.size() < length) return std::nullopt;
    std::uint32_t code = first & (0x7FU >> length);
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(i) & 0xC0U) != 0x80U) return std::nullopt;
        code = (code << 6U) | (byte(i) & 0x3FU);
    }
    constexpr std::array<std::uint32_t, 5> least = {0, 0, 0x80, 0x800, 0x10000};
    const bool isSurrogate = code >= 0xD800 && code <= 0xDFFF;
    if (code < least[length] || code > 0x10FFFF || isSurrogate) return std::nullopt;
    return Character{code, length};
}

/// Whether a terminal would do something else with it than show it.
bool isHazardous(std::uint32_t code) {
    struct Range {
        std::uint32_t first;
        std::uint32_t last;
    };
    // Controls; a soft hyphen; the Arabic letter mark; zero width, marks of direction; separators
    // of lines and paragraphs, embeddings; invisible operators, isolates; the byte order mark;
    // interlinear notes; tags.
    constexpr std::array<Range, 11> ranges = {{{0x00, 0x1F},
                                               {0x7F, 0x9F},
                                               {0xAD, 0xAD},
                                               {0x061C, 0x061C},
                                               {0x180E, 0x180E},
                                               {0x200B, 0x200F},
                                               {0x2028, 0x202E},
                                               {0x2060, 0x206F},
                                               {0xFEFF, 0xFEFF},
                                               {0xFFF9, 0xFFFB},
                                               {0xE0000, 0xE007F}}};
    return std::any_of(ranges.begin(), ranges.end(), [&](const Range& range) {
        return code >= range.first && code <= range.last;
    });
}

std::string inBraces(const char* kind, std::uint32_t code) {
    std::array<char, 16> digits = {};
    std::snprintf(digits.data(), digits.size(), "%s{%02X}", kind, static_cast<unsigned>(code));
    return digits.data();
}

void append(std::string& text, std::uint32_t code) {
    const auto put = [&](std::uint32_t byte) { text += static_cast<char>(byte); };
    if (code < 0x80) return put(code);
    if (code < 0x800) {
        put(0xC0U | (code >> 6U));
    } else if (code < 0x10000) {
        put(0xE0U | (code >> 12U));
        put(0x80U | ((code >> 6U) & 0x3FU));
    } else {
        put(0xF0U | (code >> 18U));
        put(0x80U | ((code >> 12U) & 0x3FU));
        put(0x80U | ((code >> 6U) & 0x3FU));
    }
    put(0x80U | (code & 0x3FU));
}

/// Undoes one escape at the beginning of a text, which begins with a backslash; says how long it
/// is, or 0 where it is none.
std::size_t undo(std::string_view text, std::string& result) {
    if (text.size() < 2) return 0;
    constexpr std::string_view letters = "\\tnr";
    constexpr std::string_view meant = "\\\t\n\r";
    const std::size_t letter = letters.find(text[1]);
    if (letter != std::string_view::npos) {
        result += meant[letter];
        return 2;
    }
    const std::size_t close = text.find('}');
    const bool isCode = (text[1] == 'u' || text[1] == 'x') && text.size() > 3 && text[2] == '{';
    if (!isCode || close == std::string_view::npos) return 0;
    std::uint32_t code = 0;
    const char* const end = text.data() + close;
    const auto [stop, error] = std::from_chars(text.data() + 3, end, code, 16);
    const std::uint32_t most = text[1] == 'x' ? 0xFF : 0x10FFFF;
    if (error != std::errc() || stop != end || code > most) return 0;
    if (text[1] == 'x') {
        result += static_cast<char>(code);
    } else {
        append(result, code);
    }
    return close + 1;
}

}  // namespace

std::string escaped(std::string_view text) {
    std::string result;
    while (!text.empty()) {
        const std::optional<Character> character = firstOf(text);
        const std::size_t length = character ? character->length : 1;
        if (!character) {
            result += inBraces("\\x", static_cast<unsigned char>(text[0]));
        } else if (character->code == '\\') {
            result += "\\\\";
        } else if (character->code == '\t') {
            result += "\\t";
        } else if (character->code == '\n') {
            result += "\\n";
        } else if (character->code == '\r') {
            result += "\\r";
        } else if (isHazardous(character->code)) {
            result += inBraces("\\u", character->code);
        } else {
            result.append(text.substr(0, length));
        }
        text.remove_prefix(length);
    }
    return result;
}

std::string unescaped(std::string_view text) {
    std::string result;
    while (!text.empty()) {
        const std::size_t undone = text.front() == '\\' ? undo(text, result) : 0;
        if (undone == 0) result += text.front();
        text.remove_prefix(undone == 0 ? 1 : undone);
    }
    return result;
}

}  // namespace nuv::zero::xmi
