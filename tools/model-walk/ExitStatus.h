#pragma once

#include <array>
#include <string_view>

namespace model_walk {

/// How the command ends.
enum class ExitStatus : int {
    Answered = 0,
    NothingFound = 1,
    WrongUsage = 2,
    Incomplete = 3,
    Unreadable = 4,
    Unwritable = 5,
};

struct StatusEntry {
    ExitStatus status;
    std::string_view meaning;
};

/// The one table of them, for all pages.
inline constexpr std::array<StatusEntry, 6> exitStatuses = {{
    {ExitStatus::Answered, "answered"},
    {ExitStatus::NothingFound, "nothing found"},
    {ExitStatus::WrongUsage, "the command line is wrong, or its rules can never match"},
    {ExitStatus::Incomplete,
     "answered as far as the model is loaded, but something unresolved may belong to this answer"},
    {ExitStatus::Unreadable, "the model, a metamodel or a root cannot be read"},
    {ExitStatus::Unwritable, "the answer cannot be written"},
}};

}  // namespace model_walk
