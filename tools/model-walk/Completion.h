#pragma once

#include <string>

namespace model_walk {

/// What bash completes the command with: a script to be sourced.
std::string bashCompletion();

}  // namespace model_walk
