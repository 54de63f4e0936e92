#include "traversal/support/FlatMap.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <memory>
#include <new>
#include <string>

namespace nuv::zero::traversal::internal {
namespace {

/// A handle of a number, null for 0. Odd families of numbers hash alike on purpose.
struct Number {
    int value = 0;
    explicit operator bool() const noexcept { return value != 0; }
    friend bool operator==(const Number&, const Number&) = default;
};

/// A handle whose hash is the same for all.
struct Colliding {
    int value = 0;
    explicit operator bool() const noexcept { return value != 0; }
    friend bool operator==(const Colliding&, const Colliding&) = default;
};

/// A handle in a slot of its own, as lent handles are.
class Slot {
  public:
    Slot() = default;
    explicit Slot(const Number& number) : number_(number) {}
    const Number& get() const noexcept { return number_; }

  private:
    Number number_;
};

/// How many allocations of values may still succeed.
struct Allowance {
    static inline int left = -1;
    static void take() {
        if (left == 0) throw std::bad_alloc();
        if (left > 0) --left;
    }
};

/// A value whose construction may fail, as that of an array of them does when memory is short.
struct Fragile {
    Fragile() { Allowance::take(); }
    explicit Fragile(int number) : value(number) {}
    Fragile(const Fragile&) = default;
    Fragile& operator=(const Fragile&) = default;
    ~Fragile() = default;
    int value = 0;
};

}  // namespace
}  // namespace nuv::zero::traversal::internal

template <>
struct std::hash<nuv::zero::traversal::internal::Number> {
    std::size_t operator()(const nuv::zero::traversal::internal::Number& key) const noexcept {
        return static_cast<std::size_t>(key.value);
    }
};
template <>
struct std::hash<nuv::zero::traversal::internal::Colliding> {
    std::size_t operator()(const nuv::zero::traversal::internal::Colliding&) const noexcept {
        return 7;
    }
};

namespace nuv::zero::traversal::internal {
namespace {

TEST(FlatMapTest, EmptyMapFindsNothing) {
    const FlatMap<Number, Number, int> map;
    EXPECT_EQ(map.size(), 0U);
    EXPECT_EQ(map.find(Number{1}), nullptr);
    EXPECT_EQ(map.find(Number{}), nullptr);
    EXPECT_FALSE(map.contains(Number{1}));
}

TEST(FlatMapTest, KeepsEveryValueWhileItGrows) {
    FlatMap<Number, Number, int> map;
    constexpr int count = 10000;
    for (int i = 1; i <= count; ++i) {
        EXPECT_EQ(map.insert(Number{i}, i * 3), i * 3);
        ASSERT_EQ(map.size(), static_cast<std::size_t>(i));
        ASSERT_FALSE(map.contains(Number{i + 1}));
    }
    for (int i = 1; i <= count; ++i) {
        ASSERT_NE(map.find(Number{i}), nullptr) << i;
        ASSERT_EQ(*map.find(Number{i}), i * 3);
    }
}

TEST(FlatMapTest, KeysThatHashAlikeAreToldApart) {
    FlatMap<Colliding, Colliding, int> map;
    for (int i = 1; i <= 300; ++i) map.insert(Colliding{i}, -i);
    for (int i = 1; i <= 300; ++i) {
        ASSERT_NE(map.find(Colliding{i}), nullptr) << i;
        ASSERT_EQ(*map.find(Colliding{i}), -i);
    }
    EXPECT_EQ(map.find(Colliding{301}), nullptr);
}

// A framework may hash by address: all low bits alike.
TEST(FlatMapTest, HashesThatDifferInUpperBitsOnlyAreToldApart) {
    FlatMap<Number, Number, int> map;
    for (int i = 1; i <= 1000; ++i) map.insert(Number{i * 65536}, i);
    for (int i = 1; i <= 1000; ++i) ASSERT_EQ(*map.find(Number{i * 65536}), i);
}

TEST(FlatMapTest, NullKeyIsAKeyLikeAnyOther) {
    FlatMap<Number, Number, int> map;
    map.insert(Number{}, 5);
    EXPECT_EQ(map.size(), 1U);
    ASSERT_NE(map.find(Number{}), nullptr);
    EXPECT_EQ(*map.find(Number{}), 5);
    EXPECT_FALSE(map.contains(Number{1}));
    for (int i = 1; i <= 100; ++i) map.insert(Number{i}, i);
    EXPECT_EQ(*map.find(Number{}), 5);
    EXPECT_EQ(map.size(), 101U);
}

TEST(FlatMapTest, CopiesAreIndependent) {
    FlatMap<Number, Number, std::string> original;
    original.insert(Number{1}, "one");
    original.insert(Number{}, "null");
    FlatMap<Number, Number, std::string> copy(original);
    copy.insert(Number{2}, "two");
    *copy.find(Number{1}) = "uno";
    EXPECT_EQ(*original.find(Number{1}), "one");
    EXPECT_FALSE(original.contains(Number{2}));
    original = copy;
    EXPECT_EQ(*original.find(Number{1}), "uno");
    EXPECT_EQ(*original.find(Number{2}), "two");
    EXPECT_EQ(*original.find(Number{}), "null");
}

TEST(FlatMapTest, SlotsMayHoldKeysInAFormOfTheirOwn) {
    FlatMap<Number, Slot, int> map;
    for (int i = 1; i <= 100; ++i) map.insert(Number{i}, i + 1);
    const FlatMap<Number, Slot, int> copy(map);
    for (int i = 1; i <= 100; ++i) EXPECT_EQ(*copy.find(Number{i}), i + 1);
}

TEST(FlatMapTest, ReservingOneKeepsTheReferencesUntilThatInsert) {
    FlatMap<Number, Number, int> map;
    for (int i = 1; i <= 200; ++i) {
        map.reserveOne();
        const int* first = map.find(Number{1});
        map.insert(Number{i}, i);
        if (i > 1) {
            EXPECT_EQ(map.find(Number{1}), first) << "moved by insert " << i;
        }
    }
}

TEST(FlatMapTest, InsertsAtThePlaceWhereTheKeyWasMissed) {
    FlatMap<Number, Number, int> map;
    map.reserveOne();
    const auto place = map.locate(Number{1});
    EXPECT_FALSE(place.isTaken());
    map.insert(Number{1}, 10, place);
    EXPECT_EQ(*map.find(Number{1}), 10);
    EXPECT_TRUE(map.locate(Number{1}).isTaken());
}

TEST(FlatMapTest, PlaceThatAnotherKeyTookMeanwhileIsNotUsed) {
    FlatMap<Colliding, Colliding, int> map;
    map.reserveOne();
    const auto place = map.locate(Colliding{1});
    map.insert(Colliding{2}, 20);
    map.insert(Colliding{1}, 10, place);
    EXPECT_EQ(*map.find(Colliding{1}), 10);
    EXPECT_EQ(*map.find(Colliding{2}), 20);
}

TEST(FlatMapTest, PlaceFromBeforeTheMapGrewIsNotUsed) {
    FlatMap<Number, Number, int> map;
    map.reserveOne();
    const auto place = map.locate(Number{1});
    for (int number = 2; number <= 100; ++number) map.insert(Number{number}, number);
    map.reserveOne();
    map.insert(Number{1}, 10, place);
    for (int number = 2; number <= 100; ++number) ASSERT_EQ(*map.find(Number{number}), number);
    EXPECT_EQ(*map.find(Number{1}), 10);
}

TEST(FlatMapTest, NullKeyHasAPlaceToo) {
    FlatMap<Number, Number, int> map;
    const auto place = map.locate(Number{});
    EXPECT_FALSE(place.isTaken());
    map.insert(Number{}, 7, place);
    EXPECT_TRUE(map.locate(Number{}).isTaken());
}

TEST(FlatMapTest, SharedValuesAreReleasedWithTheMap) {
    const auto value = std::make_shared<int>(1);
    {
        FlatMap<Number, Number, std::shared_ptr<int>> map;
        for (int i = 0; i < 50; ++i) map.insert(Number{i}, value);
        EXPECT_EQ(value.use_count(), 51);
    }
    EXPECT_EQ(value.use_count(), 1);
}

TEST(FlatMapTest, FailureWhileGrowingChangesNothingAndTheInsertCanBeTriedAgain) {
    FlatMap<Number, Number, Fragile> map;
    int next = 1;
    // Up to the insert that has to grow.
    Allowance::left = -1;
    map.insert(Number{}, Fragile(0));
    map.insert(Number{next}, Fragile(next));
    ++next;
    for (Allowance::left = 0; next < 1000;) {
        try {
            map.insert(Number{next}, Fragile(next));
        } catch (const std::bad_alloc&) {
            break;
        }
        ++next;
    }
    ASSERT_LT(next, 1000) << "growing never failed";
    EXPECT_EQ(map.size(), static_cast<std::size_t>(next));
    EXPECT_FALSE(map.contains(Number{next}));
    for (int i = 1; i < next; ++i) ASSERT_EQ(map.find(Number{i})->value, i);

    Allowance::left = -1;
    map.insert(Number{next}, Fragile(next));
    for (int i = 1; i <= next; ++i) ASSERT_EQ(map.find(Number{i})->value, i);
}

}  // namespace
}  // namespace nuv::zero::traversal::internal
