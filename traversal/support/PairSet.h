#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "../Export.h"
#include "Lent.h"

namespace nuv::zero::traversal MODELING_NUV0_OVER::internal {

/// A set of pairs of elements that only ever grows: open addressing over one array of two words a
/// pair. Somebody else keeps the elements alive.
///
/// Inserting is constant on average. A failing allocation changes nothing. A copy is independent.
class PairSet {
  public:
    /// Adds a pair; false when it was there.
    bool insert(const ModelElement& first, const ModelElement& second) {
        if (!first && !second) {
            // Two null handles mark what is free.
            const bool isNew = !hasNulls_;
            hasNulls_ = true;
            return isNew;
        }
        // At most three quarters full.
        if ((size_ + 1) * 4 > places_.size() * 3) grow();
        Place& place = places_[placeOf(first, second)];
        if (!place.isFree()) return false;
        place = {Lent<ModelElement>(first), Lent<ModelElement>(second)};
        ++size_;
        return true;
    }

    bool contains(const ModelElement& first, const ModelElement& second) const {
        if (!first && !second) return hasNulls_;
        return !places_.empty() && !places_[placeOf(first, second)].isFree();
    }
    std::size_t bytes() const noexcept { return places_.capacity() * sizeof(Place); }

  private:
    struct Place {
        Lent<ModelElement> first;
        Lent<ModelElement> second;

        bool isFree() const noexcept { return !second.get() && !first.get(); }
        bool is(const ModelElement& one, const ModelElement& other) const noexcept {
            return second.get() == other && first.get() == one;
        }
    };

    std::size_t placeOf(const ModelElement& first, const ModelElement& second) const {
        std::size_t index = homeOf(first, second);
        while (!places_[index].isFree() && !places_[index].is(first, second)) {
            index = (index + 1) & (places_.size() - 1);
        }
        return index;
    }
    std::size_t homeOf(const ModelElement& first, const ModelElement& second) const {
        constexpr std::uint64_t golden = 0x9E3779B97F4A7C15U;
        constexpr std::uint64_t other = 0xD6E8FEB86659FD93U;
        std::uint64_t hash = hashOf(first) * golden + hashOf(second);
        hash = (hash ^ (hash >> 32U)) * other;
        return static_cast<std::size_t>(hash >> shift_);
    }
    static std::uint64_t hashOf(const ModelElement& element) {
        return element ? typename WalkSupport::template Hash<ModelElement>()(element) : 0;
    }
    void grow() {
        constexpr std::size_t smallest = 16;
        std::vector<Place> old(places_.empty() ? smallest : places_.size() * 2);
        old.swap(places_);
        shift_ = 64;
        for (std::size_t left = places_.size(); left > 1; left /= 2) --shift_;
        for (const Place& place : old) {
            if (!place.isFree()) places_[placeOf(place.first.get(), place.second.get())] = place;
        }
    }

    std::vector<Place> places_;
    std::size_t size_ = 0;
    unsigned shift_ = 64;
    bool hasNulls_ = false;
};

}  // namespace nuv::zero::traversal::internal
