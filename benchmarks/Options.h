#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace nuv::zero::benchmarks {

/// Thrown for command lines that mean nothing; the text is for the user.
class UsageError : public std::invalid_argument {
  public:
    using std::invalid_argument::invalid_argument;
};

/// What the command line asks for. Empty lists mean everything.
struct Options {
    bool help = false;
    /// Google Benchmark is asked instead.
    bool single = false;
    std::size_t rounds = 7;
    std::vector<std::string> sections;
    std::vector<std::string> shapes;
    std::string kind;
    std::string order;
    /// The plot is drawn into this file, and the worst rows of each shape are written into that.
    std::string plot;
    std::string summary;

    bool wants(std::string_view section) const;

    /// Throws `UsageError`.
    static Options parse(const std::vector<std::string>& arguments);
    static std::string_view usage();
};

}  // namespace nuv::zero::benchmarks
