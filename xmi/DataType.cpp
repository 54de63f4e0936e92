#include "xmi/DataType.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "xmi/Fragment.h"

namespace nuv::zero::xmi {
namespace {

bool isInteger(std::string_view text) {
    // How models of models write "without a limit".
    if (text == "*") return true;
    if (text.starts_with('+')) text.remove_prefix(1);
    std::int64_t value = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, code] = std::from_chars(text.data(), end, value);
    return !text.empty() && code == std::errc() && stop == end;
}

bool isBoolean(std::string_view text) {
    // Programs differ in how they write it; XML Schema has the digits as well.
    constexpr std::array<std::string_view, 8> texts = {"true", "false", "True", "False",
                                                       "TRUE", "FALSE", "1",    "0"};
    return std::find(texts.begin(), texts.end(), text) != texts.end();
}

}  // namespace

bool DataType::holds(std::string_view text) const {
    if (kind_ == Kind::Text) return true;
    const std::string_view value = trimmed(text);
    if (kind_ == Kind::Integer) return isInteger(value);
    if (kind_ == Kind::Boolean) return isBoolean(value);
    return std::any_of(literals_.begin(), literals_.end(), [&](const Literal& each) {
        return each.text == value || each.name == value || each.text == text;
    });
}

const std::string* DataType::initialText() const {
    static const std::string zero = "0";
    static const std::string no = "false";
    switch (kind_) {
        case Kind::Integer:
            return &zero;
        case Kind::Boolean:
            return &no;
        case Kind::Enumeration:
            return literals_.empty() ? nullptr : &literals_.front().text;
        case Kind::Text:
            break;
    }
    return nullptr;
}

}  // namespace nuv::zero::xmi
