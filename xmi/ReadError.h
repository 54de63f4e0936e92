#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

namespace nuv::zero::xmi {

/// A place in a text file; lines and columns count from 1. Line 0 means the file as a whole.
struct Position {
    std::uint32_t line = 0;
    std::uint32_t column = 0;
};

/// Why a file could not be read. `what()` is one line, `file:line:column: reason`, or
/// `file: reason` where no place in the file is to blame.
class ReadError : public std::runtime_error {
  public:
    ReadError(std::string_view file, Position position, std::string_view reason);
    ReadError(const ReadError&) = default;
    ReadError& operator=(const ReadError&) = default;
    ~ReadError() override;

    const std::string& file() const noexcept { return file_; }
    Position position() const noexcept { return position_; }
    const std::string& reason() const noexcept { return reason_; }

  private:
    std::string file_;
    Position position_;
    std::string reason_;
};

/// What the system says of a failure, whose code is that of `errno`.
std::string systemReason(int code);

/// Text of a file in apostrophes, as error texts show it: cut when it is long.
std::string inQuotes(std::string_view text);

/// The text with every control character replaced, so that it stays on one line of a terminal.
std::string onOneLine(std::string_view text);

}  // namespace nuv::zero::xmi
