#include "model/memory/Text.h"

#include <gtest/gtest.h>

#include <string>

namespace nuv::zero::text {
namespace {

const std::string replacement = "\xEF\xBF\xBD";

TEST(TextTest, ConvertsEveryLengthOfSequenceBothWays) {
    const std::u16string utf16 = u"a\u007F\u0080\u07FF\u0800\uFFFF\U00010000\U0010FFFF";
    const std::string utf8 =
        "a\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF\xF0\x90\x80\x80\xF4\x8F\xBF\xBF";
    EXPECT_EQ(toUtf8(utf16), utf8);
    EXPECT_EQ(toUtf16(utf8), utf16);
    EXPECT_EQ(toUtf8(u""), "");
    EXPECT_EQ(toUtf16(""), u"");
    EXPECT_EQ(toUtf8(u"\u00FC\u6F22\U0001F600"), "\xC3\xBC\xE6\xBC\xA2\xF0\x9F\x98\x80");
}

TEST(TextTest, KeepsNullCharacters) {
    EXPECT_EQ(toUtf8(std::u16string(u"a\0b", 3)), std::string("a\0b", 3));
    EXPECT_EQ(toUtf16(std::string("a\0b", 3)), std::u16string(u"a\0b", 3));
}

TEST(TextTest, ReplacesUnpairedSurrogates) {
    const char16_t high = 0xD83D;
    const char16_t low = 0xDE00;
    EXPECT_EQ(toUtf8(std::u16string{high}), replacement) << "at the end";
    EXPECT_EQ(toUtf8(std::u16string{u'a', high, u'b'}), "a" + replacement + "b");
    EXPECT_EQ(toUtf8(std::u16string{low, u'b'}), replacement + "b");
    EXPECT_EQ(toUtf8(std::u16string{low, high}), replacement + replacement) << "swapped";
    EXPECT_EQ(toUtf8(std::u16string{high, high, low}), replacement + "\xF0\x9F\x98\x80");
}

TEST(TextTest, ReplacesEachByteThatBeginsNoValidSequence) {
    const std::u16string one = u"\uFFFD";
    EXPECT_EQ(toUtf16("\x80"), one) << "a continuation byte alone";
    EXPECT_EQ(toUtf16("a\xC3"), u"a" + one) << "cut off at the end";
    EXPECT_EQ(toUtf16("\xE6\xBC"), one + one);
    EXPECT_EQ(toUtf16("\xC3("), one + u"(") << "a wrong second byte";
    EXPECT_EQ(toUtf16("\xC0\x80"), one + one) << "two bytes for a code point of one";
    EXPECT_EQ(toUtf16("\xE0\x80\x80"), one + one + one) << "three bytes for one of one";
    EXPECT_EQ(toUtf16("\xED\xA0\x80"), one + one + one) << "a surrogate";
    EXPECT_EQ(toUtf16("\xF4\x90\x80\x80"), one + one + one + one) << "above the last code point";
    EXPECT_EQ(toUtf16("\xFF"), one);
}

}  // namespace
}  // namespace nuv::zero::text
