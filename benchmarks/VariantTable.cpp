#include "benchmarks/VariantTable.h"

#include <array>
#include <limits>
#include <ostream>
#include <string_view>

#include "benchmarks/Format.h"

namespace nuv::zero::benchmarks {
namespace {

constexpr double none = std::numeric_limits<double>::infinity();

struct Variant {
    std::string_view name;
    double target;
    void (*change)(Walk& walk);
};
constexpr std::array<Variant, 7> variants = {{
    {"8 rules", 1.15, [](Walk& walk) { walk.withRules = true; }},
    {"idle observer", 1.2, [](Walk& walk) { walk.observed = true; }},
    {"no pseudo-links", 1.15,
     [](Walk& walk) { walk.pseudoLinks = traversal::ResultPolicy::WalkOnly; }},
    {"filter by reference", 1.05, [](Walk& walk) { walk.filter = Filter::ByReference; }},
    {"filter by value", none, [](Walk& walk) { walk.filter = Filter::ByValue; }},
    {"unique links", 2.0,
     [](Walk& walk) { walk.uniqueness = traversal::UniquenessMode::UniqueLinks; }},
    {"unique elements", 1.3,
     [](Walk& walk) { walk.uniqueness = traversal::UniquenessMode::UniqueElements; }},
}};

}  // namespace

VariantRow measureVariants(const Walk& plain, std::size_t rounds) {
    const auto contend = [](std::string_view name, const Walk& walk) {
        return Contender{std::string(name), [walk] { return walkLibrary(walk); }, expectedOf(walk)};
    };
    std::vector<Contender> contenders = {contend("plain", plain)};
    for (const Variant& variant : variants) {
        Walk walk = plain;
        variant.change(walk);
        contenders.push_back(contend(variant.name, walk));
        // A walk that leaves out repeats goes the same way, so whole walks are compared.
        contenders.back().linksToShare = contenders.front().expected.links();
    }
    const Timing timing = timeInTurn(contenders, rounds);

    VariantRow row = {plain.shape->name, plain.kind, plain.order, timing.perLink[0].median, {}};
    for (std::size_t i = 1; i < contenders.size(); ++i) {
        row.ratios.push_back(timing.ratio[i].median);
    }
    return row;
}

void writeTable(std::ostream& out, const std::vector<VariantRow>& rows) {
    out << "| shape | kind | order | plain, ns per link |";
    for (const Variant& variant : variants) out << ' ' << variant.name << " |";
    out << "\n|---|---|---|--:|";
    for (std::size_t i = 0; i < variants.size(); ++i) out << "--:|";
    out << "\n| at most | | | |";
    for (const Variant& variant : variants) {
        out << ' ' << (variant.target == none ? "" : fixed(variant.target, 2)) << " |";
    }
    out << '\n';
    for (const VariantRow& row : rows) {
        out << "| " << row.shape << " | " << nameOf(row.kind) << " | " << nameOf(row.order) << " | "
            << fixed(row.plainPerLink, 1) << " |";
        for (std::size_t i = 0; i < variants.size(); ++i) {
            out << ' ' << judged(row.ratios[i], variants[i].target, 2) << " |";
        }
        out << '\n';
    }
}

}  // namespace nuv::zero::benchmarks
