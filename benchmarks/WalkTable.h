#pragma once

#include <cstddef>
#include <iosfwd>
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

/// Rows that share their targets: a shape, and for rich one of two classes of kinds.
std::string groupOf(const std::string& shape, Kind kind);

/// The limits that a row has to keep.
struct Targets {
    double ratio;
    double bytesPerElement;
    double allocationsPerElement;
};
Targets targetsOf(const WalkRow& row);

WalkRow measureWalk(const Walk& walk, std::size_t rounds);

/// Writes rows as a Markdown table; what misses its target is set in bold.
void writeTable(std::ostream& out, const std::vector<WalkRow>& rows);

}  // namespace nuv::zero::benchmarks
