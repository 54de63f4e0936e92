#pragma once

#include <cstddef>
#include <vector>

#include "traversal/internal/Cursor.h"
#include "traversal/support/ElementSet.h"
#include "traversal/support/Lent.h"

namespace nuv::zero::traversal::internal {

/// Which elements a walk with a limit goes on from: those whose distance from the nearest input is
/// below the limit.
///
/// A breadth-first walk from one input knows distances as it goes. For any other walk they are
/// found out before its first link, by a silent breadth-first pass from all inputs, over the links
/// that the walk's rules and boundaries let pass. A copy is independent.
class Reach {
  public:
    Reach(std::size_t limit, bool isKnownByDepth) noexcept
        : limit_(limit), isKnownByDepth_(isKnownByDepth), isExplored_(isKnownByDepth) {}

    /// Whether the walk goes on from an element at that depth. REQUIRES: `isExplored()`.
    bool contains(const ModelElement& element, std::size_t depth) noexcept {
        return isKnownByDepth_ ? depth < limit_ : within_.contains(element);
    }
    bool isExplored() const noexcept { return isExplored_; }
    std::size_t bytes() const noexcept {
        return within_.bytes() + found_.capacity() * sizeof(found_.front());
    }
    /// Goes on finding distances, step by step of the walk's budget; false when that is used up.
    /// What throws leaves it where it was, to go on with the next call; a value that cannot be read
    /// is left out, as the walk leaves it out.
    bool explore(Walk& walk, const std::vector<ModelElement>& inputs);

  private:
    void add(Walk& walk, const ModelElement& element);
    bool startTurn(Walk& walk);

    std::size_t limit_;
    bool isKnownByDepth_;
    bool isExplored_;
    ElementSet within_;

    // The pass: all that is in `within_`, in the order in which it was found.
    std::vector<Lent<ModelElement>> found_;
    std::size_t inputsTaken_ = 0;
    /// Whose turn comes next, at which distance, and where the next distance begins.
    std::size_t next_ = 0;
    std::size_t distance_ = 0;
    std::size_t distanceEnd_ = 0;
    Cursor turn_;
    bool hasTurn_ = false;
};

}  // namespace nuv::zero::traversal::internal
