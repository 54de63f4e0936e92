#include <algorithm>
#include <cstddef>
#include <unordered_map>
#include <vector>

#include "traversal/internal/AbstractStore.h"
#include "traversal/internal/CursorPath.h"
#include "traversal/internal/LentLink.h"
#include "traversal/internal/Walk.h"

namespace nuv::zero::traversal::internal {

namespace {

/// A stack. A link whose target was entered is kept as the cursor over that target: the cursor
/// below it says where the link comes from. A link that does not lead on would be the next to
/// handle, so it is tried at once and never pushed.
class DfsStore final : public AbstractStore {
  public:
    DfsStore() = default;
    DfsStore(const DfsStore& other) : path_(other.path_), waiting_(other.waiting_) {}

    void push(const Link& link) override { waiting_.emplace_back(link); }
    Link top() const override {
        return waiting_.empty() ? linkTo(path_.size() - 1).get() : waiting_.back().get();
    }
    void pop() override {
        if (waiting_.empty()) {
            path_.pop();
        } else {
            waiting_.pop_back();
        }
    }
    bool empty() const override { return path_.empty() && waiting_.empty(); }
    bool equals(const AbstractStore& other) const override {
        const auto* same = dynamic_cast<const DfsStore*>(&other);
        return same != nullptr && path_.leadsAlong(same->path_) &&
               std::equal(waiting_.begin(), waiting_.end(), same->waiting_.begin(),
                          same->waiting_.end(),
                          [](const LentLink& a, const LentLink& b) { return a.get() == b.get(); });
    }
    std::unique_ptr<AbstractStore> clone() const override {
        return std::make_unique<DfsStore>(*this);
    }

    bool advance(Walk& walk) override {
        while (true) {
            if (path_.empty()) {
                if (waiting_.empty()) return false;
                if (!enterInput(walk)) continue;
            }
            if (goOn(walk)) return true;
        }
    }
    Cursor* findUnfinished(Walk& walk, const ModelElement& element) override;

  private:
    /// The link to the element of a cursor.
    LentLink linkTo(std::size_t index) const;
    bool enterInput(Walk& walk);
    bool goOn(Walk& walk);
    bool tryReportSelf(Walk& walk, Cursor& cursor);
    Cursor& enter(Walk& walk, const ModelElement& element) {
        path_.reserveOne();
        const Cursor::Settings& settings = walk.enter(element);
        Cursor& cursor = path_.push();
        cursor.restart(element, walk.observer(), settings);
        return cursor;
    }

    CursorPath path_;
    /// Links whose targets have not been looked at: an input's own link before its turn.
    std::vector<LentLink> waiting_;
    /// Where elements are on the path, as far as it was needed: made when somebody prunes far from
    /// the path's end. Covers the first `indexed_` cursors, and holds outdated places besides.
    std::unordered_map<ModelElement, std::size_t> pathIndex_;
    std::size_t indexed_ = 0;
};

LentLink DfsStore::linkTo(std::size_t index) const {
    const Cursor& cursor = path_[index];
    if (index == 0) return LentLink(ModelElement(), cursor.element(), meta::Property());
    const Cursor& from = path_[index - 1];
    return LentLink(from.element(), cursor.element(), from.setting().property());
}

/// Enters the input whose link waits; false when it was reached from an earlier one.
bool DfsStore::enterInput(Walk& walk) {
    const bool isNew = !walk.hasEntered(waiting_.back().get().getTarget());
    if (isNew) enter(walk, waiting_.back().get().getTarget());
    waiting_.pop_back();
    return isNew;
}

/// Takes the links of the innermost cursor one after another, and goes on from each that leads on.
/// True when a link was reported, false when the cursor was exhausted and removed.
bool DfsStore::goOn(Walk& walk) {
    const bool isReportingSelfFirst = walk.isReportingSelfFirst();
    Cursor* cursor = &path_.back();
    if (isReportingSelfFirst && tryReportSelf(walk, *cursor)) return true;
    while (cursor->step()) {
        cursor->lookAhead([&walk](const ModelElement& next) { walk.announce(next); });
        const Lent<ModelElement> target = cursor->target();
        Cursor& source = *cursor;
        const bool cascade = !walk.hasEntered(target.get());
        if (cascade) {
            cursor = &enter(walk, target.get());
            if (!isReportingSelfFirst) continue;
            cursor->setReportedSelf();
        }
        if (walk.tryReport(source.element(), source.setting(), target.get(), cascade)) return true;
    }
    cursor->processedAll();
    if (tryReportSelf(walk, *cursor)) return true;
    path_.pop();
    indexed_ = std::min(indexed_, path_.size());
    return false;
}

/// The link to the element of the innermost cursor, unless it was tried before.
bool DfsStore::tryReportSelf(Walk& walk, Cursor& cursor) {
    if (cursor.hasReportedSelf()) return false;
    cursor.setReportedSelf();
    if (path_.size() == 1) return walk.tryReportInput(cursor.element());
    const Cursor& from = path_[path_.size() - 2];
    return walk.tryReport(from.element(), from.setting(), cursor.element(), true);
}

Cursor* DfsStore::findUnfinished(Walk& /*walk*/, const ModelElement& element) {
    // Nearly always one of the last two: the element just reached, or the one it was reached from.
    const std::size_t near = std::min<std::size_t>(path_.size(), 2);
    for (std::size_t back = 1; back <= near; ++back) {
        const std::size_t index = path_.size() - back;
        if (path_[index].element() == element) return &path_.at(index);
    }
    for (; indexed_ < path_.size(); ++indexed_) {
        pathIndex_.insert_or_assign(path_[indexed_].element(), indexed_);
    }
    const auto place = pathIndex_.find(element);
    const bool onPath = place != pathIndex_.end() && place->second < path_.size() &&
                        path_[place->second].element() == element;
    return onPath ? &path_.at(place->second) : nullptr;
}

}  // namespace

std::unique_ptr<AbstractStore> makeDfsStore() {
    return std::make_unique<DfsStore>();
}

}  // namespace nuv::zero::traversal::internal
