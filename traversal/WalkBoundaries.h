#pragma once

#include <cstddef>
#include <vector>

#include "Export.h"
#include "LinkRange.h"
#include "WalkListener.h"

namespace nuv::zero::traversal MODELING_NUV0_OVER {

/// A listener that remembers where walks stopped: links that were not descended into, and prunes
/// that cut something away.
///
///     WalkBoundaries boundaries;
///     ResultSetup(result).descend(isInside).trace(&boundaries);
///     auto walk = links(result);
///     for (const Link& link : walk) ...
///     for (const Link& link : boundaries.neverEntered(walk)) std::cout << dumpLink(link) << '\n';
///
/// Remembers those of all walks that it hears, each with the number of its walk, in the order in
/// which they came. A copy of a walk is told only what it meets itself; what the walk that it was
/// copied from was told before counts for it as well. What is asked of it goes by what all of these
/// walks have met. So where walks are pruned differently, give each its own result and listener.
///
/// Takes memory for each link and prune that it remembers; they keep alive what any link keeps
/// alive. A copy is independent.
class MODELING_NUV0_TRAVERSAL_EXPORT WalkBoundaries : public WalkListener {
  public:
    /// A link that was not descended into.
    struct Refusal {
        std::size_t walk;
        internal::Link link;

        bool operator==(const Refusal& other) const = default;
    };
    /// A prune that cut something away, and the link on which the walk stood.
    struct MODELING_NUV0_TRAVERSAL_LOCAL Cut {
        std::size_t walk;
        internal::Link link;
        Pruning pruning;
        /// The property that was cut; null where all of the target's were.
        meta::Property property;

        /// The element from which less is followed.
        const ModelElement& element() const noexcept {
            return pruning == Pruning::Siblings ? link.getSource() : link.getTarget();
        }
        bool operator==(const Cut& other) const = default;
    };

    WalkBoundaries();
    WalkBoundaries(const WalkBoundaries& other);
    WalkBoundaries& operator=(const WalkBoundaries& other);
    ~WalkBoundaries() override;

    void onLink(const WalkView& walk, const internal::Link& link, Fate fate,
                std::size_t filter) override;
    void onPrune(const WalkView& walk, const internal::Link& link, Pruning pruning,
                 const meta::Property& property, Pruned outcome) override;

    const std::vector<Refusal>& refusals() const noexcept { return refusals_; }
    const std::vector<Cut>& cuts() const noexcept { return cuts_; }
    /// The refusal of a link, and the first prune that cut a property of an element; null where
    /// there was none. Linear in what is remembered.
    const Refusal* findRefusal(const internal::Link& link) const noexcept;
    const Cut* findCut(const ModelElement& element, const meta::Property& property) const noexcept;

    /// The links behind the remembered boundaries whose targets a walk has not entered, each once:
    /// those that were not descended into, then what prunes have cut. For the latter, the elements
    /// that were pruned are read, and that throws what the model throws.
    std::vector<internal::Link> neverEntered(
        const internal::TraversalResult::IterationContext& walk) const;
    std::vector<internal::Link> neverEntered(const LinkRange& walk) const;
    std::vector<internal::Link> neverEntered(const WalkView& walk) const;
    /// Forgets everything.
    void clear() noexcept;

  private:
    std::vector<internal::Link> neverEntered(internal::Walk* walk) const;

    std::vector<Refusal> refusals_;
    std::vector<Cut> cuts_;
};

}  // namespace nuv::zero::traversal
