#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <span>

#include "tests/oracle/ExplanationComparison.h"
#include "tests/oracle/WhyNotComparison.h"

namespace {

/// Of all that was compared outside of any test.
bool hasFailure() {
    return testing::UnitTest::GetInstance()->ad_hoc_test_result().Failed();
}

}  // namespace

/// The first byte says what is compared, the others are the case: explanations of random rules, or
/// why a random walk has not entered elements.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace nuv::zero::oracle;
    if (size == 0) return 0;
    ByteChoices choices(std::span(data + 1, size - 1));
    if (data[0] % 2 == 0) {
        WhyNotCounts counts;
        compareWhyNot(choices, counts);
    } else {
        CalmCase random(choices);
        const int types = static_cast<int>(random.world().classes.size());
        for (int type = 0; type < types && !hasFailure(); ++type) compareExplanation(random, type);
    }
    if (hasFailure()) {
        std::fputs("the library and the oracle differ\n", stderr);
        std::abort();
    }
    return 0;
}
