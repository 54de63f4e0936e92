#pragma once

#include <cstddef>
#include <iosfwd>
#include <string>
#include <vector>

#include "benchmarks/Measure.h"

namespace nuv::zero::benchmarks {

/// One walk, plain and with one thing more to do each.
struct VariantRow {
    std::string shape;
    Kind kind = Kind::Composition;
    traversal::Algo order = traversal::Algo::DepthFirstPreOrder;
    /// Nanoseconds per link of the plain walk.
    double plainPerLink = 0;
    /// The median times of the variants over the plain walk's, in the order of the table.
    std::vector<double> ratios;
};

/// Eight rules, an idle observer, no pseudo-links, a filter by reference and one by value, unique
/// links, unique elements: each alone, all by the library.
VariantRow measureVariants(const Walk& plain, std::size_t rounds);

/// One line per walk, a column per variant.
void writeTable(std::ostream& out, const std::vector<VariantRow>& rows);

}  // namespace nuv::zero::benchmarks
