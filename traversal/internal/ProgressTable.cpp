#include "traversal/internal/ProgressTable.h"

#include <limits>
#include <stdexcept>
#include <vector>

namespace nuv::zero::traversal::internal {

ProgressTable::ProgressTable(Discipline discipline, PropertyProvider& provider,
                             TraversalProcessor* observer)
    : discipline_(discipline), provider_(provider), firstObserver_(observer) {}

ProgressTable::ProgressTable(const ProgressTable& other) = default;
ProgressTable::~ProgressTable() = default;

void ProgressTable::prepareToEnter(const ModelElement& element, TraversalProcessor* observer) {
    if (places_.size() == std::numeric_limits<Place>::max()) {
        throw std::length_error("A walk enters at most 4294967295 elements.");
    }
    // First of all, since the provider may run the caller's code.
    keeper_.pin(element);
    prepared_ = provider_.settingsOf(access::classOf(element)).get();
    places_.reserveOne();
    if (isDepthFirst()) {
        path_.reserveOne();
    } else if (observer != firstObserver_) {
        park(element, observer, *prepared_);
    }
}

void ProgressTable::enter(const ModelElement& element, TraversalProcessor* observer) noexcept {
    if (isDepthFirst()) {
        places_.insert(element, static_cast<Place>(path_.size()));
        path_.push().restart(element, observer, *prepared_);
    } else {
        places_.insert(element, static_cast<Place>(places_.size()));
    }
}

ElementProgress* ProgressTable::cursorOfTop(const Link& top) {
    const ModelElement& element = top.getTarget();
    if (isDepthFirst()) {
        // Links and cursors come and go together, but for an input that was entered earlier.
        return path_.empty() ? nullptr : &path_.back();
    }
    if (!path_.empty()) return &path_.back();

    const Place place = *places_.find(element);
    if (place < turns_) return nullptr;
    path_.reserveOne();
    const auto waiting = parked_.find(element);
    if (waiting == parked_.end()) {
        path_.push().restart(element, firstObserver_,
                             *provider_.settingsOf(access::classOf(element)));
    } else {
        path_.push().takeOver(waiting->second);
        parked_.erase(waiting);
    }
    turns_ = place + 1;
    // A link that led here was handled when it was found; only an input's pseudo-link was not.
    if (top.getProperty()) path_.back().setReportedSelf();
    return &path_.back();
}

void ProgressTable::finishTop() noexcept {
    path_.pop();
}

ElementProgress* ProgressTable::findUnfinished(const ModelElement& element) {
    const Place* place = places_.find(element);
    if (place == nullptr) return nullptr;
    if (isDepthFirst()) {
        const bool onPath = *place < path_.size() && path_[*place].element() == element;
        return onPath ? &path_[*place] : nullptr;
    }
    if (!path_.empty() && path_.back().element() == element) return &path_.back();
    if (*place < turns_) return nullptr;
    const auto waiting = parked_.find(element);
    if (waiting != parked_.end()) return &waiting->second;
    return &park(element, firstObserver_, *provider_.settingsOf(access::classOf(element)));
}

ElementProgress& ProgressTable::park(const ModelElement& element, TraversalProcessor* observer,
                                     const Settings& settings) {
    ElementProgress& cursor = parked_.try_emplace(element).first->second;
    cursor.restart(element, observer, settings);
    return cursor;
}

}  // namespace nuv::zero::traversal::internal
