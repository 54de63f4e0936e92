#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/Threads.h"
#include "tests/xmi/ReaderFixture.h"

/// Meant to be run under a thread sanitizer too.
namespace nuv::zero::xmi::test {
namespace {

constexpr std::size_t threadCount = 4;
constexpr int rounds = 30;

TEST(ReadingOnThreads, ModelsAreReadByOneReaderAtTheSameTime) {
    const LoadedMetamodel metamodel = metamodelOf(
        eClass("Node", attribute("name", "EString", R"(iD="true")") +
                           reference("nodes", "Node", contents) + reference("to", "Node", many)));
    const std::string text =
        root("Node", R"(to="b" name="top")", R"(<nodes name="a" to="b top"/><nodes name="b"/>)");
    const XmiReader reader(metamodel);
    const Lines expected = describe(reader.readText("m.xmi", text));
    std::vector<Lines> found(threadCount);
    zero::test::onThreads(threadCount, [&](std::size_t i) {
        for (int round = 0; round < rounds; ++round) {
            found[i] = describe(reader.readText("m.xmi", text));
        }
    });
    EXPECT_EQ(found, std::vector<Lines>(threadCount, expected));
    EXPECT_EQ(expected.size(), 3U);
}

TEST(ReadingOnThreads, EachThreadReadsAMetamodelOfItsOwn) {
    const std::string text =
        package(eClass("A", attribute("n")) + eClass("B", {}, R"(eSuperTypes="#//A")"));
    std::vector<Lines> found(threadCount);
    zero::test::onThreads(threadCount, [&](std::size_t i) {
        for (int round = 0; round < rounds; ++round) {
            found[i] = describe(EcoreReader().addText("p.ecore", text).read());
        }
    });
    EXPECT_EQ(found, std::vector<Lines>(threadCount, {"p::A", "  n: String", "p::B < p::A"}));
}

}  // namespace
}  // namespace nuv::zero::xmi::test
