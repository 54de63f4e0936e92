#include <stdexcept>
#include <utility>

#include "traversal/internal/TraversalResult.h"
#include "traversal/internal/Walk.h"

namespace nuv::zero::traversal MODELING_NUV0_OVER::internal {

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
    : IterationContext(Unstarted(), result) {
    advance();
}

TraversalResult::IterationContext::IterationContext(Unstarted,
                                                    const std::shared_ptr<TraversalResult>& result)
    : walk_(walkOver(result)), current_(&walk_->current()) {}

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
    return (walk_ ? *this : other).hasEnded();
}

void TraversalResult::IterationContext::advance() {
    if (walk_) walk_->advance();
}

bool TraversalResult::IterationContext::hasEnded() const noexcept {
    return !walk_ || walk_->hasEnded();
}

Progress TraversalResult::IterationContext::advanceWithin(std::size_t& steps) {
    return walk_ ? walk_->advanceWithin(steps) : Progress::Ended;
}

std::size_t TraversalResult::IterationContext::depth() const noexcept {
    return walk_ ? walk_->depth() : 0;
}

Meeting TraversalResult::IterationContext::meeting() const {
    return walk_ ? walk_->meeting() : Meeting::None;
}

std::vector<Link> TraversalResult::IterationContext::path() const {
    // Where there is no link, nothing has to have been remembered.
    return meeting() == Meeting::None ? std::vector<Link>() : walk_->path();
}

std::vector<Link> TraversalResult::IterationContext::pathTo(const ModelElement& element) const {
    return walk_ ? walk_->pathTo(element) : std::vector<Link>();
}

std::vector<Link> TraversalResult::IterationContext::cycle() const {
    return walk_ ? walk_->cycle() : std::vector<Link>();
}

bool TraversalResult::IterationContext::hasEntered(const ModelElement& element) const {
    return walk_ && walk_->hasEntered(element);
}

std::size_t TraversalResult::IterationContext::enteredCount() const noexcept {
    return walk_ ? walk_->enteredCount() : 0;
}

std::size_t TraversalResult::IterationContext::waitingCount() const noexcept {
    return walk_ ? walk_->waitingCount() : 0;
}

void TraversalResult::IterationContext::pruneAllChildren() {
    if (walk_) walk_->pruneAllChildren();
}

void TraversalResult::IterationContext::pruneChildren(const meta::Property& property) {
    if (walk_) walk_->pruneChildren(property);
}

void TraversalResult::IterationContext::pruneSiblings() {
    if (walk_) walk_->pruneSiblings();
}

}  // namespace nuv::zero::traversal::internal
