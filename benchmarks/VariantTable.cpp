#include "benchmarks/VariantTable.h"

#include <ostream>

#include "benchmarks/Format.h"

namespace nuv::zero::benchmarks {
namespace {

struct Variant {
    std::string name;
    double target;
    Walk walk;
};

std::vector<Variant> variantsOf(const Walk& plain) {
    std::vector<Variant> variants = {
        {"plain", 0, plain},           {"8 rules", 1.15, plain},
        {"idle observer", 1.2, plain}, {"no pseudo-links", 1.15, plain},
        {"unique links", 2, plain},    {"unique elements", 1.3, plain}};
    variants[1].walk.withRules = true;
    variants[2].walk.observed = true;
    variants[3].walk.pseudoLinks = traversal::ResultPolicy::WalkOnly;
    variants[4].walk.uniqueness = traversal::UniquenessMode::UniqueLinks;
    variants[5].walk.uniqueness = traversal::UniquenessMode::UniqueElements;
    return variants;
}

}  // namespace

std::vector<VariantRow> measureVariants(const Walk& plain, std::size_t rounds) {
    const std::vector<Variant> variants = variantsOf(plain);
    std::vector<Contender> contenders;
    for (const Variant& variant : variants) {
        contenders.push_back({variant.name, [&variant] { return walkLibrary(variant.walk); },
                              expectedOf(variant.walk)});
        // A walk that leaves out repeats goes the same way, so whole walks are compared.
        contenders.back().linksToShare = contenders.front().expected.links();
    }
    const Timing timing = timeInTurn(contenders, rounds);

    std::vector<VariantRow> rows;
    for (std::size_t i = 1; i < variants.size(); ++i) {
        rows.push_back({variants[i].name, plain.shape->name, plain.kind, plain.order,
                        timing.perLink[i], timing.ratio[i], variants[i].target});
    }
    return rows;
}

void writeTable(std::ostream& out, const std::vector<VariantRow>& rows) {
    out << "| walk with | shape | kind | order | ns per link | over the plain walk | min to max "
           "| target |\n"
           "|---|---|---|---|--:|--:|---|--:|\n";
    for (const VariantRow& row : rows) {
        const bool hasTarget = row.target > 0;
        out << "| " << row.variant << " | " << row.shape << " | " << nameOf(row.kind) << " | "
            << nameOf(row.order) << " | " << fixed(row.perLink.median, 1) << " | "
            << (hasTarget ? judged(row.ratio.median, row.target, 2) : fixed(row.ratio.median, 2))
            << " | " << rangeOf(row.ratio, 2) << " | " << (hasTarget ? fixed(row.target, 2) : "")
            << " |\n";
    }
}

}  // namespace nuv::zero::benchmarks
