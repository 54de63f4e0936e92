#pragma once

#include <string>

namespace model_walk {

/// The manual page, in the language of `man`.
std::string manPage();

}  // namespace model_walk
