#include "xmi/Archive.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>

#include "tests/xmi/FolderTree.h"
#include "tests/xmi/ReaderFixture.h"
#include "tests/xmi/ZipBuilder.h"
#include "xmi/FileRoots.h"
#include "xmi/ModelSet.h"

namespace nuv::zero::xmi::test {
namespace {

std::unique_ptr<Archive> archiveOf(const std::string& bytes, ArchiveLimits limits = {}) {
    return std::make_unique<Archive>(
        "a.zip", std::make_unique<TextSource>(std::make_shared<const std::string>(bytes)), limits);
}

std::string refusalOf(const ZipBuilder& zip, ArchiveLimits limits = {}) {
    return errorOf([&] { archiveOf(zip.bytes(), limits); });
}

ZipBuilder plant() {
    ZipBuilder zip;
    zip.add("plant.xmi", "<plant/>").add("parts/", "").add("parts/pump.xmi", "<pump/>", true);
    return zip;
}

TEST(Archive, FilesAreOpenedByAllTheirSpellings) {
    const auto archive = archiveOf(plant().bytes());
    EXPECT_EQ(opened(*archive, "plant.xmi"), "plant.xmi = <plant/>");
    EXPECT_EQ(opened(*archive, "./parts//../parts/pump.xmi"), "parts/pump.xmi = <pump/>");
    EXPECT_EQ(opened(*archive, "parts"), "no file");
    EXPECT_EQ(opened(*archive, "pump.xmi"), "missing");
    EXPECT_EQ(opened(*archive, "../plant.xmi"), "outside");
    EXPECT_EQ(opened(*archive, "/plant.xmi"), "outside");
    EXPECT_EQ(archive->files(10), (Lines{"parts/pump.xmi", "plant.xmi"}));
    EXPECT_EQ(errorOf([&] { archive->files(1); }), "a.zip: holds more than 1 files and folders");
    EXPECT_EQ(archive->location(), "a.zip");
}

TEST(Archive, LongFilesAreReadWhole) {
    std::string text;
    for (int i = 0; text.size() < 300'000; ++i) text += std::to_string(i) + ' ';
    const auto archive = archiveOf(ZipBuilder().add("a", text, true).add("b", text).bytes());
    for (const char* const each : {"a", "b"}) {
        EXPECT_EQ(opened(*archive, each, 400'000), std::string(each) + " = " + text);
        const FileTree::Opening opening = archive->open(each, 400'000);
        std::string piece(50, '?');
        EXPECT_EQ(opening.bytes->read(200'000, piece.data(), 50), 50U);
        EXPECT_EQ(piece, text.substr(200'000, 50));
    }
}

TEST(Archive, MayHoldNothing) {
    EXPECT_EQ(archiveOf(ZipBuilder().bytes())->files(10), Lines{});
    EXPECT_EQ(archiveOf(ZipBuilder().add("a/", "").bytes())->files(10), Lines{});
}

TEST(Archive, NamesThatLeadOutOfItAreRefused) {
    for (const char* const name : {"/a", "../a", "a/../../b", "..", "/", "a/b/../../../c"}) {
        EXPECT_EQ(refusalOf(plant().add(name, "x")),
                  std::string("a.zip: holds a file whose name leads out of it: '") + name + "'");
    }
    EXPECT_EQ(refusalOf(plant().add("a\\b", "x")),
              "a.zip: holds a file with a backslash in its name: 'a\\b'");
    EXPECT_EQ(refusalOf(plant().add("..\\a\n", "x")).find('\n'), std::string::npos);
}

TEST(Archive, FilesThatAreThereTwiceAreRefused) {
    for (const char* const name :
         {"plant.xmi", "./plant.xmi", "parts//pump.xmi", "x/../plant.xmi"}) {
        EXPECT_EQ(refusalOf(plant().add(name, "x")),
                  std::string("a.zip: holds a file that is there twice: '") + name + "'");
    }
    EXPECT_EQ(archiveOf(plant().add("parts/", "").bytes())->files(10).size(), 2U);
}

TEST(Archive, LinksAndEncryptedFilesAreNotOpened) {
    ZipBuilder zip = plant();
    ZipBuilder::Entry link;
    link.name = "link.xmi";
    link.content = "/etc/passwd";
    link.attributes = 0120777U << 16U;
    ZipBuilder::Entry secret;
    secret.name = "secret.xmi";
    secret.content = "0123456789ab<a/>";
    secret.flags = 1;
    ZipBuilder::Entry strange;
    strange.name = "strange.xmi";
    strange.content = "<a/>";
    strange.method = 14;
    const auto archive = archiveOf(zip.add(link).add(secret).add(strange).bytes());
    EXPECT_EQ(opened(*archive, "link.xmi"), "refused: is a link inside an archive");
    EXPECT_EQ(opened(*archive, "secret.xmi"), "refused: is encrypted");
    EXPECT_EQ(opened(*archive, "strange.xmi"),
              "refused: is compressed in a way that is not supported");
    EXPECT_EQ(opened(*archive, "plant.xmi"), "plant.xmi = <plant/>");
}

TEST(Archive, BytesAreCountedWhileTheyAreInflated) {
    ZipBuilder::Entry bomb;
    bomb.name = "bomb.xmi";
    bomb.content = std::string(1'000'000, ' ');
    bomb.isDeflated = true;
    const auto honest = archiveOf(ZipBuilder().add(bomb).bytes());
    EXPECT_EQ(opened(*honest, "bomb.xmi", 1'000'000).size(), 1'000'011U);
    EXPECT_EQ(opened(*honest, "bomb.xmi", 999'999), "refused: is longer than 999999 bytes");
    // The directory does not say the truth.
    bomb.sizeOff = static_cast<std::uint32_t>(-999'990);
    const auto lying = archiveOf(ZipBuilder().add(bomb).bytes());
    const FileTree::Opening opening = lying->open("bomb.xmi", 1'000);
    ASSERT_TRUE(opening.bytes);
    EXPECT_TRUE(errorOf([&] {
                    opening.bytes->size();
                }).starts_with("a.zip: holds the file 'bomb.xmi', which "));
}

TEST(Archive, BytesOfAllFilesAreCountedOnceEach) {
    ArchiveLimits limits;
    limits.inflatedBytes = 25;
    ZipBuilder zip;
    for (const char* const each : {"a", "b", "c"}) zip.add(each, "0123456789", true);
    const auto archive = archiveOf(zip.bytes(), limits);
    for (int i = 0; i < 5; ++i) EXPECT_EQ(opened(*archive, "a"), "a = 0123456789");
    EXPECT_EQ(opened(*archive, "b"), "b = 0123456789");
    EXPECT_EQ(errorOf([&] { opened(*archive, "c"); }), "a.zip: inflates to more than 25 bytes");
    EXPECT_EQ(opened(*archive, "a"), "a = 0123456789");
}

TEST(Archive, FilesAndBytesOfAnArchiveAreBounded) {
    ArchiveLimits limits;
    limits.files = 2;
    EXPECT_EQ(refusalOf(plant(), limits), "a.zip: holds more than 2 files");
    limits.files = 3;
    limits.bytes = plant().bytes().size();
    EXPECT_EQ(archiveOf(plant().bytes(), limits)->files(10).size(), 2U);
    --limits.bytes;
    EXPECT_EQ(refusalOf(plant(), limits),
              "a.zip: is longer than " + std::to_string(limits.bytes) + " bytes");
}

/// The library would keep the whole directory, whatever its size, before anybody could count it.
TEST(Archive, TheDirectoryOfAnArchiveIsBounded) {
    ZipBuilder zip;
    for (int i = 0; i < 20'000; ++i) zip.add("a" + std::to_string(i), "");
    ArchiveLimits limits;
    limits.files = 20;
    EXPECT_EQ(refusalOf(zip, limits), "a.zip: has too large a directory of its files");
    limits.files = 20'000;
    EXPECT_EQ(archiveOf(zip.bytes(), limits)->files(20'000).size(), 20'000U);
}

TEST(Archive, ACutOffOneIsRefused) {
    const std::string bytes = plant().bytes();
    for (std::size_t size = 0; size < bytes.size(); ++size) {
        const std::string error = errorOf([&] { archiveOf(bytes.substr(0, size)); });
        EXPECT_TRUE(error.starts_with("a.zip: cannot be read as an archive: ")) << size << error;
    }
}

/// Any byte may be wrong: what is opened then is whole, or it is told.
TEST(Archive, ADamagedOneIsRefusedOrToldWhenItIsRead) {
    const std::string bytes = plant().bytes();
    int told = 0;
    for (std::size_t at = 0; at < bytes.size(); ++at) {
        for (const unsigned bit : {0U, 4U, 7U}) {
            std::string wrong = bytes;
            wrong[at] = static_cast<char>(static_cast<unsigned char>(wrong[at]) ^ (1U << bit));
            try {
                const auto archive = archiveOf(wrong);
                for (const std::string& each : archive->files(10)) {
                    const FileTree::Opening opening = archive->open(each, 1'000);
                    const std::string content = opening.bytes ? contentOf(*opening.bytes) : "";
                    EXPECT_TRUE(content.empty() || content == "<plant/>" || content == "<pump/>")
                        << at << content;
                }
            } catch (const ReadError& error) {
                EXPECT_EQ(error.file(), "a.zip");
                ++told;
            }
        }
    }
    EXPECT_GT(told, 100);
}

TEST(Archive, StaysTheSameWhenAnotherTakesItsPlace) {
    FolderTree tree;
    tree.write("a.zip", plant().bytes()).write("b.zip", ZipBuilder().add("other", "x").bytes());
    auto archive = std::make_unique<Archive>(tree.path("a.zip"));
    EXPECT_EQ(archive->location(), tree.path("a.zip"));
    std::filesystem::rename(tree.path("b.zip"), tree.path("a.zip"));
    const FileTree::Opening opening = archive->open("parts/pump.xmi", 100);
    archive.reset();
    EXPECT_EQ(contentOf(*opening.bytes), "<pump/>");
}

TEST(Archive, MustBeThere) {
    FolderTree tree;
    tree.write("text", "no archive").write("empty", "");
    EXPECT_EQ(errorOf([&] { const Archive archive(tree.path("none")); }),
              tree.path("none") + ": cannot be opened: No such file or directory");
    EXPECT_EQ(errorOf([&] { const Archive archive(tree.path("text")); }),
              tree.path("text") + ": cannot be read as an archive: Not a zip archive");
    EXPECT_TRUE(errorOf([&] {
                    const Archive archive(tree.path());
                }).starts_with(tree.path() + ": cannot be read: "));
}

TEST(Archive, TheOneXmlFileInItIsTheModel) {
    ZipBuilder zip;
    zip.add("read.me", "a < b").add("empty", "").add("m.xmi", "\xEF\xBB\xBF \n<a/>", true);
    EXPECT_EQ(archiveOf(zip.bytes())->onlyModel(), "m.xmi");
    EXPECT_EQ(
        archiveOf(ZipBuilder().add("wide", std::string("\xFF\xFE<\0", 4)).bytes())->onlyModel(),
        "wide");
    zip.add("z/other.xmi", "<b/>" + std::string(1'000, ' '));
    EXPECT_EQ(errorOf([&] { archiveOf(zip.bytes())->onlyModel(); }),
              "a.zip: holds several XML files: 'm.xmi', 'z/other.xmi'");
    for (int i = 1; i < 7; ++i) zip.add(std::to_string(i), "<a/>");
    EXPECT_EQ(errorOf([&] { archiveOf(zip.bytes())->onlyModel(); }),
              "a.zip: holds several XML files: '1', '2', '3', '4', '5' and 3 more");
    EXPECT_EQ(errorOf([] { archiveOf(ZipBuilder().add("a", "b").bytes())->onlyModel(); }),
              "a.zip: holds no XML file");
    ZipBuilder::Entry secret;
    secret.name = "m.xmi";
    secret.content = "0123456789ab<a/>";
    secret.flags = 1;
    EXPECT_EQ(errorOf([&] { archiveOf(ZipBuilder().add(secret).bytes())->onlyModel(); }),
              "a.zip: holds no XML file; 'm.xmi' is encrypted");
}

TEST(Archive, IsToldByItsFirstBytes) {
    const auto isOne = [](std::string_view bytes) {
        TextSource source(bytes);
        return isArchive(source);
    };
    EXPECT_TRUE(isOne(plant().bytes()));
    EXPECT_TRUE(isOne(ZipBuilder().bytes()));
    for (const char* const other : {"", "PK", "PK\x03\x03", "<a/>"}) EXPECT_FALSE(isOne(other));
}

TEST(Archive, MayBeAFileRoot) {
    FolderTree tree;
    tree.write("units.zip", plant().bytes()).link("link.zip", "units.zip");
    tree.write("model/m.xmi", "<a/>");
    FileRoots roots;
    roots.add("model", tree.path("model"));
    roots.add("units", tree.path("units.zip"), {"http://units.org/"});
    roots.add("again", tree.path("link.zip"));
    const auto found = [&](const FilePlace& from, const std::string& reference) {
        const FileRoots::Lookup lookup = roots.find(from, reference);
        if (!lookup.bytes) return std::string("none");
        return roots.textOf(lookup.places.front()) + " = " + contentOf(*lookup.bytes);
    };
    EXPECT_EQ(found({0, "m.xmi"}, "http://units.org/plant.xmi"), "units:plant.xmi = <plant/>");
    EXPECT_EQ(found({1, "plant.xmi"}, "parts/pump.xmi"), "units:parts/pump.xmi = <pump/>");
    EXPECT_EQ(found({1, "parts/pump.xmi"}, "../plant.xmi"), "units:plant.xmi = <plant/>");
    EXPECT_EQ(found({0, "m.xmi"}, "platform:/plugin/parts/pump.xmi"),
              "units:parts/pump.xmi = <pump/>");
    EXPECT_EQ(found({0, "m.xmi"}, "platform:/plugin/again/plant.xmi"), "units:plant.xmi = <plant/>")
        << "it is the same archive";
    EXPECT_EQ(found({1, "plant.xmi"}, "../model/m.xmi"), "none");
    EXPECT_EQ(errorOf([&] { roots.add("text", tree.path("model/m.xmi")); }),
              tree.path("model/m.xmi") + ": cannot be read as an archive: Not a zip archive");
    EXPECT_EQ(roots.size(), 3U);
}

TEST(Archive, ASetMaySpanFoldersArchivesAndCompressedFiles) {
    FolderTree tree;
    tree.write("model/p.ecore", package(eClass("Node", reference("to", "Node", many))));
    ZipBuilder zip;
    zip.add("a/k.xmi", root("Node", R"(to="../l.xmi#/ ../../m.xmi#/")"), true);
    zip.add("l.xmi", gzipped(root("Node", R"(to="secret.xmi#/ bad.xmi#/")")), true);
    ZipBuilder::Entry secret;
    secret.name = "secret.xmi";
    secret.flags = 1;
    ZipBuilder::Entry bad;
    bad.name = "bad.xmi";
    bad.content = root("Node", "");
    bad.checksumOff = 1;
    tree.write("units.zip", zip.add(secret).add(bad).bytes());
    tree.write("model/m.xmi", gzipped(root("Node", R"(to="urn:units/a/k.xmi#/")")));
    FileRoots roots;
    roots.add("model", tree.path("model")).add("units", tree.path("units.zip"), {"urn:units"});
    ModelSet set(std::move(roots));
    set.load("m.xmi");
    Lines lines;
    for (std::size_t file = 0; file < set.fileCount(); ++file) {
        lines.push_back(set.fileRoots().textOf(set.place(file)));
    }
    EXPECT_EQ(lines, (Lines{"model:m.xmi", "units:a/k.xmi", "units:l.xmi"}));
    lines.clear();
    for (const Finding& each : set.findings().kept()) lines.push_back(each.text());
    const std::string begin = " of Node.to leads to a file that ";
    EXPECT_EQ(lines,
              (Lines{"units:a/k.xmi:1:1: the reference '../../m.xmi#/'" + begin +
                         "lies outside of its file root",
                     "units:l.xmi:1:1: the reference 'secret.xmi#/'" + begin + "is encrypted",
                     "units:l.xmi:1:1: the reference 'bad.xmi#/'" + begin +
                         "cannot be read: " + tree.path("units.zip") +
                         ": holds the file 'bad.xmi', which cannot be read: CRC error"}));
}

TEST(Archive, OfAnotherProgramIsRead) {
    if (std::string(PYTHON).empty()) GTEST_SKIP() << "needs python3";
    FolderTree tree;
    const std::string program =
        "import zipfile; z = zipfile.ZipFile('" + tree.path("a.zip") +
        "', 'w', zipfile.ZIP_DEFLATED); z.writestr('m.xmi', '<a>' + 'text ' * 1000 + '</a>'); "
        "z.writestr('caf\\u00e9/n.xmi', '<b/>'); z.close()";
    ASSERT_EQ(std::system((std::string(PYTHON) + " -c \"" + program + "\"").c_str()), 0);
    const Archive archive(tree.path("a.zip"));
    EXPECT_EQ(archive.files(10), (Lines{"caf\u00e9/n.xmi", "m.xmi"}));
    EXPECT_EQ(opened(archive, "caf\u00e9/n.xmi"), "caf\u00e9/n.xmi = <b/>");
    EXPECT_EQ(opened(archive, "m.xmi", 10'000).size(), 8U + 7U + 5'000U);
}

}  // namespace
}  // namespace nuv::zero::xmi::test
