#pragma once

#include <cstddef>
#include <initializer_list>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "QuestionTable.h"

namespace model_walk {

/// A question with its options and operands, as a user has given them.
///
///     const CommandLine line(table::entryOf(Question::Find), {"drone.xmi", "--class", "Block"});
///     line.values(Option::Class);     // Block
class CommandLine {
  public:
    /// Throws `UsageError` for options that the question does not have and for words that an option
    /// does not know.
    CommandLine(const QuestionEntry& question, const std::vector<std::string>& arguments);

    Question question() const noexcept { return question_->id; }
    const QuestionEntry& entry() const noexcept { return *question_; }
    const std::vector<std::string>& operands() const noexcept { return operands_; }
    void addOperand(std::string operand) { operands_.push_back(std::move(operand)); }

    bool has(Option option) const { return values_.contains(option); }
    /// As often as it was given; nothing for a flag.
    const std::vector<std::string>& values(Option option) const;
    /// The last one, which wins; else the first word that the option knows, else nothing.
    std::string value(Option option) const;
    /// A number, where the option was given. Throws `UsageError` for any other text.
    std::optional<std::size_t> number(Option option) const;
    /// The values at commas.
    std::vector<std::string> list(Option option) const;
    /// What a word stands for. REQUIRES: the choices are those of the table.
    template <class Value>
    Value choice(Option option,
                 std::initializer_list<std::pair<std::string_view, Value>> choices) const {
        const std::string word = value(option);
        for (const auto& [name, meaning] : choices) {
            if (name == word) return meaning;
        }
        return choices.begin()->second;
    }

  private:
    void parse(const std::vector<std::string>& arguments);
    void checkWords() const;

    const QuestionEntry* question_;
    std::map<Option, std::vector<std::string>> values_;
    std::vector<std::string> operands_;
};

}  // namespace model_walk
