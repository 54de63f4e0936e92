#include "JsonText.h"

#include <array>
#include <cstdint>
#include <cstdio>

#include "model/memory/Text.h"
#include "xmi/EscapedText.h"

namespace model_walk {

using nuv::zero::xmi::escaped;
namespace {

void appendUnit(std::string& text, char16_t unit) {
    std::array<char, 8> digits = {};
    std::snprintf(digits.data(), digits.size(), "\\u%04x", static_cast<unsigned>(unit));
    text += digits.data();
}

/// The unit that four digits stand for.
char16_t unitOf(std::string_view digits) {
    std::uint32_t unit = 0;
    for (const char digit : digits) {
        const std::uint32_t value = digit <= '9'   ? static_cast<std::uint32_t>(digit - '0')
                                    : digit <= 'F' ? static_cast<std::uint32_t>(digit - 'A' + 10)
                                                   : static_cast<std::uint32_t>(digit - 'a' + 10);
        unit = unit * 16 + (value & 0xFU);
    }
    return static_cast<char16_t>(unit);
}

}  // namespace

std::string inJson(std::string_view text) {
    std::string result = "\"";
    const std::u16string units = nuv::zero::text::toUtf16(text);
    for (std::size_t i = 0; i < units.size(); ++i) {
        const bool isPair = units[i] >= 0xD800 && units[i] < 0xDC00 && i + 1 < units.size();
        const std::u16string_view character =
            std::u16string_view(units).substr(i, isPair ? std::size_t{2} : std::size_t{1});
        const std::string bytes = nuv::zero::text::toUtf8(character);
        if (bytes == "\"" || bytes == "\\") {
            result += "\\" + bytes;
        } else if (escaped(bytes) != bytes) {
            for (const char16_t unit : character) appendUnit(result, unit);
        } else {
            result += bytes;
        }
        if (isPair) ++i;
    }
    return result + "\"";
}

std::string stringBehind(std::string_view object, std::string_view key) {
    const std::string quoted = "\"" + std::string(key) + "\"";
    std::size_t at = object.find(quoted);
    if (at == std::string_view::npos) return {};
    at = object.find('"', at + quoted.size());
    if (at == std::string_view::npos) return {};
    std::u16string units;
    const auto take = [&](std::string_view bytes) { units += nuv::zero::text::toUtf16(bytes); };
    for (++at; at < object.size() && object[at] != '"';) {
        const std::size_t stop = object.find_first_of("\"\\", at);
        if (stop == std::string_view::npos) return {};
        take(object.substr(at, stop - at));
        at = stop;
        if (object[at] == '"') continue;
        if (at + 1 == object.size()) return {};
        constexpr std::string_view letters = "bfnrt";
        constexpr std::string_view meant = "\b\f\n\r\t";
        const std::size_t letter = letters.find(object[at + 1]);
        if (object[at + 1] == 'u' && at + 6 <= object.size()) {
            units += unitOf(object.substr(at + 2, 4));
            at += 6;
        } else {
            take(letter == std::string_view::npos ? object.substr(at + 1, 1)
                                                  : meant.substr(letter, 1));
            at += 2;
        }
    }
    return nuv::zero::text::toUtf8(units);
}

}  // namespace model_walk
