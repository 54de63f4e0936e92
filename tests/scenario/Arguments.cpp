#include "tests/scenario/Arguments.h"

#include <charconv>

namespace nuv::zero::scenario {

const Token& Arguments::next() {
    if (empty()) throw Malformed("an argument is missing at the end of the line");
    return tokens_[next_++];
}

const std::string& Arguments::word() {
    const Token& token = next();
    if (token.quoted) throw Malformed("a word is expected in place of " + quoted(token.text));
    return token.text;
}

const std::string& Arguments::text() {
    const Token& token = next();
    if (!token.quoted) throw Malformed("a quoted string is expected in place of " + token.text);
    return token.text;
}

std::int64_t Arguments::integer(std::int64_t least, std::int64_t greatest) {
    const std::string& digits = word();
    std::int64_t value = 0;
    const char* const end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, value);
    const bool isNumber = stop == end && error != std::errc::invalid_argument;
    if (!isNumber) throw Malformed("an integer is expected in place of " + digits);
    if (error != std::errc() || value < least || value > greatest) {
        throw Malformed("the integer " + digits + " is out of range");
    }
    return value;
}

}  // namespace nuv::zero::scenario
