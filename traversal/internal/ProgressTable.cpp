#include "traversal/internal/ProgressTable.h"

#include <algorithm>

namespace nuv::zero::traversal::internal {

ProgressTable::ProgressTable(Discipline discipline, PropertyProvider& provider,
                             TraversalProcessor* observer)
    : discipline_(discipline), provider_(provider), firstObserver_(observer) {}

ProgressTable::ProgressTable(const ProgressTable& other) = default;
ProgressTable::~ProgressTable() = default;

/// Breadth-first, an element under the observer that the walk began with needs no cursor yet.
void ProgressTable::prepareToWait(const ModelElement& element, TraversalProcessor* observer,
                                  const Settings& settings) {
    if (observer != firstObserver_) {
        park(element, observer, settings);
    } else if (!parked_.empty()) {
        // An earlier attempt to enter it, under another observer, may have failed after this.
        parked_.erase(element);
    }
}

bool ProgressTable::openTop(const Link& top, TraversalProcessor* const& observer) {
    const ModelElement& element = top.getTarget();
    const bool isInput = !top.getProperty();
    if (isInput) {
        Meeting meeting = meet(element);
        if (meeting.hasEntered()) return false;
        prepareToEnter(meeting, element, observer);
        if (!isDepthFirst()) path_.reserveOne();
        enter(meeting, element, observer);
        if (isDepthFirst()) return true;
    } else {
        path_.reserveOne();
    }
    startTurn(element);
    // A link that led here was handled when it was found; an input's pseudo-link was not.
    if (!isInput) path_.back().setReportedSelf();
    return true;
}

void ProgressTable::startTurn(const ModelElement& element) {
    const auto waiting = parked_.empty() ? parked_.end() : parked_.find(element);
    if (waiting == parked_.end()) {
        const Settings& settings = settingsOf(element);
        path_.push().restart(element, firstObserver_, settings);
    } else {
        path_.push().takeOver(waiting->second);
        parked_.erase(waiting);
    }
}

ElementProgress* ProgressTable::findUnfinished(const ModelElement& element) {
    if (!hasEntered(element)) return nullptr;
    if (ElementProgress* cursor = findOnPath(element)) return cursor;
    if (isDepthFirst()) return nullptr;
    // Waiting, or finished: then the parked cursor is never asked for.
    const auto waiting = parked_.find(element);
    if (waiting != parked_.end()) return &waiting->second;
    return &park(element, firstObserver_, settingsOf(element));
}

ElementProgress* ProgressTable::findOnPath(const ModelElement& element) {
    // Nearly always one of the last two: the element just reached, or the one it was reached from.
    const std::size_t near = std::min<std::size_t>(path_.size(), 2);
    for (std::size_t back = 1; back <= near; ++back) {
        ElementProgress& cursor = path_[path_.size() - back];
        if (cursor.element() == element) return &cursor;
    }
    for (; indexed_ < path_.size(); ++indexed_) {
        pathIndex_.insert_or_assign(path_[indexed_].element(), indexed_);
    }
    const auto place = pathIndex_.find(element);
    const bool onPath = place != pathIndex_.end() && place->second < path_.size() &&
                        path_[place->second].element() == element;
    return onPath ? &path_[place->second] : nullptr;
}

ElementProgress& ProgressTable::park(const ModelElement& element, TraversalProcessor* observer,
                                     const Settings& settings) {
    ElementProgress& cursor = parked_.try_emplace(element).first->second;
    cursor.restart(element, observer, settings);
    return cursor;
}

}  // namespace nuv::zero::traversal::internal
