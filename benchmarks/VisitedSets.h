#pragma once

#include <cstddef>
#include <cstdint>
#include <unordered_set>
#include <utility>
#include <vector>

#include "benchmarks/RawRead.h"

/// The ways in which a hand-written loop remembers what it has visited. Each has one operation:
/// `insert` says whether the element is new.
namespace nuv::zero::benchmarks {

/// What everybody writes first.
class NodeSet {
  public:
    bool insert(const memory::Object* element) { return elements_.insert(element).second; }

  private:
    std::unordered_set<const memory::Object*> elements_;
};

/// Open addressing with linear probing: a power of two of places, at most half of them taken, a
/// multiplicative hash.
class FlatSet {
  public:
    FlatSet() : places_(smallest), shift_(64 - 4) {}

    bool insert(const memory::Object* element) {
        std::size_t at = placeOf(element);
        while (places_[at] != nullptr) {
            if (places_[at] == element) return false;
            at = (at + 1) & (places_.size() - 1);
        }
        places_[at] = element;
        if (++size_ * 2 > places_.size()) grow();
        return true;
    }

  private:
    static constexpr std::size_t smallest = 16;

    std::size_t placeOf(const memory::Object* element) const noexcept {
        const auto bits = static_cast<std::uint64_t>(reinterpret_cast<std::uintptr_t>(element));
        return static_cast<std::size_t>((bits * 0x9E3779B97F4A7C15U) >> shift_);
    }
    void grow() {
        std::vector<const memory::Object*> old(places_.size() * 2);
        old.swap(places_);
        --shift_;
        for (const memory::Object* element : old) {
            if (element == nullptr) continue;
            std::size_t at = placeOf(element);
            while (places_[at] != nullptr) at = (at + 1) & (places_.size() - 1);
            places_[at] = element;
        }
    }

    std::vector<const memory::Object*> places_;
    unsigned shift_;
    std::size_t size_ = 0;
};

/// The limit: the mark lies in the element that has to be read anyway. Each walk has a mark of its
/// own, so nothing has to be cleared between walks.
class MarkInElement {
  public:
    MarkInElement() noexcept : mark_(nextMark += 8) {}
    bool insert(const memory::Object* element) noexcept { return InnerMark::set(*element, mark_); }

  private:
    static inline std::uintptr_t nextMark = 0;
    std::uintptr_t mark_;
};

}  // namespace nuv::zero::benchmarks
