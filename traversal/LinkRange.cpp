#include "traversal/LinkRange.h"

#include <stdexcept>
#include <utility>

namespace nuv::zero::traversal {

LinkRange::LinkRange(std::shared_ptr<internal::TraversalResult> result)
    : result_(std::move(result)) {
    if (!result_) throw std::invalid_argument("links() needs a result, not a null pointer.");
}

LinkRange::LinkRange(LinkRange&& other) noexcept = default;
LinkRange& LinkRange::operator=(LinkRange&& other) noexcept = default;
LinkRange::~LinkRange() = default;

void LinkRange::start() {
    walk_ = std::make_unique<internal::TraversalResult::IterationContext>(result_);
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
