#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "../../model/Compiler.h"
#include "../Export.h"
#include "FlatMap.h"
#include "Lent.h"
#include "NumberSet.h"

namespace nuv::zero::traversal MODELING_NUV0_OVER::internal {

/// Whether the framework numbers its elements, so that a set of them can be a set of numbers.
template <class Support>
concept NumbersElements = requires(const ModelElement& element) {
    { Support::numberOf(element) } -> std::same_as<std::uint64_t>;
};

/// A set of elements that only ever grows: by their numbers where the framework gives elements
/// numbers, by their handles where it does not. Somebody else keeps the elements alive.
///
/// Asking and inserting are constant on average. A failing allocation changes nothing. A copy is
/// independent. One thread at a time, for questions too.
template <class Support>
class ElementSetBy {
  public:
    bool contains(const ModelElement& element) noexcept {
        if (!element) return hasNull_;
        if constexpr (byNumber) {
            return elements_.contains(Support::numberOf(element));
        } else {
            return elements_.contains(element);
        }
    }
    /// Adds an element; false when it was there.
    bool insert(const ModelElement& element) {
        if (!element) {
            const bool isNew = !hasNull_;
            hasNull_ = true;
            return isNew;
        }
        if constexpr (byNumber) {
            return elements_.insert(Support::numberOf(element));
        } else {
            elements_.reserveOne();
            const auto place = elements_.locate(element);
            if (place.isTaken()) return false;
            elements_.insert(element, {}, place);
            return true;
        }
    }
    std::size_t size() const noexcept { return elements_.size() + (hasNull_ ? 1 : 0); }
    std::size_t bytes() const noexcept { return elements_.bytes(); }

    /// Begins to load what `contains` will look at, where that lies anywhere in memory.
    MODELING_NUV0_ALWAYS_INLINE void prefetch(
        [[maybe_unused]] const ModelElement& element) const noexcept {
        if constexpr (!byNumber) elements_.prefetch(element);
    }

  private:
    static constexpr bool byNumber = NumbersElements<Support>;
    struct Nothing {};
    using Handles = FlatMap<ModelElement, Lent<ModelElement>, Nothing,
                            typename Support::template Hash<ModelElement>>;

    std::conditional_t<byNumber, NumberSet, Handles> elements_;
    bool hasNull_ = false;
};

using ElementSet = ElementSetBy<WalkSupport>;

}  // namespace nuv::zero::traversal::internal
