#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "tests/oracle/Comparison.h"

/// Bytes decide on a metamodel, a model, rules and a script of walks; the engine and the oracle
/// have to agree on everything that can be observed.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    nuv::zero::oracle::ByteChoices choices({data, size});
    const auto outcome = nuv::zero::oracle::compareOnce(choices);
    if (!outcome.difference.empty()) {
        std::fputs(outcome.difference.c_str(), stderr);
        std::abort();
    }
    return 0;
}
