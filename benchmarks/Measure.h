#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "benchmarks/Baselines.h"
#include "benchmarks/Clock.h"
#include "benchmarks/HeapCounter.h"
#include "benchmarks/Walks.h"

namespace nuv::zero::benchmarks {

/// The middle, the least and the greatest of several numbers.
struct Spread {
    double median = 0;
    double least = 0;
    double greatest = 0;
};
Spread spreadOf(std::vector<double> numbers);

/// Something that walks, to be timed against others.
struct Contender {
    std::string name;
    std::function<Checksum()> walk;
    /// What the walk has to sum up to.
    Checksum expected;
    /// Run after the clock has stopped.
    std::function<void()> cleanUp = [] {};
    /// The number of links that the time is shared out over; those that were met when zero.
    std::uint64_t linksToShare = 0;
};

/// What timing several contenders in turn gave: one entry per contender, in their order.
struct Timing {
    /// Nanoseconds per link.
    std::vector<Spread> perLink;
    /// Time per link over the first contender's in the same round.
    std::vector<Spread> ratio;
};

/// Times the contenders one after another, `rounds` times over, each on a settled heap. Throws
/// `std::runtime_error` that names the contender whose checksum is not the expected one.
Timing timeInTurn(const std::vector<Contender>& contenders, std::size_t rounds);

/// What one walk takes from the heap.
HeapUse heapUseOf(const std::function<void()>& work);

}  // namespace nuv::zero::benchmarks
