#include "benchmarks/VariantTable.h"

#include <array>
#include <functional>
#include <limits>
#include <ostream>
#include <string_view>

#include "benchmarks/Format.h"

namespace nuv::zero::benchmarks {
namespace {

constexpr double none = std::numeric_limits<double>::infinity();

/// Makes the setup of the walk.
template <void (*setUp)(traversal::ResultSetup& setup)>
void withSetup(Walk& walk) {
    walk.setUp = setUp;
}

void observeIdly(traversal::ResultSetup& setup) {
    static traversal::TraversalProcessor idle;
    setup.observe(&idle);
}

void filterByReference(traversal::ResultSetup& setup) {
    setup.filter([](const traversal::Link&) { return traversal::ResultPolicy::Report; });
}

void filterByValue(traversal::ResultSetup& setup) {
    const std::function<traversal::ResultPolicy(traversal::Link)> byValue =
        [](const traversal::Link&) { return traversal::ResultPolicy::Report; };
    setup.filter(byValue);
}

void descendAlways(traversal::ResultSetup& setup) {
    setup.descend([](const traversal::Link&) { return true; });
}

void goFar(traversal::ResultSetup& setup) {
    setup.upTo(std::numeric_limits<std::size_t>::max());
}

void rememberPaths(traversal::ResultSetup& setup) {
    setup.rememberPaths();
}

void listenIdly(traversal::ResultSetup& setup) {
    static traversal::WalkListener idle;
    setup.trace(&idle);
}

void count(traversal::ResultSetup& setup) {
    static traversal::WalkStatistics statistics;
    statistics.clear();
    setup.trace(&statistics);
}

constexpr std::array<Variant, 7> everyday = {{
    {"8 rules", 1.15, [](Walk& walk) { walk.withRules = true; }},
    {"idle observer", 1.2, withSetup<observeIdly>},
    {"no pseudo-links", 1.15,
     [](Walk& walk) { walk.pseudoLinks = traversal::ResultPolicy::WalkOnly; }},
    {"filter by reference", 1.05, withSetup<filterByReference>},
    {"filter by value", none, withSetup<filterByValue>},
    {"unique links", 2.0,
     [](Walk& walk) { walk.uniqueness = traversal::UniquenessMode::UniqueLinks; }},
    {"unique elements", 1.3,
     [](Walk& walk) { walk.uniqueness = traversal::UniquenessMode::UniqueElements; }},
}};

constexpr std::array<Variant, 7> whereabouts = {{
    {"depth and meeting", none, [](Walk& walk) { walk.loop = Loop::Where; }},
    {"`advanceWithin`", none, [](Walk& walk) { walk.loop = Loop::InSteps; }},
    {"`descend`, idle", none, withSetup<descendAlways>},
    {"`upTo`, far", none, withSetup<goFar>},
    {"`rememberPaths`", none, withSetup<rememberPaths>},
    {"listener, idle", none, withSetup<listenIdly>},
    {"`WalkStatistics`", none, withSetup<count>},
}};

}  // namespace

std::span<const Variant> everydayVariants() {
    return everyday;
}

std::span<const Variant> whereaboutsVariants() {
    return whereabouts;
}

VariantRow measureVariants(const Walk& plain, std::span<const Variant> variants,
                           std::size_t rounds) {
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

    VariantRow row = {plain.shape->name, plain.kind, plain.order, timing.perLink[0].median, {}, {}};
    const auto bytesOf = [&](const Contender& contender) {
        const HeapUse use = heapUseOf([&] { contender.walk(); });
        return static_cast<double>(use.peakBytes) * static_cast<double>(plain.shape->walks) /
               static_cast<double>(expectedElementsOf(plain).links());
    };
    const double plainBytes = bytesOf(contenders[0]);
    for (std::size_t i = 1; i < contenders.size(); ++i) {
        row.ratios.push_back(timing.ratio[i].median);
        row.moreBytes.push_back(bytesOf(contenders[i]) - plainBytes);
    }
    return row;
}

void writeTable(std::ostream& out, const std::vector<VariantRow>& rows,
                std::span<const Variant> variants) {
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
            out << ' ' << judged(row.ratios[i], variants[i].target, 2);
            if (row.moreBytes[i] >= 0.5) out << " (" << fixed(row.moreBytes[i], 0) << ')';
            out << " |";
        }
        out << '\n';
    }
}

}  // namespace nuv::zero::benchmarks
