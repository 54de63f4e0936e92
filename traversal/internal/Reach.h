#pragma once

#include <cstddef>
#include <vector>

#include "../Export.h"
#include "../support/ElementSet.h"
#include "../support/Lent.h"
#include "Cursor.h"

namespace nuv::zero::traversal MODELING_NUV0_OVER::internal {

/// Which elements a walk with a limit goes on from: those whose distance from the nearest input is
/// below the limit.
///
/// A breadth-first walk from one input knows distances as it goes, until something is pruned: from
/// then on an element may be entered on a longer way than the one that was cut. Then, and for any
/// other walk before its first link, distances are found out by a silent breadth-first pass from
/// all inputs, over the links that the walk's rules and boundaries let pass. A copy is independent.
class Reach {
  public:
    Reach(std::size_t limit, bool isKnownByDepth) noexcept
        : limit_(limit), isKnownByDepth_(isKnownByDepth), isExplored_(isKnownByDepth) {}

    /// Decides whether the walk goes on from an element to which a way of so many links leads.
    /// Throws `std::bad_alloc`, and then has changed nothing. REQUIRES: `isExplored()`, or nothing
    /// but the turn under way has been cut.
    bool enter(const ModelElement& element, std::size_t depth) {
        const bool isNear = depth < limit_ || within_.contains(element);
        if (isNear) entered_.insert(element);
        // Else it may have been near on a way where entering it failed.
        return isNear || entered_.contains(element);
    }
    /// What was decided about an element.
    bool contains(const ModelElement& element) noexcept { return entered_.contains(element); }
    bool isExplored() const noexcept { return isExplored_; }
    /// Says that the walk may come to elements on longer ways than there are.
    void distrustDepths() noexcept {
        if (isKnownByDepth_) isExplored_ = isKnownByDepth_ = false;
    }
    std::size_t bytes() const noexcept {
        return entered_.bytes() + within_.bytes() + found_.capacity() * sizeof(found_.front());
    }
    /// Goes on finding distances, step by step of the walk's budget; false when that is used up.
    /// What throws leaves it where it was, to go on with the next call, without the link or the
    /// element that is concerned: as the walk goes on.
    bool explore(Walk& walk, const std::vector<ModelElement>& inputs);

  private:
    void add(Walk& walk, const ModelElement& element);
    bool startTurn(Walk& walk);
    void lookAhead(Walk& walk) const;

    std::size_t limit_;
    bool isKnownByDepth_;
    bool isExplored_;
    /// What the walk goes on from once it has entered it.
    ElementSet entered_;

    // The pass: all that is near enough, also in the order in which it was found.
    ElementSet within_;
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
