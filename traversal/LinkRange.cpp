#include "traversal/LinkRange.h"

#include <stdexcept>
#include <utility>

namespace nuv::zero::traversal {

LinkRange::LinkRange(std::shared_ptr<internal::TraversalResult> result)
    : result_(std::move(result)) {
    if (!result_) throw std::invalid_argument("links() needs a result, not a null pointer.");
}

LinkRange::LinkRange(LinkRange&& other) noexcept
    : result_(std::move(other.result_)), walk_(std::exchange(other.walk_, std::nullopt)) {}
LinkRange& LinkRange::operator=(LinkRange&& other) noexcept {
    LinkRange taken(std::move(other));
    result_.swap(taken.result_);
    walk_.reset();
    if (taken.walk_) walk_.emplace(std::move(*taken.walk_));
    return *this;
}
LinkRange::~LinkRange() = default;

void LinkRange::start() {
    if (result_) {
        walk_.emplace(result_);
    } else {
        walk_.emplace();
    }
}

void LinkRange::pruneAllChildren() {
    if (walk_) walk_->pruneAllChildren();
}

void LinkRange::pruneChildren(const meta::Property& property) {
    if (walk_) walk_->pruneChildren(property);
}

void LinkRange::pruneSiblings() {
    if (walk_) walk_->pruneSiblings();
}

}  // namespace nuv::zero::traversal
