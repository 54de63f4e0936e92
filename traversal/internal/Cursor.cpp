#include "traversal/internal/Cursor.h"

#include <utility>

#include "traversal/internal/TraversalProcessor.h"

namespace nuv::zero::traversal::internal {

Cursor::Cursor(const Cursor& other)
    : element_(other.element_),
      observer_(other.observer_),
      setting_(other.setting_),
      pruned_(other.pruned_ == nullptr ? nullptr : std::make_unique<Properties>(*other.pruned_)),
      values_(other.values_),
      valueIndex_(other.valueIndex_),
      valueCount_(other.valueCount_),
      settingsLeft_(other.settingsLeft_),
      hasReportedSelf_(other.hasReportedSelf_),
      isStarted_(other.isStarted_),
      isFinished_(other.isFinished_),
      hasToldExit_(other.hasToldExit_) {}

inline void Cursor::leaveProperty() {
    if (observer_ != nullptr) observer_->onExitProperty(element(), setting_->property());
    // Behind the event: an observer that throws gets the event again.
    ++setting_;
    --settingsLeft_;
}

/// Begins, or leaves a property whose values have run out, for the next property that has values.
bool Cursor::advance() {
    if (isFinished_) return false;
    if (isStarted_) {
        leaveProperty();
    } else {
        if (observer_ != nullptr) observer_->onEnterElement(element());
        // Behind the event, for the same reason.
        isStarted_ = true;
    }
    return findValues();
}

/// Comes to the first property, from the current one on, that has values. An observer may prune
/// everything while it is told of a property; that property is still read, and left if it is empty.
inline bool Cursor::findValues() {
    values_.clear();
    valueCount_ = 0;
    for (; settingsLeft_ != 0 && !isFinished_; leaveProperty()) {
        if (observer_ != nullptr) observer_->onEnterProperty(element(), setting_->property());
        if (pruned_ != nullptr && isPruned(setting_->property())) continue;
        WalkSupport::ElementView values = setting_->read(element());
        const std::size_t count = values.size();
        if (count == 0) continue;
        if (isFinished_) return false;
        values_ = std::move(values);
        valueCount_ = count;
        valueIndex_ = 0;
        return true;
    }
    isFinished_ = true;
    return false;
}

bool Cursor::isPruned(const meta::Property& property) const {
    return pruned_->count(property) != 0;
}

void Cursor::exitElement() {
    // Before the event: an observer that throws does not get it again.
    hasToldExit_ = true;
    if (observer_ != nullptr) observer_->onExitElement(element());
}

/// Leaves the current property as it is: links below that one are still named after it.
void Cursor::pruneAllChildren() noexcept {
    isFinished_ = true;
    valueCount_ = 0;
}

void Cursor::pruneCurrentProperty() noexcept {
    if (isFinished_) return;
    if (isStarted_) {
        valueIndex_ = valueCount_;
    } else if (settingsLeft_ != 0) {
        ++setting_;
        --settingsLeft_;
    }
}

void Cursor::pruneProperty(const meta::Property& property) {
    if (isFinished_) return;
    if (settingsLeft_ != 0 && setting_->property() == property) {
        pruneCurrentProperty();
        return;
    }
    if (pruned_ == nullptr) pruned_ = std::make_unique<Properties>();
    pruned_->insert(property);
}

}  // namespace nuv::zero::traversal::internal
