#include <gtest/gtest.h>

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <string>

#include "tests/support/SmallStack.h"
#include "tests/xmi/ReaderFixture.h"

/// Each limit: what just meets it is read, and one more is an error that names file and line.
namespace nuv::zero::xmi::test {
namespace {

LoadedMetamodel nodesWithLimits() {
    return metamodelOf(eClass("Node", attribute("name", "EString", R"(iD="true")") +
                                          reference("nodes", "Node", contents) +
                                          reference("to", "Node", many)));
}

std::string nestedNodes(std::size_t levels) {
    std::string text = "<p:Node xmlns:p='urn:p'>\n";
    for (std::size_t i = 1; i < levels; ++i) text += "<nodes>";
    for (std::size_t i = 1; i < levels; ++i) text += "</nodes>";
    return text + "</p:Node>";
}

/// What a reader says to a metamodel, with one limit changed.
std::string metamodelErrorWith(std::size_t ReadLimits::*limit, std::size_t value,
                               const std::string& text) {
    ReadOptions options;
    options.limits.*limit = value;
    return errorOf([&] { EcoreReader(options).addText("p.ecore", text).read(); });
}

std::string modelErrorWith(std::size_t ReadLimits::*limit, std::size_t value,
                           const std::string& text) {
    ReadOptions options;
    options.limits.*limit = value;
    return modelError(nodesWithLimits(), text, options);
}

TEST(ReadLimits, AreTheStatedOnesByDefault) {
    const ReadLimits read;
    const std::vector<std::size_t> actual = {
        read.fileBytes, read.depth,          read.elements,       read.names, read.classes,
        read.features,  read.inheritedParts, read.qualifiedNames, read.slots};
    const std::vector<std::size_t> stated = {
        limits::fileBytes,      limits::depth,          limits::elements,
        limits::names,          limits::classes,        limits::features,
        limits::inheritedParts, limits::qualifiedNames, limits::slots};
    EXPECT_EQ(actual, stated);
}

TEST(ReadLimits, FileAsLongAsTheLimitIsReadAndALongerOneIsRefused) {
    const std::string text = nestedNodes(1);
    EXPECT_EQ(modelErrorWith(&ReadLimits::fileBytes, text.size(), text), "no error");
    EXPECT_EQ(modelErrorWith(&ReadLimits::fileBytes, text.size() - 1, text),
              "m.xmi: is longer than 33 bytes");
}

TEST(ReadLimits, NestingAsDeepAsTheLimitIsReadOnASmallStackAndDeeperIsRefused) {
    const LoadedMetamodel metamodel = nodesWithLimits();
    const std::string deepest = nestedNodes(limits::depth);
    const std::string tooDeep = nestedNodes(limits::depth + 1);
    const std::string farTooDeep = nestedNodes(100 * limits::depth);
    nuv::zero::test::onSmallStack([&] {
        const LoadedModel model = modelOf(metamodel, deepest);
        EXPECT_EQ(model.elements().size(), limits::depth);
        EXPECT_EQ(model.find(model.identity(model.elements().back())), model.elements().back());
        const std::string error = "m.xmi:2:69994: elements are nested deeper than 10000 levels";
        EXPECT_EQ(modelError(metamodel, tooDeep), error);
        EXPECT_EQ(modelError(metamodel, farTooDeep), error);
    });
}

TEST(ReadLimits, MetamodelNestedAsDeepAsTheLimitIsReadOnASmallStackAndDeeperIsRefused) {
    const auto nestedPackages = [](std::size_t levels) {
        std::string inner;
        for (std::size_t i = 1; i < levels; ++i) inner += "<eSubpackages name='s'>";
        for (std::size_t i = 1; i < levels; ++i) inner += "</eSubpackages>";
        return package(inner);
    };
    ReadOptions options;
    // Each package repeats the names of all around it.
    options.limits.qualifiedNames = 2 * limits::depth * limits::depth;
    const auto errorOfLevels = [&](std::size_t levels) {
        return errorOf(
            [&] { EcoreReader(options).addText("p.ecore", nestedPackages(levels)).read(); });
    };
    nuv::zero::test::onSmallStack([&] {
        EXPECT_EQ(errorOfLevels(limits::depth), "no error");
        EXPECT_EQ(errorOfLevels(limits::depth + 1),
                  "p.ecore:2:229978: elements are nested deeper than 10000 levels");
    });
}

/// Symptom: reading a file on a thread with a small stack crashed; the buffer alone filled it.
TEST(ReadLimits, FilesAreReadOnASmallStack) {
    const LoadedMetamodel metamodel = nodesWithLimits();
    const std::filesystem::path path =
        std::filesystem::path(testing::TempDir()) / "modeling_nuv0_small_stack.xmi";
    std::ofstream(path, std::ios::binary) << nestedNodes(limits::depth);
    nuv::zero::test::onSmallStack([&] {
        EXPECT_EQ(XmiReader(metamodel).readFile(path.string()).elements().size(), limits::depth);
    });
    std::filesystem::remove(path);
}

TEST(ReadLimits, AsManyElementsAsTheLimitAreReadAndMoreAreRefused) {
    EXPECT_EQ(modelErrorWith(&ReadLimits::elements, 5, nestedNodes(5)), "no error");
    EXPECT_EQ(modelErrorWith(&ReadLimits::elements, 5, nestedNodes(6)),
              "m.xmi:2:29: the file has more than 5 elements");
}

TEST(ReadLimits, AsManyNamesAsTheLimitAreReadAndMoreAreRefused) {
    // The prefix p, its element, and then: an element, an attribute, a prefix.
    const std::string text =
        "<p:Node xmlns:p='urn:p'>\n<nodes name='a'/>\n<nodes xmlns:q='urn:q'/></p:Node>";
    EXPECT_EQ(modelErrorWith(&ReadLimits::names, 5, text), "no error");
    EXPECT_EQ(modelErrorWith(&ReadLimits::names, 4, text),
              "m.xmi:3:1: the file has more than 4 different names");
    EXPECT_EQ(modelErrorWith(&ReadLimits::names, 3, text),
              "m.xmi:2:1: the file has more than 3 different names");
}

TEST(ReadLimits, AsManySlotsAsTheLimitAreReadAndMoreAreRefused) {
    EXPECT_EQ(modelErrorWith(&ReadLimits::slots, 9, nestedNodes(3)), "no error");
    EXPECT_EQ(modelErrorWith(&ReadLimits::slots, 8, nestedNodes(3)),
              "m.xmi:2:8: the model needs more than 8 places for values");
}

TEST(ReadLimits, AsManyClassesAsTheLimitAreReadAndMoreAreRefused) {
    const std::string text = package(eClass("A") + eClass("B"));
    EXPECT_EQ(metamodelErrorWith(&ReadLimits::classes, 2, text), "no error");
    EXPECT_EQ(metamodelErrorWith(&ReadLimits::classes, 1, text),
              "p.ecore:3:1: the metamodel has more than 1 classes");
}

/// Symptom: a metamodel of a few megabytes made reading a model take minutes, because the features
/// of one class are compared one after the other.
TEST(ReadLimits, AsManyFeaturesOfAClassAsTheLimitAreReadAndMoreAreRefused) {
    const std::string text = package(eClass("A", attribute("a") + attribute("b")) +
                                     eClass("B", attribute("c"), R"(eSuperTypes="#//A")"));
    EXPECT_EQ(metamodelErrorWith(&ReadLimits::features, 3, text), "no error");
    EXPECT_EQ(metamodelErrorWith(&ReadLimits::features, 2, text),
              "p.ecore:3:1: the class 'B' has more than 2 features");
}

TEST(ReadLimits, AsManyInheritedPartsAsTheLimitAreReadAndMoreAreRefused) {
    const std::string text = package(eClass("A", attribute("a") + attribute("b")) +
                                     eClass("B", {}, R"(eSuperTypes="#//A")"));
    EXPECT_EQ(metamodelErrorWith(&ReadLimits::inheritedParts, 5, text), "no error");
    EXPECT_EQ(metamodelErrorWith(&ReadLimits::inheritedParts, 3, text),
              "p.ecore:2:181: the classes inherit more than 3 ancestors and features in total");
}

/// Symptom: a metamodel of less than a megabyte took gigabytes, because every class and package
/// repeats the names of all packages around it.
TEST(ReadLimits, QualifiedNamesAsLongAsTheLimitAreReadAndLongerOnesAreRefused) {
    const std::string text =
        package("<eSubpackages name='inner'>\n" + eClass("A") + eClass("B") + "</eSubpackages>");
    // p, p::inner and twice p::inner beside a letter.
    EXPECT_EQ(metamodelErrorWith(&ReadLimits::qualifiedNames, 27, text), "no error");
    EXPECT_EQ(metamodelErrorWith(&ReadLimits::qualifiedNames, 26, text),
              "p.ecore:4:1: the qualified names of the metamodel have more than 26 bytes in total");

    const std::string longest =
        "<eSubpackages name='" + std::string(limits::qualifiedNames / 4, 'x') + "'>\n";
    EXPECT_EQ(metamodelError(longest + eClass("A") + eClass("B") + eClass("C") + "</eSubpackages>"),
              "p.ecore:5:1: the qualified names of the metamodel have more than 100000000 bytes in "
              "total");
}

}  // namespace
}  // namespace nuv::zero::xmi::test
