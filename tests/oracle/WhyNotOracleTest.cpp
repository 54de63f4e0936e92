#include <gtest/gtest.h>

#include <cstdint>

#include "tests/oracle/WhyNotComparison.h"

/// Why random walks have not entered elements, compared with all links of the world.
namespace nuv::zero::oracle {
namespace {

using traversal::Obstacle;

TEST(WhyNotOracleTest, EveryLinkFromWhatWasEnteredIsFoundTheNearestFirst) {
    WhyNotCounts counts;
    for (std::uint32_t seed = 1; seed <= 2000; ++seed) {
        RandomChoices choices(seed);
        compareWhyNot(choices, counts);
        ASSERT_FALSE(HasFailure()) << "seed " << seed;
    }
    EXPECT_GE(counts.met[Obstacle::Rules], 300);
    EXPECT_GE(counts.met[Obstacle::Boundary], 200);
    EXPECT_GE(counts.unreferred, 300);
}

}  // namespace
}  // namespace nuv::zero::oracle
