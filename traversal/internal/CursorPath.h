#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <vector>

#include "../Export.h"
#include "Cursor.h"

namespace nuv::zero::traversal MODELING_NUV0_OVER::internal {

/// The cursors of a depth-first walk from an input down to where it stands, the innermost last.
///
/// Cursors stand in blocks that stay where they are, and their places are used again: a walk
/// allocates once per block of new depth. A copy shares all blocks but the last with the original
/// until one of both needs to change them, so that copying a walk does not cost its depth.
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
    /// What the blocks take, those that are shared with copies too.
    std::size_t bytes() const noexcept {
        return blocks_.size() * sizeof(Block) + blocks_.capacity() * sizeof(blocks_.front());
    }
    const Cursor& operator[](std::size_t index) const noexcept {
        return (*blocks_[index / blockSize])[index % blockSize];
    }
    /// A cursor to be changed. Throws `std::bad_alloc`, and then has changed nothing.
    Cursor& at(std::size_t index) { return own(index / blockSize)[index % blockSize]; }
    Cursor& back() noexcept { return *back_; }

    /// Makes sure that the next `push` allocates nothing.
    void reserveOne() {
        // Blocks behind the last one are nobody else's: what a copy shares lies before its last.
        if (size_ == blocks_.size() * blockSize) blocks_.push_back(std::make_shared<Block>());
    }
    /// A used or placeholder cursor at the end, to be restarted. REQUIRES: `reserveOne` was called.
    Cursor& push() noexcept {
        // The cursors of a block lie side by side.
        back_ = size_ % blockSize == 0 ? blocks_[size_ / blockSize]->data() : back_ + 1;
        ++size_;
        return *back_;
    }
    /// Removes the last cursor. Throws `std::bad_alloc` where the one before it is shared with a
    /// copy, and then has changed nothing.
    void pop() {
        if (size_ % blockSize != 1) {
            --back_;
        } else {
            back_ = size_ == 1 ? nullptr : &at(size_ - 2);
        }
        --size_;
    }

    /// Whether both are paths along the same links: as a path is where its cursors stand.
    bool leadsAlong(const CursorPath& other) const noexcept;

  private:
    static constexpr std::size_t blockSize = 64;
    using Block = std::array<Cursor, blockSize>;

    Block& own(std::size_t block);

    /// At least as many as hold cursors; those behind them are there to be used again.
    std::vector<std::shared_ptr<Block>> blocks_;
    std::size_t size_ = 0;
    /// The last cursor, which nearly every step asks for.
    Cursor* back_ = nullptr;
};

}  // namespace nuv::zero::traversal::internal
