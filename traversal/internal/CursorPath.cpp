#include "traversal/internal/CursorPath.h"

#include <algorithm>
#include <iterator>

namespace nuv::zero::traversal MODELING_NUV0_OVER::internal {

CursorPath::CursorPath(const CursorPath& other) : size_(other.size_) {
    if (size_ == 0) return;
    const std::size_t last = (size_ - 1) / blockSize;
    blocks_.reserve(last + 1);
    std::copy_n(other.blocks_.begin(), last, std::back_inserter(blocks_));
    // The last block changes with every step, so both have their own from the beginning.
    auto block = std::make_shared<Block>();
    const std::size_t used = (size_ - 1) % blockSize + 1;
    std::copy_n(other.blocks_[last]->begin(), used, block->begin());
    blocks_.push_back(std::move(block));
    back_ = &(*blocks_[last])[used - 1];
}

CursorPath::Block& CursorPath::own(std::size_t block) {
    std::shared_ptr<Block>& kept = blocks_[block];
    if (kept.use_count() > 1) kept = std::make_shared<Block>(*kept);
    return *kept;
}

bool CursorPath::leadsAlong(const CursorPath& other) const noexcept {
    if (size_ != other.size_) return false;
    for (std::size_t index = 0; index < size_; ++index) {
        const Cursor& here = (*this)[index];
        const Cursor& there = other[index];
        if (&here == &there) continue;
        if (!(here.element() == there.element())) return false;
        // The last one's property leads nowhere yet.
        if (index + 1 < size_ && !(here.setting().property() == there.setting().property())) {
            return false;
        }
    }
    return true;
}

}  // namespace nuv::zero::traversal::internal
