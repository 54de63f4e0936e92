#pragma once

#include <string>
#include <string_view>

#include "CommandLine.h"

namespace model_walk {

/// What standard output can show.
class Terminal {
  public:
    /// What the option asks for; by default colour on a terminal, unless NO_COLOR is set.
    explicit Terminal(const CommandLine& line);
    /// Without colour.
    Terminal() = default;

    enum class Part { Class, Name, Property, Address, Title };
    /// The text, in the colour of what it says.
    std::string in(Part part, std::string_view text) const;
    bool isColoured() const noexcept { return isColoured_; }

  private:
    bool isColoured_ = false;
};

}  // namespace model_walk
