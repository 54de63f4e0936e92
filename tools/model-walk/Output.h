#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>

#include "Names.h"
#include "Options.h"
#include "traversal/Traversal.h"

namespace model_walk {

/// Writes to standard output, in large pieces. Throws `std::runtime_error` when that fails.
class Sink {
  public:
    void line(std::string_view text);
    void flush();

  private:
    std::string buffer_;
};

/// Prints the links of a result in one of the formats.
class Output {
  public:
    /// All have to outlive the output.
    Output(const Names& names, const nuv::zero::xmi::LoadedModel& model, Sink& sink);

    void print(const std::shared_ptr<nuv::zero::traversal::TraversalResult>& result, Format format);

    /// A link as `dumpLink` prints it. Where the name of an element is not one text, and `dumpLink`
    /// could not print it, its identity stands in place of the name.
    std::string textLine(const nuv::zero::traversal::Link& link);
    /// Source, property, target, cascade. A pseudo-link has no source, and `[pseudo]` as property.
    std::string tsvLine(const nuv::zero::traversal::Link& link) const;

  private:
    using Link = nuv::zero::traversal::Link;

    void printCounts(const std::shared_ptr<nuv::zero::traversal::TraversalResult>& result);
    std::string element(const nuv::zero::ModelElement& element);
    /// Whether elements of the class can be printed by their names.
    bool hasPrintableName(const nuv::zero::meta::Class& type);

    const Names& names_;
    const nuv::zero::xmi::LoadedModel& model_;
    Sink& sink_;
    std::unordered_map<nuv::zero::meta::Class, bool> printableNames_;
};

}  // namespace model_walk
