#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

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

/// Who hears of events: an observer of all of them, or what was given for one of them.
struct Hearer {
    int index = none;
    std::optional<Event> only;
};
using Hearers = std::vector<Hearer>;

/// What a model read throws that meets a value of the wrong kind.
struct ReadFailure {
    /// The type that the value says it has.
    int type = none;
};

/// What became of a link that a walk met.
enum class LinkFate : std::uint8_t {
    Reported,
    Silent,
    Repeated,
    PseudoLinkLeftOut,
    Filtered,
    NotDescended,
};

/// A call that prunes, as listeners hear of it: what it is about, of which property, and what
/// became of it.
struct ToldPrune {
    int pruning = 0;
    int property = none;
    int outcome = 0;
};

/// All that a walk calls: predicates, filters, boundaries, observers and listeners, each named by
/// its index. Each may throw, and may prune or copy the walk.
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
    /// The number of a filter means nothing unless that has left the link out.
    virtual void link(int /*listener*/, const IndexedLink& /*link*/, LinkFate /*fate*/,
                      std::size_t /*filter*/) {}
    virtual void prune(int /*listener*/, const IndexedLink& /*current*/,
                       const ToldPrune& /*prune*/) {}
    /// Called wherever a walk has to remember something, which is where memory may run out.
    virtual void remember() {}
};

}  // namespace nuv::zero::oracle
