#include "traversal/internal/CursorPath.h"

namespace nuv::zero::traversal::internal {

CursorPath::CursorPath(const CursorPath& other) {
    for (std::size_t index = 0; index < other.size_; ++index) {
        reserveOne();
        push() = other[index];
    }
}

void CursorPath::addBlock() {
    blocks_.push_back(std::make_unique<ElementProgress[]>(blockSize));
}

}  // namespace nuv::zero::traversal::internal
