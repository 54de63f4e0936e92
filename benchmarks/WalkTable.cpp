#include "benchmarks/WalkTable.h"

#include <cmath>
#include <ostream>

#include "benchmarks/Format.h"

namespace nuv::zero::benchmarks {
namespace {

std::string limit(double target, int digits) {
    return std::isfinite(target) ? fixed(target, digits) : std::string();
}

}  // namespace

Targets targetsOf(const std::string& shape, traversal::Algo order) {
    const bool breadthFirst = order == traversal::Algo::BreadthFirst;
    if (shape == "tree" || shape == "star") return {breadthFirst ? 2.6 : 2.0, 60, 0.1};
    if (shape == "chain") return {breadthFirst ? 3.4 : 2.6, 120, 0.1};
    if (shape == "small") return {breadthFirst ? 3.0 : 1.8, 120, 0.3};
    if (shape == "rich") return {breadthFirst ? 2.4 : 1.5, 110, 0.3};
    return {};
}

WalkRow measureWalk(const Walk& walk, std::size_t rounds) {
    const Checksum expected = expectedOf(walk);
    const std::vector<Contender> contenders = {
        {"hand-written loop, flat set", [&] { return walkByHand(walk, Visited::Flat); }, expected},
        {"library", [&] { return walkLibrary(walk); }, expected},
        {"hand-written loop, std::unordered_set", [&] { return walkByHand(walk, Visited::Node); },
         expected},
        {"hand-written loop, mark", [&] { return walkByHand(walk, Visited::Mark); }, expected,
         [&] { clearMarks(*walk.shape); }},
    };
    const Timing timing = timeInTurn(contenders, rounds);

    WalkRow row;
    row.shape = walk.shape->name;
    row.kind = walk.kind;
    row.order = walk.order;
    row.links = expected.links() / walk.shape->walks;
    row.flatPerLink = timing.perLink[0];
    row.walkPerLink = timing.perLink[1];
    row.ratio = timing.ratio[1];
    row.nodeRatio = timing.ratio[2];
    row.markRatio = timing.ratio[3];

    const auto entered = static_cast<double>(expectedElementsOf(walk).links());
    const HeapUse use = heapUseOf([&] { walkLibrary(walk); });
    row.allocationsPerElement = static_cast<double>(use.allocations) / entered;
    // Walks come one after another, so the peak is that of one of them.
    row.bytesPerElement =
        static_cast<double>(use.peakBytes) / entered * static_cast<double>(walk.shape->walks);
    return row;
}

void writeTable(std::ostream& out, const std::vector<WalkRow>& rows) {
    out << "| shape | kind | order | ns per link | flat-set loop, ns | ratio | min to max | target "
           "| bytes per element | target | allocations per element | target "
           "| `unordered_set` loop | mark loop |\n"
           "|---|---|---|--:|--:|--:|---|--:|--:|--:|--:|--:|--:|--:|\n";
    for (const WalkRow& row : rows) {
        const Targets targets = targetsOf(row.shape, row.order);
        out << "| " << row.shape << " | " << nameOf(row.kind) << " | " << nameOf(row.order) << " | "
            << fixed(row.walkPerLink.median, 1) << " | " << fixed(row.flatPerLink.median, 1)
            << " | " << judged(row.ratio.median, targets.ratio, 2) << " | " << rangeOf(row.ratio, 2)
            << " | " << limit(targets.ratio, 1) << " | "
            << judged(row.bytesPerElement, targets.bytesPerElement, 1) << " | "
            << limit(targets.bytesPerElement, 0) << " | "
            << judged(row.allocationsPerElement, targets.allocationsPerElement, 3) << " | "
            << limit(targets.allocationsPerElement, 1) << " | " << fixed(row.nodeRatio.median, 2)
            << " | " << fixed(row.markRatio.median, 2) << " |" << std::endl;
    }
}

}  // namespace nuv::zero::benchmarks
