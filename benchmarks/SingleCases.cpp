#include "benchmarks/SingleCases.h"

#include <benchmark/benchmark.h>

#include <functional>
#include <memory>
#include <string>

#include "benchmarks/Baselines.h"
#include "benchmarks/FileModel.h"
#include "benchmarks/HeapCounter.h"
#include "benchmarks/Walks.h"

namespace nuv::zero::benchmarks {
namespace {

/// The shape of a case. Only the latest one is kept: a model is large, and cases come by shape.
const Shape& shapeNamed(const std::string& name) {
    static std::unique_ptr<Shape> latest;
    if (!latest || latest->name != name) {
        latest.reset();
        latest =
            name == "file" ? readShape(*ModelFile::biggest()) : makeShape(name, shapeSize(name));
    }
    return *latest;
}

void run(benchmark::State& state, const std::string& shape, Walk walk,
         const std::function<Checksum(const Walk&)>& contender) {
    walk.shape = &shapeNamed(shape);
    const Checksum expected = expectedOf(walk);
    settleHeap();
    for ([[maybe_unused]] auto _ : state) {  // NOLINT(clang-analyzer-deadcode.DeadStores)
        if (contender(walk) != expected) {
            state.SkipWithError("meets other links than it should");
            break;
        }
    }
    clearMarks(*walk.shape);
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) *
                            static_cast<std::int64_t>(expected.links()));
}

void registerWalk(const std::string& shape, const Walk& walk, const std::string& contenderName,
                  const std::function<Checksum(const Walk&)>& contender) {
    const std::string name = shape + "/" + std::string(nameOf(walk.kind)) + "/" +
                             std::string(nameOf(walk.order)) + "/" + contenderName;
    benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State& state) {
        run(state, shape, walk, contender);
    })->Unit(benchmark::kMillisecond);
}

void registerShape(const std::string& shape) {
    for (const Kind kind : allKinds) {
        for (const traversal::Algo order : allOrders) {
            Walk walk;
            walk.kind = kind;
            walk.order = order;
            registerWalk(shape, walk, "library", walkLibrary);
            for (const Visited visited : {Visited::Flat, Visited::Node, Visited::Mark}) {
                registerWalk(shape, walk, std::string(nameOf(visited)),
                             [visited](const Walk& w) { return walkByHand(w, visited); });
            }
            walk.withRules = true;
            registerWalk(shape, walk, "library, 8 rules", walkLibrary);
            walk.withRules = false;
            static traversal::TraversalProcessor idle;
            walk.setUp = [](traversal::ResultSetup& setup) { setup.observe(&idle); };
            registerWalk(shape, walk, "library, idle observer", walkLibrary);
        }
    }
}

}  // namespace

void runSingleCases(int argc, char** argv) {
    for (const std::string& shape : shapeNames()) registerShape(shape);
    if (ModelFile::biggest()) registerShape("file");
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
}

}  // namespace nuv::zero::benchmarks
