#pragma once

#include <cstddef>
#include <iterator>

#include "benchmarks/ClassLists.h"
#include "benchmarks/RawRead.h"

namespace nuv::zero::benchmarks {

/// The targets of an element's links as iterators, which is how other libraries want a graph.
class LinkCursor {
  public:
    using iterator_category = std::forward_iterator_tag;
    using value_type = const memory::Object*;
    using difference_type = std::ptrdiff_t;
    using pointer = const value_type*;
    using reference = value_type;

    LinkCursor() = default;
    /// Stands on the first link of the element.
    LinkCursor(const memory::Object& element, PropertyList list)
        : element_(&element), next_(list.data()), end_(list.data() + list.size()) {
        settle();
    }
    static LinkCursor endOf(const memory::Object& element, PropertyList list) {
        return {element, list.subspan(list.size())};
    }

    const memory::Object* operator*() const { return values_[index_]; }
    LinkCursor& operator++() {
        ++index_;
        settle();
        return *this;
    }
    LinkCursor operator++(int) {
        LinkCursor before = *this;
        ++*this;
        return before;
    }
    friend bool operator==(const LinkCursor& a, const LinkCursor& b) {
        return a.next_ == b.next_ && a.values_.size() - a.index_ == b.values_.size() - b.index_;
    }

  private:
    void settle() {
        while (index_ == values_.size() && next_ != end_) {
            values_ = readRaw(*element_, **next_++);
            index_ = 0;
        }
    }

    const memory::Object* element_ = nullptr;
    const memory::PropertyObject* const* next_ = nullptr;
    const memory::PropertyObject* const* end_ = nullptr;
    RawValues values_;
    std::size_t index_ = 0;
};

}  // namespace nuv::zero::benchmarks
