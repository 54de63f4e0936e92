#pragma once

#include <string>
#include <string_view>

namespace nuv::zero::xmi {

/// Puts a text of UTF-8 into a string of UTF-16 that is used again and again, as `text::toUtf16`
/// converts it. Fast for the part in front of the first character beyond ASCII.
void assignUtf16(std::u16string& to, std::string_view text);

/// The reverse.
void assignUtf8(std::string& to, std::u16string_view text);

}  // namespace nuv::zero::xmi
