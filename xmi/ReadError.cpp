#include "xmi/ReadError.h"

#include <cstddef>
#include <system_error>

namespace nuv::zero::xmi {
namespace {

/// Continuation bytes of UTF-8 must not be cut off from their first byte.
std::size_t cutBefore(std::string_view text, std::size_t end) {
    while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U) --end;
    return end;
}

/// A text of no more than so many bytes; dots stand for what is cut off.
std::string shortened(std::string_view text, std::size_t shown) {
    if (text.size() <= shown) return std::string(text);
    return std::string(text.substr(0, cutBefore(text, shown))) + "...";
}

std::string compose(std::string_view file, Position position, std::string_view reason) {
    std::string text(file);
    if (position.line != 0) {
        text += ':' + std::to_string(position.line) + ':' + std::to_string(position.column);
    }
    return onOneLine(text.append(": ").append(reason));
}

/// Reasons name classes and features, whose names may be of any length.
std::string shownReason(std::string_view reason) {
    constexpr std::size_t shown = 1000;
    return onOneLine(shortened(reason, shown));
}

}  // namespace

ReadError::ReadError(std::string_view file, Position position, std::string_view reason)
    : std::runtime_error(compose(file, position, shownReason(reason))),
      file_(file),
      position_(position),
      reason_(shownReason(reason)) {}

ReadError::~ReadError() = default;

std::string systemReason(int code) {
    return std::generic_category().message(code);
}

std::string inQuotes(std::string_view text) {
    constexpr std::size_t shown = 100;
    return "'" + shortened(text, shown) + "'";
}

std::string onOneLine(std::string_view text) {
    std::string result(text);
    for (char& character : result) {
        const auto code = static_cast<unsigned char>(character);
        if (code < 0x20U || code == 0x7FU) character = '?';
    }
    return result;
}

}  // namespace nuv::zero::xmi
