#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <unordered_map>
#include <utility>
#include <vector>

#include "traversal/internal/AbstractStore.h"
#include "traversal/internal/CursorPath.h"
#include "traversal/internal/LentLink.h"
#include "traversal/internal/Walk.h"
#include "traversal/support/ElementSet.h"

namespace nuv::zero::traversal MODELING_NUV0_OVER::internal {

namespace {

/// A stack. A link whose target was entered is kept as the cursor over that target: the cursor
/// below it says where the link comes from. A link that does not lead on would be the next to
/// handle, so it is tried at once and never pushed.
class DfsStore final : public AbstractStore {
  public:
    DfsStore() = default;
    DfsStore(const DfsStore& other)
        : path_(other.path_),
          waiting_(other.waiting_),
          left_(other.left_ == nullptr ? nullptr : std::make_unique<Left>(*other.left_)) {}

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
        return other.discipline() == discipline() && size() == other.size() &&
               hasSameLinks(static_cast<const DfsStore&>(other));
    }
    Discipline discipline() const noexcept override { return Discipline::Stack; }
    std::unique_ptr<AbstractStore> clone() const override {
        return std::make_unique<DfsStore>(*this);
    }

    Outcome advance(Walk& walk) override {
        while (!path_.empty() || !waiting_.empty()) {
            if (path_.empty() && !enterInput(walk)) continue;
            const GoneOn gone = goOn(walk);
            if (gone == GoneOn::Reported) return Outcome::Reported;
            if (gone == GoneOn::Paused) return Outcome::Paused;
        }
        return Outcome::NothingLeft;
    }
    Cursor* findUnfinished(Walk& /*walk*/, const ModelElement& element) override {
        const std::size_t place = placeOf(element);
        return place == notOnPath ? nullptr : &path_.at(place);
    }

    std::size_t size() const noexcept override { return path_.size() + waiting_.size(); }
    std::size_t bytes() const noexcept override {
        const std::size_t entry = sizeof(*pathIndex_.begin()) + 2 * sizeof(void*);
        return path_.bytes() + waiting_.capacity() * sizeof(LentLink) + pathIndex_.size() * entry +
               pathIndex_.bucket_count() * sizeof(void*) + (left_ == nullptr ? 0 : left_->bytes());
    }
    bool hasLeft(const ModelElement& element) override {
        const std::size_t place = placeOf(element);
        return place == notOnPath || path_[place].isFinished();
    }
    std::size_t depth() const noexcept override {
        return path_.size() - (path_.empty() || isOnLink() ? 0 : 1);
    }
    Meeting meeting(Walk& walk) override;
    std::vector<Link> path(const Walk& walk) const override;
    std::vector<Link> pathTo(Walk& walk, const ModelElement& element) override;

  private:
    static constexpr std::size_t notOnPath = static_cast<std::size_t>(-1);

    /// Which elements were left, for who asks how targets were met: what was entered before the
    /// first such question, and not on the path then, and what was left since.
    struct Left {
        bool contains(const ModelElement& element) noexcept {
            return since.contains(element) ||
                   (before.contains(element) && !onPath.contains(element));
        }
        std::size_t bytes() const noexcept {
            return before.bytes() + onPath.bytes() + since.bytes();
        }

        ElementSet before;
        ElementSet onPath;
        ElementSet since;
    };

    /// The link to the element of a cursor.
    LentLink linkTo(std::size_t index) const;
    std::vector<Link> linksTo(std::size_t index) const;
    /// REQUIRES: as many links on the frontier.
    bool hasSameLinks(const DfsStore& other) const;
    /// Whether the walk stands on a link of the innermost cursor, instead of on the one to it.
    bool isOnLink() const noexcept { return !path_.empty() && path_[path_.size() - 1].isOnLink(); }
    /// Whether the walk stands on no link at all, or on that of a null input, which is none.
    bool isNowhere() const noexcept {
        if (path_.empty()) return waiting_.empty() || !waiting_.back().get().getTarget();
        return path_.size() == 1 && !path_[0].element();
    }
    std::size_t placeOf(const ModelElement& element);
    void beginToRememberWhatIsLeft(const Walk& walk);
    void rememberAsLeft(const ModelElement& element) noexcept;
    bool enterInput(Walk& walk);
    /// How taking the links of one cursor came to an end.
    enum class GoneOn : std::uint8_t { Reported, Paused, Left };
    GoneOn goOn(Walk& walk);
    GoneOn leave(Walk& walk, Cursor& cursor);
    bool tryReportSelf(Walk& walk, Cursor& cursor);
    Cursor& enter(Walk& walk, const ModelElement& element, const Cursor* from) {
        path_.reserveOne();
        const Cursor::Settings& settings = walk.enter(element, from, path_.size());
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
    /// None before somebody asks.
    std::unique_ptr<Left> left_;
};

LentLink DfsStore::linkTo(std::size_t index) const {
    const Cursor& cursor = path_[index];
    if (index == 0) return LentLink(ModelElement(), cursor.element(), meta::Property());
    const Cursor& from = path_[index - 1];
    return LentLink(from.element(), cursor.element(), from.setting().property());
}

bool DfsStore::hasSameLinks(const DfsStore& other) const {
    const bool isAsDeep = path_.size() == other.path_.size();
    if (isAsDeep && !path_.leadsAlong(other.path_)) return false;
    // The same link may wait here, and have entered its input there.
    const auto linkAt = [](const DfsStore& store, std::size_t index) {
        const std::size_t deep = store.path_.size();
        return index < deep ? store.linkTo(index) : store.waiting_[index - deep];
    };
    for (std::size_t index = isAsDeep ? path_.size() : 0; index < size(); ++index) {
        if (!(linkAt(*this, index).get() == linkAt(other, index).get())) return false;
    }
    return true;
}

/// Enters the input whose link waits; false when it was reached from an earlier one.
bool DfsStore::enterInput(Walk& walk) {
    const bool isNew = !walk.hasEntered(waiting_.back().get().getTarget());
    if (isNew) enter(walk, waiting_.back().get().getTarget(), nullptr);
    waiting_.pop_back();
    return isNew;
}

/// Takes the links of the innermost cursor one after another, and goes on from each that leads on,
/// until a link is reported, the budget is used up, or a cursor is exhausted and removed.
DfsStore::GoneOn DfsStore::goOn(Walk& walk) {
    const bool isReportingSelfFirst = walk.isReportingSelfFirst();
    Cursor* cursor = &path_.back();
    if (isReportingSelfFirst && tryReportSelf(walk, *cursor)) return GoneOn::Reported;
    while (walk.mayGoOn()) {
        const Cursor::Step step = cursor->step(walk.budget());
        if (step == Cursor::Step::Paused) break;
        if (step == Cursor::Step::Over) return leave(walk, *cursor);
        cursor->lookAhead([&walk](const ModelElement& next) { walk.announce(next); });
        const Lent<ModelElement> target = cursor->target();
        Cursor& source = *cursor;
        const bool cascade = !walk.hasEntered(target.get()) && walk.leadsOn(source, target.get());
        if (cascade) {
            cursor = &enter(walk, target.get(), &source);
            if (!isReportingSelfFirst) continue;
            cursor->setReportedSelf();
        }
        if (walk.tryReport(source.element(), source.setting(), target.get(), cascade)) {
            return GoneOn::Reported;
        }
    }
    return GoneOn::Paused;
}

/// Leaves the innermost element, whose links have all been taken.
DfsStore::GoneOn DfsStore::leave(Walk& walk, Cursor& cursor) {
    cursor.processedAll();
    if (tryReportSelf(walk, cursor)) return GoneOn::Reported;
    if (left_ != nullptr) rememberAsLeft(cursor.element());
    path_.pop();
    indexed_ = std::min(indexed_, path_.size());
    return GoneOn::Left;
}

/// The link to the element of the innermost cursor, unless it was tried before.
bool DfsStore::tryReportSelf(Walk& walk, Cursor& cursor) {
    if (cursor.hasReportedSelf()) return false;
    cursor.setReportedSelf();
    if (path_.size() == 1) return walk.tryReportInput(cursor.element());
    const Cursor& from = path_[path_.size() - 2];
    return walk.tryReport(from.element(), from.setting(), cursor.element(), true);
}

/// Where an element is on the path.
std::size_t DfsStore::placeOf(const ModelElement& element) {
    // Nearly always one of the last two: the element just reached, or the one it was reached from.
    const std::size_t near = std::min<std::size_t>(path_.size(), 2);
    for (std::size_t back = 1; back <= near; ++back) {
        if (path_[path_.size() - back].element() == element) return path_.size() - back;
    }
    for (; indexed_ < path_.size(); ++indexed_) {
        pathIndex_.insert_or_assign(path_[indexed_].element(), indexed_);
    }
    const auto place = pathIndex_.find(element);
    const bool onPath = place != pathIndex_.end() && place->second < path_.size() &&
                        path_[place->second].element() == element;
    return onPath ? place->second : notOnPath;
}

Meeting DfsStore::meeting(Walk& walk) {
    if (isNowhere()) return Meeting::None;
    if (!isOnLink()) return path_.size() <= 1 ? Meeting::Input : Meeting::First;
    const Lent<ModelElement> target = path_.back().target();
    if (!walk.hasEntered(target.get())) return Meeting::Boundary;
    if (left_ == nullptr) beginToRememberWhatIsLeft(walk);
    return left_->contains(target.get()) ? Meeting::Done : Meeting::Open;
}

void DfsStore::beginToRememberWhatIsLeft(const Walk& walk) {
    auto left = std::make_unique<Left>(Left{walk.entered(), {}, {}});
    for (std::size_t index = 0; index < path_.size(); ++index) {
        left->onPath.insert(path_[index].element());
    }
    left_ = std::move(left);
}

/// Without memory for it nothing is lost: the next question begins anew.
void DfsStore::rememberAsLeft(const ModelElement& element) noexcept {
    try {
        left_->since.insert(element);
    } catch (const std::bad_alloc&) {
        left_.reset();
    }
}

std::vector<Link> DfsStore::linksTo(std::size_t index) const {
    std::vector<Link> links;
    links.reserve(index + 2);
    for (std::size_t i = 0; i <= index; ++i) links.push_back(linkTo(i).get());
    return links;
}

std::vector<Link> DfsStore::path(const Walk& /*walk*/) const {
    if (isNowhere()) return {};
    if (path_.empty()) return {waiting_.back().get()};
    std::vector<Link> links = linksTo(path_.size() - 1);
    if (isOnLink()) {
        const Cursor& last = path_[path_.size() - 1];
        const LentLink link(last.element(), last.target().get(), last.setting().property(), false);
        links.push_back(link.get());
    }
    return links;
}

std::vector<Link> DfsStore::pathTo(Walk& walk, const ModelElement& element) {
    const std::size_t place = placeOf(element);
    return place == notOnPath ? walk.ways().to(element) : linksTo(place);
}

}  // namespace

std::unique_ptr<AbstractStore> makeDfsStore() {
    return std::make_unique<DfsStore>();
}

}  // namespace nuv::zero::traversal::internal
