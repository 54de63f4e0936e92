#pragma once

#include <cstddef>
#include <iosfwd>
#include <string>
#include <vector>

#include "benchmarks/Measure.h"

namespace nuv::zero::benchmarks {

/// A walk with something more to do, against the same walk without.
struct VariantRow {
    std::string variant;
    std::string shape;
    Kind kind = Kind::Composition;
    traversal::Algo order = traversal::Algo::DepthFirstPreOrder;
    /// Nanoseconds per link of the plain walk.
    Spread perLink;
    /// The time of the walk over the plain one's, both by the library.
    Spread ratio;
    double target = 0;
};

/// Eight rules, an idle observer, no pseudo-links, unique links, unique elements: each alone.
std::vector<VariantRow> measureVariants(const Walk& plain, std::size_t rounds);

void writeTable(std::ostream& out, const std::vector<VariantRow>& rows);

}  // namespace nuv::zero::benchmarks
