#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "QuestionTable.h"

namespace model_walk {

/// The page that lists the questions.
std::string helpPage();
/// The page of one question.
std::string helpPage(const QuestionEntry& question);
/// The page of a group of options.
std::string helpPage(const GroupEntry& group);

/// The text in lines of so many characters at most, all but the first behind so many blanks.
std::string wrapped(std::string_view text, std::size_t indent, std::size_t width = 96);

}  // namespace model_walk
