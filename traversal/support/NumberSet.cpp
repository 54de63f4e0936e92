#include "traversal/support/NumberSet.h"

#include <algorithm>

namespace nuv::zero::traversal MODELING_NUV0_OVER::internal {

bool NumberSet::Entry::hasInside(std::uint64_t number) const noexcept {
    constexpr std::uint64_t mask = numbersPerLine - 1;
    std::uint64_t rest = content_.inside;
    for (unsigned left = count(); left != 0; --left, rest >>= bitsEach) {
        if ((rest & mask) == (number & mask)) return true;
    }
    return false;
}

void NumberSet::Entry::spreadTo(Line& line) noexcept {
    std::uint64_t rest = content_.inside;
    for (unsigned left = count(); left != 0; --left, rest >>= bitsEach) {
        line.add(rest & (numbersPerLine - 1));
    }
    takeBitmap(line);
}

void NumberSet::Lines::reserve(std::size_t count) {
    blocks_.push_back(std::make_unique<Line[]>(count));
    capacity_ = count;
    used_ = 0;
    total_ += count;
}

NumberSet::Line& NumberSet::Lines::take() {
    constexpr std::size_t smallest = 4;
    constexpr std::size_t largest = 1024;
    // As large as all before it: few blocks, and at most half of the room unused.
    if (blocks_.empty()) blocks_.reserve(16);
    if (used_ == capacity_) reserve(std::clamp(total_, smallest, largest));
    return blocks_.back()[used_++];
}

NumberSet::NumberSet(const NumberSet& other)
    : directory_(other.directory_),
      entries_(other.entries_),
      bitmaps_(other.bitmaps_),
      size_(other.size_),
      shift_(other.shift_) {
    if (bitmaps_ == 0) return;
    lines_.reserve(bitmaps_);
    for (Entry& entry : directory_) {
        if (entry.isFree() || !entry.isBitmap()) continue;
        Line& line = lines_.take();
        line = entry.line();
        entry.takeBitmap(line);
    }
}

bool NumberSet::insertElsewhere(std::uint64_t number) {
    // At most half full: linear probing then ends after a few steps.
    if ((entries_ + 1) * 2 > directory_.size()) grow();
    const std::uint64_t key = number / numbersPerLine;
    Entry& entry = directory_[placeOf(key)];
    if (entry.isFree()) {
        entry.begin(key, number);
        ++entries_;
    } else if (!entry.isBitmap()) {
        if (entry.hasInside(number)) return false;
        if (!entry.isFull()) {
            entry.addInside(number);
        } else {
            entry.spreadTo(lines_.take());
            ++bitmaps_;
            entry.line().add(number);
        }
    } else {
        latestKey_ = key;
        latest_ = &entry.line();
        if (!latest_->add(number)) return false;
    }
    ++size_;
    return true;
}

void NumberSet::grow() {
    constexpr std::size_t smallest = 16;
    std::vector<Entry> old(directory_.empty() ? smallest : directory_.size() * 2);
    old.swap(directory_);
    shift_ = 64;
    for (std::size_t left = directory_.size(); left > 1; left /= 2) --shift_;
    for (const Entry& entry : old) {
        if (!entry.isFree()) directory_[placeOf(entry.key())] = entry;
    }
}

}  // namespace nuv::zero::traversal::internal
