#include <cstdio>
#include <exception>
#include <memory>
#include <vector>

#include "benchmarks/Checksum.h"
#include "benchmarks/Clock.h"
#include "benchmarks/HeapCounter.h"
#include "traversal/Traversal.h"

/// Walks over the model of a host. Takes a `PlainGraph` from the standard input, then requests,
/// each the number of a kind and that of an order; answers each with a line of nanoseconds, links
/// and checksum. The other program, which has the same model in memory, compares.
namespace {

using namespace nuv::zero;
using benchmarks::Checksum;

struct Model {
    std::vector<ModelElement> roots;
    std::vector<meta::Property> followed;
    std::uint32_t walks = 1;
};

Model readModel() {
    benchmarks::PlainGraph graph = benchmarks::PlainGraph::read(stdin);
    const auto& schema =
        *new host::Store(std::move(graph.classes), std::move(graph.properties));  // counted
    const auto& store = *new host::Store(schema, std::move(graph.words), std::move(graph.where));
    Model model;
    for (const std::uint32_t root : graph.roots) model.roots.emplace_back(store, root);
    for (const std::uint32_t property : graph.followed) {
        model.followed.emplace_back(schema, property);
    }
    model.walks = graph.walks;
    return model;
}

/// The kinds by their numbers in the other program: composition, subtractive, additive.
std::shared_ptr<traversal::TraversalResult> run(const Model& model, std::uint32_t kind,
                                                traversal::Algo order) {
    using traversal::ResultPolicy;
    using traversal::Spec;
    if (kind == 0) {
        const auto builder = Spec::compositionTraversal();
        builder->includeInitialPseudoLink(ResultPolicy::Report);
        return builder->run(model.roots, order);
    }
    if (kind == 1) {
        const auto builder = Spec::subtractiveTraversal();
        builder->includeInitialPseudoLink(ResultPolicy::Report);
        return builder->run(model.roots, order);
    }
    const auto builder = Spec::additiveTraversal();
    for (const auto& property : model.followed) builder->traverse(property, ResultPolicy::Report);
    builder->includeInitialPseudoLink(ResultPolicy::Report);
    return builder->run(model.roots, order);
}

std::uint64_t numberOf(const ModelElement& element) {
    return element ? std::uint64_t{element.number()} + 1 : 0;
}

Checksum walk(const Model& model, std::uint32_t kind, traversal::Algo order) {
    Checksum checksum;
    for (std::uint32_t i = 0; i < model.walks; ++i) {
        for (const traversal::Link& link : traversal::links(run(model, kind, order))) {
            checksum.add(numberOf(link.getSource()), numberOf(link.getProperty()),
                         numberOf(link.getTarget()), link.shouldCascade());
        }
    }
    return checksum;
}

}  // namespace

int main() {
    try {
        const Model model = readModel();
        std::uint32_t kind = 0;
        std::uint32_t order = 0;
        while (benchmarks::readNumber(stdin, kind) && benchmarks::readNumber(stdin, order)) {
            benchmarks::settleHeap();
            Checksum met;
            const double time = benchmarks::nanosecondsOf(
                [&] { met = walk(model, kind, static_cast<traversal::Algo>(order)); });
            std::printf("%.0f %llu %llu\n", time, static_cast<unsigned long long>(met.links()),
                        static_cast<unsigned long long>(met.sum()));
            std::fflush(stdout);
        }
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "host-walks: %s\n", error.what());
        return 1;
    }
}
