#include "xmi/FileFindings.h"

#include <algorithm>
#include <utility>

#include "xmi/XmlParser.h"

namespace nuv::zero::xmi {

void FileFindings::add(const Misfit& misfit, const Spot& spot) {
    Finding finding;
    finding.reason = misfit.kind().reason;
    finding.weight = misfit.kind().weight;
    finding.property = misfit.kind().property;
    finding.reference = misfit.kind().reference;
    finding.message = misfit.what();
    if (!finding.reference.empty()) finding.lookedUpBy = "same file";
    add(std::move(finding), spot);
}

void FileFindings::add(Finding finding, const Spot& spot) {
    finding.file = file_;
    const std::size_t number = all_.kept().size();
    all_.add(std::move(finding));
    isLastKept_ = all_.kept().size() > number;
    if (isLastKept_) kept_.push_back({spot, number});
}

void FileFindings::addRepeatedId(std::string_view id, const Spot& spot) {
    Finding finding;
    finding.reason = Finding::Reason::DuplicateId;
    finding.weight = Finding::Weight::Warning;
    finding.message = "the id " + inQuotes(id) + " is given to several elements";
    add(std::move(finding), spot);
}

void FileFindings::setLost(std::size_t lost) {
    if (isLastKept_) all_.kept()[kept_.back().finding].lost = lost;
}

void FileFindings::addForeign(std::string_view uri, std::uint32_t offset) {
    auto known = foreign_.find(uri);
    if (known == foreign_.end()) known = foreign_.emplace(uri, Foreign{offset}).first;
    ++known->second.count;
}

void FileFindings::settle(const LoadedModel& model, ByteSource& source) {
    addNotes();
    sort();
    place(model, source);
}

const Finding* FileFindings::first() const noexcept {
    return kept_.empty() ? nullptr : &all_.kept()[kept_.front().finding];
}

void FileFindings::addNotes() {
    for (const auto& [uri, foreign] : foreign_) {
        Finding finding;
        finding.reason = Finding::Reason::ForeignContent;
        finding.weight = Finding::Weight::Note;
        finding.lost = foreign.count;
        finding.message = std::to_string(foreign.count) +
                          " XML elements and attributes of the namespace " + inQuotes(uri) +
                          " stand where any may";
        add(std::move(finding), {foreign.offset});
    }
}

void FileFindings::sort() {
    std::stable_sort(kept_.begin(), kept_.end(), [](const Kept& one, const Kept& other) {
        return one.spot.offset < other.spot.offset;
    });
    std::vector<Finding> sorted;
    sorted.reserve(kept_.size());
    for (const Kept& each : kept_) sorted.push_back(std::move(all_.kept()[each.finding]));
    for (std::size_t i = 0; i < kept_.size(); ++i) {
        kept_[i].finding = first_ + i;
        all_.kept()[first_ + i] = std::move(sorted[i]);
    }
}

void FileFindings::place(const LoadedModel& model, ByteSource& source) {
    std::vector<std::size_t> offsets;
    for (const Kept& each : kept_) {
        offsets.push_back(each.spot.offset);
        if (each.spot.other != nothing) offsets.push_back(each.spot.other);
    }
    std::sort(offsets.begin(), offsets.end());
    offsets.erase(std::unique(offsets.begin(), offsets.end()), offsets.end());
    const std::vector<Position> positions = positionsAt(source, offsets);
    const auto positionOf = [&](std::uint32_t offset) {
        const auto found = std::lower_bound(offsets.begin(), offsets.end(), offset);
        return positions[static_cast<std::size_t>(found - offsets.begin())];
    };
    for (const Kept& each : kept_) {
        Finding& finding = all_.kept()[each.finding];
        finding.position = positionOf(each.spot.offset);
        if (each.spot.element != nothing) {
            finding.element = model.identity(model.elements()[each.spot.element]);
        }
        if (each.spot.other != nothing) {
            const Position other = positionOf(each.spot.other);
            finding.other =
                file_ + ':' + std::to_string(other.line) + ':' + std::to_string(other.column);
        }
    }
}

}  // namespace nuv::zero::xmi
