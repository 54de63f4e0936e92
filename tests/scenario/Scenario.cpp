#include "tests/scenario/Scenario.h"

#include <string_view>
#include <utility>

namespace nuv::zero::scenario {

namespace {

bool isBlank(char character) {
    return character == ' ' || character == '\t';
}

/// Reads the tokens of one line.
class Tokenizer {
  public:
    explicit Tokenizer(std::string_view line) : line_(line) {}

    std::vector<Token> tokens() {
        std::vector<Token> tokens;
        for (skipBlanks(); !atEnd(); skipBlanks()) {
            tokens.push_back(line_[next_] == '"' ? string() : word());
        }
        return tokens;
    }

  private:
    bool atEnd() const { return next_ == line_.size(); }
    void skipBlanks() {
        while (!atEnd() && isBlank(line_[next_])) ++next_;
    }

    Token word() {
        Token token;
        for (; !atEnd() && !isBlank(line_[next_]); ++next_) {
            if (line_[next_] == '"') throw Malformed("a quote stands inside a word");
            token.text += line_[next_];
        }
        return token;
    }

    Token string() {
        Token token{"", true};
        for (++next_; !atEnd(); ++next_) {
            char character = line_[next_];
            if (character == '"') {
                ++next_;
                if (!atEnd() && !isBlank(line_[next_])) {
                    throw Malformed("a string has to be followed by a blank");
                }
                return token;
            }
            if (character == '\\') {
                ++next_;
                character = atEnd() ? '\0' : line_[next_];
                if (character != '"' && character != '\\') {
                    throw Malformed("a backslash escapes only a quote or a backslash");
                }
            }
            token.text += character;
        }
        throw Malformed("a string has no closing quote");
    }

    std::string_view line_;
    std::size_t next_ = 0;
};

/// The text behind `#=`, which one blank separates from it.
std::string expectedText(std::string_view comment) {
    comment.remove_prefix(2);
    if (!comment.empty() && comment.front() == ' ') comment.remove_prefix(1);
    return std::string(comment);
}

}  // namespace

Scenario readScenario(std::istream& input, const std::string& file) {
    Scenario scenario;
    scenario.file = file;
    std::string text;
    for (std::size_t number = 1; std::getline(input, text); ++number) {
        std::string_view line = text;
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
        while (!line.empty() && isBlank(line.front())) line.remove_prefix(1);
        if (line.empty()) continue;
        if (line.front() == '#') {
            if (line.substr(0, 2) == "#=") scenario.expected.push_back(expectedText(line));
            continue;
        }
        try {
            scenario.statements.push_back({number, Tokenizer(line).tokens()});
        } catch (const Malformed& reason) {
            throw ScenarioError(file, number, reason.what());
        }
    }
    return scenario;
}

std::string quoted(const std::string& text) {
    std::string result = "\"";
    for (const char character : text) {
        if (character == '"' || character == '\\') result += '\\';
        result += character;
    }
    return result + '"';
}

}  // namespace nuv::zero::scenario
