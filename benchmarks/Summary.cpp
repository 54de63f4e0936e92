#include "benchmarks/Summary.h"

#include <algorithm>
#include <ostream>

#include "benchmarks/Format.h"

namespace nuv::zero::benchmarks {
namespace {

using traversal::Algo;

GroupSummary& groupFor(std::vector<GroupSummary>& groups, const std::string& name) {
    const auto found = std::find_if(groups.begin(), groups.end(),
                                    [&](const GroupSummary& group) { return group.group == name; });
    if (found != groups.end()) return *found;
    groups.push_back({name});
    return groups.back();
}

void keepWorse(const WalkRow*& worst, const WalkRow* row) {
    if (row == nullptr) return;
    if (worst == nullptr || row->ratio.median > worst->ratio.median) worst = row;
}

void add(GroupSummary& group, const WalkRow& row) {
    const bool breadthFirst = row.order == Algo::BreadthFirst;
    keepWorse(breadthFirst                            ? group.breadthFirst
              : row.order == Algo::DepthFirstPreOrder ? group.preOrder
                                                      : group.postOrder,
              &row);
    double& bytes = breadthFirst ? group.breadthFirstBytes : group.depthFirstBytes;
    bytes = std::max(bytes, row.bytesPerElement);
}

/// Four cells: ratio, target, bytes, target.
void writeCells(std::ostream& out, const WalkRow* worst, double bytes) {
    if (worst == nullptr) {
        out << " | | | |";
        return;
    }
    const Targets targets = targetsOf(*worst);
    out << ' ' << judged(worst->ratio.median, targets.ratio, 2) << " | " << fixed(targets.ratio, 2)
        << " | " << judged(bytes, targets.bytesPerElement, 1) << " | "
        << fixed(targets.bytesPerElement, 0) << " |";
}

}  // namespace

std::vector<GroupSummary> summarise(const std::vector<WalkRow>& rows) {
    std::vector<GroupSummary> groups;
    for (const WalkRow& row : rows) add(groupFor(groups, groupOf(row.shape, row.kind)), row);
    return groups;
}

void writeSummary(std::ostream& out, const std::vector<GroupSummary>& groups) {
    out << "| shape | depth-first | at most | bytes | at most | breadth-first | at most | bytes "
           "| at most |\n|---|--:|--:|--:|--:|--:|--:|--:|--:|\n";
    for (const GroupSummary& group : groups) {
        const WalkRow* depthFirst = group.preOrder;
        keepWorse(depthFirst, group.postOrder);
        out << "| " << group.group << " |";
        writeCells(out, depthFirst, group.depthFirstBytes);
        writeCells(out, group.breadthFirst, group.breadthFirstBytes);
        out << '\n';
    }
}

}  // namespace nuv::zero::benchmarks
