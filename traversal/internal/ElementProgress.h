#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <unordered_set>
#include <vector>

#include "traversal/AssociationSetting.h"
#include "traversal/Export.h"
#include "traversal/internal/Lent.h"
#include "traversal/internal/Link.h"

namespace nuv::zero::traversal::internal {

/// The events that a cursor sends to its observer.
enum class EventPoint : std::int32_t {
    EnterElement = 0,
    EnterProperty = 1,
    ExitProperty = 2,
    ExitElement = 3,
};

/// The cursor over the links that leave one element: property by property in the order of the
/// settings, value by value in the order of the model.
///
///     const auto settings = provider->getPropertiesToTraverse(link.getTarget());
///     ElementProgress cursor(link, &observer, settings);
///     while (!cursor.processedAll()) {
///         if (const Link next = cursor.advanceAndGetCurrent(); !!next) use(next);
///     }
///
/// The values of a property are those that stood there when the cursor came to it. Reading a
/// property whose value is not made of elements throws `CannotCastIncompatibleTypes`; the next step
/// then goes on behind that property. A property is never read when it was pruned before its turn,
/// but its enter and exit events are sent all the same.
///
/// A cursor keeps its element and its settings alive; the observer has to outlive it. A copy is an
/// independent cursor at the same place. One thread at a time.
class MODELING_NUV0_TRAVERSAL_EXPORT ElementProgress {
  public:
    /// A placeholder without links.
    ElementProgress();
    /// A fresh cursor over the target of the link. The observer may be null.
    ElementProgress(const Link& link, TraversalProcessor* processor,
                    const std::shared_ptr<std::vector<AssociationSetting>>& settings);
    ElementProgress(const ElementProgress& other);
    ElementProgress& operator=(const ElementProgress& other);
    ~ElementProgress();

    /// Moves on and returns the link found, cascading; the empty link when there is none left.
    Link advanceAndGetCurrent();
    /// Whether no link is left. The first such answer sends the exit event of the element, unless
    /// the cursor was finished before its first step.
    bool processedAll() {
        if (finished_ && started_ && !exitNotified_) exitElement();
        return finished_;
    }

    /// Whether the walk has handled the link to the element itself.
    bool hasReportedSelf() const { return reportedSelf_; }
    void setReportedSelf() { reportedSelf_ = true; }

    /// No further links. Sends no event by itself.
    void pruneAllChildren();
    /// No further values of the current property. Before the first step: leaves the first property
    /// out, without its events.
    void pruneCurrentProperty();
    /// The same for the named property, now or when its turn comes. Without effect on a property
    /// that has been passed.
    void pruneProperty(const meta::Property& property);

  private:
    friend class CursorPath;
    friend class ProgressTable;
    friend class TraversalResult;

    /// What only few cursors need.
    struct Extras {
        ModelElement element;
        std::shared_ptr<std::vector<AssociationSetting>> settings;
        std::unordered_set<meta::Property> prunedProperties;
    };
    using Settings = std::vector<AssociationSetting>;
    static constexpr std::size_t beforeFirst = static_cast<std::size_t>(-1);

    /// Makes this a fresh cursor over an element that the walk keeps alive, as it does the
    /// settings.
    void restart(const ModelElement& element, TraversalProcessor* processor,
                 const Settings& settings) noexcept {
        element_ = Lent<ModelElement>(element);
        processor_ = processor;
        settings_ = &settings;
        extras_.reset();
        values_.clear();
        valueIndex_ = beforeFirst;
        valueCount_ = 0;
        propertyIndex_ = 0;
        reportedSelf_ = started_ = finished_ = exitNotified_ = false;
    }
    /// Takes another cursor's place in the walk, and leaves a placeholder behind.
    MODELING_NUV0_TRAVERSAL_LOCAL void takeOver(ElementProgress& other) noexcept;
    /// Moves on to the next link; false when there is none left.
    bool step() { return ++valueIndex_ < valueCount_ || advance(); }
    const ModelElement& element() const noexcept { return element_.get(); }
    /// The link found by the last step. REQUIRES: the step found one.
    const meta::Property& currentProperty() const noexcept {
        return (*settings_)[propertyIndex_].property();
    }
    Lent<ModelElement> currentTarget() const { return targetAt(valueIndex_); }

    /// Shows targets that come soon to `visit`, each once per property, so that they can be loaded
    /// while the ones before them are walked.
    template <class Visit>
    [[gnu::always_inline]] void lookAhead(const Visit& visit) const {
        constexpr std::size_t distance = 8;
        if (valueIndex_ + 1 >= valueCount_) return;
        const std::size_t end = std::min(valueIndex_ + distance + 1, valueCount_);
        std::size_t index = valueIndex_ == 0 ? 1 : valueIndex_ + distance;
        for (; index < end; ++index) visit(targetAt(index).get());
    }
    Lent<ModelElement> targetAt(std::size_t index) const {
        return Lent<ModelElement>::adopt(values_.lend(index));
    }

    MODELING_NUV0_TRAVERSAL_LOCAL bool advance();
    [[gnu::always_inline]] inline bool updateCurrentValueForNewProperty();
    void exitElement() {
        // Before the event: an observer that throws does not get it again.
        exitNotified_ = true;
        if (isNotifying()) notify(EventPoint::ExitElement, meta::Property());
    }
    MODELING_NUV0_TRAVERSAL_LOCAL Link peekCurrent() const;
    bool isNotPruned(const meta::Property& property) const {
        return extras_ == nullptr || !isNamedForPruning(property);
    }
    MODELING_NUV0_TRAVERSAL_LOCAL bool isNamedForPruning(const meta::Property& property) const;
    bool isNotifying() const noexcept { return processor_ != nullptr; }
    void notify(EventPoint point, const meta::Property& property);
    std::size_t settingsCount() const noexcept {
        return settings_ == nullptr ? 0 : settings_->size();
    }

    Lent<ModelElement> element_;
    TraversalProcessor* processor_ = nullptr;
    const Settings* settings_ = nullptr;
    std::unique_ptr<Extras> extras_;
    WalkSupport::ElementView values_;
    std::size_t valueIndex_ = beforeFirst;
    std::size_t valueCount_ = 0;
    std::uint32_t propertyIndex_ = 0;
    bool reportedSelf_ = false;
    bool started_ = false;
    bool finished_ = false;
    bool exitNotified_ = false;
};

}  // namespace nuv::zero::traversal::internal
