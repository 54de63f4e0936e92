#pragma once

#include <string>
#include <string_view>

namespace model_walk {

/// The text as a string of JSON, in its quotes. REQUIRES: it is UTF-8.
///
/// What a terminal would not show is written as `\u202e`, here as everywhere.
std::string inJson(std::string_view text);

/// Reads the string that follows a key in an object of JSON on one line; empty where there is none.
std::string stringBehind(std::string_view object, std::string_view key);

}  // namespace model_walk
