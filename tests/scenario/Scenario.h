#pragma once

#include <cstddef>
#include <istream>
#include <stdexcept>
#include <string>
#include <vector>

namespace nuv::zero::scenario {

/// A scenario that cannot be read or run: the reason, without the place.
class Malformed : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// The same with its place, ready to be shown: `file:line: reason`.
class ScenarioError : public std::runtime_error {
  public:
    ScenarioError(const std::string& file, std::size_t line, const std::string& reason)
        : std::runtime_error(file + ":" + std::to_string(line) + ": " + reason) {}
};

/// A bare word, or the content of a quoted string.
struct Token {
    std::string text;
    bool quoted = false;
};

struct Statement {
    std::size_t line = 0;
    /// At least one; the first is the statement's name.
    std::vector<Token> tokens;
};

struct Scenario {
    std::string file;
    std::vector<Statement> statements;
    /// The transcript that the file says the statements give.
    std::vector<std::string> expected;
};

/// Splits a scenario into statements. Throws `ScenarioError`.
Scenario readScenario(std::istream& input, const std::string& file);

/// A string as scenarios and transcripts write it.
std::string quoted(const std::string& text);

}  // namespace nuv::zero::scenario
