#include "xmi/FileRoots.h"

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/xmi/FolderTree.h"
#include "tests/xmi/ReaderFixture.h"
#include "xmi/TextFiles.h"

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

    std::string textOf(const FileRoots::Lookup& lookup) const {
        std::string text;
        switch (lookup.outcome) {
            case FileRoots::Outcome::Found:
                EXPECT_TRUE(lookup.bytes);
                EXPECT_FALSE(lookup.tried.empty());
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
                text = "refused, " + lookup.reason + ":";
                break;
        }
        for (const FilePlace& each : lookup.places) {
            text += (text.empty() ? "" : " ") + roots_.textOf(each);
        }
        if (!lookup.places.empty()) return text;
        for (const std::string& each : lookup.tried) text += " " + each;
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
    EXPECT_EQ(found("platform:/plugin/c/m.ecore"),
              "missing: one:c/m.ecore two:c/m.ecore model:**/c/m.ecore one:**/c/m.ecore "
              "two:**/c/m.ecore");
}

TEST_F(FileRootsTest, WhereNothingDecidesBothPlacesAreNamed) {
    EXPECT_EQ(found("platform:/plugin/both.ecore"), "ambiguous: one:both.ecore two:both.ecore");
}

TEST_F(FileRootsTest, TheLongestPrefixDecides) {
    roots_.add("three", tree_.path("two/deep"), {"platform:/plugin/deep/"});
    EXPECT_EQ(found("platform:/plugin/deep/x.ecore"), "two:deep/x.ecore");
    EXPECT_EQ(found("platform:/plugin/deep/y.ecore"),
              "missing: three:y.ecore one:deep/y.ecore two:deep/y.ecore model:**/deep/y.ecore "
              "three:**/deep/y.ecore");
}

TEST_F(FileRootsTest, AFileInTwoRootsBelongsToTheFirst) {
    roots_.add("all", tree_.path(), {"all:"});
    EXPECT_EQ(found("all:model/parts/p.xmi"), "model:parts/p.xmi");
    EXPECT_EQ(found("all:two/both.ecore"), "two:both.ecore");
    // The same file by two roots is no ambiguity, and a tree may have two names.
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

TEST_F(FileRootsTest, PathsClimbIntoRootsThatEncloseTheirsAndNoOthers) {
    tree_.write("outside.xmi", "").link("model/out.xmi", "../one/both.ecore");
    roots_.add("all", tree_.path());
    EXPECT_EQ(found("../one/both.ecore"), "one:both.ecore");
    EXPECT_EQ(found("../outside.xmi"), "all:outside.xmi");
    EXPECT_EQ(found("../../outside.xmi", {0, "parts/p.xmi"}), "all:outside.xmi");
    EXPECT_EQ(found("out.xmi"), "one:both.ecore");
    EXPECT_EQ(found("../none.xmi"), "missing: model:../none.xmi all:model/../none.xmi");
    EXPECT_EQ(found("../../x.xmi"), "outside: model:../../x.xmi all:model/../../x.xmi");
    EXPECT_EQ(found("platform:/resource/../model/m.xmi"), "model:m.xmi");
    EXPECT_EQ(found("/etc/passwd"), "outside: /etc/passwd");
    EXPECT_EQ(found("platform:/resource//outside.xmi"), "outside: one:/outside.xmi");
}

TEST_F(FileRootsTest, PrefixesCoverWholeSegments) {
    roots_.addPrefix("urn:lib", "one").addPrefix("http://lib.org/si", "one", "a/m.ecore");
    roots_.addPrefix("http://lib.org", "one", "b");
    EXPECT_EQ(found("urn:lib/both.ecore"), "one:both.ecore");
    EXPECT_EQ(found("urn:library/both.ecore"), "missing:");
    EXPECT_EQ(found("http://lib.org/si#x"), "one:a/m.ecore");
    EXPECT_EQ(found("http://lib.org/m.ecore"), "one:b/m.ecore");
    EXPECT_EQ(found("http://lib.org/six"), "missing: one:b/six");
    EXPECT_EQ(found("http://lib.org"), "refused, is no file: one:b");
    EXPECT_EQ(found("http://lib.organic/m.ecore"), "missing:");
}

TEST_F(FileRootsTest, TheNameOfARootIsAPrefix) {
    EXPECT_EQ(found("platform:/plugin/two/both.ecore"), "two:both.ecore");
    EXPECT_EQ(found("platform:/resource/model/parts/p.xmi"), "model:parts/p.xmi");
    EXPECT_EQ(found("pathmap://one/both.ecore"), "one:both.ecore");
    EXPECT_EQ(found("pathmap://none/both.ecore"), "missing:");
    EXPECT_EQ(found("platform:/fragment/two/both.ecore"), "missing:");
    // What was said of it in so many words counts first.
    roots_.addPrefix("platform:/plugin/two/", "one");
    EXPECT_EQ(found("platform:/plugin/two/both.ecore"), "one:both.ecore");
    EXPECT_EQ(found("platform:/plugin/two/deep/x.ecore"), "one:deep/x.ecore");
}

TEST_F(FileRootsTest, FoldersAreFoundByTheirNameTheNearestFirst) {
    tree_.write("two/far/units/si.xmi", "").write("two/far/away/units/si.xmi", "");
    tree_.write("two/units/other.xmi", "").write("two/far/units/deep.xmi", "");
    tree_.write("two/far/away/units/deeper.xmi", "");
    const auto inUnits = [&](const std::string& file) {
        return found("platform:/resource/units/" + file + "#x");
    };
    EXPECT_EQ(inUnits("si.xmi"), "two:far/units/si.xmi") << "the nearest has no such file";
    EXPECT_EQ(inUnits("other.xmi"), "two:units/other.xmi");
    EXPECT_EQ(inUnits("deeper.xmi"), "two:far/away/units/deeper.xmi");
    EXPECT_EQ(inUnits("./deeper.xmi"), "two:far/away/units/deeper.xmi");
    EXPECT_EQ(found("platform:/plugin/far/units/si.xmi"), "two:far/units/si.xmi");
    EXPECT_EQ(found("platform:/plugin/nowhere/si.xmi"),
              "missing: one:nowhere/si.xmi two:nowhere/si.xmi model:**/nowhere/si.xmi "
              "one:**/nowhere/si.xmi two:**/nowhere/si.xmi");
}

TEST_F(FileRootsTest, FoldersOfOneNameAtOneDepthAreAmbiguous) {
    tree_.write("model/x/units/si.xmi", "").write("two/y/units/si.xmi", "");
    tree_.write("model/x/units/one.xmi", "").write("two/y/units/two.xmi", "");
    EXPECT_EQ(found("platform:/resource/units/si.xmi"),
              "ambiguous: model:x/units/si.xmi two:y/units/si.xmi");
    EXPECT_EQ(found("platform:/resource/units/two.xmi"), "two:y/units/two.xmi");
    // Unless they are one folder.
    roots_.add("x", tree_.path("model/x"));
    EXPECT_EQ(found("platform:/resource/units/one.xmi"), "model:x/units/one.xmi");
}

TEST_F(FileRootsTest, ARootMayBeTheFolderThatIsNamedOrStandInIt) {
    roots_.add("own", tree_.path("two/deep"));
    tree_.write("two/project/src/gen/a.xmi", "");
    roots_.add("inner", tree_.path("two/project/src"));
    FileRoots alone;
    alone.add("inner", tree_.path("two/project/src"));
    const auto text = [&](const std::string& reference) {
        const FileRoots::Lookup lookup = alone.find({0, "m.xmi"}, reference);
        return lookup.places.empty() ? "none" : alone.textOf(lookup.places.front());
    };
    EXPECT_EQ(text("platform:/resource/project/src/gen/a.xmi"), "inner:gen/a.xmi");
    EXPECT_EQ(text("platform:/resource/project/./x/../src/gen/a.xmi"), "inner:gen/a.xmi");
    EXPECT_EQ(text("platform:/resource/src/gen/a.xmi"), "inner:gen/a.xmi");
    EXPECT_EQ(text("platform:/resource/gen/a.xmi"), "inner:gen/a.xmi");
    EXPECT_EQ(text("platform:/resource/project/other/a.xmi"), "none");
    EXPECT_EQ(text("platform:/resource/project/gen/a.xmi"), "none");
    EXPECT_EQ(text("platform:/resource/project/../project/src/gen/a.xmi"), "none");
}

TEST_F(FileRootsTest, LinksInNamedFoldersAreFollowed) {
    tree_.write("two/units/real.xmi", "").link("two/units/link.xmi", "real.xmi");
    tree_.link("two/units/out.xmi", "../../one/both.ecore");
    EXPECT_EQ(found("platform:/resource/units/link.xmi"), "two:units/real.xmi");
    EXPECT_EQ(found("platform:/resource/units/out.xmi").substr(0, 8), "outside:");
}

TEST_F(FileRootsTest, BuiltInPrefixesMeanFoldersOfOneName) {
    tree_.write("two/org.eclipse.uml2.uml.resources/libraries/l.uml", "");
    tree_.write("one/org.eclipse.uml2/model/UML.xmi", "");
    EXPECT_EQ(found("pathmap://UML_LIBRARIES/l.uml#_0"),
              "two:org.eclipse.uml2.uml.resources/libraries/l.uml");
    EXPECT_EQ(found("http://www.omg.org/spec/UML/20131001/UML.xmi#x"),
              "one:org.eclipse.uml2/model/UML.xmi");
    EXPECT_EQ(found("http://www.omg.org/spec/UML/20991231/UML.xmi#x"), "missing:");
    roots_.add("UML_LIBRARIES", tree_.path("two/org.eclipse.uml2.uml.resources"));
    tree_.write("two/org.eclipse.uml2.uml.resources/l.uml", "");
    EXPECT_EQ(found("pathmap://UML_LIBRARIES/l.uml"), "two:org.eclipse.uml2.uml.resources/l.uml");
}

TEST_F(FileRootsTest, SaysByWhichRuleAFileWasLookedUp) {
    tree_.write("two/org.eclipse.uml2/model/UML.xmi", "");
    const auto rule = [&](const std::string& reference) {
        return roots_.find({0, "m.xmi"}, reference).lookedUpBy;
    };
    EXPECT_EQ(rule("parts/p.xmi"), "relative path");
    EXPECT_EQ(rule("none.xmi"), "relative path");
    EXPECT_EQ(rule("/etc/passwd"), "absolute path");
    EXPECT_EQ(rule("platform:/plugin/a/m.ecore"), "prefix 'platform:/plugin/'");
    EXPECT_EQ(rule("platform:/plugin/none.ecore"), "prefix 'platform:/plugin/'");
    EXPECT_EQ(rule("platform:/plugin/two/both.ecore"), "root name 'two'");
    EXPECT_EQ(rule("platform:/plugin/parts/p.xmi"), "folder 'parts'");
    EXPECT_EQ(rule("http://www.omg.org/spec/UML/20131001/UML.xmi"),
              "built-in prefix 'http://www.omg.org/spec/UML/20131001/'");
    EXPECT_EQ(rule("http://www.example.org/UML.xmi"), "");
    EXPECT_EQ(roots_.find(0, "m.xmi").lookedUpBy, "path");
}

TEST_F(FileRootsTest, OneFileHasOnePlaceByFiftySpellings) {
    roots_.add("all", tree_.path(), {"all:", "urn:all"});
    roots_.add("again", tree_.path("model"), {"platform:/plugin/here/"});
    roots_.addPrefix("http://the/file", "all", "model/parts/p.xmi");
    tree_.link("model/link.xmi", "parts/p.xmi").link("model/folder", "parts");
    tree_.link("model/far.xmi", tree_.path("model/parts/p.xmi")).link("model/chain", "folder");
    tree_.link("one/model", "../model").link("model/parts/up", "..");
    std::vector<std::string> spellings = {"all:model/parts/p.xmi",
                                          "urn:all/model/parts/p.xmi",
                                          "all:one/model/parts/p.xmi",
                                          "platform:/plugin/here/parts/p.xmi",
                                          "platform:/plugin/model/parts/p.xmi",
                                          "platform:/resource/model/parts/p.xmi",
                                          "platform:/resource/again/parts/p.xmi",
                                          "pathmap://model/parts/p.xmi",
                                          "pathmap://again/link.xmi",
                                          "pathmap://all/model/far.xmi",
                                          "http://the/file",
                                          "http://the/file#x",
                                          "platform:/resource/parts/p.xmi"};
    for (const char* const folder :
         {"", "./", "parts/../", "folder/../", "chain/../", "parts/up/", "../model/",
          "../one/model/", "../one/../model/", "parts/up/parts/up/"}) {
        for (const char* const file :
             {"parts/p.xmi", "parts//p.xmi", "parts/./p.xmi#//@x", "p%61rts/p.xmi", "link.xmi",
              "far.xmi", "folder/p.xmi", "chain/p%2Exmi"}) {
            spellings.push_back(std::string(folder) + file);
        }
    }
    EXPECT_GT(spellings.size(), 50U);
    for (const std::string& each : spellings) EXPECT_EQ(found(each), "model:parts/p.xmi") << each;
}

TEST_F(FileRootsTest, LongFilesAreRefused) {
    tree_.write("model/long.xmi", "0123456789");
    EXPECT_EQ(textOf(roots_.find({0, "m.xmi"}, "long.xmi", 10)), "model:long.xmi");
    EXPECT_EQ(textOf(roots_.find({0, "m.xmi"}, "long.xmi", 9)),
              "refused, is longer than 9 bytes: model:long.xmi");
}

TEST_F(FileRootsTest, AnyFileTreeMayBeARoot) {
    auto texts = std::make_shared<TextFiles>("texts");
    texts->add("units/si.xmi", "").add("m.xmi", "");
    roots_.add("texts", texts, {"urn:texts"}).add("more", texts);
    EXPECT_EQ(found("urn:texts/m.xmi"), "texts:m.xmi");
    EXPECT_EQ(found("units/si.xmi", {3, "m.xmi"}), "texts:units/si.xmi");
    EXPECT_EQ(found("platform:/plugin/units/si.xmi"), "texts:units/si.xmi");
    EXPECT_EQ(found("platform:/plugin/more/m.xmi"), "texts:m.xmi") << "a tree by another name";
    EXPECT_EQ(found("../model/m.xmi", {3, "m.xmi"}), "outside: texts:../model/m.xmi");
    EXPECT_EQ(roots_.files(3), (Lines{"m.xmi", "units/si.xmi"}));
    EXPECT_EQ(roots_.files(0), (Lines{"m.xmi", "parts/p.xmi", "parts/with blank.xmi"}));
}

TEST_F(FileRootsTest, TooManyFilesAreSaidToBeSo) {
    auto texts = std::make_shared<TextFiles>("texts");
    for (int i = 0; i < 100'001; ++i) texts->add(std::to_string(i), "");
    FileRoots roots;
    roots.add("many", texts);
    EXPECT_EQ(errorOf([&] { roots.files(0); }), "texts: holds more than 100000 files and folders");
    EXPECT_EQ(roots.find({0, "1"}, "platform:/plugin/units/si.xmi").tried,
              Lines{"many:**/units/si.xmi (texts: holds more than 100000 files and folders)"});
    EXPECT_EQ(roots.find({0, "1"}, "2").places.front().path, "2");
}

TEST_F(FileRootsTest, PathsOfAUserLeadFromTheRoot) {
    EXPECT_EQ(textOf(roots_.find(1, "a/m.ecore")), "one:a/m.ecore");
    EXPECT_EQ(textOf(roots_.find(1, "a")), "refused, is no file: one:a");
}

TEST_F(FileRootsTest, WhatCannotBeARootIsRefused) {
    EXPECT_THROW(roots_.add("one", tree_.path("two")), std::invalid_argument);
    for (const char* const name : {"", "a:b", "a#b", "a b", "a/b", "a\nb", "a\x7F"}) {
        EXPECT_THROW(roots_.add(name, tree_.path("two")), std::invalid_argument) << name;
    }
    EXPECT_THROW(roots_.add("new", tree_.path("two"), {"a:", ""}), std::invalid_argument);
    EXPECT_THROW(roots_.addPrefix("", "one"), std::invalid_argument);
    EXPECT_THROW(roots_.addPrefix("a:", "new"), std::invalid_argument);
    EXPECT_THROW(roots_.add("new", tree_.path("none")), ReadError);
    EXPECT_EQ(roots_.size(), 3U);
    EXPECT_EQ(roots_.rootNamed("new"), 3U);
    EXPECT_EQ(roots_.rootNamed("two"), 2U);
    EXPECT_EQ(roots_.tree(2).location(), tree_.path("two"));
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
