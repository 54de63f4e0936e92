#pragma once

#include <cstdint>

#include "tests/oracle/PlainWorld.h"

namespace nuv::zero::oracle {

enum class Event : std::uint8_t {
    EnterInput,
    EnterElement,
    EnterProperty,
    ExitProperty,
    ExitElement,
    ExitInput,
};

/// What a model read throws that meets a value of the wrong kind.
struct ReadFailure {
    /// The type that the value says it has.
    int type = none;
};

/// All that a walk calls: predicates, filters, boundaries and observers, each named by its index.
/// Each may throw, and may prune or copy the walk.
class Callbacks {
  public:
    Callbacks() = default;
    Callbacks(const Callbacks&) = delete;
    Callbacks& operator=(const Callbacks&) = delete;
    virtual ~Callbacks() = default;

    virtual bool predicate(int predicate, int type) = 0;
    /// Zero leaves the link out.
    virtual int filter(int filter, const IndexedLink& link) = 0;
    /// Whether the walk may be led into the target of a link.
    virtual bool boundary(int /*boundary*/, const IndexedLink& /*link*/) { return true; }
    /// The property is `none` for events of elements and inputs.
    virtual void event(int observer, Event event, int element, int property) = 0;
    /// Called wherever a walk has to remember something, which is where memory may run out.
    virtual void remember() {}
};

}  // namespace nuv::zero::oracle
