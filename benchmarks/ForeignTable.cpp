#include "benchmarks/ForeignTable.h"

#include <ostream>

#include "benchmarks/Baselines.h"
#include "benchmarks/ForeignGraphs.h"
#include "benchmarks/Format.h"

namespace nuv::zero::benchmarks {

ForeignRow measureForeign(const Walk& walk, std::size_t rounds) {
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
    ForeignRow row = {walk.shape->name, walk.order, {}};
    if (contenders.size() == 2) return row;
    for (Contender& contender : contenders) contender.linksToShare = expected.links();

    const Timing timing = timeInTurn(contenders, rounds);
    for (std::size_t i = 1; i < contenders.size(); ++i) {
        row.cells.push_back({contenders[i].name, timing.ratio[i].median});
    }
    return row;
}

void writeTable(std::ostream& out, const std::vector<ForeignRow>& rows) {
    if (rows.empty()) return;
    out << "| shape | order |";
    for (const ForeignRow::Cell& cell : rows.front().cells) out << ' ' << cell.contender << " |";
    out << "\n|---|---|";
    for (std::size_t i = 0; i < rows.front().cells.size(); ++i) out << "--:|";
    out << '\n';
    for (const ForeignRow& row : rows) {
        out << "| " << row.shape << " | " << nameOf(row.order) << " |";
        for (const ForeignRow::Cell& cell : row.cells) out << ' ' << fixed(cell.ratio, 2) << " |";
        out << '\n';
    }
}

}  // namespace nuv::zero::benchmarks
