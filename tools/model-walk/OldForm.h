#pragma once

#include <string>
#include <vector>

namespace model_walk {

/// Whether the arguments are of the form without a question, `[OPTIONS] METAMODEL... MODEL`: the
/// first is no question and begins with a hyphen or names a file.
bool isOldForm(const std::vector<std::string>& arguments);

/// Answers the form without a question as it was answered before: the model file is read by itself,
/// strictly, elements go by their fragments, and a file that cannot be read gives 1. Says on
/// standard error how it is written now. Returns the exit status.
int runOldForm(const std::vector<std::string>& arguments);

}  // namespace model_walk
