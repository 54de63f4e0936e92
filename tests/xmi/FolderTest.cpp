#include "xmi/Folder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "tests/xmi/FolderTree.h"
#include "tests/xmi/ReaderFixture.h"

namespace nuv::zero::xmi::test {
namespace {

class FolderTest : public testing::Test {
  protected:
    FolderTree tree_;
    Folder folder_{filled()};

  private:
    std::string filled() const {
        tree_.write("secret", "outside");
        tree_.write("in/a.xmi", "A").write("in/sub/b.xmi", "B").write("in/sub/deep/c.xmi", "C");
        return tree_.path("in");
    }
};

TEST_F(FolderTest, SpellingsOfAFileHaveOnePath) {
    for (const char* const spelling : {"sub/b.xmi", "./sub/b.xmi", "sub//b.xmi", "sub/./b.xmi",
                                       "sub/deep/../b.xmi", "sub/deep/../../sub/b.xmi"}) {
        EXPECT_EQ(opened(folder_, spelling), "sub/b.xmi = B") << spelling;
    }
}

TEST_F(FolderTest, PathsThatLeadOutAreRefused) {
    for (const char* const path : {"../secret", "../in/a.xmi", "sub/../../secret",
                                   "sub/../../in/a.xmi", "..", "/etc/passwd"}) {
        EXPECT_EQ(opened(folder_, path), "outside") << path;
    }
    EXPECT_EQ(opened(folder_, tree_.path("in/a.xmi")), "outside");
}

TEST_F(FolderTest, LinksAreFollowedInsideAndRefusedWhereTheyLeadOut) {
    tree_.link("in/inner", "sub/deep").link("in/sub/up.xmi", "../a.xmi");
    tree_.link("in/back.xmi", tree_.path("in/sub/b.xmi")).link("in/chain", "inner");
    tree_.link("in/out.xmi", "../secret").link("in/far", "/etc").link("in/sub/parent", "../..");
    tree_.link("in/beside", tree_.path("in-between")).write("in-between/a.xmi", "outside");
    EXPECT_EQ(opened(folder_, "inner/c.xmi"), "sub/deep/c.xmi = C");
    EXPECT_EQ(opened(folder_, "chain/c.xmi"), "sub/deep/c.xmi = C");
    EXPECT_EQ(opened(folder_, "chain/../b.xmi"), "sub/b.xmi = B") << "from where the link leads";
    EXPECT_EQ(opened(folder_, "sub/up.xmi"), "a.xmi = A");
    EXPECT_EQ(opened(folder_, "back.xmi"), "sub/b.xmi = B");
    EXPECT_EQ(opened(folder_, "out.xmi"), "outside");
    EXPECT_EQ(opened(folder_, "far/passwd"), "outside");
    EXPECT_EQ(opened(folder_, "sub/parent/secret"), "outside");
    EXPECT_EQ(opened(folder_, "beside/a.xmi"), "outside");
}

TEST_F(FolderTest, LinksInACircleAreRefused) {
    tree_.link("in/one", "two").link("in/two", "one");
    EXPECT_EQ(opened(folder_, "one"),
              "refused: cannot be opened: Too many levels of symbolic links");
}

TEST_F(FolderTest, OnlyFilesAreOpened) {
    ASSERT_EQ(mkfifo(tree_.path("in/pipe").c_str(), 0600), 0);
    EXPECT_EQ(opened(folder_, "pipe"), "no file");
    EXPECT_EQ(opened(folder_, "sub"), "no file");
    EXPECT_EQ(opened(folder_, ""), "no file");
    EXPECT_EQ(opened(folder_, "none"), "missing");
    EXPECT_EQ(opened(folder_, "none/a.xmi"), "missing");
    EXPECT_EQ(opened(folder_, "a.xmi/b"), "missing");
    EXPECT_EQ(opened(folder_, std::string_view("a.xmi\0b", 7)), "missing");
    EXPECT_EQ(opened(folder_, std::string(10'000, 'x')), "missing");
}

TEST_F(FolderTest, StaysTheSameFolderUnderAnotherName) {
    std::filesystem::rename(tree_.path("in"), tree_.path("renamed"));
    tree_.write("in/a.xmi", "another");
    EXPECT_EQ(opened(folder_, "a.xmi"), "a.xmi = A");
}

TEST_F(FolderTest, WhatIsOpenStaysTheFileThatItWas) {
    const FileTree::Opening opening = folder_.open("sub/b.xmi", 100);
    tree_.write("in/other", "another file");
    std::filesystem::rename(tree_.path("in/other"), tree_.path("in/sub/b.xmi"));
    EXPECT_EQ(contentOf(*opening.bytes), "B");
    EXPECT_EQ(opened(folder_, "sub/b.xmi"), "sub/b.xmi = another file");

    // Also of files that are not read at once.
    const std::string text(200'000, 'x');
    tree_.write("in/long", text);
    const FileTree::Opening lengthy = folder_.open("long", 1'000'000);
    tree_.link("in/link", "../secret");
    std::filesystem::rename(tree_.path("in/link"), tree_.path("in/long"));
    EXPECT_EQ(contentOf(*lengthy.bytes), text);
    EXPECT_EQ(opened(folder_, "long"), "outside");
}

TEST_F(FolderTest, LongFilesAreRefused) {
    tree_.write("in/long.xmi", std::string(200'000, 'x'));
    EXPECT_EQ(opened(folder_, "sub/b.xmi", 1), "sub/b.xmi = B");
    EXPECT_EQ(opened(folder_, "sub/b.xmi", 0), "refused: is longer than 0 bytes");
    EXPECT_EQ(opened(folder_, "long.xmi", 199'999), "refused: is longer than 199999 bytes");
}

TEST_F(FolderTest, FilesAreListedOnceAndInOrder) {
    tree_.link("in/link.xmi", "a.xmi").link("in/circle", ".").link("in/out", "..");
    tree_.write("in/sub.xmi", "").write("in/.hidden/d", "").write("in/sub/Z", "");
    ASSERT_EQ(mkfifo(tree_.path("in/pipe").c_str(), 0600), 0);
    const Lines expected = {".hidden/d", "a.xmi",     "sub.xmi",
                            "sub/Z",     "sub/b.xmi", "sub/deep/c.xmi"};
    EXPECT_EQ(folder_.files(1'000), expected);
    EXPECT_EQ(folder_.files(1'000), expected) << "again";
    for (const std::string& each : expected) {
        EXPECT_TRUE(opened(folder_, each).starts_with(each + " = "));
    }
}

TEST_F(FolderTest, ListingIsBounded) {
    // Two folders and three files.
    EXPECT_EQ(folder_.files(5).size(), 3U);
    for (const std::size_t limit : {std::size_t{0}, std::size_t{1}, std::size_t{4}}) {
        EXPECT_EQ(
            errorOf([&] { folder_.files(limit); }),
            tree_.path("in") + ": holds more than " + std::to_string(limit) + " files and folders");
    }
    std::string deep = "in";
    for (int i = 0; i < 100; ++i) deep += "/d";
    std::filesystem::create_directories(tree_.path(deep));
    EXPECT_EQ(folder_.files(1'000).size(), 3U);
    std::filesystem::create_directories(tree_.path(deep + "/d"));
    EXPECT_TRUE(errorOf([&] { folder_.files(1'000); })
                    .starts_with(tree_.path("in") +
                                 ": holds folders nested deeper than 100 levels: 'd/d/d/"));
}

/// Whoever may read everything is not kept out by modes.
TEST_F(FolderTest, FoldersThatMayNotBeReadAreLeftOut) {
    std::filesystem::permissions(tree_.path("in/sub"), std::filesystem::perms::none);
    const bool mayReadAll = ::access(tree_.path("in/sub/b.xmi").c_str(), R_OK) == 0;
    const std::size_t files = folder_.files(100).size();
    const std::string one = opened(folder_, "sub/b.xmi");
    std::filesystem::permissions(tree_.path("in/sub"), std::filesystem::perms::owner_all);
    if (mayReadAll) GTEST_SKIP() << "modes do not keep this user out";
    EXPECT_EQ(files, 1U);
    EXPECT_EQ(one, "refused: cannot be opened: Permission denied");
}

TEST_F(FolderTest, MustBeThere) {
    EXPECT_EQ(errorOf([&] { const Folder folder(tree_.path("none")); }),
              tree_.path("none") + ": cannot be opened as a folder: No such file or directory");
    EXPECT_EQ(errorOf([&] { const Folder folder(tree_.path("secret")); }),
              tree_.path("secret") + ": cannot be opened as a folder: Not a directory");
}

}  // namespace
}  // namespace nuv::zero::xmi::test
