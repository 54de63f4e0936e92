#pragma once

#include <memory>

#include "traversal/internal/Link.h"

namespace nuv::zero::traversal::internal {

class Cursor;
class Walk;

/// The frontier of a walk: the links still to handle. Its discipline alone makes the walk
/// breadth-first or depth-first.
///
/// A store lends its links' handles from whoever pushes them: the elements and properties of the
/// links must outlive the store's use of them. A walk guarantees that.
class AbstractStore {
  public:
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
    virtual std::unique_ptr<AbstractStore> clone() const = 0;

    /// Handles links, and what they lead to, until the walk has reported one: true; false when
    /// nothing is left. What throws leaves everything where it stands; the link under way is lost,
    /// but an input that could not be entered is tried again.
    virtual bool advance(Walk& walk) = 0;
    /// The cursor of an element that may still give links, to prune it; null when there is none.
    virtual Cursor* findUnfinished(Walk& walk, const ModelElement& element) = 0;
};

/// First in, first out.
std::unique_ptr<AbstractStore> makeBfsStore();
/// Last in, first out.
std::unique_ptr<AbstractStore> makeDfsStore();

}  // namespace nuv::zero::traversal::internal
