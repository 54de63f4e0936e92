#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <span>
#include <vector>

#include "benchmarks/Walks.h"

namespace nuv::zero::benchmarks {

/// A property to follow, and where the elements of the class keep its values.
struct FollowedProperty {
    const memory::PropertyObject* property;
    std::size_t slot;
};
using PropertyList = std::span<const FollowedProperty>;

/// The rules of a walk, resolved by hand: the properties to follow from the elements of a class, in
/// order. Written without the library, so that it can contradict it.
class ClassLists {
  public:
    explicit ClassLists(const Walk& walk) : walk_(&walk), places_(16) {}

    /// The list for the class of an element; what it views lasts as long as this object.
    PropertyList of(const memory::Object& element) {
        const memory::ClassObject* type = element.getClass().get();
        const Place& place = places_[placeOf(type)];
        return place.type == type ? place.list : resolve(*type);
    }

  private:
    struct Place {
        const memory::ClassObject* type = nullptr;
        PropertyList list;
    };
    std::size_t placeOf(const memory::ClassObject* type) const noexcept;
    PropertyList resolve(const memory::ClassObject& type);
    /// Fills the table; false when two classes want one place.
    bool placeKnown();

    const Walk* walk_;
    /// A flat table, grown until every class has a place to itself: models have few classes.
    std::vector<Place> places_;
    std::vector<Place> known_;
    std::deque<std::vector<FollowedProperty>> lists_;
};

inline std::size_t ClassLists::placeOf(const memory::ClassObject* type) const noexcept {
    const auto bits = static_cast<std::uint64_t>(reinterpret_cast<std::uintptr_t>(type));
    return static_cast<std::size_t>((bits * 0x9E3779B97F4A7C15U) >> 40U) & (places_.size() - 1);
}

}  // namespace nuv::zero::benchmarks
