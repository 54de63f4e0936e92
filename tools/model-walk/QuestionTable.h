#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "OptionTable.h"

namespace model_walk {

/// What the command can be asked.
enum class Question : std::uint8_t {
    Info,
    Find,
    Contents,
    Depends,
    Incoming,
    Path,
    Near,
    Impact,
    Walk,
    Why,
    WhyNot,
    Explain,
    Check,
    Resolve,
    Findings,
};

struct Example {
    std::string_view command;
    std::string_view meaning;
};

struct QuestionEntry {
    Question id;
    std::string_view name;
    /// A line without a full stop.
    std::string_view summary;
    /// Behind the name and the options.
    std::string_view operands;
    std::string_view description;
    std::span<const Option> options;
    /// Whether it takes the rules of walks, besides what all questions take.
    bool hasRules;
    std::span<const Example> examples;
};

namespace table {

std::span<const QuestionEntry> questions();
const QuestionEntry& entryOf(Question question);
/// Null where there is no question of that name.
const QuestionEntry* questionNamed(std::string_view name);
/// Whether a question takes an option.
bool takes(const QuestionEntry& question, Option option);

}  // namespace table
}  // namespace model_walk
