#include "traversal/internal/Cursor.h"

#include <algorithm>
#include <utility>

#include "traversal/internal/TraversalProcessor.h"

namespace nuv::zero::traversal MODELING_NUV0_OVER::internal {

Cursor::Cursor(const Cursor& other)
    : element_(other.element_),
      observer_(other.observer_),
      setting_(other.setting_),
      pruned_(other.pruned_ == nullptr ? nullptr : std::make_unique<Properties>(*other.pruned_)),
      values_(other.values_),
      valueIndex_(other.valueIndex_),
      valueCount_(other.valueCount_),
      settingsLeft_(other.settingsLeft_),
      place_(other.place_),
      hasReportedSelf_(other.hasReportedSelf_),
      isFinished_(other.isFinished_),
      hasToldExit_(other.hasToldExit_) {}

inline void Cursor::leaveProperty() {
    if (observer_ != nullptr) observer_->onExitProperty(element(), setting_->property());
    // Behind the event: an observer that throws gets the event again.
    place_ = Place::Between;
    ++setting_;
    --settingsLeft_;
}

/// Begins, or leaves a property whose values have run out, for the next property that has values.
/// An observer may prune everything while it is told of a property; that property is still read,
/// and left if it is empty.
Cursor::Step Cursor::advance(std::size_t& budget) {
    if (place_ == Place::BeforeFirst) {
        if (observer_ != nullptr) observer_->onEnterElement(element());
        // Behind the event, for the same reason.
        place_ = Place::Between;
    } else if (place_ != Place::Between) {
        leaveProperty();
    }
    values_.clear();
    while (settingsLeft_ != 0 && !isFinished_) {
        // Before the event: a property whose observer throws is left with the next step.
        place_ = Place::InProperty;
        if (observer_ != nullptr) observer_->onEnterProperty(element(), setting_->property());
        if (pruned_ == nullptr || !isPruned(setting_->property())) {
            WalkSupport::ElementView values = setting_->read(element());
            const std::size_t count = values.size();
            if (count != 0) {
                if (isFinished_) return Step::Over;
                values_ = std::move(values);
                valueCount_ = count;
                valueIndex_ = 0;
                place_ = Place::AmongValues;
                return Step::Link;
            }
        }
        leaveProperty();
        // The first property is part of the step itself.
        if (budget == 0) return Step::Paused;
        --budget;
    }
    isFinished_ = true;
    return Step::Over;
}

bool Cursor::isPruned(const meta::Property& property) const {
    return pruned_->count(property) != 0;
}

void Cursor::tellExit() {
    if (!isFinished_ || place_ == Place::BeforeFirst || hasToldExit_) return;
    // Before the event: an observer that throws does not get it again.
    hasToldExit_ = true;
    observer_->onExitElement(element());
}

/// Leaves the current link as it is: links below it are still named after it.
Pruned Cursor::pruneAllChildren() noexcept {
    // A property that is being entered counts as one to come.
    const std::uint32_t current = place_ == Place::AmongValues ? 1 : 0;
    const bool hasMore = !isFinished_ && (settingsLeft_ > current || valueIndex_ + 1 < valueCount_);
    isFinished_ = true;
    valueCount_ = std::min(valueCount_, valueIndex_ + 1);
    return hasMore ? Pruned::Cut : Pruned::TooLate;
}

Pruned Cursor::pruneCurrentProperty() noexcept {
    if (isFinished_) return Pruned::TooLate;
    if (place_ == Place::BeforeFirst) {
        if (settingsLeft_ == 0) return Pruned::TooLate;
        ++setting_;
        --settingsLeft_;
        return Pruned::Cut;
    }
    const bool hasMore = valueIndex_ + 1 < valueCount_;
    valueCount_ = std::min(valueCount_, valueIndex_ + 1);
    return hasMore ? Pruned::Cut : Pruned::TooLate;
}

Pruned Cursor::pruneProperty(const meta::Property& property) {
    if (isFinished_) return Pruned::TooLate;
    const bool isCurrent = settingsLeft_ != 0 && setting_->property() == property;
    if (isCurrent && place_ != Place::Between) return pruneCurrentProperty();
    if (pruned_ == nullptr) pruned_ = std::make_unique<Properties>();
    if (!pruned_->insert(property).second) return Pruned::TooLate;
    const auto* end = setting_ + settingsLeft_;
    const bool isToCome = std::any_of(setting_, end, [&](const AssociationSetting& setting) {
        return setting.property() == property;
    });
    return isToCome ? Pruned::Cut : Pruned::TooLate;
}

}  // namespace nuv::zero::traversal::internal
