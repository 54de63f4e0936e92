#pragma once

#include <cstddef>

namespace nuv::zero::benchmarks {

/// What a stretch of code asked of the heap. The benchmark program replaces the global `operator
/// new` and `operator delete`, for the shared libraries too; they count only between
/// `startCounting` and `stopCounting`, on the thread that started.
struct HeapUse {
    std::size_t allocations = 0;
    /// The highest number of bytes held at once, beyond what was held at the start.
    std::size_t peakBytes = 0;
    /// What is still held at the end; negative when more was freed than taken.
    long long remainingBytes = 0;
};

void startCounting();
HeapUse stopCounting();

/// Brings the heap into the same state for each case: one heap that neither returns memory nor maps
/// blocks by themselves, with more than a case needs, `freeBytes`, free at its top and touched, so
/// that no case pays for page faults or for the one before it.
void settleHeap(std::size_t freeBytes = std::size_t{256} << 20U);

}  // namespace nuv::zero::benchmarks
