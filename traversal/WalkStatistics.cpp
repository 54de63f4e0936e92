#include "traversal/WalkStatistics.h"

#include <algorithm>
#include <functional>
#include <map>
#include <utility>

#include "traversal/internal/ColumnText.h"
#include "traversal/internal/Names.h"

namespace nuv::zero::traversal MODELING_NUV0_OVER {

using internal::ColumnText;
using internal::qualifiedName;

namespace {

constexpr Fate everyFate[] = {Fate::Reported,          Fate::Silent,   Fate::Repeated,
                              Fate::PseudoLinkLeftOut, Fate::Filtered, Fate::NotDescended};

const char* nameOf(Fate fate) noexcept {
    switch (fate) {
        case Fate::Reported:
            return "reported";
        case Fate::Silent:
            return "silent";
        case Fate::Repeated:
            return "repeated";
        case Fate::PseudoLinkLeftOut:
            return "left out";
        case Fate::Filtered:
            return "filtered";
        case Fate::NotDescended:
            return "not descended";
    }
    return "";
}

meta::Class classOf(const ModelElement& element) {
    return element ? access::classOf(element) : meta::Class();
}

std::size_t mix(std::size_t hash, std::size_t more) noexcept {
    return hash * 31 + more;
}

/// What rows are sorted by: names are looked up once a row.
template <class Row, class KeyOf>
std::vector<Row> sorted(const std::vector<Row>& rows, const KeyOf& keyOf) {
    std::vector<std::pair<decltype(keyOf(rows.front())), const Row*>> keyed;
    keyed.reserve(rows.size());
    for (const Row& row : rows) {
        // A row that was made, but for want of memory has not come to count anything.
        if (row.count != 0) keyed.emplace_back(keyOf(row), &row);
    }
    std::stable_sort(keyed.begin(), keyed.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
    std::vector<Row> result;
    result.reserve(rows.size());
    for (const auto& [key, row] : keyed) result.push_back(*row);
    return result;
}

/// `3`, or `0-3`.
class DepthRange {
  public:
    void add(std::size_t depth) noexcept {
        least_ = std::min(least_, depth);
        most_ = std::max(most_, depth);
    }
    std::string text() const {
        const std::string most = std::to_string(most_);
        return least_ == most_ ? most : std::to_string(least_) + "-" + most;
    }

  private:
    std::size_t least_ = static_cast<std::size_t>(-1);
    std::size_t most_ = 0;
};

/// Links of one kind by fate.
struct FateCounts {
    std::size_t counts[std::size(everyFate)] = {};
    DepthRange depths;

    void add(const WalkStatistics::LinkRow& row) noexcept {
        counts[static_cast<std::size_t>(row.fate)] += row.count;
        depths.add(row.depth);
    }
};

/// The fates that any link had.
std::vector<Fate> fatesThatOccur(const WalkStatistics& statistics) {
    std::vector<Fate> fates;
    for (const Fate fate : everyFate) {
        if (statistics.linkCount(fate) != 0) fates.push_back(fate);
    }
    return fates;
}

void addCounts(std::vector<std::string>& cells, const FateCounts& counts,
               const std::vector<Fate>& fates) {
    for (const Fate fate : fates) {
        cells.push_back(std::to_string(counts.counts[static_cast<std::size_t>(fate)]));
    }
}

std::string linkTable(const std::vector<WalkStatistics::LinkRow>& rows,
                      const std::vector<Fate>& fates) {
    std::vector<std::string> head{"links from", "property"};
    for (const Fate fate : fates) head.emplace_back(nameOf(fate));
    head.emplace_back("depth");
    ColumnText table(std::move(head), 2);
    for (auto row = rows.begin(); row != rows.end();) {
        const auto first = row;
        FateCounts counts;
        for (; row != rows.end() && row->type == first->type && row->property == first->property;
             ++row) {
            counts.add(*row);
        }
        std::vector<std::string> cells{first->property ? qualifiedName(first->type) : "input",
                                       internal::plainName(first->property)};
        addCounts(cells, counts, fates);
        cells.push_back(counts.depths.text());
        table.add(std::move(cells));
    }
    return table.text();
}

std::string elementTable(const std::vector<WalkStatistics::ElementRow>& rows) {
    ColumnText table({"elements of", "entered", "depth"}, 1);
    for (auto row = rows.begin(); row != rows.end();) {
        const auto first = row;
        std::size_t count = 0;
        DepthRange depths;
        for (; row != rows.end() && row->type == first->type; ++row) {
            count += row->count;
            depths.add(row->depth);
        }
        table.add({qualifiedName(first->type), std::to_string(count), depths.text()});
    }
    return table.text();
}

std::string depthTable(const WalkStatistics& statistics, const std::vector<Fate>& fates) {
    std::map<std::size_t, std::pair<std::size_t, FateCounts>> byDepth;
    for (const auto& row : statistics.elementRows()) byDepth[row.depth].first += row.count;
    for (const auto& row : statistics.linkRows()) byDepth[row.depth].second.add(row);
    std::vector<std::string> head{"depth", "entered"};
    for (const Fate fate : fates) head.emplace_back(nameOf(fate));
    ColumnText table(std::move(head), 0);
    for (const auto& [depth, counts] : byDepth) {
        std::vector<std::string> cells{std::to_string(depth), std::to_string(counts.first)};
        addCounts(cells, counts.second, fates);
        table.add(std::move(cells));
    }
    return table.text();
}

}  // namespace

std::size_t WalkStatistics::Hash::operator()(const LinkRow& row) const noexcept {
    std::size_t hash = row.type ? std::hash<meta::Class>()(row.type) : 0;
    hash = mix(hash, row.property ? std::hash<meta::Property>()(row.property) : 0);
    return mix(mix(hash, row.depth), static_cast<std::size_t>(row.fate));
}
std::size_t WalkStatistics::Hash::operator()(const ElementRow& row) const noexcept {
    return mix(row.type ? std::hash<meta::Class>()(row.type) : 0, row.depth);
}
bool WalkStatistics::IsSame::operator()(const LinkRow& a, const LinkRow& b) const noexcept {
    return a.depth == b.depth && a.fate == b.fate && a.type == b.type && a.property == b.property;
}
bool WalkStatistics::IsSame::operator()(const ElementRow& a, const ElementRow& b) const noexcept {
    return a.depth == b.depth && a.type == b.type;
}

template <class Row>
Row& WalkStatistics::Table<Row>::rowOf(const Row& row) {
    auto place = places.find(row);
    if (place == places.end()) {
        // Room first: then what fails changes nothing.
        if (rows.size() == rows.capacity()) rows.reserve(2 * rows.size() + 8);
        place = places.emplace(row, rows.size()).first;
        rows.push_back(row);
    }
    return rows[place->second];
}

WalkStatistics::WalkStatistics() = default;
WalkStatistics::WalkStatistics(const WalkStatistics& other) = default;
WalkStatistics& WalkStatistics::operator=(const WalkStatistics& other) {
    // Copied first, so that a failure changes nothing: places say where rows are.
    WalkStatistics copy(other);
    links_.rows.swap(copy.links_.rows);
    links_.places.swap(copy.links_.places);
    elements_.rows.swap(copy.elements_.rows);
    elements_.places.swap(copy.elements_.places);
    mostBytesHeld_ = copy.mostBytesHeld_;
    return *this;
}
WalkStatistics::~WalkStatistics() = default;

void WalkStatistics::onLink(const WalkView& walk, const internal::Link& link, Fate fate,
                            std::size_t /*filter*/) {
    const std::size_t depth = walk.depth();
    LinkRow& links = links_.rowOf({classOf(link.getSource()), link.getProperty(), fate, depth, 0});
    // Both rows before either counts: then what fails counts nothing.
    if (link.shouldCascade()) ++elements_.rowOf({classOf(link.getTarget()), depth, 0}).count;
    ++links.count;
    mostBytesHeld_ = std::max(mostBytesHeld_, walk.bytesHeld());
}

std::vector<WalkStatistics::LinkRow> WalkStatistics::linkRows() const {
    // Two that share their names stay apart, by where the first row of each stands.
    std::map<std::pair<std::string, std::string>,
             std::vector<std::pair<meta::Class, meta::Property>>>
        met;
    return sorted(links_.rows, [&](const LinkRow& row) {
        std::pair<std::string, std::string> names{
            row.type ? qualifiedName(row.type) : "",
            row.property ? internal::plainName(row.property) : ""};
        auto& same = met[names];
        const std::pair<meta::Class, meta::Property> kind{row.type, row.property};
        const auto known = std::find(same.begin(), same.end(), kind);
        const auto number = known - same.begin();
        if (known == same.end()) same.push_back(kind);
        return std::tuple(std::move(names), number, row.fate, row.depth);
    });
}

std::vector<WalkStatistics::ElementRow> WalkStatistics::elementRows() const {
    std::map<std::string, std::vector<meta::Class>> met;
    return sorted(elements_.rows, [&](const ElementRow& row) {
        std::string name = row.type ? qualifiedName(row.type) : "";
        auto& same = met[name];
        const auto known = std::find(same.begin(), same.end(), row.type);
        const auto number = known - same.begin();
        if (known == same.end()) same.push_back(row.type);
        return std::tuple(std::move(name), number, row.depth);
    });
}

std::size_t WalkStatistics::linkCount(Fate fate) const noexcept {
    std::size_t count = 0;
    for (const LinkRow& row : links_.rows) count += row.fate == fate ? row.count : 0;
    return count;
}

std::size_t WalkStatistics::elementCount() const noexcept {
    std::size_t count = 0;
    for (const ElementRow& row : elements_.rows) count += row.count;
    return count;
}

std::size_t WalkStatistics::elementCount(const meta::Class& type) const noexcept {
    std::size_t count = 0;
    for (const ElementRow& row : elements_.rows) count += row.type == type ? row.count : 0;
    return count;
}

std::string WalkStatistics::text() const {
    const std::vector<Fate> fates = fatesThatOccur(*this);
    return linkTable(linkRows(), fates) + "\n" + elementTable(elementRows()) + "\n" +
           depthTable(*this, fates);
}

void WalkStatistics::clear() noexcept {
    links_.rows.clear();
    links_.places.clear();
    elements_.rows.clear();
    elements_.places.clear();
    mostBytesHeld_ = 0;
}

}  // namespace nuv::zero::traversal
