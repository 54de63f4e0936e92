#include "Picture.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <map>
#include <set>
#include <string_view>
#include <tuple>
#include <utility>

namespace model_walk {
namespace {

/// Hue, saturation and brightness, light enough for black text. A sum of its own: that of the
/// standard library differs from one to the next.
std::string colourOf(std::string_view type) {
    std::uint32_t sum = 2166136261U;
    for (const char each : type) sum = (sum ^ static_cast<unsigned char>(each)) * 16777619U;
    std::array<char, 32> colour = {};
    const unsigned hue = sum % 1000;
    const unsigned saturation = 14 + sum / 1000 % 3 * 8;
    std::snprintf(colour.data(), colour.size(), "0.%03u 0.%02u 0.98", hue, saturation);
    return colour.data();
}

std::string quoted(std::string_view text) {
    std::string result = "\"";
    for (const char each : text) {
        if (each == '"' || each == '\\') result += '\\';
        result += each;
    }
    return result + "\"";
}

/// How two nodes have to agree to be drawn as one: the class, and each neighbour with the property
/// and the direction of the link.
using Signature = std::pair<std::string, std::set<std::tuple<std::size_t, std::string, bool>>>;

std::vector<std::size_t> groupsOf(const Picture& picture, std::size_t& groupCount) {
    std::vector<Signature> signatures(picture.nodes.size());
    std::vector<bool> isAlone(picture.nodes.size(), false);
    for (std::size_t i = 0; i < picture.nodes.size(); ++i) {
        const Picture::Node& node = picture.nodes[i];
        signatures[i].first = node.type;
        // Nodes are merged inside of one container only.
        signatures[i].second.emplace(node.container, "", false);
        isAlone[i] = isAlone[i] || node.isInput;
        if (node.container != Picture::noNode) isAlone[node.container] = true;
    }
    for (const Picture::Edge& edge : picture.edges) {
        signatures[edge.from].second.emplace(edge.to, edge.property, true);
        signatures[edge.to].second.emplace(edge.from, edge.property, false);
    }
    std::map<Signature, std::size_t> known;
    std::vector<std::size_t> groups(picture.nodes.size());
    for (std::size_t i = 0; i < groups.size(); ++i) {
        if (isAlone[i]) {
            groups[i] = groupCount++;
            continue;
        }
        const auto [group, isNew] = known.emplace(std::move(signatures[i]), groupCount);
        if (isNew) ++groupCount;
        groups[i] = group->second;
    }
    return groups;
}

/// Writes the nodes of a picture, those of a container inside of it.
class NodeWriter {
  public:
    NodeWriter(const Picture& picture, std::size_t count, bool hasClusters)
        : picture_(picture), contents_(count + 1) {
        for (std::size_t i = 0; i < count; ++i) {
            const std::size_t container = picture.nodes[i].container;
            const bool isInside = hasClusters && container < count;
            contents_[isInside ? container : count].push_back(i);
        }
    }

    std::string write() {
        // A stack of its own: containers may be nested as deeply as a model likes.
        std::vector<std::pair<std::size_t, std::size_t>> open = {{contents_.size() - 1, 0}};
        while (!open.empty()) {
            auto& [container, next] = open.back();
            if (next == contents_[container].size()) {
                open.pop_back();
                if (!open.empty()) text_ += std::string(open.size() * 2, ' ') + "}\n";
                continue;
            }
            const std::size_t node = contents_[container][next++];
            const std::string indent(open.size() * 2, ' ');
            if (contents_[node].empty()) {
                text_ += indent + nodeText(node);
                continue;
            }
            const Picture::Node& shown = picture_.nodes[node];
            text_ += indent + "subgraph cluster_" + std::to_string(node) + " {\n" + indent +
                     "  label=" + quoted(shown.type + " " + shown.name) + ";\n" + indent + "  " +
                     nodeText(node);
            open.emplace_back(node, 0);
        }
        return text_;
    }

  private:
    std::string nodeText(std::size_t number) const {
        const Picture::Node& node = picture_.nodes[number];
        const std::string name =
            node.count > 1 ? std::to_string(node.count) + " elements" : node.name;
        // The language has its own escapes, of which only the end of a line is meant.
        std::string label = quoted(node.type + "\n" + name);
        label.replace(label.find('\n'), 1, "\\n");
        return "n" + std::to_string(number) + " [label=" + label + ", fillcolor=\"" +
               colourOf(node.type) + "\"" + (node.isInput ? ", penwidth=2.5" : "") +
               (node.count > 1 ? ", peripheries=2" : "") + "];\n";
    }

    const Picture& picture_;
    /// By container; what lies in none comes last.
    std::vector<std::vector<std::size_t>> contents_;
    std::string text_;
};

}  // namespace

Picture merged(const Picture& picture) {
    std::size_t groupCount = 0;
    const std::vector<std::size_t> groups = groupsOf(picture, groupCount);
    Picture result;
    result.nodes.resize(groupCount);
    for (Picture::Node& node : result.nodes) node.count = 0;
    for (std::size_t i = 0; i < groups.size(); ++i) {
        Picture::Node& group = result.nodes[groups[i]];
        const std::size_t count = group.count + picture.nodes[i].count;
        if (group.count == 0) group = picture.nodes[i];
        group.count = count;
    }
    for (Picture::Node& node : result.nodes) {
        if (node.container != Picture::noNode) node.container = groups[node.container];
    }
    std::map<std::tuple<std::size_t, std::size_t, std::string>, std::size_t> known;
    for (const Picture::Edge& edge : picture.edges) {
        Picture::Edge between = edge;
        between.from = groups[edge.from];
        between.to = groups[edge.to];
        const auto [found, isNew] = known.emplace(
            std::tuple(between.from, between.to, between.property), result.edges.size());
        if (isNew) {
            result.edges.push_back(between);
        } else {
            result.edges[found->second].count += between.count;
        }
    }
    return result;
}

std::size_t leftOut(const Picture& picture, const PictureOptions& options) {
    std::size_t count = 0;
    for (std::size_t i = options.mostNodes; i < picture.nodes.size(); ++i) {
        count += picture.nodes[i].count;
    }
    return count;
}

std::string text(const Picture& picture, const PictureOptions& options) {
    const std::size_t count = std::min(picture.nodes.size(), options.mostNodes);
    std::string result =
        "digraph model {\n"
        "  node [shape=box, style=\"filled,rounded\", fontname=\"sans-serif\", fontsize=10];\n"
        "  graph [fontname=\"sans-serif\", fontsize=10];\n"
        "  edge [fontname=\"sans-serif\", fontsize=8];\n";
    result += NodeWriter(picture, count, options.hasClusters).write();
    for (const Picture::Edge& edge : picture.edges) {
        if (edge.from >= count || edge.to >= count) continue;
        const bool isNested = options.hasClusters && edge.isContainment &&
                              picture.nodes[edge.to].container == edge.from;
        if (isNested) continue;
        const std::string times = edge.count > 1 ? " ×" + std::to_string(edge.count) : "";
        result += "  n" + std::to_string(edge.from) + " -> n" + std::to_string(edge.to) +
                  " [label=" + quoted(edge.property + times) +
                  (edge.isContainment ? ", arrowtail=diamond, dir=both" : "") + "];\n";
    }
    const std::size_t missing = leftOut(picture, options);
    if (missing > 0) {
        result += "  left_out [shape=plaintext, style=\"\", label=\"" + std::to_string(missing) +
                  (missing == 1 ? " element is" : " elements are") + " left out\"];\n";
    }
    return result + "}\n";
}

}  // namespace model_walk
