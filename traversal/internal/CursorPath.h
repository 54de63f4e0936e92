#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "traversal/internal/ElementProgress.h"

namespace nuv::zero::traversal::internal {

/// The unfinished cursors of a walk, the innermost last: all cursors from an input down to where a
/// depth-first walk stands, or the one whose turn it is breadth-first.
///
/// Cursors stay where they are while others come and go, and their places are used again: a walk
/// allocates once per block of new depth.
class CursorPath {
  public:
    CursorPath() = default;
    CursorPath(const CursorPath& other);
    CursorPath(CursorPath&&) = delete;
    CursorPath& operator=(const CursorPath&) = delete;
    CursorPath& operator=(CursorPath&&) = delete;
    ~CursorPath() = default;

    bool empty() const noexcept { return size_ == 0; }
    std::size_t size() const noexcept { return size_; }
    ElementProgress& operator[](std::size_t index) noexcept {
        return blocks_[index / blockSize][index % blockSize];
    }
    const ElementProgress& operator[](std::size_t index) const noexcept {
        return blocks_[index / blockSize][index % blockSize];
    }
    ElementProgress& back() noexcept { return (*this)[size_ - 1]; }

    /// Makes sure that the next `push` allocates nothing.
    void reserveOne() {
        if (size_ == blocks_.size() * blockSize) addBlock();
    }
    /// A used or placeholder cursor at the end, to be restarted. REQUIRES: `reserveOne` was called.
    ElementProgress& push() noexcept { return (*this)[size_++]; }
    void pop() noexcept { --size_; }

  private:
    static constexpr std::size_t blockSize = 64;
    void addBlock();

    std::vector<std::unique_ptr<ElementProgress[]>> blocks_;
    std::size_t size_ = 0;
};

}  // namespace nuv::zero::traversal::internal
