#pragma once

#include <algorithm>
#include <cstddef>
#include <unordered_map>
#include <vector>

#include "traversal/PropertyProvider.h"
#include "traversal/internal/CursorPath.h"
#include "traversal/internal/FlatMap.h"
#include "traversal/internal/Lent.h"

namespace nuv::zero::traversal::internal {

/// Which elements a walk has entered, and the cursors of those that it has not finished.
///
/// An element is entered once and stays entered. Its cursor exists only while it is of use:
/// depth-first from entering until nothing is left below the element, breadth-first while it is the
/// element's turn. What waits for its turn is a link on the frontier and a mark here; only when it
/// differs from a fresh cursor already (it was pruned, or entered under another observer than the
/// walk began with) its cursor is parked.
///
/// Everything that the table is shown stays alive as long as the table.
class ProgressTable {
    struct Nothing {};
    using Settings = std::vector<AssociationSetting>;
    using Entered =
        FlatMap<ModelElement, Lent<ModelElement>, Nothing, WalkSupport::Hash<ModelElement>>;

  public:
    enum class Discipline : bool { BreadthFirst, DepthFirst };

    /// What the walk knows of an element when it meets it: from looking it up to entering it.
    class Meeting {
      public:
        bool hasEntered() const noexcept { return place_.isTaken(); }

      private:
        friend class ProgressTable;
        explicit Meeting(const Entered::Place& place) noexcept : place_(place) {}

        Entered::Place place_;
        const Settings* settings_ = nullptr;
    };

    /// REQUIRES: the provider outlives the table.
    ProgressTable(Discipline discipline, PropertyProvider& provider, TraversalProcessor* observer);
    ProgressTable(const ProgressTable& other);
    ProgressTable(ProgressTable&&) = delete;
    ProgressTable& operator=(const ProgressTable&) = delete;
    ProgressTable& operator=(ProgressTable&&) = delete;
    ~ProgressTable();

    bool hasEntered(const ModelElement& element) const noexcept {
        return entered_.contains(element);
    }
    /// Looks an element up that is to be entered if it was not; fails when there is no room for it.
    Meeting meet(const ModelElement& element) {
        entered_.reserveOne();
        return Meeting(entered_.locate(element));
    }

    /// Announces a question about an element: the answer lies anywhere in memory.
    [[gnu::always_inline]] void prefetch(const ModelElement& element) const noexcept {
        entered_.prefetch(element);
        WalkSupport::prefetch(element);
    }

    /// Everything else about entering an element that can fail: makes room and asks the provider
    /// for the settings of its class. A failure leaves the element as if it had never been met.
    ///
    /// The observer by reference, because the provider may run the caller's code, which may attach
    /// another one. REQUIRES: the element was met and not entered.
    void prepareToEnter(Meeting& meeting, const ModelElement& element,
                        TraversalProcessor* const& observer) {
        keeper_.pin(element);
        meeting.settings_ = &settingsOf(element);
        if (isDepthFirst()) {
            path_.reserveOne();
        } else {
            prepareToWait(element, observer, *meeting.settings_);
        }
    }
    /// Marks the element entered. REQUIRES: `prepareToEnter` has just succeeded for it.
    void enter(const Meeting& meeting, const ModelElement& element,
               TraversalProcessor* observer) noexcept {
        entered_.insert(element, {}, meeting.place_);
        if (isDepthFirst()) path_.push().restart(element, observer, *meeting.settings_);
    }

    /// The cursor over the target of the link at the top of the frontier; null before `openTop`.
    /// Depth-first, links and cursors come and go together; breadth-first there is one cursor, as
    /// long as the turn lasts.
    ElementProgress* cursorOfTop() noexcept { return path_.empty() ? nullptr : &path_.back(); }
    /// Makes that cursor, and enters an input, whose turn has come. False when the input was
    /// reached from an earlier one and finished there.
    bool openTop(const Link& top, TraversalProcessor* const& observer);
    /// Ends the cursor of the top.
    void finishTop() noexcept {
        path_.pop();
        indexed_ = std::min(indexed_, path_.size());
    }

    /// The cursor of an element that may still produce links, to prune it; null when there is none.
    ElementProgress* findUnfinished(const ModelElement& element);

  private:
    bool isDepthFirst() const noexcept { return discipline_ == Discipline::DepthFirst; }
    const Settings& settingsOf(const ModelElement& element) {
        return provider_.settingsOf(access::classOf(element));
    }
    void prepareToWait(const ModelElement& element, TraversalProcessor* observer,
                       const Settings& settings);
    /// Breadth-first: puts the cursor of an element on the path. REQUIRES: there is room.
    void startTurn(const ModelElement& element);
    ElementProgress* findOnPath(const ModelElement& element);
    ElementProgress& park(const ModelElement& element, TraversalProcessor* observer,
                          const Settings& settings);

    Discipline discipline_;
    PropertyProvider& provider_;
    TraversalProcessor* firstObserver_;
    WalkSupport::Keeper keeper_;
    Entered entered_;
    CursorPath path_;
    /// Where elements are on the path, as far as it was needed: made when somebody prunes far from
    /// the path's end. Covers the first `indexed_` cursors, and holds outdated places besides.
    std::unordered_map<ModelElement, std::size_t> pathIndex_;
    std::size_t indexed_ = 0;
    std::unordered_map<ModelElement, ElementProgress> parked_;
};

}  // namespace nuv::zero::traversal::internal
