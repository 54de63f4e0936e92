#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <type_traits>
#include <utility>
#include <vector>

#include "../../model/Compiler.h"
#include "../Export.h"

namespace nuv::zero::traversal MODELING_NUV0_OVER::internal {

/// A hash map from handles to small values that only ever grows: open addressing over two arrays.
///
/// Keys stand apart from values because most questions of a walk are "is it there?", and eight
/// bytes a key make that one cache line. `Slot` holds a key (a handle, or a lent handle); `Handle`
/// is what it is compared with. Values of an empty type take no memory, which makes the map a set.
/// The null handle is a key like any other, kept aside because it marks free places. `Hash` may be
/// weak: what it gives is spread over the table by a multiplication.
///
/// A copy is independent. A failing allocation changes nothing. References to values last until
/// the next `reserveOne` or `insert`.
template <class Handle, class Slot, class Value, class Hash = std::hash<Handle>>
class FlatMap {
  public:
    std::size_t size() const noexcept { return size_ + (hasNull_ ? 1 : 0); }

    /// What the arrays take.
    std::size_t bytes() const noexcept {
        return slots_.capacity() * sizeof(Slot) + values_.bytes();
    }

    const Value* find(const Handle& key) const noexcept {
        if (!key) return hasNull_ ? &nullValue_ : nullptr;
        if (slots_.empty()) return nullptr;
        const std::size_t place = placeOf(key);
        return isFree(place) ? nullptr : &values_.at(place);
    }
    Value* find(const Handle& key) noexcept {
        return const_cast<Value*>(std::as_const(*this).find(key));
    }
    bool contains(const Handle& key) const noexcept { return find(key) != nullptr; }

    /// Begins to load the place of a key that is asked for soon.
    /// Inlined always: a call that only prefetches looks superfluous to g++, which drops it.
    MODELING_NUV0_ALWAYS_INLINE void prefetch(const Handle& key) const noexcept {
        if (key && !slots_.empty()) access::prefetchLine(&slots_[homeOf(key)]);
    }

    /// Where a key is or belongs: asking for it and inserting it take one look-up that way.
    class Place {
      public:
        /// Whether the key was there.
        bool isTaken() const noexcept { return isTaken_; }

      private:
        friend class FlatMap;
        std::size_t index_ = 0;
        std::size_t mask_ = 0;
        bool isTaken_ = false;
    };
    /// REQUIRES: `reserveOne` was called since the last insert.
    Place locate(const Handle& key) const noexcept {
        Place place;
        if (!key) {
            place.isTaken_ = hasNull_;
        } else {
            place.index_ = placeOf(key);
            place.mask_ = mask_;
            place.isTaken_ = !isFree(place.index_);
        }
        return place;
    }

    /// Makes sure that the next `insert` allocates nothing.
    void reserveOne() {
        // At most half full: linear probing then ends after a few steps.
        if ((size_ + 1) * 2 > slots_.size()) grow();
    }

    /// Adds a key that is not there yet.
    Value& insert(const Handle& key, Value value) {
        reserveOne();
        return insert(key, std::move(value), locate(key));
    }
    /// The same at the place where the key was missed.
    Value& insert(const Handle& key, Value value, const Place& place) {
        if (!key) {
            nullValue_ = std::move(value);
            hasNull_ = true;
            return nullValue_;
        }
        // The place is the first free one on the key's way. While it is free that cannot change,
        // unless the map has grown.
        const bool holds = place.mask_ == mask_ && isFree(place.index_);
        const std::size_t index = holds ? place.index_ : placeOf(key);
        slots_[index] = Slot(key);
        values_.at(index) = std::move(value);
        ++size_;
        return values_.at(index);
    }

  private:
    static constexpr std::size_t smallest = 16;

    class Values {
      public:
        void resize(std::size_t count) { values_.resize(count); }
        Value& at(std::size_t place) noexcept { return values_[place]; }
        const Value& at(std::size_t place) const noexcept { return values_[place]; }
        void swap(Values& other) noexcept { values_.swap(other.values_); }
        std::size_t bytes() const noexcept { return values_.capacity() * sizeof(Value); }

      private:
        std::vector<Value> values_;
    };
    /// One value stands for all, as they cannot differ.
    class NoValues {
      public:
        void resize(std::size_t /*count*/) noexcept {}
        Value& at(std::size_t /*place*/) noexcept { return value_; }
        const Value& at(std::size_t /*place*/) const noexcept { return value_; }
        void swap(NoValues& /*other*/) noexcept {}
        std::size_t bytes() const noexcept { return 0; }

      private:
        Value value_;
    };

    static const Handle& handleIn(const Slot& slot) noexcept {
        if constexpr (std::is_same_v<Slot, Handle>) {
            return slot;
        } else {
            return slot.get();
        }
    }
    bool isFree(std::size_t place) const noexcept { return !handleIn(slots_[place]); }

    /// Where the key is, or the free place where it belongs.
    std::size_t placeOf(const Handle& key) const noexcept {
        std::size_t place = homeOf(key);
        while (!isFree(place) && !(handleIn(slots_[place]) == key)) {
            place = (place + 1) & mask_;
        }
        return place;
    }

    /// The upper bits of a product with the golden ratio: it puts the members of any regular
    /// series, such as the addresses of objects made one after another, far from each other.
    std::size_t homeOf(const Handle& key) const noexcept {
        const std::uint64_t hash = Hash()(key);
        return access::narrowed<std::size_t>((hash * 0x9E3779B97F4A7C15U) >> shift_);
    }

    void grow() {
        FlatMap larger;
        const std::size_t count = slots_.empty() ? smallest : slots_.size() * 2;
        larger.slots_.resize(count);
        larger.values_.resize(count);
        larger.shift_ = 64U;
        for (std::size_t left = count; left > 1; left /= 2) --larger.shift_;
        larger.mask_ = count - 1;
        for (std::size_t place = 0; place < slots_.size(); ++place) {
            if (isFree(place)) continue;
            const std::size_t moved = larger.placeOf(handleIn(slots_[place]));
            larger.slots_[moved] = std::move(slots_[place]);
            larger.values_.at(moved) = std::move(values_.at(place));
        }
        slots_.swap(larger.slots_);
        values_.swap(larger.values_);
        shift_ = larger.shift_;
        mask_ = larger.mask_;
    }

    std::vector<Slot> slots_;
    std::conditional_t<std::is_empty_v<Value>, NoValues, Values> values_;
    std::size_t size_ = 0;
    std::size_t mask_ = 0;
    unsigned shift_ = 63;
    bool hasNull_ = false;
    Value nullValue_{};
};

}  // namespace nuv::zero::traversal::internal
