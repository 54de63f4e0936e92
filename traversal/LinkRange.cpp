#include "traversal/LinkRange.h"

#include <stdexcept>
#include <utility>

#include "traversal/internal/Walk.h"

namespace nuv::zero::traversal MODELING_NUV0_OVER {

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

/// Makes the walk, before its first step.
void LinkRange::prepare() {
    if (walk_) return;
    if (result_) {
        walk_.emplace(result_->prepare());
    } else {
        walk_.emplace();
    }
}

/// Comes to the first link.
void LinkRange::start() {
    const bool isNew = !walk_;
    prepare();
    if (walk_->hasEnded()) return;
    try {
        walk_->advance();
    } catch (...) {
        // Made only together with its first step: one that throws leaves nothing behind.
        if (isNew) walk_.reset();
        throw;
    }
}

Progress LinkRange::advanceWithin(std::size_t& steps) {
    prepare();
    return walk_->advanceWithin(steps);
}

const internal::Link& LinkRange::getCurrent() const {
    static const internal::Link none;
    return walk_ ? walk_->getCurrent() : none;
}

Pruned LinkRange::pruneAllChildren() {
    return walk_ && walk_->walk_ ? walk_->walk_->pruneAllChildren() : Pruned::Nothing;
}

Pruned LinkRange::pruneChildren(const meta::Property& property) {
    return walk_ && walk_->walk_ ? walk_->walk_->pruneChildren(property) : Pruned::Nothing;
}

Pruned LinkRange::pruneSiblings() {
    return walk_ && walk_->walk_ ? walk_->walk_->pruneSiblings() : Pruned::Nothing;
}

}  // namespace nuv::zero::traversal
