#include <gtest/gtest.h>

#include <functional>
#include <mutex>
#include <new>
#include <ostream>
#include <string>
#include <utility>

#include "tests/support/AllocationMeter.h"
#include "tests/support/Points.h"
#include "tests/xmi/FailingMalloc.h"
#include "tests/xmi/FolderTree.h"
#include "tests/xmi/LenientReader.h"
#include "xmi/ModelSet.h"
#include "xmi/TextFiles.h"
#ifdef WITH_ARCHIVES
#include "tests/xmi/ZipBuilder.h"
#include "xmi/Archive.h"
#endif

/// Every single allocation of reading a file fails in turn: those of the readers, and those of the
/// XML parser and the C library beneath them.
namespace nuv::zero::xmi::test {
namespace {

using zero::test::AllocationMeter;
using zero::test::FailingMalloc;
using zero::test::recordPoints;

const std::string metamodelText = package(
    eClass("Named", attribute("name", "EString", R"(iD="true")"), R"(abstract="true")") +
    eClass("Node",
           reference("nodes", "Node", std::string(contents) + R"( eOpposite="#//Node/above")") +
               reference("above", "Node", R"(eOpposite="#//Node/nodes")") +
               reference("to", "Node", many) + attribute("size", "EInt") +
               attribute("kind", "#//Kind") + attribute("tags", "EString", many),
           R"(eSuperTypes="#//Named")") +
    R"(<eClassifiers xsi:type="ecore:EEnum" name="Kind"><eLiterals name="k"/></eClassifiers>)"
    R"(<eSubpackages name="q" nsURI="urn:q" nsPrefix="q">)" +
    eClass("Leaf", reference("node", "#//Node"), R"(eSuperTypes="#//Node")") + "</eSubpackages>");

const std::string modelText =
    root("Node", R"(to="//@nodes.0 b" name="top" size="7" kind="k")",
         R"(<nodes name="a" to="#//a b"/><nodes name="b"><nodes xsi:type="p:Node"/></nodes>
            <to href="#b"/><to>a</to><tags>one</tags><tags>two &amp; three</tags>)");

/// One way of running out of memory.
struct Shortage {
    const char* name;
    void (*failAt)(long);
    bool (*hasFailed)();
    long (*live)();
};

void PrintTo(const Shortage& shortage, std::ostream* out) {
    *out << shortage.name;
}

/// What a set of files holds: its elements, then its findings.
Lines linesOf(const ModelSet& set) {
    Lines lines;
    for (std::size_t file = 0; file < set.fileCount(); ++file) {
        for (const ModelElement& each : set.model(file).elements()) {
            lines.push_back(set.address(each).text());
        }
    }
    for (const Finding& each : set.findings()) lines.push_back(each.text());
    return lines;
}

class ReadingAllocationFailureTest : public testing::TestWithParam<Shortage> {
  protected:
    void SetUp() override {
        if (GetParam().failAt == &FailingMalloc::failAt && !FailingMalloc::isInstalled()) {
            GTEST_SKIP()
                << "malloc cannot be made to fail here: a sanitizer has replaced it, or the C "
                   "library is not glibc; failures of new are tested all the same";
        }
    }

    /// Fails each allocation of an action in turn; after each failure nothing is left of it, and
    /// what it could not do it does when it is called again.
    /// Where other libraries leave blocks behind, these are not counted.
    void failEverywhere(const std::function<Lines()>& read, const char* what,
                        bool countsBlocks = true) {
        const Shortage& shortage = GetParam();
        const Lines expected = read();
        // What a thread's first exception makes the C++ library allocate stays for the thread, and
        // so does what the C library needs for the first one that leaves a call of `call_once`.
        EXPECT_THROW(throw std::bad_alloc(), std::bad_alloc);
        std::once_flag once;
        EXPECT_THROW(std::call_once(once, [] { throw std::bad_alloc(); }), std::bad_alloc);
        long points = 0;
        for (bool failed = true; failed; ++points) {
            const long before = shortage.live();
            bool threw = false;
            {
                Lines lines;
                shortage.failAt(points + 1);
                try {
                    lines = read();
                } catch (const std::bad_alloc&) {
                    threw = true;
                } catch (const ReadError& error) {
                    // The C library says so where it cannot open the file for want of memory; and
                    // the library for archives says the other where it cannot keep the directory.
                    shortage.failAt(0);
                    const std::string_view text = error.what();
                    threw = text.ends_with("Cannot allocate memory") ||
                            text.ends_with(": Not a zip archive");
                    EXPECT_TRUE(threw) << error.what();
                }
                shortage.failAt(0);
                failed = shortage.hasFailed();
                if (!threw) {
                    ASSERT_EQ(lines, expected) << "at allocation " << points + 1;
                }
            }
            if (countsBlocks) {
                ASSERT_EQ(shortage.live(), before) << "leaked at allocation " << points + 1;
            }
            ASSERT_EQ(read(), expected) << "again after allocation " << points + 1;
        }
        recordPoints(points - 1,
                     std::string("failing allocations of ") + shortage.name + " in " + what);
    }
};

TEST_P(ReadingAllocationFailureTest, AMetamodelIsReadOrTheFailurePassesThrough) {
    failEverywhere([] { return describe(EcoreReader().addText("p.ecore", metamodelText).read()); },
                   "reading a metamodel");
}

TEST_P(ReadingAllocationFailureTest, AMetamodelReaderIsUsableAfterEachFailure) {
    EcoreReader reader;
    bool added = false;
    failEverywhere(
        [&] {
            if (!added) {
                reader.addText("p.ecore", metamodelText);
                added = true;
            }
            return describe(reader.read());
        },
        "reading a metamodel again by one reader");
}

TEST_P(ReadingAllocationFailureTest, AFileThatCouldNotBeAddedIsAddedByALaterAttempt) {
    const Lines expected = describe(EcoreReader().addText("p.ecore", metamodelText).read());
    long points = 0;
    for (bool failed = true; failed; ++points) {
        EcoreReader reader;
        GetParam().failAt(points + 1);
        try {
            reader.addText("p.ecore", metamodelText);
            failed = false;
        } catch (const std::bad_alloc&) {
        }
        GetParam().failAt(0);
        if (failed) reader.addText("p.ecore", metamodelText);
        ASSERT_EQ(describe(reader.read()), expected) << "allocation " << points + 1;
    }
    recordPoints(points - 1, std::string("failing allocations of ") + GetParam().name +
                                 " in adding a file to a reader");
}

TEST_P(ReadingAllocationFailureTest, AModelIsReadOrTheFailurePassesThrough) {
    const LoadedMetamodel metamodel = EcoreReader().addText("p.ecore", metamodelText).read();
    const XmiReader reader(metamodel);
    failEverywhere([&] { return describe(reader.readText("m.xmi", modelText)); },
                   "reading a model");
}

TEST_P(ReadingAllocationFailureTest, AFileWithFindingsIsReadOrTheFailurePassesThrough) {
    const LoadedMetamodel metamodel = EcoreReader().addText("p.ecore", metamodelText).read();
    const std::string text = root(
        "Node", R"(to="//a //@nodes.1 b none x //@nodes[name='a']" size="x" kind="none" odd="1")",
        R"(<nodes name="a"/><nodes xmi:id="b"/><nodes xmi:id="c"/><nodes xmi:id="c"/><none><a/></none>
           <nodes xmi:id="x"/><nodes xmi:id="x" xsi:type="q:Leaf"/><nodes href="#/"/>)");
    failEverywhere(
        [&] {
            const LenientRead read = readLeniently(metamodel, text);
            Lines lines = describe(read.model);
            for (const std::string& each : told(read.findings)) lines.push_back(each);
            for (const char* each : {"//a", "//@nodes.1", "//@nodes[name='a']"}) {
                lines.push_back(read.model.identity(read.model.find(each)));
            }
            return lines;
        },
        "reading a file with findings");
}

TEST_P(ReadingAllocationFailureTest, ASetOfFilesIsLoadedOrTheFailurePassesThrough) {
    FolderTree tree;
    tree.write("m.xmi", root("Node", R"(name="m" to="a/n.xmi#/ none.xmi#/")",
                             "<nodes href='a/n.xmi#x'/><nodes name='k'/>"));
    tree.write("a/n.xmi", root("Node", R"(name="n" to="../m.xmi#k")", "<nodes xmi:id='x'/>"));
    tree.write("p.ecore", metamodelText);
    failEverywhere(
        [&] {
            FileRoots roots;
            roots.add("model", tree.path());
            ModelSet set(std::move(roots));
            set.load("m.xmi");
            return linesOf(set);
        },
        "loading a set of files");
}

TEST_P(ReadingAllocationFailureTest, FilesAreFoundInEveryWayOrTheFailurePassesThrough) {
    FolderTree tree;
    tree.write("a/units/n.xmi", root("Node", R"(name="n")"));
    tree.write("a/m.xmi", root("Node", R"(to="platform:/resource/units/n.xmi#/ ../b/o.xmi#/
        texts:deep/./t.xmi#/ pathmap://texts/t.xmi#/ platform:/plugin/none/x.xmi#/ /x.xmi#/
        pathmap://UML_PROFILES/x.xmi#/")"));
    tree.write("b/o.xmi", root("Node", R"(name="o" to="../a/units/../m.xmi#/")"));
    tree.write("link/x", "").link("a/link.xmi", "../b/o.xmi");
    tree.write("a/p.ecore", metamodelText);
    const std::string text = root("Node", R"(name="t" to="../other.xmi#/")");
    failEverywhere(
        [&] {
            auto texts = std::make_shared<TextFiles>("texts");
            texts->add("deep/t.xmi", text).add("t.xmi", text);
            FileRoots roots;
            roots.add("model", tree.path("a")).add("all", tree.path()).add("texts", texts);
            roots.addPrefix("texts:", "texts");
            ModelSet set(std::move(roots));
            set.load("m.xmi");
            return linesOf(set);
        },
        "finding files in every way");
}

#ifdef WITH_ARCHIVES
TEST_P(ReadingAllocationFailureTest, ArchivesAreReadOrTheFailurePassesThrough) {
    ZipBuilder zip;
    zip.add("p.ecore", metamodelText);
    zip.add("m.xmi", root("Node", R"(name="m" to="a/n.xmi#/")"), true);
    zip.add("a/n.xmi", gzipped(root("Node", R"(name="n" to="../m.xmi#/ secret.xmi#/")")));
    const auto bytes = std::make_shared<const std::string>(zip.bytes());
    // The library for archives leaves blocks behind when malloc fails while it opens an entry.
    const bool countsBlocks = GetParam().failAt != &FailingMalloc::failAt;
    failEverywhere(
        [&] {
            auto archive = std::make_shared<Archive>("a.zip", std::make_unique<TextSource>(bytes));
            FileRoots roots;
            roots.add("model", archive);
            ModelSet set(std::move(roots));
            set.load("m.xmi");
            return linesOf(set);
        },
        "loading a set from an archive", countsBlocks);
}
#endif

TEST_P(ReadingAllocationFailureTest, ASetIsUsableAfterEachFailure) {
    FolderTree tree;
    tree.write("m.xmi", root("Node", R"(to="n.xmi#/")"));
    tree.write("n.xmi", root("Node", "", "<nodes href='m.xmi#/'/>"));
    tree.write("p.ecore", metamodelText);
    long points = 0;
    for (bool failed = true; failed; ++points) {
        FileRoots roots;
        roots.add("model", tree.path());
        ModelSet set(std::move(roots));
        bool threw = false;
        GetParam().failAt(points + 1);
        try {
            set.load("m.xmi");
        } catch (const std::exception& error) {
            GetParam().failAt(0);
            threw = true;
            const bool isShortage = dynamic_cast<const std::bad_alloc*>(&error) != nullptr;
            // The C library says so where it cannot open the file for want of memory.
            const std::string_view text = error.what();
            ASSERT_TRUE(isShortage || text.ends_with("Cannot allocate memory")) << text;
            ASSERT_EQ(set.fileCount(), 0U);
            ASSERT_TRUE(set.findings().empty());
        }
        GetParam().failAt(0);
        // Sorting does without memory where there is none.
        failed = GetParam().hasFailed();
        if (threw) set.load("m.xmi");
        ASSERT_EQ(set.fileCount(), 2U) << "allocation " << points + 1;
        ASSERT_TRUE(set.findings().empty()) << set.findings().kept().front().text();
    }
    recordPoints(points - 1, std::string("failing allocations of ") + GetParam().name +
                                 " in loading a set again");
}

TEST_P(ReadingAllocationFailureTest, FilesAreReadOrTheFailurePassesThrough) {
    failEverywhere(
        [] {
            const LoadedMetamodel metamodel =
                EcoreReader().addFile(EXAMPLE_MODELS "/system.ecore").read();
            Lines lines = describe(metamodel);
            for (std::string& line :
                 describe(XmiReader(metamodel).readFile(EXAMPLE_MODELS "/drone.xmi"))) {
                lines.push_back(std::move(line));
            }
            return lines;
        },
        "reading the example files");
}

INSTANTIATE_TEST_SUITE_P(Shortages, ReadingAllocationFailureTest,
                         testing::Values(Shortage{"New", &AllocationMeter::failAt,
                                                  &AllocationMeter::hasFailed,
                                                  &AllocationMeter::live},
                                         Shortage{"Malloc", &FailingMalloc::failAt,
                                                  &FailingMalloc::hasFailed, &FailingMalloc::live}),
                         [](const auto& each) { return each.param.name; });

}  // namespace
}  // namespace nuv::zero::xmi::test
