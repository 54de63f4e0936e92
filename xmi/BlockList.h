#pragma once

#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

namespace nuv::zero::xmi {

/// A list that grows by blocks. A vector that grows holds its elements twice and then has room for
/// twice as many; for lists as long as a file is large that is most of the memory that reading it
/// takes. A list that was moved from is empty.
template <class T>
class BlockList {
  public:
    BlockList() = default;
    BlockList(BlockList&& other) noexcept
        : blocks_(std::exchange(other.blocks_, {})), size_(std::exchange(other.size_, 0)) {}
    BlockList& operator=(BlockList&& other) noexcept {
        blocks_ = std::exchange(other.blocks_, {});
        size_ = std::exchange(other.size_, 0);
        return *this;
    }
    BlockList(const BlockList&) = delete;
    BlockList& operator=(const BlockList&) = delete;
    ~BlockList() = default;

    std::size_t size() const noexcept { return size_; }
    T& operator[](std::size_t i) noexcept { return blocks_[i / perBlock][i % perBlock]; }
    const T& operator[](std::size_t i) const noexcept {
        return blocks_[i / perBlock][i % perBlock];
    }
    T& back() noexcept { return (*this)[size_ - 1]; }

    /// Throws `std::bad_alloc`, and then has changed nothing.
    void push_back(const T& value) {
        if (size_ / perBlock == blocks_.size()) {
            blocks_.push_back(std::unique_ptr<T[]>(new T[perBlock]));
        }
        (*this)[size_] = value;
        ++size_;
    }

  private:
    static constexpr std::size_t perBlock = 256;

    std::vector<std::unique_ptr<T[]>> blocks_;
    std::size_t size_ = 0;
};

}  // namespace nuv::zero::xmi
