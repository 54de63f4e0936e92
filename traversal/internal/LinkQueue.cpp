#include "traversal/internal/LinkQueue.h"

#include <utility>

namespace nuv::zero::traversal MODELING_NUV0_OVER::internal {

LentLink LinkQueue::Place::link() const noexcept {
    const AssociationSetting* found = setting();
    return found == nullptr ? LentLink(source(), target(), meta::Property(), shouldCascade())
                            : LentLink(source(), target(), found->property(), shouldCascade());
}

LinkQueue::LinkQueue(const LinkQueue& other) : head_(other.head_), size_(other.size_) {
    // Blocks change at the end of the queue alone: of that, both have their own.
    const std::size_t end = head_ + size_;
    const auto firstBlock = other.blocks_.begin() + static_cast<std::ptrdiff_t>(other.first_);
    blocks_.reserve(end / blockSize + 1);
    blocks_.assign(firstBlock, firstBlock + static_cast<std::ptrdiff_t>(end / blockSize));
    if (end % blockSize != 0) {
        blocks_.push_back(
            std::make_shared<Block>(**(firstBlock + static_cast<std::ptrdiff_t>(end / blockSize))));
    }
    if (size_ != 0) front_ = &at(head_);
}

void LinkQueue::addBlock() {
    // Those that are gone make room when there are many of them, so that each is moved over once.
    if (first_ > blocks_.size() / 2) {
        blocks_.erase(blocks_.begin(), blocks_.begin() + static_cast<std::ptrdiff_t>(first_));
        first_ = 0;
    }
    if (spare_ == nullptr) {
        blocks_.push_back(std::make_shared<Block>());
    } else {
        blocks_.push_back(nullptr);
        blocks_.back().swap(spare_);
    }
}

void LinkQueue::dropBlock() noexcept {
    std::shared_ptr<Block>& block = blocks_[first_];
    if (block.use_count() == 1) {
        spare_ = std::move(block);
    } else {
        block.reset();
    }
    ++first_;
    head_ = 0;
    if (size_ != 0) front_ = &at(0);
}

bool LinkQueue::hasSameLinks(const LinkQueue& other) const noexcept {
    if (size_ != other.size_) return false;
    for (std::size_t index = 0; index < size_; ++index) {
        const Place& here = (*this)[index];
        const Place& there = other[index];
        if (&here != &there && !(here.link().get() == there.link().get())) return false;
    }
    return true;
}

}  // namespace nuv::zero::traversal::internal
