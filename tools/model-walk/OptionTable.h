#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace model_walk {

enum class Option : std::uint8_t {
    // Loading
    Metamodel,
    Root,
    Roots,
    Prefix,
    Namespace,
    Load,
    Model,
    ExpectUnresolved,
    SkipCrossFile,
    Limit,
    Threads,
    // Answering
    Format,
    Attributes,
    ShowFindings,
    Color,
    Progress,
    Quiet,
    // Rules
    Kind,
    Traverse,
    Prune,
    Policy,
    From,
    Order,
    Unique,
    PseudoLinks,
    UpTo,
    // Pictures
    Nodes,
    Clusters,
    NoMerge,
    // Of single questions
    Class,
    Exactly,
    Name,
    Where,
    Within,
    Outside,
    Inside,
    Property,
    Undirected,
    Steps,
    FromFile,
    Reason,
    // Of all
    Help,
    Version,
};

/// A word that an option takes, and what it means.
struct Choice {
    std::string_view word;
    std::string_view meaning;
};

struct OptionEntry {
    Option id;
    /// As the parser wants them: `-f,--format`.
    std::string_view names;
    /// What its value is called; empty for a flag.
    std::string_view value;
    bool mayBeRepeated;
    std::string_view help;
    /// The words that it takes, the first by default; none where it takes any.
    std::span<const Choice> choices;
};

/// Options that several questions share, with a page of help of their own.
struct GroupEntry {
    std::string_view name;
    std::string_view title;
    std::span<const Option> options;
};

/// All that the parser, the pages of help, the manual page and the completion are made of, with the
/// table of questions.
namespace table {

std::span<const OptionEntry> options();
const OptionEntry& entryOf(Option option);
/// The longest name: `--format`.
std::string_view nameOf(Option option);

/// What all questions take, and what walks take besides.
const GroupEntry& loading();
const GroupEntry& answering();
const GroupEntry& rules();
std::span<const GroupEntry* const> groups();
/// Null where there is no group of that name.
const GroupEntry* groupNamed(std::string_view name);

}  // namespace table
}  // namespace model_walk
