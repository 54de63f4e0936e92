#include <gtest/gtest.h>

#include <map>
#include <string>

#include "model/memory/Text.h"

namespace nuv::zero::text {
namespace {

/// Longer forms of the encoding were given up long ago, and what follows would complete them.
TEST(InvalidUtf8Test, BytesThatBeginNoSequenceAnyMoreAreReplacedWhateverFollows) {
    const std::u16string four(4, u'\uFFFD');
    std::map<int, std::u16string> decoded;
    std::map<int, std::u16string> expected;
    for (int first = 0xF5; first <= 0xFF; ++first) {
        decoded[first] = toUtf16(static_cast<char>(first) + std::string("\x80\x80\x80"));
        expected[first] = four;
    }
    EXPECT_EQ(decoded, expected);
}

}  // namespace
}  // namespace nuv::zero::text
