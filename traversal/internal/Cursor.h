#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <unordered_set>
#include <vector>

#include "../../model/Compiler.h"
#include "../AssociationSetting.h"
#include "../Export.h"
#include "../fwd.h"
#include "../support/Lent.h"

namespace nuv::zero::traversal MODELING_NUV0_OVER::internal {

/// A place among the links that leave one element: property by property in the order of the
/// settings, value by value in the order of the model. `ElementProgress` says what each operation
/// means to a user; a walk keeps element and settings alive and drives cursors itself.
///
///     while (cursor.step(budget) == Cursor::Step::Link) {
///         use(cursor.element(), cursor.setting().property(), cursor.target());
///     }
///     cursor.processedAll();   // tells the observer
///
/// A cursor fills one cache line, because a deep walk has one for each element on its path. What an
/// observer does while it is told of an event is seen by the step that tells it. A copy stands at
/// the same place and goes on by itself.
class Cursor {
  public:
    using Settings = std::vector<AssociationSetting>;
    /// What a step came to: a link, nothing because no link is left, or nothing because the budget
    /// is used up.
    enum class Step : std::uint8_t { Link, Over, Paused };

    /// A placeholder without links.
    Cursor() noexcept = default;
    Cursor(const Cursor& other);
    Cursor(Cursor&& other) noexcept = default;
    Cursor& operator=(const Cursor& other) { return *this = Cursor(other); }
    Cursor& operator=(Cursor&& other) noexcept = default;
    ~Cursor() = default;

    /// Makes this a fresh cursor over an element. The observer may be null.
    void restart(const ModelElement& element, TraversalProcessor* observer,
                 const Settings& settings) noexcept {
        element_ = Lent<ModelElement>(element);
        observer_ = observer;
        setting_ = settings.data();
        settingsLeft_ = static_cast<std::uint32_t>(settings.size());
        pruned_.reset();
        values_.clear();
        valueIndex_ = beforeFirst;
        valueCount_ = 0;
        place_ = Place::BeforeFirst;
        hasReportedSelf_ = isFinished_ = hasToldExit_ = false;
    }

    /// Tells another observer from now on.
    void observe(TraversalProcessor* observer) noexcept { observer_ = observer; }

    /// Moves on to the next link. Each property without values on the way takes one off the budget.
    Step step(std::size_t& budget) {
        if (++valueIndex_ < valueCount_) return Step::Link;
        valueCount_ = 0;
        return isFinished_ ? Step::Over : advance(budget);
    }
    /// Whether no link is left. The first such answer tells the observer that the element is left,
    /// unless the cursor was finished before its first step.
    bool processedAll() {
        if (observer_ != nullptr) tellExit();
        return isFinished_;
    }
    bool isFinished() const noexcept { return isFinished_; }

    const ModelElement& element() const noexcept { return element_.get(); }
    /// The property where the cursor stands or that comes next; null where none is left.
    const AssociationSetting* property() const noexcept {
        return settingsLeft_ == 0 ? nullptr : setting_;
    }
    /// Whether the latest step found a link.
    bool isOnLink() const noexcept { return valueIndex_ < valueCount_; }
    /// The property of the link found by the latest step, and what it leads to; also while the walk
    /// is below that link. REQUIRES: a step found one.
    const AssociationSetting& setting() const noexcept { return *setting_; }
    Lent<ModelElement> target() const { return targetAt(valueIndex_); }

    /// Shows targets that come soon to `visit`, each once per property, so that they can be loaded
    /// while the ones before them are walked.
    template <class Visit>
    MODELING_NUV0_ALWAYS_INLINE void lookAhead(const Visit& visit) const {
        constexpr std::size_t distance = 8;
        if (valueIndex_ + 1 >= valueCount_) return;
        const std::size_t end = std::min(valueIndex_ + distance + 1, valueCount_);
        std::size_t index = valueIndex_ == 0 ? 1 : valueIndex_ + distance;
        for (; index < end; ++index) visit(targetAt(index).get());
    }

    bool hasReportedSelf() const noexcept { return hasReportedSelf_; }
    void setReportedSelf() noexcept { hasReportedSelf_ = true; }

    Pruned pruneAllChildren() noexcept;
    Pruned pruneCurrentProperty() noexcept;
    Pruned pruneProperty(const meta::Property& property);

  private:
    using Properties = std::unordered_set<meta::Property>;
    static constexpr std::size_t beforeFirst = static_cast<std::size_t>(-1);
    /// Where the cursor is with regard to its properties; it is in a property from when it is
    /// entered, and among its values once they have been read.
    enum class Place : std::uint8_t { BeforeFirst, InProperty, AmongValues, Between };

    Step advance(std::size_t& budget);
    bool isPruned(const meta::Property& property) const;
    void leaveProperty();
    void tellExit();
    Lent<ModelElement> targetAt(std::size_t index) const {
        return Lent<ModelElement>::adopt(values_.lend(index));
    }

    Lent<ModelElement> element_;
    TraversalProcessor* observer_ = nullptr;
    /// The current property, and how many there are from it on.
    const AssociationSetting* setting_ = nullptr;
    std::unique_ptr<Properties> pruned_;
    WalkSupport::ElementView values_;
    std::size_t valueIndex_ = beforeFirst;
    std::size_t valueCount_ = 0;
    std::uint32_t settingsLeft_ = 0;
    Place place_ = Place::BeforeFirst;
    bool hasReportedSelf_ = false;
    bool isFinished_ = false;
    bool hasToldExit_ = false;
};

}  // namespace nuv::zero::traversal::internal
