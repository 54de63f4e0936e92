#pragma once

#include <string>
#include <string_view>

namespace nuv::zero::xmi {

/// Text of a model as it may stand in a line of output: nothing in it moves the cursor, ends the
/// line or a field, or changes the direction of writing.
///
/// `\t`, `\n`, `\r` and `\\` stand for themselves; other control, bidirectional, invisible and
/// line-separating characters are written as `\u{202E}`, and bytes that are no UTF-8 as `\x{FF}`.
std::string escaped(std::string_view text);

/// The text that was escaped, exactly. What is no escape stays as it is.
std::string unescaped(std::string_view text);

}  // namespace nuv::zero::xmi
