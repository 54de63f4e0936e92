#include "benchmarks/ForeignGraphs.h"

#if defined(MODELING_NUV0_HAS_BOOST_GRAPH)

#include <boost/graph/adjacency_list.hpp>
#include <boost/graph/breadth_first_search.hpp>
#include <boost/graph/depth_first_search.hpp>
#include <memory>
#include <unordered_map>

#include "benchmarks/LinkCursor.h"

namespace nuv::zero::benchmarks {
namespace {

using Graph =
    boost::adjacency_list<boost::vecS, boost::vecS, boost::directedS, const memory::Object*>;
using Vertex = boost::graph_traits<Graph>::vertex_descriptor;

/// Copies the elements of the shape and the links that the walk would follow into a graph of so
/// many vertices. Which property a link belongs to is left out, in favour of the graph.
void copyInto(Graph& graph, const Walk& walk) {
    ClassLists lists(walk);
    const std::vector<ModelElement>& elements = walk.shape->elements;
    std::unordered_map<const memory::Object*, Vertex> vertices;
    vertices.reserve(elements.size());
    for (Vertex vertex = 0; vertex < elements.size(); ++vertex) {
        graph[vertex] = elements[vertex].get();
        vertices.emplace(elements[vertex].get(), vertex);
    }
    for (Vertex vertex = 0; vertex < elements.size(); ++vertex) {
        const memory::Object& element = *elements[vertex].get();
        for (const memory::PropertyObject* property : lists.of(element)) {
            const RawValues values = readRaw(element, *property);
            for (std::size_t i = 0; i < values.size(); ++i) {
                boost::add_edge(vertex, vertices.at(values[i]), graph);
            }
        }
    }
}

struct WhenDiscovered : boost::default_dfs_visitor {
    explicit WhenDiscovered(Checksum& sum) : checksum(&sum) {}
    void discover_vertex(Vertex vertex, const Graph& graph) const {
        checksum->add(nullptr, nullptr, graph[vertex], true);
    }
    Checksum* checksum;
};
struct WhenFinished : boost::default_dfs_visitor {
    explicit WhenFinished(Checksum& sum) : checksum(&sum) {}
    void finish_vertex(Vertex vertex, const Graph& graph) const {
        checksum->add(nullptr, nullptr, graph[vertex], true);
    }
    Checksum* checksum;
};
struct WhenQueued : boost::default_bfs_visitor {
    explicit WhenQueued(Checksum& sum) : checksum(&sum) {}
    void discover_vertex(Vertex vertex, const Graph& graph) const {
        checksum->add(nullptr, nullptr, graph[vertex], true);
    }
    Checksum* checksum;
};

void visit(const Graph& graph, traversal::Algo order, Checksum& checksum) {
    const Vertex root = 0;
    const auto indices = boost::get(boost::vertex_index, graph);
    std::vector<boost::default_color_type> colors(boost::num_vertices(graph));
    const auto colorMap = boost::make_iterator_property_map(colors.begin(), indices);
    switch (order) {
        case traversal::Algo::BreadthFirst: {
            boost::queue<Vertex> queue;
            boost::breadth_first_visit(graph, root, queue, WhenQueued(checksum), colorMap);
            break;
        }
        case traversal::Algo::DepthFirstPostOrder:
            boost::depth_first_visit(graph, root, WhenFinished(checksum), colorMap);
            break;
        case traversal::Algo::DepthFirstPreOrder:
            boost::depth_first_visit(graph, root, WhenDiscovered(checksum), colorMap);
            break;
    }
}

}  // namespace

std::vector<Contender> boostContenders(const Walk& walk, const Checksum& expectedElements) {
    const std::size_t size = walk.shape->elements.size();
    const auto copy = std::make_shared<Graph>(size);
    copyInto(*copy, walk);
    const auto copyAndVisit = [&walk, size] {
        Checksum checksum;
        for (std::size_t i = 0; i < walk.shape->walks; ++i) {
            Graph graph(size);
            copyInto(graph, walk);
            visit(graph, walk.order, checksum);
        }
        return checksum;
    };
    const auto visitAlone = [&walk, copy] {
        Checksum checksum;
        for (std::size_t i = 0; i < walk.shape->walks; ++i) visit(*copy, walk.order, checksum);
        return checksum;
    };
    return {{"Boost.Graph, copying and visiting", copyAndVisit, expectedElements},
            {"Boost.Graph, visiting alone", visitAlone, expectedElements}};
}

}  // namespace nuv::zero::benchmarks

#else

namespace nuv::zero::benchmarks {

std::vector<Contender> boostContenders(const Walk& /*walk*/, const Checksum& /*expected*/) {
    return {};
}

}  // namespace nuv::zero::benchmarks

#endif
