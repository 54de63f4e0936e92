#pragma once

#include <stdexcept>

namespace model_walk {

/// What the user asked for cannot be done; the text is one line.
class UsageError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

}  // namespace model_walk
