#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "../AssociationSetting.h"
#include "../Export.h"
#include "../support/Lent.h"
#include "LentLink.h"

namespace nuv::zero::traversal MODELING_NUV0_OVER::internal {

/// The links that a breadth-first walk has still to handle, in the order in which they were found.
///
/// A link is kept in three words: source, target, and the setting by which it was found, which
/// names its property and says how it is reported. Elements and settings have to outlive the queue.
/// Links stand in blocks; a copy shares all blocks but the last with the original.
class LinkQueue {
  public:
    /// A link in the queue.
    class Place {
      public:
        Place() noexcept = default;
        /// A null setting stands for a pseudo-link.
        Place(const ModelElement& source, const AssociationSetting* setting,
              const ModelElement& target, bool cascade) noexcept
            : source_(source),
              target_(target),
              settingAndFlags_(reinterpret_cast<std::uintptr_t>(setting) |
                               (cascade ? cascadeBit : 0)) {}

        const ModelElement& source() const noexcept { return source_.get(); }
        const ModelElement& target() const noexcept { return target_.get(); }
        const AssociationSetting* setting() const noexcept {
            return reinterpret_cast<const AssociationSetting*>(settingAndFlags_ & ~flags);
        }
        bool shouldCascade() const noexcept { return (settingAndFlags_ & cascadeBit) != 0; }
        /// Whether the walk was not let into the target.
        bool isBoundary() const noexcept { return (settingAndFlags_ & boundaryBit) != 0; }
        void setCascade() noexcept { settingAndFlags_ |= cascadeBit; }
        void clearCascade() noexcept { settingAndFlags_ &= ~cascadeBit; }
        void setBoundary() noexcept { settingAndFlags_ |= boundaryBit; }
        LentLink link() const noexcept;

      private:
        static constexpr std::uintptr_t cascadeBit = 1;
        static constexpr std::uintptr_t boundaryBit = 2;
        static constexpr std::uintptr_t flags = 3;
        static_assert(alignof(AssociationSetting) > flags);

        Lent<ModelElement> source_;
        Lent<ModelElement> target_;
        std::uintptr_t settingAndFlags_ = 0;
    };

    LinkQueue() = default;
    LinkQueue(const LinkQueue& other);
    LinkQueue(LinkQueue&&) = delete;
    LinkQueue& operator=(const LinkQueue&) = delete;
    LinkQueue& operator=(LinkQueue&&) = delete;
    ~LinkQueue() = default;

    bool empty() const noexcept { return size_ == 0; }
    std::size_t size() const noexcept { return size_; }
    /// What the blocks take, those that are shared with copies too.
    std::size_t bytes() const noexcept {
        const std::size_t blocks = blocks_.size() - first_ + (spare_ == nullptr ? 0 : 1);
        return blocks * sizeof(Block) + blocks_.capacity() * sizeof(spare_);
    }
    /// The link at a place behind the front. REQUIRES: `index` is below `size()`.
    const Place& operator[](std::size_t index) const noexcept {
        return head_ + index < blockSize ? front_[index] : at(head_ + index);
    }
    /// REQUIRES: not empty.
    const Place& front() const noexcept { return *front_; }

    /// Makes sure that the next `push` allocates nothing.
    void reserveOne() {
        if (first_ + (head_ + size_) / blockSize == blocks_.size()) addBlock();
    }
    /// REQUIRES: `reserveOne` was called.
    void push(const Place& place) noexcept {
        Place& end = at(head_ + size_);
        end = place;
        if (size_++ == 0) front_ = &end;
    }
    void pop() noexcept {
        --size_;
        ++front_;
        if (++head_ == blockSize) dropBlock();
    }

    /// Whether both hold equal links at equal places; the cascade flags take no part.
    bool hasSameLinks(const LinkQueue& other) const noexcept;

  private:
    static constexpr std::size_t blockSize = 256;
    using Block = std::array<Place, blockSize>;

    /// REQUIRES: the place is counted from the beginning of the first block.
    Place& at(std::size_t place) const noexcept {
        return (*blocks_[first_ + place / blockSize])[place % blockSize];
    }
    void addBlock();
    void dropBlock() noexcept;

    /// Those before `first_` are gone.
    std::vector<std::shared_ptr<Block>> blocks_;
    std::size_t first_ = 0;
    /// Where the front stands in the first block.
    std::size_t head_ = 0;
    std::size_t size_ = 0;
    /// The link at the front, which every step asks for; any address where there is none.
    const Place* front_ = nullptr;
    /// A block to be used again, so that a queue that stays short allocates once.
    std::shared_ptr<Block> spare_;
};

}  // namespace nuv::zero::traversal::internal
