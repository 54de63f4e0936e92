#pragma once

#include <iosfwd>
#include <vector>

#include "benchmarks/WalkTable.h"

namespace nuv::zero::benchmarks {

/// Draws the rows as an SVG picture: one bar per row with the library's time over the flat-set
/// loop's, its range, its target, and the other hand-written loops as dots.
void drawPlot(std::ostream& out, const std::vector<WalkRow>& rows);

}  // namespace nuv::zero::benchmarks
