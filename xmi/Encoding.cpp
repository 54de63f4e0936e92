#include "xmi/Encoding.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <string>

#include "xmi/Ascii.h"

namespace nuv::zero::xmi {
namespace {

/// What the bytes 0x80 to 0xFF mean.
using UpperHalf = std::array<int, 128>;

constexpr UpperHalf codePage1250 = {
    0x20AC, -1,     0x201A, -1,     0x201E, 0x2026, 0x2020, 0x2021, -1,     0x2030, 0x0160, 0x2039,
    0x015A, 0x0164, 0x017D, 0x0179, -1,     0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
    -1,     0x2122, 0x0161, 0x203A, 0x015B, 0x0165, 0x017E, 0x017A, 0x00A0, 0x02C7, 0x02D8, 0x0141,
    0x00A4, 0x0104, 0x00A6, 0x00A7, 0x00A8, 0x00A9, 0x015E, 0x00AB, 0x00AC, 0x00AD, 0x00AE, 0x017B,
    0x00B0, 0x00B1, 0x02DB, 0x0142, 0x00B4, 0x00B5, 0x00B6, 0x00B7, 0x00B8, 0x0105, 0x015F, 0x00BB,
    0x013D, 0x02DD, 0x013E, 0x017C, 0x0154, 0x00C1, 0x00C2, 0x0102, 0x00C4, 0x0139, 0x0106, 0x00C7,
    0x010C, 0x00C9, 0x0118, 0x00CB, 0x011A, 0x00CD, 0x00CE, 0x010E, 0x0110, 0x0143, 0x0147, 0x00D3,
    0x00D4, 0x0150, 0x00D6, 0x00D7, 0x0158, 0x016E, 0x00DA, 0x0170, 0x00DC, 0x00DD, 0x0162, 0x00DF,
    0x0155, 0x00E1, 0x00E2, 0x0103, 0x00E4, 0x013A, 0x0107, 0x00E7, 0x010D, 0x00E9, 0x0119, 0x00EB,
    0x011B, 0x00ED, 0x00EE, 0x010F, 0x0111, 0x0144, 0x0148, 0x00F3, 0x00F4, 0x0151, 0x00F6, 0x00F7,
    0x0159, 0x016F, 0x00FA, 0x0171, 0x00FC, 0x00FD, 0x0163, 0x02D9,
};

constexpr UpperHalf codePage1251 = {
    0x0402, 0x0403, 0x201A, 0x0453, 0x201E, 0x2026, 0x2020, 0x2021, 0x20AC, 0x2030, 0x0409, 0x2039,
    0x040A, 0x040C, 0x040B, 0x040F, 0x0452, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
    -1,     0x2122, 0x0459, 0x203A, 0x045A, 0x045C, 0x045B, 0x045F, 0x00A0, 0x040E, 0x045E, 0x0408,
    0x00A4, 0x0490, 0x00A6, 0x00A7, 0x0401, 0x00A9, 0x0404, 0x00AB, 0x00AC, 0x00AD, 0x00AE, 0x0407,
    0x00B0, 0x00B1, 0x0406, 0x0456, 0x0491, 0x00B5, 0x00B6, 0x00B7, 0x0451, 0x2116, 0x0454, 0x00BB,
    0x0458, 0x0405, 0x0455, 0x0457, 0x0410, 0x0411, 0x0412, 0x0413, 0x0414, 0x0415, 0x0416, 0x0417,
    0x0418, 0x0419, 0x041A, 0x041B, 0x041C, 0x041D, 0x041E, 0x041F, 0x0420, 0x0421, 0x0422, 0x0423,
    0x0424, 0x0425, 0x0426, 0x0427, 0x0428, 0x0429, 0x042A, 0x042B, 0x042C, 0x042D, 0x042E, 0x042F,
    0x0430, 0x0431, 0x0432, 0x0433, 0x0434, 0x0435, 0x0436, 0x0437, 0x0438, 0x0439, 0x043A, 0x043B,
    0x043C, 0x043D, 0x043E, 0x043F, 0x0440, 0x0441, 0x0442, 0x0443, 0x0444, 0x0445, 0x0446, 0x0447,
    0x0448, 0x0449, 0x044A, 0x044B, 0x044C, 0x044D, 0x044E, 0x044F,
};

constexpr UpperHalf codePage1252 = {
    0x20AC, -1,     0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160, 0x2039,
    0x0152, -1,     0x017D, -1,     -1,     0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, -1,     0x017E, 0x0178, 0x00A0, 0x00A1, 0x00A2, 0x00A3,
    0x00A4, 0x00A5, 0x00A6, 0x00A7, 0x00A8, 0x00A9, 0x00AA, 0x00AB, 0x00AC, 0x00AD, 0x00AE, 0x00AF,
    0x00B0, 0x00B1, 0x00B2, 0x00B3, 0x00B4, 0x00B5, 0x00B6, 0x00B7, 0x00B8, 0x00B9, 0x00BA, 0x00BB,
    0x00BC, 0x00BD, 0x00BE, 0x00BF, 0x00C0, 0x00C1, 0x00C2, 0x00C3, 0x00C4, 0x00C5, 0x00C6, 0x00C7,
    0x00C8, 0x00C9, 0x00CA, 0x00CB, 0x00CC, 0x00CD, 0x00CE, 0x00CF, 0x00D0, 0x00D1, 0x00D2, 0x00D3,
    0x00D4, 0x00D5, 0x00D6, 0x00D7, 0x00D8, 0x00D9, 0x00DA, 0x00DB, 0x00DC, 0x00DD, 0x00DE, 0x00DF,
    0x00E0, 0x00E1, 0x00E2, 0x00E3, 0x00E4, 0x00E5, 0x00E6, 0x00E7, 0x00E8, 0x00E9, 0x00EA, 0x00EB,
    0x00EC, 0x00ED, 0x00EE, 0x00EF, 0x00F0, 0x00F1, 0x00F2, 0x00F3, 0x00F4, 0x00F5, 0x00F6, 0x00F7,
    0x00F8, 0x00F9, 0x00FA, 0x00FB, 0x00FC, 0x00FD, 0x00FE, 0x00FF,
};

EncodingTable withUpperHalf(const UpperHalf& upperHalf) {
    EncodingTable table;
    for (std::size_t byte = 0; byte < 128; ++byte) table[byte] = static_cast<int>(byte);
    std::copy(upperHalf.begin(), upperHalf.end(), table.begin() + 128);
    return table;
}

EncodingTable ascii() {
    UpperHalf none;
    none.fill(-1);
    return withUpperHalf(none);
}

EncodingTable latin9() {
    UpperHalf upperHalf;
    for (std::size_t i = 0; i < upperHalf.size(); ++i) upperHalf[i] = static_cast<int>(128 + i);
    // Where it differs from ISO-8859-1.
    constexpr std::array<std::array<int, 2>, 8> others = {{{0xA4, 0x20AC},
                                                           {0xA6, 0x0160},
                                                           {0xA8, 0x0161},
                                                           {0xB4, 0x017D},
                                                           {0xB8, 0x017E},
                                                           {0xBC, 0x0152},
                                                           {0xBD, 0x0153},
                                                           {0xBE, 0x0178}}};
    for (const auto& [byte, code] : others) upperHalf[static_cast<std::size_t>(byte - 128)] = code;
    return withUpperHalf(upperHalf);
}

/// Small letters and digits only, so that `ISO_8859-15` and `iso8859-15` are one name.
std::string simplified(std::string_view name) {
    std::string result;
    for (const char character : name) {
        const auto code = static_cast<unsigned char>(character);
        if (std::isalnum(code) != 0) result += static_cast<char>(std::tolower(code));
    }
    return result;
}

std::string_view withoutBlanks(std::string_view text) {
    const std::size_t first = text.find_first_not_of(" \t\r\n");
    return first == std::string_view::npos ? std::string_view() : text.substr(first);
}

/// Takes a part such as ` encoding="latin9"` from the front of an XML declaration and gives its
/// value; takes nothing where there is another part, or none.
std::string_view pseudoAttribute(std::string_view& declaration, std::string_view name) {
    std::string_view rest = withoutBlanks(declaration);
    const bool isApart = rest.size() < declaration.size();
    if (!isApart || !rest.starts_with(name)) return {};
    rest = withoutBlanks(rest.substr(name.size()));
    if (!rest.starts_with('=')) return {};
    rest = withoutBlanks(rest.substr(1));
    if (!rest.starts_with('"') && !rest.starts_with('\'')) return {};
    const char quote = rest.front();
    rest.remove_prefix(1);
    const std::string_view value = rest.substr(0, rest.find(quote));
    const bool isPlain = std::all_of(value.begin(), value.end(), [](char character) {
        const bool isMark = character == '.' || character == '-' || character == '_';
        const auto code = static_cast<unsigned char>(character);
        return isMark || (code < 0x80U && std::isalnum(code) != 0);
    });
    if (!isPlain || value.size() == rest.size()) return {};
    declaration = rest.substr(value.size() + 1);
    return value;
}

}  // namespace

std::optional<EncodingTable> encodingTable(std::string_view name) {
    const std::string plain = simplified(name);
    if (plain == "ascii" || plain == "usascii" || plain == "iso646us") return ascii();
    if (plain == "iso885915" || plain == "latin9") return latin9();
    if (plain == "cp1250" || plain == "windows1250") return withUpperHalf(codePage1250);
    if (plain == "cp1251" || plain == "windows1251") return withUpperHalf(codePage1251);
    if (plain == "cp1252" || plain == "windows1252") return withUpperHalf(codePage1252);
    return std::nullopt;
}

std::string_view declaredEncoding(std::string_view begin) {
    if (!begin.starts_with("<?xml")) return {};
    begin.remove_prefix(5);
    if (pseudoAttribute(begin, "version").empty()) return {};
    const std::string_view encoding = pseudoAttribute(begin, "encoding");
    const std::string_view standalone = pseudoAttribute(begin, "standalone");
    const bool isWhole = standalone.empty() || standalone == "yes" || standalone == "no";
    return isWhole && withoutBlanks(begin).starts_with("?>") ? encoding : std::string_view();
}

OneByteDecoder::OneByteDecoder(const EncodingTable& table) : sequences_() {
    for (std::size_t byte = 0; byte < table.size(); ++byte) {
        const int point = table[byte];
        const auto last = static_cast<char>(0x80 | (point & 0x3F));
        if (point < 0) {
            sequences_[byte] = {{'\xFF'}, 1};
        } else if (point < 0x80) {
            sequences_[byte] = {{static_cast<char>(point)}, 1};
        } else if (point < 0x800) {
            sequences_[byte] = {{static_cast<char>(0xC0 | (point >> 6)), last}, 2};
        } else {
            const auto middle = static_cast<char>(0x80 | ((point >> 6) & 0x3F));
            sequences_[byte] = {{static_cast<char>(0xE0 | (point >> 12)), middle, last}, 3};
        }
    }
}

std::size_t OneByteDecoder::decodedSize(std::string_view bytes) const noexcept {
    if (asciiLength(bytes) == bytes.size()) return bytes.size();
    std::size_t size = 0;
    for (const char byte : bytes) size += sequences_[static_cast<unsigned char>(byte)].size;
    return size;
}

void OneByteDecoder::decode(std::string_view bytes, char* to) const noexcept {
    for (const char byte : bytes) {
        const Sequence& sequence = sequences_[static_cast<unsigned char>(byte)];
        for (unsigned char i = 0; i < sequence.size; ++i) *to++ = sequence.bytes[i];
    }
}

}  // namespace nuv::zero::xmi
