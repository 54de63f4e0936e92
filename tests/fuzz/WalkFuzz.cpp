#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <span>

#include "tests/oracle/Comparison.h"

/// The first byte says how long the world is: metamodel, model, and the predicates, filters and
/// failures that callbacks have. What is left is the script: rules, inputs, orders and all that is
/// done with walks. Apart, so that a change of the world leaves the script what it was.
///
/// The engine and the oracle have to agree on everything that can be observed.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using nuv::zero::oracle::ByteChoices;
    if (size == 0) return 0;
    const std::span bytes(data + 1, size - 1);
    const std::size_t worldSize = std::min<std::size_t>(bytes.size(), std::size_t{data[0]} * 4);
    ByteChoices world(bytes.first(worldSize));
    ByteChoices script(bytes.subspan(worldSize));
    const auto outcome = nuv::zero::oracle::compareOnce(world, script);
    if (!outcome.difference.empty()) {
        std::fputs(outcome.difference.c_str(), stderr);
        std::abort();
    }
    return 0;
}
