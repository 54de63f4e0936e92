#include <cstddef>
#include <deque>
#include <memory>
#include <unordered_map>
#include <utility>
#include <vector>

#include "traversal/internal/AbstractStore.h"
#include "traversal/internal/LinkQueue.h"
#include "traversal/internal/Walk.h"

namespace nuv::zero::traversal MODELING_NUV0_OVER::internal {

namespace {

/// A queue. The element of the link at its front has its turn: the link stays there until all links
/// of the element have been found, and there is one cursor, as long as the turn lasts.
class BfsStore final : public AbstractStore {
  public:
    BfsStore() = default;

    void push(const Link& link) override {
        queue_.reserveOne();
        const AssociationSetting* setting = nullptr;
        if (link.getProperty()) {
            if (foreign_ == nullptr) foreign_ = std::make_shared<Foreign>();
            setting = &foreign_->emplace_back(link.getProperty(), ResultPolicy::Report);
        }
        standOn({link.getSource(), setting, link.getTarget(), link.shouldCascade()}, 0);
        queue_.push(handled_);
    }
    Link top() const override { return queue_.front().link().get(); }
    void pop() override {
        queue_.pop();
        ++frontNumber_;
    }
    bool empty() const override { return queue_.empty(); }
    bool equals(const AbstractStore& other) const override {
        return other.discipline() == discipline() &&
               queue_.hasSameLinks(static_cast<const BfsStore&>(other).queue_);
    }
    Discipline discipline() const noexcept override { return Discipline::Queue; }
    std::unique_ptr<AbstractStore> clone() const override {
        return std::make_unique<BfsStore>(*this);
    }
    BfsStore(const BfsStore& other)
        : queue_(other.queue_),
          frontNumber_(other.frontNumber_),
          level_(other.level_),
          levelEnd_(other.levelEnd_),
          handled_(other.handled_),
          depth_(other.depth_),
          turn_(other.turn_),
          hasTurn_(other.hasTurn_),
          begun_(other.begun_),
          parked_(other.parked_),
          frontObserver_(other.frontObserver_),
          observers_(other.observers_),
          foreign_(other.foreign_) {}

    Outcome advance(Walk& walk) override {
        while (hasTurn_ || !queue_.empty()) {
            if (!hasTurn_) {
                if (walk.isToExplore()) return Outcome::ToExplore;
                if (!walk.mayGoOn()) return Outcome::Paused;
                comeToFront();
                lookAhead(walk);
                if (!queue_.front().shouldCascade()) {
                    if (tryReportFront(walk)) return Outcome::Reported;
                    continue;
                }
                if (!startTurn(walk)) continue;
            }
            const GoneOn gone = goOn(walk);
            if (gone == GoneOn::Reported) return Outcome::Reported;
            if (gone == GoneOn::Paused) return Outcome::Paused;
        }
        standOn({}, 0);
        return Outcome::NothingLeft;
    }
    Cursor* findUnfinished(Walk& walk, const ModelElement& element) override;

    std::size_t size() const noexcept override { return queue_.size(); }
    std::size_t bytes() const noexcept override {
        const std::size_t entry = sizeof(*parked_.begin()) + 2 * sizeof(void*);
        return queue_.bytes() + begun_.bytes() + observers_.capacity() * sizeof(ObserverFrom) +
               parked_.size() * entry + parked_.bucket_count() * sizeof(void*);
    }
    bool hasLeft(const ModelElement& element) override;
    std::size_t depth() const noexcept override { return isBetweenLinks() ? level_ : depth_; }
    Meeting meeting(Walk& walk) override;
    std::vector<Link> path(const Walk& walk) const override;
    std::vector<Link> pathTo(Walk& walk, const ModelElement& element) override {
        return walk.ways().to(element);
    }

  private:
    /// Settings that no provider keeps, of links that were pushed from outside a walk.
    using Foreign = std::deque<AssociationSetting>;
    /// From which link on elements are entered under another observer.
    struct ObserverFrom {
        std::size_t number;
        TraversalProcessor* observer;
    };

    bool tryReportFront(Walk& walk);
    void lookAhead(Walk& walk) const;
    bool startTurn(Walk& walk);
    /// How taking the links of the element whose turn it is came to an end.
    enum class GoneOn : std::uint8_t { Reported, Paused, Left };
    GoneOn goOn(Walk& walk);
    void enter(Walk& walk, const ModelElement& element);
    /// Keeps count of the levels: a new one begins where the last link of the one before has gone,
    /// and holds all links that wait at that moment.
    void comeToFront() noexcept {
        if (frontNumber_ != levelEnd_) return;
        level_ = queue_.front().setting() == nullptr ? 0 : level_ + 1;
        levelEnd_ = frontNumber_ + queue_.size();
    }
    void standOn(const LinkQueue::Place& link, std::size_t depth) noexcept {
        handled_ = link;
        depth_ = depth;
    }
    /// Whether the element that has its turn is entered, or left, or between two properties: the
    /// walk stands on the link to it then.
    bool isBetweenLinks() const noexcept { return hasTurn_ && !turn_.isOnLink(); }
    const LinkQueue::Place& place() const noexcept {
        return isBetweenLinks() ? queue_.front() : handled_;
    }
    TraversalProcessor* observerOfFront() noexcept;

    LinkQueue queue_;
    /// How many links have left the queue.
    std::size_t frontNumber_ = 0;
    /// How many links lead to the target of the link at the front, and which is the first link that
    /// is one further.
    std::size_t level_ = 0;
    std::size_t levelEnd_ = 0;
    /// The link that was handled last, and how many links lead to its target.
    LinkQueue::Place handled_;
    std::size_t depth_ = 0;
    Cursor turn_;
    bool hasTurn_ = false;
    /// The elements that have had their turn, or have it.
    ElementSet begun_;
    /// Cursors of elements that were pruned before their turn.
    std::unordered_map<ModelElement, Cursor> parked_;
    /// Under which observer the element at the front was entered, and what changes behind it.
    TraversalProcessor* frontObserver_ = nullptr;
    std::vector<ObserverFrom> observers_;
    /// Shared with copies, because their queues hold the same links.
    std::shared_ptr<Foreign> foreign_;
};

bool BfsStore::tryReportFront(Walk& walk) {
    standOn(queue_.front(), level_);
    // Removed before it is tried: a filter that throws does not get it again.
    pop();
    return walk.tryReport(handled_.source(), *handled_.setting(), handled_.target(), false);
}

/// Announces the elements whose turns come soon, and then their lists: both lie anywhere in memory.
inline void BfsStore::lookAhead(Walk& walk) const {
    constexpr std::size_t toElements = 6;
    constexpr std::size_t toLists = 3;
    if (queue_.size() <= toElements) return;
    const LinkQueue::Place& later = queue_[toElements];
    if (later.shouldCascade()) {
        walk.announce(later.target());
    } else if (later.setting()->rules() != nullptr) {
        // They are asked about the class of the source.
        WalkSupport::prefetch(later.source());
    }
    const LinkQueue::Place& sooner = queue_[toLists];
    if (!sooner.shouldCascade() || !sooner.target()) return;
    // Where nothing is followed, nobody may be asked what to follow.
    if (!walk.mayLeave(sooner.target())) return;
    for (const AssociationSetting& setting : walk.settingsOf(sooner.target())) {
        setting.prefetch(sooner.target());
    }
}

/// Gives the element at the front its turn, and enters an input. False when the input was reached
/// from an earlier one.
bool BfsStore::startTurn(Walk& walk) {
    const LinkQueue::Place& front = queue_.front();
    const ModelElement& element = front.target();
    const bool isInput = front.setting() == nullptr;
    if (isInput && walk.hasEntered(element)) {
        pop();
        return false;
    }
    // Before anything else that may fail: what fails is tried again.
    begun_.insert(element);
    const Cursor::Settings& settings = isInput                  ? walk.enter(element, nullptr, 0)
                                       : walk.mayLeave(element) ? walk.settingsOf(element)
                                                                : Walk::noSettings;
    if (isInput) {
        // Nothing else waits when an input has its turn.
        observers_.clear();
        frontObserver_ = walk.observer();
    }
    const auto waiting = parked_.empty() ? parked_.end() : parked_.find(element);
    if (waiting == parked_.end()) {
        turn_.restart(element, observerOfFront(), settings);
    } else {
        turn_ = std::move(waiting->second);
        turn_.observe(observerOfFront());
        parked_.erase(waiting);
    }
    // A link that led here was handled when it was found; an input's own link was not.
    if (!isInput) turn_.setReportedSelf();
    hasTurn_ = true;
    return true;
}

/// Takes the links of the element whose turn it is one after another, until one is reported, the
/// budget is used up, or the turn is over.
BfsStore::GoneOn BfsStore::goOn(Walk& walk) {
    if (!turn_.hasReportedSelf()) {
        turn_.setReportedSelf();
        if (walk.tryReportInput(turn_.element())) return GoneOn::Reported;
    }
    while (walk.mayGoOn()) {
        const Cursor::Step step = turn_.step(walk.budget());
        if (step == Cursor::Step::Paused) break;
        if (step == Cursor::Step::Over) {
            turn_.processedAll();
            // The link to an element that was left leads on no more.
            standOn(queue_.front(), level_);
            if (handled_.setting() != nullptr) handled_.clearCascade();
            pop();
            hasTurn_ = false;
            return GoneOn::Left;
        }
        turn_.lookAhead([&walk](const ModelElement& next) { walk.announce(next); });
        const Lent<ModelElement> target = turn_.target();
        const bool isNew = !walk.hasEntered(target.get());
        standOn({turn_.element(), &turn_.setting(), target.get(), false}, level_ + 1);
        const bool cascade = isNew && walk.leadsOn(turn_, target.get());
        queue_.reserveOne();
        if (cascade) {
            enter(walk, target.get());
            handled_.setCascade();
        } else if (isNew) {
            handled_.setBoundary();
        }
        queue_.push(handled_);
        if (!cascade) continue;
        if (walk.tryReport(turn_.element(), turn_.setting(), target.get(), true)) {
            return GoneOn::Reported;
        }
    }
    return GoneOn::Paused;
}

/// Enters the target of the link that is pushed next.
void BfsStore::enter(Walk& walk, const ModelElement& element) {
    if (observers_.size() == observers_.capacity()) observers_.reserve(observers_.size() + 1);
    walk.enter(element, &turn_, level_ + 1);
    // Afterwards, because a predicate that is asked meanwhile may attach another one.
    TraversalProcessor* latest = observers_.empty() ? frontObserver_ : observers_.back().observer;
    if (walk.observer() != latest) {
        observers_.push_back({frontNumber_ + queue_.size(), walk.observer()});
    }
}

TraversalProcessor* BfsStore::observerOfFront() noexcept {
    while (!observers_.empty() && observers_.front().number <= frontNumber_) {
        frontObserver_ = observers_.front().observer;
        observers_.erase(observers_.begin());
    }
    return frontObserver_;
}

Cursor* BfsStore::findUnfinished(Walk& walk, const ModelElement& element) {
    if (hasTurn_ && turn_.element() == element) return &turn_;
    if (begun_.contains(element)) return nullptr;
    const auto waiting = parked_.find(element);
    if (waiting != parked_.end()) return &waiting->second;
    const Cursor::Settings& settings =
        walk.mayLeave(element) ? walk.settingsOf(element) : Walk::noSettings;
    Cursor& cursor = parked_[element];
    // It gets its observer with its turn.
    cursor.restart(element, nullptr, settings);
    return &cursor;
}

bool BfsStore::hasLeft(const ModelElement& element) {
    if (hasTurn_ && turn_.element() == element) return turn_.isFinished();
    const auto waiting = parked_.find(element);
    return waiting == parked_.end() ? begun_.contains(element) : waiting->second.isFinished();
}

Meeting BfsStore::meeting(Walk& walk) {
    const LinkQueue::Place& link = place();
    const ModelElement& target = link.target();
    if (link.setting() == nullptr) return target ? Meeting::Input : Meeting::None;
    // Also while the walk is being asked whether the link leads on.
    if (link.isBoundary() || !walk.hasEntered(target)) return Meeting::Boundary;
    if (link.shouldCascade()) return Meeting::First;
    const bool isUnderWay = hasTurn_ && turn_.element() == target;
    return begun_.contains(target) && !isUnderWay ? Meeting::Done : Meeting::Open;
}

std::vector<Link> BfsStore::path(const Walk& walk) const {
    const Ways& ways = walk.ways();
    const LinkQueue::Place& link = place();
    if (link.setting() == nullptr && !link.target()) return {};
    std::vector<Link> path;
    if (link.setting() != nullptr) path = ways.to(link.source());
    path.push_back(link.link().get());
    return path;
}

}  // namespace

std::unique_ptr<AbstractStore> makeBfsStore() {
    return std::make_unique<BfsStore>();
}

}  // namespace nuv::zero::traversal::internal
