#include "xmi/GzipSource.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "tests/xmi/FolderTree.h"
#include "tests/xmi/ReaderFixture.h"
#include "tests/xmi/ZipBuilder.h"
#include "xmi/FileRoots.h"
#include "xmi/TextFiles.h"

namespace nuv::zero::xmi::test {
namespace {

constexpr std::size_t noLimit = std::size_t{1} << 30U;

GzipSource sourceOf(std::string bytes, std::size_t limit = noLimit) {
    return GzipSource(
        "m.xmi",
        std::make_unique<TextSource>(std::make_shared<const std::string>(std::move(bytes))), limit);
}

/// Longer than what goes in and what comes out at once, also when it is compressed.
std::string longText() {
    std::string text;
    std::uint32_t random = 1;
    while (text.size() < 500'000) {
        random = random * 1'664'525U + 1'013'904'223U;
        text += static_cast<char>('a' + (random >> 27U));
    }
    return text;
}

TEST(GzipSource, InflatesWhatIsCompressedAndLeavesTheRest) {
    for (const std::string& text :
         {longText(), std::string(1'000'000, ' '), std::string("<a/>"), std::string()}) {
        GzipSource packed = sourceOf(gzipped(text));
        EXPECT_EQ(packed.size(), text.size());
        EXPECT_EQ(contentOf(packed), text);
        GzipSource plain = sourceOf(text);
        EXPECT_EQ(contentOf(plain), text);
    }
    for (const char* const other : {"\x1F", "\x1F\x8C", "\x8B\x1F"}) {
        GzipSource plain = sourceOf(other);
        EXPECT_EQ(contentOf(plain), other);
    }
}

TEST(GzipSource, IsReadFromAnyPlace) {
    const std::string text = longText();
    GzipSource source = sourceOf(gzipped(text));
    for (const std::size_t from : {std::size_t{70'000}, std::size_t{3}, text.size(), noLimit}) {
        std::string piece(50, '?');
        piece.resize(source.read(from, piece.data(), piece.size()));
        EXPECT_EQ(piece, from > text.size() ? "" : text.substr(from, 50)) << from;
    }
}

TEST(GzipSource, PartsStandBehindEachOther) {
    GzipSource source = sourceOf(gzipped("one ") + gzipped("") + gzipped(longText()));
    EXPECT_EQ(contentOf(source), "one " + longText());
}

TEST(GzipSource, CountsWhatComesOut) {
    const std::string packed = gzipped(std::string(10'000'000, ' '));
    EXPECT_LT(packed.size(), 20'000U);
    GzipSource enough = sourceOf(packed, 10'000'000);
    EXPECT_EQ(enough.size(), 10'000'000U);
    for (const std::size_t limit : {std::size_t{9'999'999}, std::size_t{100}, std::size_t{0}}) {
        GzipSource tooLittle = sourceOf(packed, limit);
        EXPECT_EQ(errorOf([&] { tooLittle.size(); }),
                  "m.xmi: is compressed by gzip and inflates to more than " +
                      std::to_string(limit) + " bytes");
    }
}

TEST(GzipSource, WhatIsCutOffIsSaidToBeSo) {
    const std::string packed = gzipped("<a>some text</a>");
    for (std::size_t size = 2; size < packed.size(); ++size) {
        GzipSource source = sourceOf(packed.substr(0, size));
        for (int i = 0; i < 2; ++i) {
            EXPECT_EQ(errorOf([&] { source.size(); }),
                      "m.xmi: is compressed by gzip and is cut off")
                << size;
        }
    }
}

TEST(GzipSource, WhatIsDamagedIsNeverTakenForWhole) {
    const std::string text = "<a>some text and some more text</a>";
    const std::string packed = gzipped(text);
    int damaged = 0;
    for (std::size_t at = 2; at < packed.size(); ++at) {
        for (const unsigned bit : {0U, 3U, 7U}) {
            std::string wrong = packed;
            wrong[at] = static_cast<char>(static_cast<unsigned char>(wrong[at]) ^ (1U << bit));
            GzipSource source = sourceOf(wrong, 1'000);
            std::string error;
            try {
                // Some bytes say when, where and how the rest was made, and nothing about it.
                EXPECT_EQ(contentOf(source), text) << at;
            } catch (const ReadError& thrown) {
                error = thrown.what();
                EXPECT_TRUE(error.starts_with("m.xmi: is compressed by gzip and ")) << error;
                ++damaged;
            }
        }
    }
    EXPECT_GT(damaged, 100);
    GzipSource rest = sourceOf(packed + "rest");
    EXPECT_EQ(errorOf([&] { rest.size(); }), "m.xmi: is compressed by gzip and is damaged");
}

TEST(GzipSource, StandsBehindEveryFileRoot) {
    auto texts = std::make_shared<TextFiles>("texts");
    texts->add("m.xmi", gzipped("<a/>")).add("bomb", gzipped(std::string(10'000, 'x')));
    FileRoots roots;
    roots.add("model", texts);
    const FileRoots::Lookup model = roots.find(0, "m.xmi");
    EXPECT_EQ(contentOf(*model.bytes), "<a/>");
    const FileRoots::Lookup bomb = roots.find(0, "bomb", 9'999);
    EXPECT_EQ(errorOf([&] { bomb.bytes->size(); }),
              "model:bomb: is compressed by gzip and inflates to more than 9999 bytes");
}

}  // namespace
}  // namespace nuv::zero::xmi::test
