#include "xmi/TextTable.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <utility>

#include "xmi/KeyedHash.h"

namespace nuv::zero::xmi {
namespace {

TEST(TextTable, EqualTextsHaveOneNumberInTheOrderInWhichTheyCame) {
    TextTable table;
    EXPECT_EQ(table.find("a"), TextTable::none);
    EXPECT_EQ(table.add("a"), std::pair(TextTable::Number{0}, true));
    EXPECT_EQ(table.add(""), std::pair(TextTable::Number{1}, true));
    EXPECT_EQ(table.add("a"), std::pair(TextTable::Number{0}, false));
    EXPECT_EQ(table.find(""), 1U);
    EXPECT_EQ(table.find("b"), TextTable::none);
    EXPECT_EQ(table.size(), 2U);
    EXPECT_EQ(table[0], "a");
}

TEST(TextTable, KeepsManyTextsOfAnyLengthAndStaysUsableWhenMoved) {
    TextTable table;
    const auto text = [](std::size_t i) { return std::to_string(i) + std::string(i % 3000, 'x'); };
    for (std::size_t i = 0; i < 5'000; ++i) table.add(text(i));
    const char* const first = table[0].data();
    const TextTable moved = std::move(table);
    EXPECT_EQ(moved[0].data(), first);
    for (TextTable::Number i = 0; i < 5'000; ++i) {
        ASSERT_EQ(moved.find(text(i)), i);
        ASSERT_EQ(moved[i], text(i));
    }
    EXPECT_EQ(moved.find(text(5'000)), TextTable::none);
}

TEST(KeyedHash, DependsOnEveryByteAndOnTheLength) {
    const KeyedHash hash;
    std::set<std::uint64_t> seen;
    std::size_t texts = 0;
    for (std::size_t length = 0; length < 20; ++length) {
        std::string text(length, 'a');
        seen.insert(hash(text));
        ++texts;
        for (std::size_t i = 0; i < length; ++i) {
            text[i] = 'b';
            seen.insert(hash(text));
            ++texts;
            text[i] = 'a';
        }
    }
    EXPECT_EQ(seen.size(), texts);
    EXPECT_EQ(KeyedHash()("a"), hash("a"));
}

}  // namespace
}  // namespace nuv::zero::xmi
