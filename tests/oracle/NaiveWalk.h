#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <tuple>
#include <vector>

#include "tests/oracle/NaiveCursor.h"
#include "tests/oracle/Rules.h"

/// Walks, done the plain way: everything copied, everything looked up, recursion for loops.
namespace nuv::zero::oracle {

/// What walks share.
struct NaiveResult {
    std::shared_ptr<NaiveProvider> provider;
    Hearers hearers;
    std::vector<int> listeners;
    std::vector<int> inputs;
    bool dropsPseudoLinks = false;
    std::vector<int> filters;
    /// 1 is post-order, 2 breadth-first, any other number pre-order.
    int algo = 0;
    /// 0 is unique links, 1 unique elements, any other number no uniqueness.
    int uniqueness = 2;
    std::vector<int> boundaries;
    /// The distance from the nearest input at which walks end.
    std::optional<std::size_t> upTo;
    /// Whether walks are asked to remember how they came to elements; they always do.
    bool remembersPaths = false;
};

/// How a step within a budget ended.
enum class Ending : std::uint8_t { Paused, OnLink, Ended };
/// How the target of the link on which a walk stands was met.
enum class Met : std::uint8_t { None, Input, First, Open, Done, Boundary };

/// The one walk that every other is compared with. It keeps a cursor for every element entered, and
/// a frontier of links; it shares nothing with the library, evaluates rules by itself, and knows
/// elements, classes and properties by their indices in a world.
///
/// A callback that throws ends the step where it stands: the order of the statements is the order
/// in which things have to happen, failures included. So does a budget that is used up.
class NaiveWalk {
  public:
    /// The end of every walk.
    NaiveWalk(const PlainWorld& world, Callbacks& callbacks)
        : world_(&world), callbacks_(&callbacks), ended_(true) {}
    /// A walk that has not taken its first step.
    NaiveWalk(const PlainWorld& world, Callbacks& callbacks, std::shared_ptr<NaiveResult> result);

    void advance();
    /// The same, but for as many steps at most. A step is a link met, a property without values
    /// looked at, an element left, a link taken from the front of the queue, or an input begun.
    Ending advanceWithin(std::size_t& steps);
    const IndexedLink& current() const { return current_; }
    bool hasEnded() const { return ended_; }
    bool equals(const NaiveWalk& other) const;

    // Each tells the listeners what became of it.

    Cutting pruneAllChildren();
    Cutting pruneChildren(int property);
    Cutting pruneSiblings();

    // Where the walk stands: on the link that was handled last, on the one to an element of which
    // no link is found at the moment, or on none.

    /// How many links lead there, on the way that the walk went.
    std::size_t depth() const { return place_.property == none ? 0 : depthOf(place_.source) + 1; }
    Met meeting() const;
    std::vector<IndexedLink> path() const;
    /// None when the element was not entered.
    std::vector<IndexedLink> pathTo(int element) const;
    /// Whether the element waits to be left, so that the frontier alone says how it was reached.
    bool isOnPath(int element) const { return hasEntered(element) && left_.count(element) == 0; }
    std::vector<IndexedLink> cycle() const;
    bool hasEntered(int element) const { return cursors_.count(element) != 0; }
    std::size_t enteredCount() const { return cursors_.size(); }
    std::size_t waitingCount() const { return frontier_.size(); }
    bool isDepthFirst() const { return !result_ || result_->algo != 2; }

  private:
    // The walk.
    bool spend();
    Ending goOn();
    Ending takeLinks(const IndexedLink& link);
    Ending startNextInput();
    NaiveCursor& enter(const IndexedLink& link);
    bool leadsOn(const IndexedLink& link);
    bool tryReport(const IndexedLink& link);
    bool isUnseen(const IndexedLink& link);
    bool isUnseenWithOpposite(const IndexedLink& link);
    /// What becomes of a link that is to be reported, and which filter leaves it out.
    LinkFate fateOf(const IndexedLink& link, std::size_t& filter);
    void tell(const IndexedLink& link, LinkFate fate, std::size_t filter = 0);
    const IndexedLink& top() const { return isDepthFirst() ? frontier_.back() : frontier_.front(); }
    void pop() { frontier_.erase(isDepthFirst() ? frontier_.end() - 1 : frontier_.begin()); }
    void push(const IndexedLink& link) { frontier_.push_back(link); }
    std::size_t depthOf(int element) const;

    // How far it goes.
    bool needsDistances() const {
        return upTo_ && (isDepthFirst() || result_->inputs.size() != 1 || wasCut_);
    }
    bool findDistances();
    void addAt(std::size_t distance, int element);

    // Prunes.
    Cutting cutAllChildren();
    Cutting cutChildren(int property);
    Cutting tell(int pruning, int property, Cutting cutting);

    bool goesOnFrom(const IndexedLink& link);

    void notify(Event event, int element);
    int classOf(int element) const;

    const PlainWorld* world_;
    Callbacks* callbacks_;
    std::shared_ptr<NaiveResult> result_;
    std::vector<IndexedLink> frontier_;
    std::set<std::tuple<int, int, int>> seenLinks_;
    std::set<int> seenElements_;
    int uniqueness_ = 2;
    std::map<int, NaiveCursor> cursors_;
    std::size_t nextInput_ = 0;
    IndexedLink current_;
    int currentInput_ = none;
    bool ended_ = false;
    /// Whether the top of the frontier is an input's own link that was not looked at, or is a link
    /// whose target has its turn.
    bool inputWaits_ = false;
    bool hasTurn_ = false;
    /// What is left of the budget.
    std::size_t* steps_ = nullptr;

    IndexedLink place_;
    /// The links that entered elements, and the elements that were left.
    std::map<int, IndexedLink> enteredBy_;
    std::set<int> left_;

    std::optional<std::size_t> upTo_;
    /// Whether something was pruned, so that ways are no distances any more.
    bool wasCut_ = false;
    /// To which elements the walk has come near enough, also where entering one failed.
    std::set<int> near_;
    /// The silent pass: what it found, in order, and at which distance; whose turn it is and who
    /// is next.
    std::vector<int> found_;
    std::map<int, std::size_t> distances_;
    std::size_t inputsTaken_ = 0;
    std::size_t nextFound_ = 0;
    std::optional<NaiveCursor> silent_;
    bool knowsDistances_ = false;
};

}  // namespace nuv::zero::oracle
