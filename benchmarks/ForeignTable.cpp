#include "benchmarks/ForeignTable.h"

#include <ostream>

#include "benchmarks/Baselines.h"
#include "benchmarks/ForeignGraphs.h"
#include "benchmarks/Format.h"

namespace nuv::zero::benchmarks {

std::vector<ForeignRow> measureForeign(const Walk& walk, std::size_t rounds) {
    const Checksum expected = expectedOf(walk);
    const Checksum elements = expectedElementsOf(walk);
    std::vector<Contender> contenders = {
        {"hand-written loop, flat set", [&] { return walkByHand(walk, Visited::Flat); }, expected},
        {"this library", [&] { return walkLibrary(walk); }, expected}};
    for (Contender& contender : llvmContenders(walk, elements)) {
        contenders.push_back(std::move(contender));
    }
    for (Contender& contender : boostContenders(walk, elements)) {
        contenders.push_back(std::move(contender));
    }
    if (contenders.size() == 2) return {};
    for (Contender& contender : contenders) contender.linksToShare = expected.links();

    const Timing timing = timeInTurn(contenders, rounds);
    std::vector<ForeignRow> rows;
    for (std::size_t i = 1; i < contenders.size(); ++i) {
        rows.push_back({contenders[i].name, walk.shape->name, walk.kind, walk.order,
                        timing.perLink[i], timing.ratio[i]});
    }
    return rows;
}

void writeTable(std::ostream& out, const std::vector<ForeignRow>& rows) {
    out << "| contender | shape | kind | order | ns per link | over the flat-set loop | min to max "
           "|\n|---|---|---|---|--:|--:|---|\n";
    for (const ForeignRow& row : rows) {
        out << "| " << row.contender << " | " << row.shape << " | " << nameOf(row.kind) << " | "
            << nameOf(row.order) << " | " << fixed(row.perLink.median, 1) << " | "
            << fixed(row.ratio.median, 2) << " | " << rangeOf(row.ratio, 2) << " |\n";
    }
}

}  // namespace nuv::zero::benchmarks
