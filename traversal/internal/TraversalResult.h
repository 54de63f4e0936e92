#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "../../model/Framework.h"
#include "../Export.h"
#include "../fwd.h"
#include "Link.h"

namespace nuv::zero::traversal MODELING_NUV0_OVER::internal {

/// What running a traversal gives: a recipe from which any number of walks can be started. Nothing
/// is visited until a walk starts.
///
///     auto result = Spec::compositionTraversal()->depthFirst({root});
///     for (const Link& link : links(result)) std::cout << dumpLink(link) << '\n';
///
/// Ownership: a result shares its rules (a snapshot of the builder's) and holds its inputs; the
/// model, and attached observers and listeners, have to outlive the walks. Later changes to the
/// builder do not reach it. A copy shares the rules and has its own inputs, filters and settings;
/// it can start walks only when a shared pointer owns it.
///
/// Threads: one result and its walks belong to one thread at a time, and so do its copies, which
/// share the answers of the rules. Other results may be walked on other threads over one unchanging
/// model.
class MODELING_NUV0_TRAVERSAL_EXPORT TraversalResult
    : public std::enable_shared_from_this<TraversalResult> {
  public:
    class IterationContext;

    /// Opens the constructor to the builders alone.
    class privateTag {
      public:
        /// The compiler's own would let `std::bit_cast` make a tag of any byte.
        // NOLINTNEXTLINE(modernize-use-equals-default): see above
        privateTag(const privateTag& /*other*/) noexcept {}
        privateTag& operator=(const privateTag&) = default;

      private:
        template <class Impl>
        friend class traversal::AbstractTraversal;
        explicit privateTag() {}  // NOLINT(modernize-use-equals-default): not an aggregate
    };

    TraversalResult(privateTag tag, const std::vector<ModelElement>& inputs,
                    const std::shared_ptr<PropertyProvider>& provider, Algo algo,
                    ResultPolicy pseudoLinkPolicy);
    TraversalResult(const TraversalResult& other);
    TraversalResult& operator=(const TraversalResult&) = delete;
    ~TraversalResult();

    /// A new walk, standing on its first link. Throws `std::bad_weak_ptr` when no shared pointer
    /// owns the result, and whatever the walk's first step throws.
    IterationContext begin();
    /// A new walk that has not taken its first step: it stands on no link, and has not ended. What
    /// `begin` may take long for is left to `advanceWithin`.
    IterationContext prepare();

  private:
    friend class traversal::ClassExplainer;
    friend class traversal::ResultSetup;
    friend class Walk;
    using Filter = std::function<ResultPolicy(const Link&)>;

    /// How many walks were made. A copy has made none.
    class WalkCount {
      public:
        WalkCount() noexcept = default;
        WalkCount(const WalkCount& /*other*/) noexcept {}
        WalkCount& operator=(const WalkCount&) = delete;
        ~WalkCount() = default;
        std::size_t operator++() noexcept { return ++made_; }

      private:
        std::size_t made_ = 0;
    };

    /// Who hears of the events.
    struct Listening {
        Listening() noexcept;
        /// Has callables of its own, and the same observer.
        Listening(const Listening& other);
        Listening& operator=(const Listening&) = delete;
        ~Listening();
        /// The callables; made where there are none yet.
        EventCallables& ownCallables();

        /// The attached observer, or what tells the callables and the observer.
        TraversalProcessor* to = nullptr;
        std::unique_ptr<EventCallables> callables;
    };

    void addFilter(const std::function<ResultPolicy(Link)>& filter);
    /// Asks filter after filter; the first that leaves the link out is named in `filter`.
    bool passesFilters(const Link& link, std::size_t& filter) const {
        // By index: a filter may add another.
        for (filter = 0; filter < filters_.size(); ++filter) {
            if (filters_[filter](link) == ResultPolicy::WalkOnly) return false;
        }
        return true;
    }
    /// Whether anybody has to be asked or told about links.
    bool isAsking() const noexcept { return isAsking_; }
    bool isTraced() const noexcept { return !listeners_.empty(); }
    bool hasBoundaries() const noexcept { return hasBoundaries_; }
    bool mayDescend(const Link& link) const;
    void doAttach(TraversalProcessor* processor);
    std::unique_ptr<UniquenessMaintainer> createUniquenessMaintainer() const;
    bool isDepthFirst() const noexcept { return algo_ != Algo::BreadthFirst; }
    bool isReportingSelfFirst() const noexcept { return algo_ != Algo::DepthFirstPostOrder; }

    std::shared_ptr<PropertyProvider> provider_;
    Listening listening_;
    std::vector<ModelElement> inputs_;
    /// The first of all filters, and a flag because it is the everyday one.
    bool dropsPseudoLinks_;
    /// Stay where they are while one of them adds another.
    std::deque<Filter> filters_;
    /// What has to agree that a link enters its target; stay where they are for the same reason.
    std::deque<std::function<bool(const Link&)>> boundaries_;
    bool hasBoundaries_ = false;
    /// The distance from the nearest input at which walks end.
    std::optional<std::size_t> upTo_;
    bool remembersPaths_ = false;
    std::vector<WalkListener*> listeners_;
    /// Whether there are filters or listeners.
    bool isAsking_ = false;
    WalkCount walks_;
    Algo algo_;
    UniquenessMode uniqueness_ = UniquenessMode::NoUniqueness;
};

/// One walk over a result: stands on a link, or at the end.
///
///     for (auto walk = result->begin(); !(walk == IterationContext()); walk.advance()) {
///         use(walk.getCurrent());
///     }
///
/// Order: the result's. Each `advance` costs the work up to the next reported link, one question
/// for each link met on the way whether its target was entered; memory grows with the elements
/// entered. A copy is an independent walk from the same place; it copies the memory of what was
/// entered or reported, and shares most of the frontier until one of both changes it.
///
/// Every element is entered once. A link to an element that was entered before is reported with
/// `shouldCascade()` false, and the walk does not go on from there.
///
/// Pruning acts from the next step on, on cursors only: links that are on the frontier already are
/// still handled. On a link without a source or target to prune, and at the end, it does nothing.
///
/// An exception from a predicate, filter, observer, listener, the model or an allocation ends the
/// step and passes through; `getCurrent` keeps its value, what was reached stays reached, and the
/// next `advance` goes on from there. The link that was being entered or tried is lost; its target
/// is entered, and walked, if it was the policy's predicate or a filter that threw. An input that
/// could not be entered waits and is tried again, with its own link; one whose
/// `onEnterInputElement` threw, or whose link could not be pushed, is left out. When the walk ends,
/// the observer hears `onExitInputElement` for the last input, and again for each further
/// `advance`; not for `advanceWithin`, which sees that the walk has ended.
///
/// Callbacks may prune and copy the walk that calls them. Advancing or assigning it from there
/// throws `std::logic_error` and changes nothing; destroying it from there is not allowed.
///
/// A model that changes under a walk is outside the contract, but does no harm: what the walk has
/// met stays alive, and the values of a property are those that stood there when it was reached.
class MODELING_NUV0_TRAVERSAL_EXPORT TraversalResult::IterationContext {
  public:
    /// The end of every walk.
    IterationContext();
    /// As `TraversalResult::begin`. Throws `std::invalid_argument` for a null result.
    explicit IterationContext(const std::shared_ptr<TraversalResult>& result);
    IterationContext(const IterationContext& other);
    /// Leaves the end of every walk behind. A move is no copy: it costs the same wherever the walk
    /// stands.
    IterationContext(IterationContext&& other) noexcept;
    void operator=(const IterationContext& other);
    // NOLINTNEXTLINE(performance-noexcept-move-constructor): throws from a callback of the walk
    void operator=(IterationContext&& other);
    ~IterationContext();

    /// Walks of one result are equal when they stand at the same place with the same frontier; what
    /// they have pruned is not compared. Depth-first, where a cursor stands among links that are
    /// not reported is not either: one that has paused further on among them equals one that has
    /// not. A walk that has ended equals the default-constructed one,
    /// and so two ended walks of different results are unequal although both equal that one.
    bool operator==(const IterationContext& other) const;

    void advance();
    /// The link that the walk stands on; the empty link at the end. The reference stays; the link
    /// changes with each `advance`. Copy it to keep it.
    const Link& getCurrent() const { return *current_; }
    /// Whether nothing is left of the walk.
    bool hasEnded() const noexcept;

    /// The same as `advance`, but for as many steps at most: a step is a bounded piece of work, a
    /// link met, a property looked at, an element left or an input begun. What is not used of them
    /// is left in the argument, also when something is thrown. A walk that has ended takes none.
    ///
    ///     for (std::size_t steps = 1000; walk.advanceWithin(steps) == Progress::Paused;) {
    ///         if (isCancelled()) return;
    ///         steps = 1000;
    ///     }
    ///
    /// A paused walk keeps its current link and goes on with the next `advance` or `advanceWithin`.
    /// All other operations work on it as on any other walk.
    Progress advanceWithin(std::size_t& steps);

    // Where the walk stands: at the link that it handled last. After a step that is the current
    // link. In a callback it is the link that is being handled, and after a step that was paused or
    // has failed the place where that stopped. While none of an element's links is handled, as in
    // the events of the element and its properties, it is the link by which that was entered. It is
    // none before the first input, between two inputs, at a null input and at the end.

    /// How many links lead from the input to the target of the link, on the way that the walk went;
    /// 0 for an input, and at the end.
    std::size_t depth() const noexcept;
    /// How the target was met, as far as the walk has gone. Breadth-first, a link to an element
    /// that was entered before is handled when its own turn comes, and answers for that moment.
    Meeting meeting() const;
    /// The links from the input's own link to the link; none where the walk stands on no link. For
    /// a link that does not lead on, the path to its source and then the link. Costs what it
    /// returns. Breadth-first the walk has to have remembered how it came to its elements: on a
    /// link, this throws `std::logic_error` without `ResultSetup::rememberPaths()`.
    std::vector<Link> path() const;
    /// The same for an element that the walk has entered; empty for any other. Depth-first, what is
    /// not on the path any more has to have been remembered too.
    std::vector<Link> pathTo(const ModelElement& element) const;
    /// For a link that is met as `Open` depth-first, the links of the cycle that it closes, the
    /// link itself last; empty for any other, and breadth-first.
    std::vector<Link> cycle() const;
    bool hasEntered(const ModelElement& element) const;
    std::size_t enteredCount() const noexcept;
    /// How many links the frontier holds: depth-first those of the path, breadth-first the queue.
    std::size_t waitingCount() const noexcept;

    /// Nothing below the current target, as far as it was not produced yet.
    void pruneAllChildren();
    /// The same for one property of the current target.
    void pruneChildren(const meta::Property& property);
    /// No further values of the property on which the cursor of the current source stands now.
    void pruneSiblings();

  private:
    friend class TraversalResult;
    friend class traversal::LinkRange;
    friend class WalkAccess;
    struct Unstarted {};
    IterationContext(Unstarted, const std::shared_ptr<TraversalResult>& result);

    /// None for the end of every walk.
    std::unique_ptr<Walk> walk_;
    /// The walk's current link.
    const Link* current_;
};

}  // namespace nuv::zero::traversal::internal
