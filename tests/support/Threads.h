#pragma once

#include <cstddef>
#include <latch>
#include <thread>
#include <utility>
#include <vector>

namespace nuv::zero::test {

/// Calls `body(0)` to `body(count - 1)`, each on a thread of its own. None begins before all of
/// them stand ready, so that what they do really happens at the same time.
template <class Body>
void onThreads(std::size_t count, Body&& body) {
    std::latch ready(static_cast<std::ptrdiff_t>(count));
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < count; ++i) {
        threads.emplace_back([&, i] {
            ready.arrive_and_wait();
            body(i);
        });
    }
    for (std::thread& thread : threads) thread.join();
}

}  // namespace nuv::zero::test
