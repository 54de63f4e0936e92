#include "xmi/FolderIndex.h"

#include <gtest/gtest.h>

#include <memory>

#include "tests/xmi/ReaderFixture.h"
#include "xmi/TextFiles.h"

namespace nuv::zero::xmi::test {
namespace {

std::shared_ptr<TextFiles> someFiles() {
    auto files = std::make_shared<TextFiles>("texts");
    files->add("z/units/a", "")
        .add("units/a", "")
        .add("b/units/x/units/a", "")
        .add("a/units/a", "");
    files->add("units.zip", "").add("a/b", "");
    return files;
}

TEST(FolderIndex, FindsFoldersByTheirNamesTheNearestFirst) {
    FolderIndex index(someFiles(), 100);
    EXPECT_EQ(index.foldersNamed("units"),
              (Lines{"units", "a/units", "b/units", "z/units", "b/units/x/units"}));
    EXPECT_EQ(index.foldersNamed("x"), Lines{"b/units/x"});
    EXPECT_EQ(index.foldersNamed("units.zip"), Lines{}) << "a file";
    EXPECT_EQ(index.foldersNamed("unit"), Lines{});
    EXPECT_EQ(index.foldersNamed(""), Lines{});
    EXPECT_TRUE(index.holds("a/units/a"));
    EXPECT_FALSE(index.holds("a/units"));
}

TEST(FolderIndex, IsMadeOnce) {
    const auto files = someFiles();
    FolderIndex index(files, 100);
    files->add("new/units/a", "");
    EXPECT_EQ(index.files().size(), 7U) << "made when first asked";
    files->add("newer/units/a", "");
    EXPECT_EQ(index.files().size(), 7U);
    EXPECT_EQ(index.foldersNamed("units").size(), 6U);
}

TEST(FolderIndex, FailsEachTimeWhereThereIsTooMuch) {
    FolderIndex index(someFiles(), 5);
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(errorOf([&] { index.files(); }), "texts: holds more than 5 files and folders");
        EXPECT_EQ(errorOf([&] { index.foldersNamed("units"); }),
                  "texts: holds more than 5 files and folders");
    }
}

}  // namespace
}  // namespace nuv::zero::xmi::test
