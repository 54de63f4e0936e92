#include <stdexcept>
#include <utility>

#include "traversal/internal/TraversalResult.h"
#include "traversal/internal/Walk.h"

namespace nuv::zero::traversal::internal {

namespace {

/// What every walk stands on at its end.
const Link& emptyLink() {
    static const Link link;
    return link;
}

std::unique_ptr<Walk> walkOver(const std::shared_ptr<TraversalResult>& result) {
    if (result == nullptr) throw std::invalid_argument("A walk needs a result to start from.");
    return std::make_unique<Walk>(result);
}

}  // namespace

TraversalResult::IterationContext::IterationContext() : current_(&emptyLink()) {}

TraversalResult::IterationContext::IterationContext(const std::shared_ptr<TraversalResult>& result)
    : walk_(walkOver(result)), current_(&walk_->current()) {
    advance();
}

TraversalResult::IterationContext::IterationContext(const IterationContext& other)
    : walk_(other.walk_ ? std::make_unique<Walk>(*other.walk_) : nullptr),
      current_(walk_ ? &walk_->current() : &emptyLink()) {}

TraversalResult::IterationContext::IterationContext(IterationContext&& other) noexcept
    : walk_(std::move(other.walk_)), current_(std::exchange(other.current_, &emptyLink())) {}

void TraversalResult::IterationContext::operator=(const IterationContext& other) {
    if (this == &other) return;
    *this = IterationContext(other);
}

// NOLINTNEXTLINE(performance-noexcept-move-constructor): throws from a callback of the walk
void TraversalResult::IterationContext::operator=(IterationContext&& other) {
    if (this == &other) return;
    if (walk_) walk_->refuseWhileUnderWay();
    walk_ = std::move(other.walk_);
    current_ = std::exchange(other.current_, &emptyLink());
}

TraversalResult::IterationContext::~IterationContext() = default;

bool TraversalResult::IterationContext::operator==(const IterationContext& other) const {
    if (walk_ && other.walk_) return walk_->standsWhere(*other.walk_);
    if (!walk_ && !other.walk_) return true;
    return !(walk_ ? *this : other).getCurrent();
}

void TraversalResult::IterationContext::advance() {
    if (walk_) walk_->advance();
}

void TraversalResult::IterationContext::pruneAllChildren() {
    if (!walk_) return;
    Cursor* cursor = walk_->findUnfinished(getCurrent().getTarget());
    if (cursor != nullptr) cursor->pruneAllChildren();
}

void TraversalResult::IterationContext::pruneChildren(const meta::Property& property) {
    if (!walk_) return;
    Cursor* cursor = walk_->findUnfinished(getCurrent().getTarget());
    if (cursor != nullptr) cursor->pruneProperty(property);
}

void TraversalResult::IterationContext::pruneSiblings() {
    if (!walk_) return;
    Cursor* cursor = walk_->findUnfinished(getCurrent().getSource());
    if (cursor != nullptr) cursor->pruneCurrentProperty();
}

}  // namespace nuv::zero::traversal::internal
