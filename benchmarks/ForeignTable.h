#pragma once

#include <cstddef>
#include <iosfwd>
#include <string>
#include <vector>

#include "benchmarks/Measure.h"

namespace nuv::zero::benchmarks {

/// One walk by this library and by others over the same model.
struct ForeignRow {
    struct Cell {
        std::string contender;
        /// The median of its time over that of the hand-written loop with a flat set, whether the
        /// contender reports links or elements.
        double ratio = 0;
    };
    std::string shape;
    traversal::Algo order = traversal::Algo::DepthFirstPreOrder;
    std::vector<Cell> cells;
};

/// This library is the first cell. No cells where no other library is installed.
ForeignRow measureForeign(const Walk& walk, std::size_t rounds);

/// One line per walk, a column per contender.
void writeTable(std::ostream& out, const std::vector<ForeignRow>& rows);

}  // namespace nuv::zero::benchmarks
