#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <vector>

#include "tests/oracle/CallRecorder.h"

namespace nuv::zero::oracle {

/// Something that runs traversals: the engine, or the oracle that it is compared with. Builders,
/// results, and the places that walks are kept in are named by index.
///
/// What callbacks are called, what is thrown and where walks stand goes to the recorder.
class Side {
  public:
    explicit Side(const PlainWorld& world) : recorder(world) {}
    Side(const Side&) = delete;
    Side& operator=(const Side&) = delete;
    virtual ~Side() = default;

    /// One builder per side, of which copies may be run.
    virtual void rule(const RuleOperation& rule) = 0;
    /// The next result, from the builder or from a copy of it.
    virtual void run(const std::vector<int>& inputs, int algo, bool onCopy) = 0;
    virtual void copyResult(int result) = 0;
    virtual void attach(int result, int observer) = 0;
    /// Something for one event alone.
    virtual void listen(int result, Event event, int hearer) = 0;
    virtual void trace(int result, int listener) = 0;
    virtual void addFilter(int result, int filter) = 0;
    virtual void setUniqueness(int result, int mode) = 0;
    virtual void addBoundary(int result, int boundary) = 0;
    virtual void setUpTo(int result, std::size_t distance) = 0;
    virtual void rememberPaths(int result) = 0;

    /// An exception leaves the place empty.
    virtual void begin(int place, int result) = 0;
    /// A walk before its first step.
    virtual void prepare(int place, int result) = 0;
    virtual void makeSentinel(int place) = 0;
    virtual void drop(int place) = 0;
    virtual void advance(int place) = 0;
    /// Goes on for as many steps at most, and writes down how that ended and what is left.
    virtual void advanceWithin(int place, std::size_t steps) = 0;
    virtual void copy(int to, int from) = 0;
    virtual void assign(int to, int from) = 0;
    /// Each writes down what became of it.
    virtual void pruneAllChildren(int place) = 0;
    virtual void pruneChildren(int place, int property) = 0;
    virtual void pruneSiblings(int place) = 0;

    /// Keeps a copy of the link that a walk stands on, for `writeHeld`.
    virtual void hold(int place) = 0;
    /// What the held links say of themselves; they may outlive everything that they came from.
    virtual void writeHeld() = 0;
    /// Gives up builder and results. Walks go on without them.
    virtual void releaseResults() = 0;

    virtual bool exists(int place) const = 0;
    virtual bool isAtEnd(int place) const = 0;
    virtual IndexedLink current(int place) const = 0;
    virtual bool equal(int one, int other) const = 0;

    // Where a walk stands.

    virtual bool hasEnded(int place) const = 0;
    virtual std::size_t depth(int place) const = 0;
    /// As the number of the enumerator.
    virtual int meeting(int place) const = 0;
    virtual bool hasEntered(int place, int element) const = 0;
    virtual std::size_t enteredCount(int place) const = 0;
    virtual std::size_t waitingCount(int place) const = 0;
    /// Each throws `std::logic_error` where the walk would have had to remember more.
    virtual std::vector<IndexedLink> path(int place) const = 0;
    virtual std::vector<IndexedLink> pathTo(int place, int element) const = 0;
    virtual std::vector<IndexedLink> cycle(int place) const = 0;

    CallRecorder recorder;

  protected:
    /// Lets a walk go on, and writes down where it stands whenever it calls.
    template <class Step>
    void goOn(int place, Step step) {
        recorder.whereabouts = [this, place] { return whereabouts(place); };
        try {
            step();
        } catch (...) {
            recorder.writeCurrentException();
        }
        recorder.whereabouts = nullptr;
    }
    void writeBudget(int ending, std::size_t left) {
        constexpr std::array names = {"paused", "on a link", "ended"};
        recorder.write(names.at(static_cast<std::size_t>(ending)) + std::string(", ") +
                       std::to_string(left) + " steps left");
    }
    void writePruned(int answer) {
        constexpr std::array names = {"nothing to prune", "too late", "cut"};
        recorder.write(names.at(static_cast<std::size_t>(answer)));
    }

  private:
    std::string whereabouts(int place) const {
        return ", at depth " + std::to_string(depth(place)) + " meeting " +
               std::to_string(meeting(place)) + " entered " + std::to_string(enteredCount(place)) +
               " waiting " + std::to_string(waitingCount(place));
    }
};

}  // namespace nuv::zero::oracle
