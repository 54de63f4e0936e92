#include "benchmarks/ForeignGraphs.h"

#if defined(MODELING_NUV0_HAS_LLVM)

#include <llvm/ADT/BreadthFirstIterator.h>
#include <llvm/ADT/DepthFirstIterator.h>
#include <llvm/ADT/GraphTraits.h>
#include <llvm/ADT/PostOrderIterator.h>

#include "benchmarks/LinkCursor.h"

namespace nuv::zero::benchmarks {
namespace {

/// The model as LLVM sees it. Its traits are static, so the lists of the walk under way have to be
/// found without a graph object.
struct ModelGraph {
    const memory::Object* root;
    // NOLINTNEXTLINE(cppcoreguidelines-avoid-non-const-global-variables)
    static inline ClassLists* lists = nullptr;
};

}  // namespace
}  // namespace nuv::zero::benchmarks

template <>
struct llvm::GraphTraits<nuv::zero::benchmarks::ModelGraph> {
    using ModelGraph = nuv::zero::benchmarks::ModelGraph;
    using NodeRef = const nuv::zero::memory::Object*;
    using ChildIteratorType = nuv::zero::benchmarks::LinkCursor;

    static NodeRef getEntryNode(const ModelGraph& graph) { return graph.root; }
    static ChildIteratorType child_begin(NodeRef element) {
        return {*element, ModelGraph::lists->of(*element)};
    }
    static ChildIteratorType child_end(NodeRef element) {
        return ChildIteratorType::endOf(*element, ModelGraph::lists->of(*element));
    }
};

namespace nuv::zero::benchmarks {
namespace {

template <class Elements>
void addAll(Checksum& checksum, const Elements& elements) {
    for (const memory::Object* element : elements) checksum.add(nullptr, nullptr, element, true);
}

void walkOnce(const Walk& walk, Checksum& checksum) {
    ClassLists lists(walk);
    ModelGraph::lists = &lists;
    const ModelGraph graph{walk.shape->roots.front().get()};
    switch (walk.order) {
        case traversal::Algo::BreadthFirst:
            return addAll(checksum, llvm::breadth_first(graph));
        case traversal::Algo::DepthFirstPostOrder:
            return addAll(checksum, llvm::post_order(graph));
        case traversal::Algo::DepthFirstPreOrder:
            return addAll(checksum, llvm::depth_first(graph));
    }
}

Checksum walkByLlvm(const Walk& walk) {
    Checksum checksum;
    for (std::size_t i = 0; i < walk.shape->walks; ++i) walkOnce(walk, checksum);
    return checksum;
}

}  // namespace

std::vector<Contender> llvmContenders(const Walk& walk, const Checksum& expectedElements) {
    return {{"LLVM's iterator", [&walk] { return walkByLlvm(walk); }, expectedElements}};
}

}  // namespace nuv::zero::benchmarks

#else

namespace nuv::zero::benchmarks {

std::vector<Contender> llvmContenders(const Walk& /*walk*/, const Checksum& /*expected*/) {
    return {};
}

}  // namespace nuv::zero::benchmarks

#endif
