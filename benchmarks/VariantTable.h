#pragma once

#include <cstddef>
#include <iosfwd>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "benchmarks/Measure.h"

namespace nuv::zero::benchmarks {

/// One walk, plain and with one thing more to do each.
struct VariantRow {
    std::string shape;
    Kind kind = Kind::Composition;
    traversal::Algo order = traversal::Algo::DepthFirstPreOrder;
    /// Nanoseconds per link of the plain walk.
    double plainPerLink = 0;
    /// The median times of the variants over the plain walk's, in the order of the table.
    std::vector<double> ratios;
    /// What each of them takes of the heap besides, per element entered.
    std::vector<double> moreBytes;
};

/// A walk with one thing more to do.
struct Variant {
    std::string_view name;
    /// The most that its time is meant to be over the plain walk's.
    double target;
    void (*change)(Walk& walk);
};

/// Eight rules, an idle observer, no pseudo-links, a filter by reference and one by value, unique
/// links, unique elements.
std::span<const Variant> everydayVariants();
/// Where the walk stands asked for at each link, and what is attached and changes nothing: a
/// boundary, a limit, remembered paths, steps of a thousand, a listener; and the listener that
/// counts.
std::span<const Variant> whereaboutsVariants();

/// Each of the variants alone, all by the library.
VariantRow measureVariants(const Walk& plain, std::span<const Variant> variants,
                           std::size_t rounds);

/// One line per walk, a column per variant: how much longer it takes and, in parentheses, the bytes
/// besides, where there are any.
void writeTable(std::ostream& out, const std::vector<VariantRow>& rows,
                std::span<const Variant> variants);

}  // namespace nuv::zero::benchmarks
