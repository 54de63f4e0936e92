#include "xmi/LoadedModel.h"

#include <gtest/gtest.h>

#include "tests/xmi/ReaderFixture.h"

namespace nuv::zero::xmi::test {
namespace {

LoadedMetamodel nodesWithKeys() {
    return metamodelOf(eClass(
        "Node", attribute("name") + attribute("key", "EString", R"(iD="true")") +
                    reference("nodes", "Node", contents) + reference("one", "Node", containment)));
}

Lines identities(const LoadedModel& model) {
    Lines lines;
    for (const ModelElement& each : model.elements()) lines.push_back(model.identity(each));
    return lines;
}

TEST(LoadedModel, XmiIdComesBeforeIdAttributeAndPath) {
    const LoadedModel model =
        modelOf(nodesWithKeys(),
                root("Node", "",
                     R"(<nodes xmi:id="x" key="k"/><nodes key="l"/><nodes/><one xmi:id="y"/>)"));
    EXPECT_EQ(identities(model), (Lines{"/", "x", "l", "//@nodes.2", "y"}));
    EXPECT_EQ(model.path(model.find("x")), "//@nodes.0");
}

TEST(LoadedModel, SharedIdValuesIdentifyNobody) {
    const LoadedModel model = modelOf(
        nodesWithKeys(), root("Node", "", R"(<nodes key="k"/><nodes key="k"/><nodes key="/"/>)"));
    EXPECT_EQ(identities(model), (Lines{"/", "//@nodes.0", "//@nodes.1", "//@nodes.2"}));
    EXPECT_FALSE(model.find("k"));
}

TEST(LoadedModel, XmiIdTakesTheNameFromAnIdAttribute) {
    const LoadedModel model =
        modelOf(nodesWithKeys(), root("Node", "", R"(<nodes key="a"/><nodes xmi:id="a"/>)"));
    EXPECT_EQ(identities(model), (Lines{"/", "//@nodes.0", "a"}));
    EXPECT_EQ(model.path(model.find("a")), "//@nodes.1");
}

/// Symptom: two elements had the same identity, because an `xmi:id` read as the path of another.
TEST(LoadedModel, XmiIdThatReadsAsAPathIdentifiesNobody) {
    const LoadedModel model = modelOf(
        nodesWithKeys(), root("Node", "", R"(<nodes xmi:id="/"/><nodes xmi:id="//@nodes.0"/>)"));
    EXPECT_EQ(identities(model), (Lines{"/", "//@nodes.0", "//@nodes.1"}));
    EXPECT_EQ(model.find("/"), model.roots().front());
    EXPECT_EQ(model.find("//@nodes.0"), model.elements()[1]);
}

TEST(LoadedModel, EveryIdentityFindsItsElement) {
    const LoadedModel model =
        modelOf(nodesWithKeys(),
                roots(R"(<p:Node><one><nodes key="k"/><nodes/></one></p:Node><p:Node name="n"/>)"));
    for (const ModelElement& each : model.elements()) {
        EXPECT_EQ(model.find(model.identity(each)), each) << model.identity(each);
        EXPECT_EQ(model.find(model.path(each)), each) << model.path(each);
    }
    EXPECT_EQ(identities(model), (Lines{"/0", "/0/@one", "k", "/0/@one/@nodes.1", "/1"}));
}

TEST(LoadedModel, PathsMayLeadByNames) {
    const LoadedModel model =
        modelOf(nodesWithKeys(),
                root("Node", "", R"(<nodes name="a"><one name="b"/></nodes><nodes name="a"/>)"));
    EXPECT_EQ(model.identity(model.find("//a/b")), "//@nodes.0/@one");
    EXPECT_EQ(model.identity(model.find("//a.1")), "//@nodes.1");
}

TEST(LoadedModel, NothingIsFoundWhereNothingIs) {
    const LoadedModel model = modelOf(nodesWithKeys(), root("Node", "", "<nodes/>"));
    for (const char* path : {"", "x", "/1", "//", "//@nodes.1", "//@nodes.0/@one", "//@other",
                             "//a", "/x", "//@nodes.99999999999999999999"}) {
        EXPECT_FALSE(model.find(path)) << path;
    }
    EXPECT_EQ(model.identity(ModelElement()), "");
}

TEST(LoadedModel, ContentsStandInTheOrderOfTheFile) {
    const LoadedModel model =
        modelOf(nodesWithKeys(), root("Node", "", "<nodes><nodes/></nodes><one/><nodes/>"));
    Lines lines;
    for (const ModelElement& each : model.contents(model.roots().front())) {
        lines.push_back(model.identity(each));
    }
    EXPECT_EQ(lines, (Lines{"//@nodes.0", "//@one", "//@nodes.1"}));
}

TEST(LoadedModel, StaysUsableAfterItWasMoved) {
    LoadedModel model = modelOf(nodesWithKeys(), root("Node", "", "<nodes xmi:id='x'/>"));
    const LoadedModel moved = std::move(model);
    EXPECT_EQ(identities(moved), (Lines{"/", "x"}));
    EXPECT_EQ(moved.identity(moved.find("x")), "x");
}

}  // namespace
}  // namespace nuv::zero::xmi::test
