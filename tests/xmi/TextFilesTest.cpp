#include "xmi/TextFiles.h"

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>

#include "tests/xmi/FolderTree.h"
#include "tests/xmi/ReaderFixture.h"

namespace nuv::zero::xmi::test {
namespace {

TEST(TextFiles, AreOpenedByAllTheirSpellings) {
    TextFiles files("texts");
    files.add("a.xmi", "A").add("./sub//b.xmi", "B");
    EXPECT_EQ(opened(files, "a.xmi"), "a.xmi = A");
    EXPECT_EQ(opened(files, "sub/../sub/./b.xmi"), "sub/b.xmi = B");
    EXPECT_EQ(opened(files, "sub"), "no file");
    EXPECT_EQ(opened(files, "c.xmi"), "missing");
    EXPECT_EQ(opened(files, "../a.xmi"), "outside");
    EXPECT_EQ(opened(files, "/a.xmi"), "outside");
    EXPECT_EQ(files.files(2), (Lines{"a.xmi", "sub/b.xmi"}));
    EXPECT_EQ(files.location(), "texts");
    EXPECT_TRUE(files.systemPath().empty());
}

TEST(TextFiles, AreBounded) {
    TextFiles files("texts");
    files.add("a", "12345").add("b", "");
    EXPECT_EQ(opened(files, "a", 5), "a = 12345");
    EXPECT_EQ(opened(files, "a", 4), "refused: is longer than 4 bytes");
    EXPECT_EQ(errorOf([&] { files.files(1); }), "texts: holds more than 1 files and folders");
}

TEST(TextFiles, HaveDifferentPaths) {
    TextFiles files("texts");
    files.add("a", "1");
    for (const char* const path : {"a", "./a", "", ".", "..", "../b", "/b"}) {
        EXPECT_THROW(files.add(path, "2"), std::invalid_argument) << path;
    }
    EXPECT_EQ(files.files(10), Lines{"a"});
    files.add("b", "3");
    EXPECT_EQ(opened(files, "a"), "a = 1");
    EXPECT_EQ(opened(files, "b"), "b = 3");
}

TEST(TextFiles, CanBeReadWhenTheyAreGone) {
    auto files = std::make_unique<TextFiles>("texts");
    files->add("a", "some text that is too long to stand in the string itself");
    const FileTree::Opening opening = files->open("a", 1'000);
    files.reset();
    EXPECT_EQ(contentOf(*opening.bytes),
              "some text that is too long to stand in the string itself");
}

}  // namespace
}  // namespace nuv::zero::xmi::test
