#pragma once

#include <string>
#include <vector>

#include "benchmarks/Measure.h"

namespace nuv::zero::benchmarks {

/// Walks of other libraries over the same model, as contenders; none where the library is not
/// installed. They report elements, not links, and are checked to enter the same elements in the
/// same order; their time per link counts the links that the model has.
std::vector<Contender> llvmContenders(const Walk& walk, const Checksum& expectedElements);
std::vector<Contender> boostContenders(const Walk& walk, const Checksum& expectedElements);

}  // namespace nuv::zero::benchmarks
