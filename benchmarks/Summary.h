#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "benchmarks/WalkTable.h"

namespace nuv::zero::benchmarks {

/// The rows that share their targets, as the worst of them.
struct GroupSummary {
    std::string group;
    /// The row with the highest ratio of each order; null where the order was not measured.
    const WalkRow* preOrder = nullptr;
    const WalkRow* postOrder = nullptr;
    const WalkRow* breadthFirst = nullptr;
    double depthFirstBytes = 0;
    double breadthFirstBytes = 0;
};

/// One for each group, in the order of the rows. The rows have to outlive it.
std::vector<GroupSummary> summarise(const std::vector<WalkRow>& rows);

/// A line per group: the highest ratio and the most bytes, depth-first and breadth-first, each with
/// its target; what misses it is set in bold.
void writeSummary(std::ostream& out, const std::vector<GroupSummary>& groups);

}  // namespace nuv::zero::benchmarks
