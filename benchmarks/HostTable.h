#pragma once

#include <cstddef>
#include <iosfwd>
#include <string>
#include <vector>

#include "benchmarks/Measure.h"

namespace nuv::zero::benchmarks {

/// Walks of one shape over the model of a host whose handles are {store, number}, by the library
/// compiled against that host, next to the same walks over the built-in model.
struct HostRow {
    std::string shape;
    /// The host's time over the built-in model's, in the same round; in the order of `allOrders`.
    std::vector<Spread> ratios;
};

/// Subtractive walks in every order. The host's program works in turn with this one. Throws
/// `std::runtime_error` when the host's walk meets other links.
HostRow measureHost(const Shape& shape, std::size_t rounds);

void writeTable(std::ostream& out, const std::vector<HostRow>& rows);

}  // namespace nuv::zero::benchmarks
