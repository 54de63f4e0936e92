#pragma once

#include <cstddef>
#include <iosfwd>
#include <string>
#include <vector>

#include "benchmarks/FileModel.h"
#include "benchmarks/Measure.h"

namespace nuv::zero::benchmarks {

/// What reading one file into a model costs, next to the XML parser alone: the same bytes, in the
/// same process, with handlers that do nothing.
struct ReadRow {
    std::string file;
    double megabytes = 0;
    std::size_t objects = 0;
    /// Milliseconds.
    Spread parsing;
    /// Reading the bytes into a model, and destroying that.
    Spread reading;
    /// The second over the first, each in the same round.
    Spread ratio;
    /// The most that the reader holds at once, without what the finished model takes by itself.
    /// What the XML parser takes for itself comes in addition; it does not grow with the file.
    double bytesPerObject = 0;
};

ReadRow measureReading(const ModelFile& file, std::size_t rounds);

void writeTable(std::ostream& out, const std::vector<ReadRow>& rows);

}  // namespace nuv::zero::benchmarks
