#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "../model/Framework.h"
#include "Export.h"
#include "fwd.h"
#include "internal/Link.h"

namespace nuv::zero::traversal MODELING_NUV0_OVER {

/// A walk as a listener sees it, at the moment at which it hears of something. Holds nothing: valid
/// as long as the call that it was given to. Nothing is computed that is not asked for.
class MODELING_NUV0_TRAVERSAL_EXPORT WalkView {
  public:
    /// The result over which it walks, and which of the walks over it this is: 1 for the first. A
    /// copy of a walk is another walk; a copy of a result counts its own.
    const std::shared_ptr<internal::TraversalResult>& result() const noexcept;
    std::size_t number() const noexcept;

    // Where the walk stands, as the operations of the same names of `IterationContext` say. The
    // link is the one that the listener hears of; for a prune, see `IterationContext`.

    std::size_t depth() const noexcept;
    Meeting meeting() const;
    std::vector<internal::Link> path() const;
    std::vector<internal::Link> pathTo(const ModelElement& element) const;
    std::vector<internal::Link> cycle() const;
    bool hasEntered(const ModelElement& element) const;
    std::size_t enteredCount() const noexcept;
    std::size_t waitingCount() const noexcept;

    Algo order() const noexcept;
    /// What the walk's containers take at the moment: what was entered, the frontier with its
    /// cursors, the links or elements that count as seen, how elements were reached, and which are
    /// within reach. Not counted are the objects themselves that hold these containers, what single
    /// cursors have (the lists that they read, what was pruned ahead), and what walks share: the
    /// result, its rules and settings, and the model. Blocks of the frontier that are shared with a
    /// copy count for both.
    std::size_t bytesHeld() const noexcept;

  private:
    friend class internal::Walk;
    friend class internal::WalkAccess;
    explicit WalkView(internal::Walk& walk) noexcept : walk_(&walk) {}

    internal::Walk* walk_;
};

}  // namespace nuv::zero::traversal
