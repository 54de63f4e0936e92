#pragma once

#include <cstddef>
#include <iosfwd>
#include <string>
#include <vector>

#include "benchmarks/Measure.h"

namespace nuv::zero::benchmarks {

/// A walk by another library over the same model, against the hand-written loop with a flat set.
struct ForeignRow {
    std::string contender;
    std::string shape;
    Kind kind = Kind::Composition;
    traversal::Algo order = traversal::Algo::DepthFirstPreOrder;
    /// Nanoseconds per link of the model, whether the contender reports links or elements.
    Spread perLink;
    Spread ratio;
};

/// This library is the first row. Empty when no other library is installed.
std::vector<ForeignRow> measureForeign(const Walk& walk, std::size_t rounds);

void writeTable(std::ostream& out, const std::vector<ForeignRow>& rows);

}  // namespace nuv::zero::benchmarks
