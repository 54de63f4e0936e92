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
    ElementProgress& back() noexcept { return *back_; }

    /// Makes sure that the next `push` allocates nothing.
    void reserveOne() {
        if (size_ == blocks_.size() * blockSize) addBlock();
    }
    /// A used or placeholder cursor at the end, to be restarted. REQUIRES: `reserveOne` was called.
    ElementProgress& push() noexcept {
        // The cursors of a block lie side by side.
        back_ = size_ % blockSize == 0 ? &(*this)[size_] : back_ + 1;
        ++size_;
        return *back_;
    }
    void pop() noexcept {
        --size_;
        if (size_ % blockSize != 0) {
            --back_;
        } else if (size_ != 0) {
            back_ = &(*this)[size_ - 1];
        }
    }

  private:
    static constexpr std::size_t blockSize = 64;
    void addBlock();

    std::vector<std::unique_ptr<ElementProgress[]>> blocks_;
    std::size_t size_ = 0;
    /// The last cursor, which nearly every step asks for.
    ElementProgress* back_ = nullptr;
};

}  // namespace nuv::zero::traversal::internal
