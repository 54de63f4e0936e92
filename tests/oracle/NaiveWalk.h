#pragma once

#include <map>
#include <memory>
#include <set>
#include <tuple>
#include <vector>

#include "tests/oracle/Rules.h"

/// Walks, done the plain way: everything copied, everything looked up, recursion for loops.
namespace nuv::zero::oracle {

/// What walks share.
struct NaiveResult {
    std::shared_ptr<NaiveProvider> provider;
    int observer = none;
    std::vector<int> inputs;
    bool dropsPseudoLinks = false;
    std::vector<int> filters;
    /// 1 is post-order, 2 breadth-first, any other number pre-order.
    int algo = 0;
    /// 0 is unique links, 1 unique elements, any other number no uniqueness.
    int uniqueness = 2;
};

/// The links of one element: those of one property after the other.
struct NaiveCursor {
    int element = none;
    int observer = none;
    bool reportedSelf = false;
    bool started = false;
    bool finished = false;
    bool exitNotified = false;
    Settings settings;
    std::size_t propertyIndex = 0;
    std::vector<int> values;
    /// The largest number stands for the place before the first value.
    std::size_t valueIndex = static_cast<std::size_t>(-1);
    std::set<int> prunedProperties;
};

/// The one walk that every other is compared with. It keeps a cursor for every element entered, and
/// a frontier of links; it shares nothing with the library, evaluates rules by itself, and knows
/// elements, classes and properties by their indices in a world.
///
/// A callback that throws ends the step where it stands: the order of the statements is the order
/// in which things have to happen, failures included.
class NaiveWalk {
  public:
    /// The end of every walk.
    NaiveWalk(const PlainWorld& world, Callbacks& callbacks)
        : world_(&world), callbacks_(&callbacks) {}
    /// A walk that stands on its first link.
    NaiveWalk(const PlainWorld& world, Callbacks& callbacks, std::shared_ptr<NaiveResult> result);

    void advance();
    const IndexedLink& current() const { return current_; }
    bool equals(const NaiveWalk& other) const;

    void pruneAllChildren();
    void pruneChildren(int property);
    void pruneSiblings();

  private:
    // The walk.
    void startNextInput();
    NaiveCursor& enter(const IndexedLink& link);
    bool tryReport(const IndexedLink& link);
    bool isUnseen(const IndexedLink& link);
    bool isUnseenWithOpposite(const IndexedLink& link);
    bool passesFilters(const IndexedLink& link);
    bool hasEntered(int element) const { return cursors_.count(element) != 0; }
    bool isDepthFirst() const { return result_->algo != 2; }
    const IndexedLink& top() const { return isDepthFirst() ? frontier_.back() : frontier_.front(); }
    void pop() { frontier_.erase(isDepthFirst() ? frontier_.end() - 1 : frontier_.begin()); }
    void push(const IndexedLink& link) { frontier_.push_back(link); }

    // One cursor.
    IndexedLink next(NaiveCursor& cursor);
    void moveOn(NaiveCursor& cursor);
    void loadProperty(NaiveCursor& cursor);
    std::vector<int> read(int element, int property) const;
    bool processedAll(NaiveCursor& cursor);
    void pruneCurrentProperty(NaiveCursor& cursor);
    bool isAtProperty(const NaiveCursor& cursor) const {
        return cursor.propertyIndex < cursor.settings->size();
    }
    int propertyOf(const NaiveCursor& cursor) const {
        return cursor.settings->at(cursor.propertyIndex).property;
    }
    void notify(int observer, Event event, int element, int property = none);
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
};

}  // namespace nuv::zero::oracle
