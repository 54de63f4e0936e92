#pragma once

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
    virtual void addFilter(int result, int filter) = 0;
    virtual void setUniqueness(int result, int mode) = 0;

    /// An exception leaves the place empty.
    virtual void begin(int place, int result) = 0;
    virtual void makeSentinel(int place) = 0;
    virtual void drop(int place) = 0;
    virtual void advance(int place) = 0;
    virtual void copy(int to, int from) = 0;
    virtual void assign(int to, int from) = 0;
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

    CallRecorder recorder;
};

}  // namespace nuv::zero::oracle
