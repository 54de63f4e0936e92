#include "xmi/RootsFile.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/xmi/FolderTree.h"
#include "tests/xmi/ReaderFixture.h"

namespace nuv::zero::xmi::test {
namespace {

Lines rowsOf(const RootsFile& file) {
    Lines lines;
    for (const RootsFile::Row& row : file.rows()) {
        lines.push_back(std::to_string(row.line) + " " + row.name + ": " + row.path);
        for (const RootsFile::Prefix& prefix : row.prefixes) {
            lines.push_back(std::to_string(prefix.line) + "   " + prefix.text + ": " + prefix.path);
        }
    }
    return lines;
}

TEST(RootsFile, ListsRootsWithTheirPrefixes) {
    const RootsFile file("projects/plant.roots",
                         "\xEF\xBB\xBF# What the plant is made of.\r\n"
                         "units = ../libraries/units.zip  \r\n"
                         "\tplatform:/plugin/org.units/\n"
                         "\n"
                         "    http://units.org/si?a=b = model/si.xmi\n"
                         "  # and more\n"
                         "plugins=/opt/tool/my plugins=old");
    EXPECT_EQ(
        rowsOf(file),
        (Lines{"2 units: projects/../libraries/units.zip",
               "3   platform:/plugin/org.units/: ", "5   http://units.org/si?a=b: model/si.xmi",
               "7 plugins: /opt/tool/my plugins=old"}));
    EXPECT_EQ(rowsOf(RootsFile("a.roots", "")), Lines{});
    EXPECT_EQ(rowsOf(RootsFile("a.roots", "x = .")), Lines{"1 x: ."});
}

TEST(RootsFile, SaysInWhichLineItIsNotUnderstood) {
    const auto errorIn = [](std::string_view text) {
        return errorOf([&] { RootsFile("a.roots", text); });
    };
    const std::string expected = "a root is written as NAME = PATH";
    EXPECT_EQ(errorIn("\nunits\n"), "a.roots:2:1: " + expected);
    EXPECT_EQ(errorIn("units =\n"), "a.roots:1:1: " + expected);
    EXPECT_EQ(errorIn("= units"), "a.roots:1:1: " + expected);
    EXPECT_EQ(errorIn("# x\n  platform:/plugin/\nunits = a"),
              "a.roots:2:1: a prefix stands below the root that it leads into, and there is none");
    EXPECT_EQ(errorIn(std::string_view("a = b\0c", 7)), "a.roots:1:1: this is no text");
}

class RootsFileTest : public testing::Test {
  protected:
    RootsFileTest() {
        tree_.write("project/plant.xmi", "").write("libraries/units/model/si.xmi", "");
        roots_.add("model", tree_.path("project"));
    }
    std::string errorOfRoots(const std::string& text) {
        tree_.write("project/plant.roots", text);
        return errorOf([&] { RootsFile(tree_.path("project/plant.roots")).addTo(roots_); });
    }

    FolderTree tree_;
    FileRoots roots_;
};

TEST_F(RootsFileTest, PathsLeadFromItsFolder) {
    EXPECT_EQ(errorOfRoots("units = ../libraries/units\n  http://units.org/si = model/si.xmi\n"
                           "libraries = " +
                           tree_.path("libraries") + "\n  urn:lib\n"),
              "no error");
    EXPECT_EQ(roots_.size(), 3U);
    EXPECT_EQ(roots_.find({0, "plant.xmi"}, "http://units.org/si#x").places.front(),
              (FilePlace{1, "model/si.xmi"}));
    EXPECT_EQ(roots_.find({0, "plant.xmi"}, "urn:lib/units/model/si.xmi").places.front(),
              (FilePlace{1, "model/si.xmi"}));
}

TEST_F(RootsFileTest, WhatCannotBeAddedIsToldWithItsLineAndNothingIsAdded) {
    const std::string file = tree_.path("project/plant.roots");
    EXPECT_EQ(errorOfRoots("units = ../libraries\nnone = ../none\n"),
              file + ":2:1: " + tree_.path("project") +
                  "/../none: cannot be opened as a folder: No such file or directory");
    EXPECT_EQ(errorOfRoots("units = ../libraries\nmodel = .\n"),
              file + ":2:1: there are two roots named 'model'");
    EXPECT_EQ(errorOfRoots("a:b = .\n"), file + ":1:1: no root may be named 'a:b'");
    EXPECT_EQ(errorOfRoots("units = .\n   = a\n"), "no error") << "an odd prefix, but a prefix";
    EXPECT_EQ(roots_.size(), 2U);
    EXPECT_EQ(errorOf([&] { RootsFile(tree_.path("none")); }),
              tree_.path("none") + ": cannot be opened: No such file or directory");
    EXPECT_TRUE(
        errorOfRoots(std::string(2'000'000, '#')).ends_with("is longer than 1048576 bytes"));
}

}  // namespace
}  // namespace nuv::zero::xmi::test
