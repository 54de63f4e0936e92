#include "tools/model-walk/Picture.h"

#include <gtest/gtest.h>

#include <string>

namespace model_walk {
namespace {

/// Two blocks, of which the first has three ports of one class and the second one.
Picture blocksWithPorts() {
    Picture picture;
    picture.nodes = {{"Block", "a"}, {"Block", "b"}, {"Port", "p"},
                     {"Port", "q"},  {"Port", "r"},  {"Port", "s"}};
    picture.edges = {{0, 2, "ports", true}, {0, 3, "ports", true}, {0, 4, "ports", true},
                     {1, 5, "ports", true}, {2, 5, "feeds"},       {0, 1, "next"}};
    return picture;
}

TEST(Picture, NodesWithTheSameNeighboursAreMerged) {
    const Picture shown = merged(blocksWithPorts());
    // p also feeds s, so only q and r are alike.
    ASSERT_EQ(shown.nodes.size(), 5U);
    EXPECT_EQ(shown.nodes[3].count, 2U);
    EXPECT_EQ(shown.edges.size(), 5U);
    EXPECT_EQ(shown.edges[1].count, 2U);
}

TEST(Picture, MergingComesBeforeCutting) {
    Picture picture;
    picture.nodes = {{"Block", "a"}};
    for (std::size_t port = 1; port <= 500; ++port) {
        picture.nodes.push_back({"Port", std::to_string(port)});
        picture.edges.push_back({0, port, "ports", true});
    }
    EXPECT_EQ(leftOut(merged(picture), {2, false}), 0U);
    EXPECT_EQ(leftOut(picture, {2, false}), 499U);
    EXPECT_NE(text(picture, {2, false}).find("499 elements are left out"), std::string::npos);
    EXPECT_EQ(text(merged(picture), {2, false}).find("left out"), std::string::npos);
}

TEST(Picture, InputsStayByThemselves) {
    Picture picture;
    picture.nodes = {{"Port", "p"}, {"Port", "q"}, {"Port", "r"}};
    picture.nodes[0].isInput = true;
    EXPECT_EQ(merged(picture).nodes.size(), 2U);
}

TEST(Picture, ClustersLieInsideEachOther) {
    Picture picture;
    picture.nodes = {{"Package", "outer"}, {"Package", "inner", 0}, {"Block", "leaf", 1}};
    picture.edges = {{0, 1, "packages", true}, {1, 2, "blocks", true}, {2, 0, "uses"}};
    const std::string drawn = text(picture, {200, true});
    EXPECT_NE(drawn.find("subgraph cluster_0"), std::string::npos);
    EXPECT_LT(drawn.find("subgraph cluster_0"), drawn.find("subgraph cluster_1"));
    EXPECT_EQ(drawn.find("packages"), std::string::npos) << "nesting says so already";
    EXPECT_NE(drawn.find("n2 -> n0 [label=\"uses\"]"), std::string::npos);
}

TEST(Picture, NamesCannotLeaveTheirQuotes) {
    Picture picture;
    picture.nodes = {{"Block", "a\"]; evil [label=\"b\\"}};
    EXPECT_NE(text(picture, {}).find(R"(a\"]; evil [label=\"b\\", fillcolor)"), std::string::npos);
}

TEST(Picture, AClassHasOneColourInEveryPicture) {
    Picture one;
    one.nodes = {{"Block", "a"}};
    Picture other;
    other.nodes = {{"Port", "p"}, {"Block", "a"}};
    const std::string drawn = text(one, {});
    const std::size_t begin = drawn.find("fillcolor");
    EXPECT_NE(text(other, {}).find(drawn.substr(begin, 20), text(other, {}).find("n1 ")),
              std::string::npos);
}

}  // namespace
}  // namespace model_walk
