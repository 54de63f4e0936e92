#include "traversal/WalkView.h"

#include "traversal/internal/Walk.h"

namespace nuv::zero::traversal MODELING_NUV0_OVER {

const std::shared_ptr<internal::TraversalResult>& WalkView::result() const noexcept {
    return walk_->result();
}
std::size_t WalkView::number() const noexcept {
    return walk_->number();
}
std::size_t WalkView::depth() const noexcept {
    return walk_->depth();
}
Meeting WalkView::meeting() const {
    return walk_->meeting();
}
std::vector<internal::Link> WalkView::path() const {
    return meeting() == Meeting::None ? std::vector<internal::Link>() : walk_->path();
}
std::vector<internal::Link> WalkView::pathTo(const ModelElement& element) const {
    return walk_->pathTo(element);
}
std::vector<internal::Link> WalkView::cycle() const {
    return walk_->cycle();
}
bool WalkView::hasEntered(const ModelElement& element) const {
    return walk_->hasEntered(element);
}
std::size_t WalkView::enteredCount() const noexcept {
    return walk_->enteredCount();
}
std::size_t WalkView::waitingCount() const noexcept {
    return walk_->waitingCount();
}
Algo WalkView::order() const noexcept {
    return walk_->order();
}
std::size_t WalkView::bytesHeld() const noexcept {
    return walk_->bytesHeld();
}

}  // namespace nuv::zero::traversal
