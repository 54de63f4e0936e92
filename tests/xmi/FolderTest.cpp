#include "xmi/Folder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <array>
#include <filesystem>

#include "tests/xmi/FolderTree.h"
#include "tests/xmi/ReaderFixture.h"

namespace nuv::zero::xmi::test {
namespace {

/// What came of opening a path: the outcome, or the path and the content.
std::string opened(const Folder& folder, std::string_view path) {
    const Folder::Opening opening = folder.open(path);
    switch (opening.outcome) {
        case Folder::Outcome::Missing:
            return "missing";
        case Folder::Outcome::Outside:
            return "outside";
        case Folder::Outcome::NoFile:
            return "no file";
        case Folder::Outcome::Refused:
            return "refused: " + opening.reason;
        case Folder::Outcome::Opened:
            break;
    }
    std::array<char, 100> content{};
    const std::size_t size = std::fread(content.data(), 1, content.size(), opening.file.get());
    return opening.path + " = " + std::string(content.data(), size);
}

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
    EXPECT_EQ(opened(folder_, "one"), "refused: Too many levels of symbolic links");
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
    const Folder copy = folder_;
    std::filesystem::rename(tree_.path("in"), tree_.path("renamed"));
    tree_.write("in/a.xmi", "another");
    EXPECT_EQ(opened(copy, "a.xmi"), "a.xmi = A");
}

TEST_F(FolderTest, MustBeThere) {
    EXPECT_EQ(errorOf([&] { Folder(tree_.path("none")); }),
              tree_.path("none") + ": cannot be opened as a folder: No such file or directory");
    EXPECT_EQ(errorOf([&] { Folder(tree_.path("secret")); }),
              tree_.path("secret") + ": cannot be opened as a folder: Not a directory");
}

}  // namespace
}  // namespace nuv::zero::xmi::test
