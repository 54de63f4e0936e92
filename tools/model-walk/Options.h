#pragma once

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "traversal/fwd.h"

namespace model_walk {

/// What the user asked for cannot be done; the text is one line.
class UsageError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

enum class Kind : std::uint8_t { Additive, Composition, Subtractive };
enum class Format : std::uint8_t { Text, Tsv, Count };

/// `Class.property`, or `Class.property=N`.
struct Rule {
    std::string className;
    std::string propertyName;
    nuv::zero::traversal::ResultPolicy policy = nuv::zero::traversal::ResultPolicy::Report;
    /// As it was written, for error texts.
    std::string text;
};

/// The command line.
struct Options {
    std::vector<std::string> metamodelFiles;
    std::string modelFile;
    Kind kind = Kind::Composition;
    nuv::zero::traversal::Algo order = nuv::zero::traversal::Algo::DepthFirstPreOrder;
    std::vector<Rule> traverse;
    std::vector<Rule> prune;
    std::vector<Rule> policies;
    /// Ids or paths; none means all roots.
    std::vector<std::string> from;
    bool pseudoLinks = true;
    nuv::zero::traversal::UniquenessMode uniqueness =
        nuv::zero::traversal::UniquenessMode::NoUniqueness;
    Format format = Format::Text;
    bool skipCrossFile = false;
};

/// The options; nothing when the user asked for a page of help, or for the version, which is then
/// printed. Throws `UsageError`.
std::optional<Options> parseOptions(int argc, const char* const* argv);

}  // namespace model_walk
