#include "xmi/FileRoots.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "tests/xmi/FolderTree.h"

namespace nuv::zero::xmi::test {
namespace {

/// A model's folder, and two folders of libraries that have a file in common and one name.
class FileRootsTest : public testing::Test {
  protected:
    FileRootsTest() {
        tree_.write("model/m.xmi", "").write("model/parts/p.xmi", "");
        tree_.write("model/parts/with blank.xmi", "");
        tree_.write("one/a/m.ecore", "").write("one/b/m.ecore", "").write("one/both.ecore", "");
        tree_.write("two/both.ecore", "").write("two/deep/x.ecore", "");
        tree_.write("one/deep/x.ecore", "");
        roots_.add("model", tree_.path("model"));
        roots_.add("one", tree_.path("one"), {"platform:/plugin/", "platform:/resource/"});
        roots_.add("two", tree_.path("two"), {"platform:/plugin/", "pathmap://TWO/"});
    }

    std::string found(const std::string& reference, const FilePlace& from = {0, "m.xmi"}) const {
        return textOf(roots_.find(from, reference));
    }

    std::string textOf(const FileRoots::Finding& finding) const {
        std::string text;
        switch (finding.outcome) {
            case FileRoots::Outcome::Found:
                EXPECT_TRUE(finding.file.file);
                break;
            case FileRoots::Outcome::Missing:
                text = "missing:";
                break;
            case FileRoots::Outcome::Outside:
                text = "outside:";
                break;
            case FileRoots::Outcome::Ambiguous:
                text = "ambiguous:";
                break;
            case FileRoots::Outcome::Refused:
                text = "refused, " + finding.reason + ":";
                break;
        }
        for (const FilePlace& each : finding.places) {
            text += (text.empty() ? "" : " ") + roots_.textOf(each);
        }
        if (!finding.places.empty()) return text;
        for (const std::string& each : finding.tried) text += " " + each;
        return text;
    }

    FolderTree tree_;
    FileRoots roots_;
};

TEST_F(FileRootsTest, ReferencesWithoutASchemeLeadFromTheFolderOfTheirFile) {
    EXPECT_EQ(found("parts/p.xmi"), "model:parts/p.xmi");
    EXPECT_EQ(found("parts/p.xmi#//@x"), "model:parts/p.xmi");
    EXPECT_EQ(found("p.xmi", {0, "parts/q.xmi"}), "model:parts/p.xmi");
    EXPECT_EQ(found("../m.xmi", {0, "parts/q.xmi"}), "model:m.xmi");
    EXPECT_EQ(found("with%20blank.xmi", {0, "parts/p.xmi"}), "model:parts/with blank.xmi");
    EXPECT_EQ(found("../b/m.ecore", {1, "a/m.ecore"}), "one:b/m.ecore");
    EXPECT_EQ(found("m.ecore"), "missing: model:m.ecore") << "only from where it stands";
}

TEST_F(FileRootsTest, PrefixesLeadIntoTheirRoots) {
    EXPECT_EQ(found("platform:/resource/a/m.ecore#//C"), "one:a/m.ecore");
    EXPECT_EQ(found("pathmap://TWO/both.ecore"), "two:both.ecore");
    EXPECT_EQ(found("platform:/plugin/a/../b/./m.ecore"), "one:b/m.ecore");
    EXPECT_EQ(found("platform:/plugin/a%2Fm.ecore"), "one:a/m.ecore");
}

/// Symptom: of two files of one name the first that was given stood for both.
TEST_F(FileRootsTest, FilesOfOneNameInDifferentFoldersAreDifferentFiles) {
    EXPECT_EQ(found("platform:/plugin/a/m.ecore"), "one:a/m.ecore");
    EXPECT_EQ(found("platform:/plugin/b/m.ecore"), "one:b/m.ecore");
    EXPECT_EQ(found("platform:/plugin/c/m.ecore"), "missing: one:c/m.ecore two:c/m.ecore");
}

TEST_F(FileRootsTest, WhereNothingDecidesBothPlacesAreNamed) {
    EXPECT_EQ(found("platform:/plugin/both.ecore"), "ambiguous: one:both.ecore two:both.ecore");
}

TEST_F(FileRootsTest, TheLongestPrefixDecides) {
    roots_.add("three", tree_.path("two/deep"), {"platform:/plugin/deep/"});
    EXPECT_EQ(found("platform:/plugin/deep/x.ecore"), "two:deep/x.ecore");
    EXPECT_EQ(found("platform:/plugin/deep/y.ecore"),
              "missing: three:y.ecore one:deep/y.ecore two:deep/y.ecore");
}

TEST_F(FileRootsTest, AFileInTwoRootsBelongsToTheFirst) {
    roots_.add("all", tree_.path(), {"all:"});
    EXPECT_EQ(found("all:model/parts/p.xmi"), "model:parts/p.xmi");
    EXPECT_EQ(found("all:two/both.ecore"), "two:both.ecore");
    // The same file by two roots is no ambiguity.
    roots_.add("again", tree_.path("two"), {"all:two/", "pathmap://TWO/"});
    EXPECT_EQ(found("pathmap://TWO/both.ecore"), "two:both.ecore");
}

TEST_F(FileRootsTest, NothingLeadsOutOfItsRoot) {
    tree_.link("model/out.xmi", "../one/both.ecore");
    EXPECT_EQ(found("../one/both.ecore"), "outside: model:../one/both.ecore");
    EXPECT_EQ(found("out.xmi"), "outside: model:out.xmi");
    EXPECT_EQ(found("/etc/passwd"), "outside: /etc/passwd");
    EXPECT_EQ(found("%2Fetc/passwd"), "outside: /etc/passwd");
    EXPECT_EQ(found("%2e%2e/one/both.ecore"), "outside: model:../one/both.ecore");
    EXPECT_EQ(found("platform:/resource/../model/m.xmi"), "outside: one:../model/m.xmi");
    EXPECT_EQ(found("platform:/resource//etc/passwd"), "outside: one:/etc/passwd");
}

TEST_F(FileRootsTest, OtherSchemesLeadNowhere) {
    EXPECT_EQ(found("http://www.eclipse.org/emf/2002/Ecore#//EString"), "missing:");
    EXPECT_EQ(found("file:" + tree_.path("model/m.xmi")), "missing:");
    EXPECT_EQ(found("platform:/fragment/a/m.ecore"), "missing:");
}

TEST_F(FileRootsTest, PathsOfAUserLeadFromTheRoot) {
    EXPECT_EQ(textOf(roots_.find(1, "a/m.ecore")), "one:a/m.ecore");
    EXPECT_EQ(textOf(roots_.find(1, "a")), "refused, it is no file: one:a");
}

TEST_F(FileRootsTest, RootsHaveDifferentNames) {
    EXPECT_THROW(roots_.add("one", tree_.path("two")), std::invalid_argument);
    EXPECT_EQ(roots_.size(), 3U);
}

TEST(Scheme, StandsInFrontOfAColon) {
    EXPECT_TRUE(hasScheme("http://x"));
    EXPECT_TRUE(hasScheme("a+b-c.1:x"));
    for (const char* const other : {"", "a", "a/b:c", "1a:b", ":a", "a b:c", "a#b:c", "../a:b"}) {
        EXPECT_FALSE(hasScheme(other)) << other;
    }
}

}  // namespace
}  // namespace nuv::zero::xmi::test
