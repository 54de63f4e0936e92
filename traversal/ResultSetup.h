#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <type_traits>
#include <utility>

#include "Export.h"
#include "internal/TraversalProcessor.h"
#include "internal/TraversalResult.h"

namespace nuv::zero::traversal MODELING_NUV0_OVER {

/// Sets a result up before it is walked: attaches an observer, adds filters, chooses which repeats
/// to leave out.
///
///     auto result = traversal->breadthFirst({root});
///     ResultSetup(result).observe(&printer).filter(onlyPorts).unique(UniquenessMode::UniqueLinks);
///     for (const Link& link : links(result)) ...
///
/// Meant for the time before the first `begin()`. What a later call still reaches: walks under way
/// see a new filter from their next link on; they see a new observer for the input events at once
/// and for the events of elements entered from then on, while elements entered before keep the
/// observer they were entered under; they do not see a new uniqueness mode.
///
/// A setup shares the result. The observer is not owned, callables are. Throws
/// `std::invalid_argument` for a null result and `std::bad_alloc`.
class MODELING_NUV0_TRAVERSAL_EXPORT ResultSetup {
  public:
    /// What hears of one event of elements, or of properties.
    using OfElement = std::function<void(const ModelElement&)>;
    using OfProperty = std::function<void(const ModelElement&, const meta::Property&)>;

    explicit ResultSetup(std::shared_ptr<internal::TraversalResult> result);

    /// Attaches the observer in place of an earlier one; null detaches.
    ResultSetup& observe(internal::TraversalProcessor* processor);

    // Calls something at one event, see `TraversalProcessor`. The result owns the callable, and a
    // copy of the result has a copy of it. Callables and the observer are told in the order in
    // which they were given; an observer that takes the place of another stands behind what was
    // given before it. Where one throws, those behind it do not hear of the event; an event that
    // comes again comes to all. An empty function fails with `std::bad_function_call` when its
    // event comes. Walks under way hear as they hear a new observer.

    ResultSetup& onEnterInputElement(const OfElement& callable);
    ResultSetup& onEnterElement(const OfElement& callable);
    ResultSetup& onEnterProperty(const OfProperty& callable);
    ResultSetup& onExitProperty(const OfProperty& callable);
    ResultSetup& onExitElement(const OfElement& callable);
    ResultSetup& onExitInputElement(const OfElement& callable);

    /// Adds a filter behind the others. A link that any filter answers `WalkOnly` for is walked but
    /// not reported; the filters behind that one are not asked. An empty function fails with
    /// `std::bad_function_call` when it is asked.
    ///
    /// Anything that can be called with a `const Link&` will do. Where it takes its link by
    /// reference, asking it costs no copy of the link, which then lasts as long as the call.
    ResultSetup& filter(const std::function<ResultPolicy(internal::Link)>& filter);
    template <class Filter>
    requires(
        std::is_invocable_r_v<ResultPolicy, Filter&, const internal::Link&> &&
        !std::is_same_v<std::remove_cvref_t<Filter>, std::function<ResultPolicy(internal::Link)>>)
        ResultSetup& filter(Filter&& filter) {
        return filterByReference(std::forward<Filter>(filter));
    }
    /// The same for a filter that answers `bool`: true reports the link. Other answers that would
    /// convert are refused, because a number could be meant as a policy.
    ///
    ///     ResultSetup(result).filter([&](const Link& link) { return link.getTarget() != root; });
    ///     ResultSetup(result).filter(&Link::shouldCascade);
    template <class Filter>
    requires(
        std::is_same_v<std::remove_cvref_t<std::invoke_result_t<Filter&, const internal::Link&>>,
                       bool>) ResultSetup& filter(const Filter& isWanted) {
        return filterByAnswer(isWanted);
    }
    ResultSetup& unique(UniquenessMode mode);

    /// Adds a predicate that draws boundaries: it is asked once for each link with a property that
    /// would enter its target, and says whether it does. Where it answers no, the link is reported
    /// as any other, with `shouldCascade()` false, and its target is not entered: a later link may
    /// enter it. Inputs are always entered. Several predicates must all agree; the first that does
    /// not ends the question.
    ///
    ///     ResultSetup(result).descend([&](const Link& link) { return isInside(link); });
    ///
    /// Asked before the target is entered, so before the link is tried and before events of its
    /// target. A predicate that throws ends the step; the link is lost. For a predicate that looks
    /// at the link alone, the three orders enter the same elements. Walks under way ask a new one
    /// from their next link on. An empty function fails with `std::bad_function_call`.
    ResultSetup& descend(const std::function<bool(const internal::Link&)>& predicate);
    /// Goes on only from elements whose distance from the nearest input is below `distance`: 0
    /// reports the inputs themselves, 1 the links that leave them. The same links in every order.
    /// The last call wins; walks under way do not see it.
    ///
    /// Distances are counted in links that the rules follow and that boundaries let pass; what the
    /// caller prunes, filters and policies take no part. A breadth-first walk from one input knows
    /// them as it goes, until something is pruned; an exception that loses a link makes it take a
    /// longer way for the distance. Then, and at the beginning of any other walk, comes a silent
    /// breadth-first pass from all inputs, up to the distance: it costs about as much as that part
    /// of the walk, asks boundaries besides, and is part of a step. To a boundary that asks at the
    /// beginning, the walk stands on no link then, and has entered nothing.
    ResultSetup& upTo(std::size_t distance);
    /// Lets walks remember how they came to each element, for `path()` breadth-first and `pathTo()`
    /// in any order. Walks under way do not see it.
    ResultSetup& rememberPaths();

    /// Attaches a listener behind the others: it hears what becomes of each link, and of each call
    /// that prunes, from the next one on in walks under way too. Throws `std::invalid_argument` for
    /// null.
    ResultSetup& trace(WalkListener* listener);

  private:
    ResultSetup& filterByReference(
        const std::function<ResultPolicy(const internal::Link&)>& filter);
    ResultSetup& filterByAnswer(const std::function<bool(const internal::Link&)>& isWanted);

    std::shared_ptr<internal::TraversalResult> result_;
};

}  // namespace nuv::zero::traversal
