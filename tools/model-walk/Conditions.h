#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "CommandLine.h"
#include "Labels.h"

namespace model_walk {

/// What elements have to be like that `find` looks for. All conditions have to hold.
class Conditions {
  public:
    /// Throws `UsageError` for a class that there is not, an attribute that no class has, and what
    /// is no regular expression. REQUIRES: the labels outlive the conditions.
    Conditions(const CommandLine& line, const Labels& labels);

    bool hold(const nuv::zero::ModelElement& element) const;

  private:
    using Condition = std::function<bool(const nuv::zero::ModelElement&)>;
    std::vector<Condition> conditions_;
};

/// Whether a text fits a pattern, in which `*` stands for any text and `?` for one character.
bool fits(std::string_view text, std::string_view pattern);

}  // namespace model_walk
