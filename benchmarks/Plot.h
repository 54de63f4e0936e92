#pragma once

#include <iosfwd>
#include <vector>

#include "benchmarks/Summary.h"

namespace nuv::zero::benchmarks {

/// Draws the groups as an SVG picture of two halves, pre-order and breadth-first: for each group
/// the time per link of the library and of the hand-written loop as bars, the library's target as a
/// mark, and the ratio as a number. Of the kinds of a group, the one with the highest ratio.
///
/// The picture has a background of its own, dark where the reader prefers that.
void drawPlot(std::ostream& out, const std::vector<GroupSummary>& groups);

}  // namespace nuv::zero::benchmarks
