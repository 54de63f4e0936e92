#pragma once

#include <cstddef>
#include <cstdint>

#include "Export.h"
#include "WalkView.h"

namespace nuv::zero::traversal MODELING_NUV0_OVER {

/// What became of a link that a walk met.
enum class Fate : std::int32_t {
    /// The walk's next link.
    Reported = 0,
    /// Walked, but not reported: its policy is `WalkOnly`.
    Silent = 1,
    /// Left out as a repetition.
    Repeated = 2,
    /// An input's own link, which the traversal leaves out.
    PseudoLinkLeftOut = 3,
    /// Left out by a filter.
    Filtered = 4,
    /// Not descended into; it is reported or left out all the same, which is told as well.
    NotDescended = 5,
};

/// What a call that prunes is about.
enum class Pruning : std::int32_t {
    /// All children of the current target.
    AllChildren = 0,
    /// Those of one property.
    Children = 1,
    /// The further values beside the current target.
    Siblings = 2,
};

/// Hears, link by link, what became of each link that walks over a result meet, whether it is
/// reported or not; `ResultSetup::trace` attaches one.
///
///     struct Refused : WalkListener {
///         void onLink(const WalkView&, const Link& link, Fate fate, std::size_t) override {
///             if (fate == Fate::Filtered) std::cout << dumpLink(link) << '\n';
///         }
///     };
///
/// A link is told when its fate is known: behind its filters, before the walk stands on it. What a
/// listener throws ends the step as what a filter throws does. Listeners may do to the walk what
/// observers may. Not owned: a listener has to outlive the walks.
class MODELING_NUV0_TRAVERSAL_EXPORT WalkListener {
  public:
    WalkListener();
    WalkListener(const WalkListener& other);
    WalkListener& operator=(const WalkListener& other);
    virtual ~WalkListener();

    /// A link and what became of it. `filter` says which one left it out, counted from 0 in the
    /// order in which filters were added; it means nothing for another fate. Does nothing.
    virtual void onLink(const WalkView& walk, const internal::Link& link, Fate fate,
                        std::size_t filter);
    /// The caller has pruned; `link` is the walk's current link, the empty one where there is none.
    /// `property` is the one that is meant: for children the one that was given, for siblings the
    /// one where the cursor of the link's source stands; null for all children, and where there is
    /// none. What is thrown passes through to the one who pruned; the prune has been made and
    /// stays. Does nothing.
    virtual void onPrune(const WalkView& walk, const internal::Link& link, Pruning pruning,
                         const meta::Property& property, Pruned outcome);
};

}  // namespace nuv::zero::traversal
