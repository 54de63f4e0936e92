#pragma once

#include <cstddef>
#include <vector>

#include "benchmarks/Figures.h"

namespace nuv::zero::benchmarks {

/// What the in-memory model itself costs: bytes, building, destroying.
std::vector<Figure> measureModel(std::size_t rounds);

}  // namespace nuv::zero::benchmarks
