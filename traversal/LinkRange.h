#pragma once

#include <cstddef>
#include <iterator>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "Export.h"
#include "internal/TraversalResult.h"

namespace nuv::zero::traversal MODELING_NUV0_OVER {

/// One walk over a result as a range: what a `for` loop wants.
///
///     auto walk = links(traversal->breadthFirst(roots));
///     for (const Link& link : walk) {
///         if (tooDeep(link)) walk.pruneAllChildren();
///     }
///
/// A single-pass input range that owns the result and one walk, so a loop over a temporary is safe.
/// The walk starts with the first `begin()`; a later `begin()` goes on where the walk stands. Use
/// `TraversalResult::begin()` for walks that can be copied.
///
/// Stands at the head of a pipeline by name, and can be pruned while the pipeline is consumed:
///
///     for (const Link& link : walk | std::views::filter(isPort)) walk.pruneAllChildren();
///
/// Moving a range invalidates its iterators and leaves an empty range behind. Assigning to a range
/// destroys its walk, which the walk's own callbacks must not do. What the walk throws, `begin()`
/// and `++` throw; after an exception from `++` the range may go on with the next `++`.
/// See `IterationContext` for order, cost, pruning and exceptions. One thread at a time.
class MODELING_NUV0_TRAVERSAL_EXPORT LinkRange {
  public:
    class iterator;

    /// Throws `std::invalid_argument` for a null result.
    explicit LinkRange(std::shared_ptr<internal::TraversalResult> result);
    LinkRange(const LinkRange&) = delete;
    LinkRange& operator=(const LinkRange&) = delete;
    LinkRange(LinkRange&& other) noexcept;
    LinkRange& operator=(LinkRange&& other) noexcept;
    ~LinkRange();

    inline iterator begin();
    std::default_sentinel_t end() const noexcept { return std::default_sentinel; }

    /// Prunes as the operations of the same names of `IterationContext` do, and says what became of
    /// it. Before the first step they do nothing.
    Pruned pruneAllChildren();
    Pruned pruneChildren(const meta::Property& property);
    Pruned pruneSiblings();

    /// As `IterationContext::advanceWithin`. The first step may be one of these as well: a
    /// `begin()` behind them goes on to the first link where none has been found yet.
    Progress advanceWithin(std::size_t& steps);
    /// The link that the walk stands on; the empty link before the first step and at the end.
    const internal::Link& getCurrent() const;

    // Where the walk stands: as the operations of the same names of `IterationContext`. Before the
    // first step as at the end: on no link, with nothing entered yet.

    std::size_t depth() const noexcept { return walk_ ? walk_->depth() : 0; }
    Meeting meeting() const { return walk_ ? walk_->meeting() : Meeting::None; }
    std::vector<internal::Link> path() const {
        return walk_ ? walk_->path() : std::vector<internal::Link>();
    }
    std::vector<internal::Link> pathTo(const ModelElement& element) const {
        return walk_ ? walk_->pathTo(element) : std::vector<internal::Link>();
    }
    std::vector<internal::Link> cycle() const {
        return walk_ ? walk_->cycle() : std::vector<internal::Link>();
    }
    bool hasEntered(const ModelElement& element) const {
        return walk_ && walk_->hasEntered(element);
    }
    std::size_t enteredCount() const noexcept { return walk_ ? walk_->enteredCount() : 0; }
    std::size_t waitingCount() const noexcept { return walk_ ? walk_->waitingCount() : 0; }

  private:
    friend class internal::WalkAccess;
    void prepare();
    void start();

    std::shared_ptr<internal::TraversalResult> result_;
    /// None before the first `begin()`.
    std::optional<internal::TraversalResult::IterationContext> walk_;
};

/// A light pointer into its range.
class LinkRange::iterator {
  public:
    using iterator_concept = std::input_iterator_tag;
    using iterator_category = std::input_iterator_tag;
    using value_type = internal::Link;
    using difference_type = std::ptrdiff_t;
    using pointer = const internal::Link*;
    using reference = const internal::Link&;

    iterator() noexcept = default;

    reference operator*() const { return walk_->getCurrent(); }
    pointer operator->() const { return &walk_->getCurrent(); }
    iterator& operator++() {
        walk_->advance();
        return *this;
    }
    void operator++(int) { ++*this; }
    friend bool operator==(const iterator& position, std::default_sentinel_t /*end*/) {
        return position.walk_ == nullptr || !position.walk_->getCurrent();
    }

  private:
    friend class LinkRange;
    explicit iterator(internal::TraversalResult::IterationContext* walk) noexcept : walk_(walk) {}

    internal::TraversalResult::IterationContext* walk_ = nullptr;
};

inline LinkRange::iterator LinkRange::begin() {
    if (!walk_ || !walk_->getCurrent()) start();
    return iterator(&*walk_);
}

/// A walk over a result.
inline LinkRange links(std::shared_ptr<internal::TraversalResult> result) {
    return LinkRange(std::move(result));
}

}  // namespace nuv::zero::traversal
