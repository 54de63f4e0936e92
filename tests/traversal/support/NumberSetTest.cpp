#include "traversal/support/NumberSet.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>
#include <set>
#include <vector>

namespace nuv::zero::traversal::internal {
namespace {

using Numbers = std::vector<std::uint64_t>;

/// A series of numbers, and how it is called.
struct Series {
    const char* name;
    std::uint64_t (*number)(std::uint64_t index);
};

std::uint64_t scattered(std::uint64_t index) {
    // Any odd factor gives each number once.
    return index * 0xD6E8FEB86659FD93U;
}

/// The set beside one of the standard library.
class NumberSetTest : public testing::TestWithParam<Series> {
  protected:
    static constexpr std::uint64_t count = 5000;

    static std::uint64_t number(std::uint64_t index) { return GetParam().number(index); }

    NumberSet numbers;
    std::set<std::uint64_t> expected;
};

TEST_P(NumberSetTest, InsertSaysWhatIsNewAndContainsWhatIsThere) {
    std::mt19937_64 random(7);
    for (std::uint64_t turn = 0; turn < 2 * count; ++turn) {
        const std::uint64_t chosen = number(random() % count);
        EXPECT_EQ(numbers.contains(chosen), expected.count(chosen) != 0);
        EXPECT_EQ(numbers.insert(chosen), expected.insert(chosen).second);
        EXPECT_EQ(numbers.size(), expected.size());
    }
    for (std::uint64_t index = 0; index < count; ++index) {
        EXPECT_EQ(numbers.contains(number(index)), expected.count(number(index)) != 0);
    }
}

TEST_P(NumberSetTest, CopyIsIndependent) {
    for (std::uint64_t index = 0; index < count; index += 2) numbers.insert(number(index));
    NumberSet copy(numbers);
    EXPECT_EQ(copy.size(), numbers.size());
    for (std::uint64_t index = 1; index < count; index += 2) {
        EXPECT_TRUE(copy.insert(number(index)));
        EXPECT_FALSE(numbers.contains(number(index)));
    }
    for (std::uint64_t index = 0; index < count; index += 2) {
        EXPECT_TRUE(copy.contains(number(index)));
        EXPECT_TRUE(numbers.contains(number(index)));
    }
}

INSTANTIATE_TEST_SUITE_P(
    Series, NumberSetTest,
    testing::Values(Series{"Neighbours", [](std::uint64_t index) { return index; }},
                    Series{"NeighboursAtTheEnd",
                           [](std::uint64_t index) {
                               return std::numeric_limits<std::uint64_t>::max() - index;
                           }},
                    Series{"EveryThird", [](std::uint64_t index) { return 1000 + 3 * index; }},
                    Series{"SevenToALine",
                           [](std::uint64_t index) { return index / 7 * 512 + index % 7 * 73; }},
                    Series{"EightToALine",
                           [](std::uint64_t index) { return index / 8 * 512 + index % 8; }},
                    Series{"OneToALine", [](std::uint64_t index) { return index * 512 + 511; }},
                    Series{"PowersApart", [](std::uint64_t index) { return index << 40U; }},
                    Series{"Scattered", scattered}),
    [](const auto& each) { return each.param.name; });

// A copy that miscounts what it has looks for ever for what is missing, once it is full.
TEST(FullNumberSetTest, CopyGrowsAsItsOriginalDoes) {
    constexpr std::uint64_t apart = 1000;
    for (std::uint64_t count = 1; count < 40; ++count) {
        NumberSet numbers;
        for (std::uint64_t index = 0; index < count; ++index) numbers.insert(index * apart);
        NumberSet copy(numbers);
        for (std::uint64_t index = count; index < 3 * count; ++index) {
            EXPECT_FALSE(copy.contains(index * apart));
            EXPECT_TRUE(copy.insert(index * apart));
        }
        EXPECT_EQ(copy.size(), 3 * count);
    }
}

TEST(NumberSetOfNothingTest, EmptySetAndItsCopyContainNothing) {
    NumberSet numbers;
    NumberSet copy(numbers);
    for (const std::uint64_t number : {std::uint64_t{0}, ~std::uint64_t{0}}) {
        EXPECT_FALSE(numbers.contains(number));
        EXPECT_FALSE(copy.contains(number));
        EXPECT_TRUE(copy.insert(number));
        EXPECT_TRUE(copy.contains(number));
    }
    EXPECT_EQ(numbers.size(), 0U);
}

}  // namespace
}  // namespace nuv::zero::traversal::internal
