#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "../Export.h"
#include "../fwd.h"
#include "Link.h"

namespace nuv::zero::traversal MODELING_NUV0_OVER::internal {

class Cursor;
class Walk;

/// The frontier of a walk: the links still to handle. Its discipline alone makes the walk
/// breadth-first or depth-first.
///
/// A store lends its links' handles from whoever pushes them: the elements and properties of the
/// links must outlive the store's use of them. A walk guarantees that.
class AbstractStore {
  public:
    /// First in, last out; or first in, first out.
    enum class Discipline : std::uint8_t { Stack, Queue };

    AbstractStore() = default;
    AbstractStore(const AbstractStore&) = delete;
    AbstractStore& operator=(const AbstractStore&) = delete;
    virtual ~AbstractStore();

    virtual void push(const Link& link) = 0;
    /// The link to handle next. REQUIRES: not empty.
    virtual Link top() const = 0;
    /// REQUIRES: not empty.
    virtual void pop() = 0;
    virtual bool empty() const = 0;
    /// Whether the other store is of the same discipline and holds equal links at equal places; the
    /// cascade flags take no part.
    virtual bool equals(const AbstractStore& other) const = 0;
    virtual Discipline discipline() const noexcept = 0;
    virtual std::unique_ptr<AbstractStore> clone() const = 0;

    /// How handling links came to an end.
    enum class Outcome : std::uint8_t { Reported, Paused, ToExplore, NothingLeft };
    /// Handles links, and what they lead to, until the walk has reported one, its budget is used
    /// up, it has to find out first how far it goes, or nothing is left. What throws leaves
    /// everything where it stands; the link under way is lost, but an input that could not be
    /// entered is tried again.
    virtual Outcome advance(Walk& walk) = 0;
    /// The cursor of an element that may still give links, to prune it; null when there is none.
    virtual Cursor* findUnfinished(Walk& walk, const ModelElement& element) = 0;

    // Where the walk stands: at the link that it handled last.

    /// How many links are on the frontier.
    virtual std::size_t size() const noexcept = 0;
    /// What the store's containers take.
    virtual std::size_t bytes() const noexcept = 0;
    /// Whether no more links come from an element that the walk has entered.
    virtual bool hasLeft(const ModelElement& element) = 0;
    /// How many links lead from the input to the target of that link.
    virtual std::size_t depth() const noexcept = 0;
    virtual Meeting meeting(Walk& walk) = 0;
    /// The links from the input's own link to that link; none where the walk stands on no link.
    virtual std::vector<Link> path(const Walk& walk) const = 0;
    /// The same for an element that the walk has entered.
    virtual std::vector<Link> pathTo(Walk& walk, const ModelElement& element) = 0;
};

/// First in, first out.
std::unique_ptr<AbstractStore> makeBfsStore();
/// Last in, first out.
std::unique_ptr<AbstractStore> makeDfsStore();

}  // namespace nuv::zero::traversal::internal
