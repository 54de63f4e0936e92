#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace model_walk {

/// A graph as text in the language of Graphviz.
///
///     Picture picture;
///     picture.nodes = {{"Block", "Rotor", noNode, false}, {"Port", "power", 0, false}};
///     picture.edges = {{0, 1, "ports"}};
///     std::cout << text(merged(picture), {});
///
/// The colour of a node is that of its class, the same in every picture.
struct Picture {
    static constexpr std::size_t noNode = static_cast<std::size_t>(-1);

    struct Node {
        std::string type;
        std::string name;
        /// The node of the element that contains it.
        std::size_t container = noNode;
        /// Where the question began; drawn with a bold border.
        bool isInput = false;
        /// How many elements it stands for.
        std::size_t count = 1;
    };
    struct Edge {
        std::size_t from;
        std::size_t to;
        std::string property;
        bool isContainment = false;
        std::size_t count = 1;
    };

    std::vector<Node> nodes;
    std::vector<Edge> edges;
};

struct PictureOptions {
    std::size_t mostNodes = 200;
    /// Nodes lie inside what contains them, and those links are not drawn.
    bool hasClusters = false;
};

/// One node for all nodes of one class with the same neighbours by the same properties. Inputs, and
/// what contains others, stay by themselves.
Picture merged(const Picture& picture);

/// How many elements have no place in a picture with so many nodes at most.
std::size_t leftOut(const Picture& picture, const PictureOptions& options);

std::string text(const Picture& picture, const PictureOptions& options);

}  // namespace model_walk
