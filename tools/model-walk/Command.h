#pragma once

#include <string>
#include <vector>

namespace model_walk {

/// Answers a command line, without the name of the program; returns the exit status.
int run(const std::vector<std::string>& arguments);

}  // namespace model_walk
