#include "xmi/EscapedText.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace nuv::zero::xmi::test {
namespace {

TEST(EscapedText, ATabAndABackslashWithATAreTold) {
    EXPECT_EQ(escaped("a\tb"), "a\\tb");
    EXPECT_EQ(escaped("a\\tb"), "a\\\\tb");
}

TEST(EscapedText, WhatATerminalWouldObeyIsWrittenAsItsNumber) {
    EXPECT_EQ(escaped("\x1b[2J\x7f"), "\\u{1B}[2J\\u{7F}");
    EXPECT_EQ(escaped("\u202E\u2066\u200B\u2028\uFEFF\u0085"),
              "\\u{202E}\\u{2066}\\u{200B}\\u{2028}\\u{FEFF}\\u{85}");
    EXPECT_EQ(escaped("\U000E0041"), "\\u{E0041}");
    EXPECT_EQ(escaped("a\nb\rc"), "a\\nb\\rc");
}

TEST(EscapedText, BytesThatAreNoUtf8AreWrittenAsTheirNumbers) {
    EXPECT_EQ(escaped("a\xff\xc3"), "a\\x{FF}\\x{C3}");
    EXPECT_EQ(escaped("\xed\xa0\x80"), "\\x{ED}\\x{A0}\\x{80}");
    EXPECT_EQ(escaped("\xc0\xaf"), "\\x{C0}\\x{AF}");
}

TEST(EscapedText, WhatPeopleReadStaysAsItIs) {
    EXPECT_EQ(escaped("Größe 高さ 🙂 'a' \"b\" #"), "Größe 高さ 🙂 'a' \"b\" #");
    EXPECT_EQ(unescaped("Größe 高さ 🙂"), "Größe 高さ 🙂");
}

TEST(EscapedText, WhatIsNoEscapeStaysAsItIs) {
    for (const char* text : {"\\", "\\q", "\\u", "\\u{", "\\u{}", "\\u{XY}", "\\x{100}",
                             "\\u{110000}", "\\u{1F", "end\\"}) {
        EXPECT_EQ(unescaped(text), text);
    }
}

TEST(EscapedText, IsUndoneExactly) {
    // Letters of escapes often, any byte now and then.
    constexpr std::string_view letters = "\\\\\\tnrux{}0Ff\t\n";
    std::mt19937 random(1);
    for (int round = 0; round < 20'000; ++round) {
        std::string text;
        for (std::size_t length = random() % 9; length > 0; --length) {
            text += random() % 3 == 0 ? static_cast<char>(random() % 256)
                                      : letters[random() % letters.size()];
        }
        const std::string shown = escaped(text);
        ASSERT_EQ(unescaped(shown), text);
        ASSERT_EQ(shown.find_first_of("\t\n\r\x1b"), std::string::npos);
    }
}

}  // namespace
}  // namespace nuv::zero::xmi::test
