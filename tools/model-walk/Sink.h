#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>

namespace model_walk {

/// The answer cannot be written; the text is one line.
class WriteError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// Writes whole lines to standard output, in pieces: what has been printed when the command is
/// interrupted ends at the end of a line.
///
/// A reader that has gone away ends the process as it ends other commands, without a word. Any
/// other failure throws `WriteError`.
class Sink {
  public:
    /// Makes an interruption wait for the end of the line that is under way.
    Sink();

    void line(std::string_view text);
    void flush();

  private:
    std::size_t pieceSize_;
    std::string buffer_;
};

}  // namespace model_walk
