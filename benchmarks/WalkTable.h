#pragma once

#include <cstddef>
#include <iosfwd>
#include <limits>
#include <string>
#include <vector>

#include "benchmarks/Measure.h"

namespace nuv::zero::benchmarks {

/// One row: a shape walked in one kind and order, the library against the hand-written loops.
struct WalkRow {
    std::string shape;
    Kind kind = Kind::Composition;
    traversal::Algo order = traversal::Algo::DepthFirstPreOrder;
    std::size_t links = 0;
    Spread walkPerLink;
    Spread flatPerLink;
    Spread ratio;
    /// Hand-written loops with other visited sets, over the same base.
    Spread nodeRatio;
    Spread markRatio;
    double bytesPerElement = 0;
    double allocationsPerElement = 0;
};

/// The limits that a row has to keep; infinite where there is none.
struct Targets {
    double ratio = std::numeric_limits<double>::infinity();
    double bytesPerElement = std::numeric_limits<double>::infinity();
    double allocationsPerElement = std::numeric_limits<double>::infinity();
};
Targets targetsOf(const std::string& shape, traversal::Algo order);

WalkRow measureWalk(const Walk& walk, std::size_t rounds);

/// Writes rows as a Markdown table; what misses its target is set in bold.
void writeTable(std::ostream& out, const std::vector<WalkRow>& rows);

}  // namespace nuv::zero::benchmarks
