#include "benchmarks/WalkTable.h"

#include <algorithm>
#include <array>
#include <ostream>
#include <stdexcept>
#include <string_view>

#include "benchmarks/Format.h"

namespace nuv::zero::benchmarks {
namespace {

/// What a group of rows has to keep, depth-first (in both orders) and breadth-first.
struct GroupTargets {
    std::string_view group;
    Targets depthFirst;
    Targets breadthFirst;
};
constexpr std::array<GroupTargets, 7> groupTargets = {{
    {"tree", {0.70, 2, 0.1}, {0.90, 32, 0.1}},
    {"star", {0.70, 2, 0.1}, {0.90, 32, 0.1}},
    {"rich, composition", {0.80, 4, 0.3}, {0.95, 8, 0.3}},
    {"rich, additive and subtractive", {1.00, 64, 0.3}, {0.95, 48, 0.3}},
    {"chain", {1.00, 72, 0.1}, {0.50, 2, 0.1}},
    {"small", {1.05, 72, 0.3}, {1.10, 60, 0.3}},
    {"file", {0.85, 8, 0.3}, {0.95, 20, 0.3}},
}};

}  // namespace

std::string groupOf(const std::string& shape, Kind kind) {
    if (shape != "rich") return shape;
    return shape + (kind == Kind::Composition ? ", composition" : ", additive and subtractive");
}

Targets targetsOf(const WalkRow& row) {
    const std::string group = groupOf(row.shape, row.kind);
    const auto* const found =
        std::find_if(groupTargets.begin(), groupTargets.end(),
                     [&](const GroupTargets& targets) { return targets.group == group; });
    if (found == groupTargets.end()) throw std::logic_error("no targets for " + group);
    return row.order == traversal::Algo::BreadthFirst ? found->breadthFirst : found->depthFirst;
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
    out << "| shape | kind | order | ns per link | ratio | min to max | target "
           "| bytes per element | target | allocations per element "
           "| `unordered_set` loop | mark loop |\n"
           "|---|---|---|--:|--:|---|--:|--:|--:|--:|--:|--:|\n";
    for (const WalkRow& row : rows) {
        const Targets targets = targetsOf(row);
        out << "| " << row.shape << " | " << nameOf(row.kind) << " | " << nameOf(row.order) << " | "
            << fixed(row.walkPerLink.median, 1) << " | "
            << judged(row.ratio.median, targets.ratio, 2) << " | " << rangeOf(row.ratio, 2) << " | "
            << fixed(targets.ratio, 2) << " | "
            << judged(row.bytesPerElement, targets.bytesPerElement, 1) << " | "
            << fixed(targets.bytesPerElement, 0) << " | "
            << judged(row.allocationsPerElement, targets.allocationsPerElement, 3) << " | "
            << fixed(row.nodeRatio.median, 2) << " | " << fixed(row.markRatio.median, 2) << " |\n";
    }
}

}  // namespace nuv::zero::benchmarks
