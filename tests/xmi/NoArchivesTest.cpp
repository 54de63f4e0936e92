#include <gtest/gtest.h>

#include <memory>

#include "tests/xmi/FolderTree.h"
#include "tests/xmi/ReaderFixture.h"
#include "xmi/Archive.h"
#include "xmi/FileRoots.h"
#include "xmi/GzipSource.h"

/// Builds without the libraries that archives take.
namespace nuv::zero::xmi::test {
namespace {

TEST(NoArchives, AreRefusedWithTheReason) {
    FolderTree tree;
    tree.write("a.zip", "PK\x03\x04");
    const std::string reason =
        tree.path("a.zip") + ": is an archive, and this program was built without those";
    EXPECT_EQ(errorOf([&] { const Archive archive(tree.path("a.zip")); }), reason);
    FileRoots roots;
    EXPECT_EQ(errorOf([&] { roots.add("units", tree.path("a.zip")); }), reason);
    GzipSource source("m.xmi", std::make_unique<TextSource>("\x1F\x8B\x08"), 100);
    EXPECT_EQ(errorOf([&] { source.size(); }),
              "m.xmi: is compressed by gzip, and this program was built without what reads it");
    GzipSource plain("m.xmi", std::make_unique<TextSource>("<a/>"), 100);
    EXPECT_EQ(contentOf(plain), "<a/>");
}

}  // namespace
}  // namespace nuv::zero::xmi::test
