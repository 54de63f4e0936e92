#include "traversal/internal/ElementProgress.h"

#include <utility>

#include "traversal/internal/TraversalProcessor.h"

namespace nuv::zero::traversal::internal {

ElementProgress::ElementProgress() = default;

ElementProgress::ElementProgress(const Link& link, TraversalProcessor* processor,
                                 const std::shared_ptr<std::vector<AssociationSetting>>& settings)
    : element_(link.getTarget()),
      processor_(processor),
      settings_(settings.get()),
      extras_(new Extras{link.getTarget(), settings, {}}) {}

ElementProgress::ElementProgress(const ElementProgress& other)
    : element_(other.element_),
      processor_(other.processor_),
      settings_(other.settings_),
      extras_(other.extras_ == nullptr ? nullptr : new Extras(*other.extras_)),
      values_(other.values_),
      valueIndex_(other.valueIndex_),
      valueCount_(other.valueCount_),
      propertyIndex_(other.propertyIndex_),
      reportedSelf_(other.reportedSelf_),
      started_(other.started_),
      finished_(other.finished_),
      exitNotified_(other.exitNotified_) {}

ElementProgress& ElementProgress::operator=(const ElementProgress& other) {
    if (this != &other) {
        ElementProgress copy(other);
        takeOver(copy);
    }
    return *this;
}

ElementProgress::~ElementProgress() = default;

void ElementProgress::takeOver(ElementProgress& other) noexcept {
    element_ = std::move(other.element_);
    processor_ = std::exchange(other.processor_, nullptr);
    settings_ = std::exchange(other.settings_, nullptr);
    extras_ = std::move(other.extras_);
    values_ = std::move(other.values_);
    valueIndex_ = std::exchange(other.valueIndex_, beforeFirst);
    valueCount_ = std::exchange(other.valueCount_, 0);
    propertyIndex_ = std::exchange(other.propertyIndex_, 0);
    reportedSelf_ = std::exchange(other.reportedSelf_, false);
    started_ = std::exchange(other.started_, false);
    finished_ = std::exchange(other.finished_, false);
    exitNotified_ = std::exchange(other.exitNotified_, false);
}

Link ElementProgress::advanceAndGetCurrent() {
    step();
    return peekCurrent();
}

/// Comes to the first property, from the current place on, that has values.
inline bool ElementProgress::updateCurrentValueForNewProperty() {
    values_.clear();
    valueCount_ = 0;
    for (const std::size_t count = settingsCount(); propertyIndex_ < count; ++propertyIndex_) {
        const AssociationSetting& setting = (*settings_)[propertyIndex_];
        if (isNotifying()) notify(EventPoint::EnterProperty, setting.property());
        if (isNotPruned(setting.property())) {
            values_ = setting.read(element());
            valueCount_ = values_.size();
            if (valueCount_ != 0) {
                valueIndex_ = 0;
                // The observer may have pruned what it was told of.
                return !finished_;
            }
        }
        if (isNotifying()) notify(EventPoint::ExitProperty, setting.property());
    }
    finished_ = true;
    return false;
}

/// Begins, or leaves a property whose values have run out, for the next property that has values.
bool ElementProgress::advance() {
    if (finished_) return false;
    if (!started_) {
        if (isNotifying()) notify(EventPoint::EnterElement, meta::Property());
        // Behind the event: an observer that throws gets the event again.
        started_ = true;
    } else {
        if (isNotifying() && propertyIndex_ < settingsCount()) {
            notify(EventPoint::ExitProperty, currentProperty());
        }
        ++propertyIndex_;
    }
    return updateCurrentValueForNewProperty();
}

Link ElementProgress::peekCurrent() const {
    if (finished_) return Link::empty();
    return Link(element(), currentTarget().get(), currentProperty());
}

bool ElementProgress::isNamedForPruning(const meta::Property& property) const {
    return extras_->prunedProperties.count(property) != 0;
}

void ElementProgress::pruneAllChildren() {
    if (finished_) return;
    finished_ = true;
    propertyIndex_ = static_cast<std::uint32_t>(settingsCount());
    valueCount_ = 0;
}

void ElementProgress::pruneCurrentProperty() {
    if (finished_) return;
    if (started_) {
        valueIndex_ = valueCount_;
    } else if (propertyIndex_ < settingsCount()) {
        ++propertyIndex_;
    }
}

void ElementProgress::pruneProperty(const meta::Property& property) {
    if (finished_) return;
    if (propertyIndex_ < settingsCount() && currentProperty() == property) {
        pruneCurrentProperty();
        return;
    }
    if (extras_ == nullptr) extras_ = std::make_unique<Extras>();
    extras_->prunedProperties.insert(property);
}

void ElementProgress::notify(EventPoint point, const meta::Property& property) {
    switch (point) {
        case EventPoint::EnterElement:
            processor_->onEnterElement(element());
            break;
        case EventPoint::EnterProperty:
            processor_->onEnterProperty(element(), property);
            break;
        case EventPoint::ExitProperty:
            processor_->onExitProperty(element(), property);
            break;
        case EventPoint::ExitElement:
            processor_->onExitElement(element());
            break;
    }
}

}  // namespace nuv::zero::traversal::internal
