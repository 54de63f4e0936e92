#include "xmi/FilePaths.h"

#include <gtest/gtest.h>

#include "tests/xmi/ReaderFixture.h"

namespace nuv::zero::xmi::test {
namespace {

TEST(FilePaths, AreFoundByAllTheirSpellings) {
    FilePaths paths;
    EXPECT_TRUE(paths.add("parts/pump.xmi", 7));
    EXPECT_TRUE(paths.add("a", 8));
    EXPECT_FALSE(paths.add("a", 9));
    for (const char* const each : {"parts/pump.xmi", "./parts//pump.xmi", "x/../parts/./pump.xmi",
                                   "parts/x/y/../../pump.xmi", "parts/pump.xmi/"}) {
        const FilePaths::Found found = paths.find(each);
        EXPECT_EQ(found.outcome, FileTree::Outcome::Opened) << each;
        EXPECT_EQ(found.path, "parts/pump.xmi") << each;
        EXPECT_EQ(found.number, 7U) << each;
    }
    EXPECT_EQ(paths.find("a").number, 8U);
    EXPECT_EQ(paths.all(), (Lines{"a", "parts/pump.xmi"}));
}

TEST(FilePaths, TellFoldersFromWhatIsNotThereAndWhatIsOutside) {
    FilePaths paths;
    paths.add("parts/pump.xmi", 0);
    paths.add("parts-list", 1);
    for (const char* const each : {"", ".", "parts", "parts/", "x/.."}) {
        EXPECT_EQ(paths.find(each).outcome, FileTree::Outcome::NoFile) << each;
    }
    for (const char* const each : {"part", "pump.xmi", "parts/pump", "parts-list/x", "z"}) {
        EXPECT_EQ(paths.find(each).outcome, FileTree::Outcome::Missing) << each;
    }
    for (const char* const each : {"..", "../parts/pump.xmi", "parts/../../x", "/parts/pump.xmi"}) {
        EXPECT_EQ(paths.find(each).outcome, FileTree::Outcome::Outside) << each;
    }
}

TEST(PathBelow, CoversWholeSteps) {
    EXPECT_EQ(pathBelow("/a", "/a/b/c"), "b/c");
    EXPECT_EQ(pathBelow("/a", "/a"), "");
    EXPECT_EQ(pathBelow("/", "/a"), "a");
    EXPECT_EQ(pathBelow("", "a/b"), "a/b");
    EXPECT_FALSE(pathBelow("/a", "/ab"));
    EXPECT_FALSE(pathBelow("/a", "/b"));
    EXPECT_FALSE(pathBelow("/a/b", "/a"));
    EXPECT_FALSE(pathBelow("", "/a"));
}

}  // namespace
}  // namespace nuv::zero::xmi::test
