#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "traversal/support/Lent.h"

namespace nuv::zero::traversal::internal {

/// A set of links, each as source, target and property, that only ever grows: open addressing over
/// one array of three words a link. Somebody else keeps elements and properties alive.
///
/// Inserting is constant on average. A failing allocation changes nothing. A copy is independent.
class LinkSet {
  public:
    /// Adds a link; false when it was there.
    bool insert(const ModelElement& source, const ModelElement& target,
                const meta::Property& property) {
        if (!source && !target && !property) {
            // Three null handles mark what is free.
            const bool isNew = !hasEmpty_;
            hasEmpty_ = true;
            return isNew;
        }
        // At most three quarters full.
        if ((size_ + 1) * 4 > places_.size() * 3) grow();
        Place& place = places_[placeOf(source, target, property)];
        if (!place.isFree()) return false;
        place = {Lent<ModelElement>(source), Lent<ModelElement>(target),
                 Lent<meta::Property>(property)};
        ++size_;
        return true;
    }

  private:
    struct Place {
        Lent<ModelElement> source;
        Lent<ModelElement> target;
        Lent<meta::Property> property;

        bool isFree() const noexcept { return !target.get() && !source.get() && !property.get(); }
        bool is(const ModelElement& from, const ModelElement& to,
                const meta::Property& by) const noexcept {
            return target.get() == to && source.get() == from && property.get() == by;
        }
    };

    std::size_t placeOf(const ModelElement& source, const ModelElement& target,
                        const meta::Property& property) const {
        std::size_t index = homeOf(source, target, property);
        while (!places_[index].isFree() && !places_[index].is(source, target, property)) {
            index = (index + 1) & (places_.size() - 1);
        }
        return index;
    }
    std::size_t homeOf(const ModelElement& source, const ModelElement& target,
                       const meta::Property& property) const {
        constexpr std::uint64_t golden = 0x9E3779B97F4A7C15U;
        constexpr std::uint64_t other = 0xD6E8FEB86659FD93U;
        std::uint64_t hash = hashOf(source) * golden + hashOf(target);
        hash = (hash ^ (hash >> 32U)) * other + hashOf(property);
        return static_cast<std::size_t>((hash * golden) >> shift_);
    }
    template <class Handle>
    static std::uint64_t hashOf(const Handle& handle) {
        return handle ? typename WalkSupport::template Hash<Handle>()(handle) : 0;
    }
    void grow() {
        constexpr std::size_t smallest = 16;
        std::vector<Place> old(places_.empty() ? smallest : places_.size() * 2);
        old.swap(places_);
        shift_ = 64;
        for (std::size_t left = places_.size(); left > 1; left /= 2) --shift_;
        for (const Place& place : old) {
            if (place.isFree()) continue;
            places_[placeOf(place.source.get(), place.target.get(), place.property.get())] = place;
        }
    }

    std::vector<Place> places_;
    std::size_t size_ = 0;
    unsigned shift_ = 64;
    bool hasEmpty_ = false;
};

}  // namespace nuv::zero::traversal::internal
