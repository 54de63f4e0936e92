#pragma once

#include <functional>
#include <memory>
#include <type_traits>
#include <utility>

#include "traversal/Export.h"
#include "traversal/internal/TraversalProcessor.h"
#include "traversal/internal/TraversalResult.h"

namespace nuv::zero::traversal {

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
/// A setup shares the result. The observer is not owned. Throws `std::invalid_argument` for a null
/// result and `std::bad_alloc`.
class MODELING_NUV0_TRAVERSAL_EXPORT ResultSetup {
  public:
    explicit ResultSetup(std::shared_ptr<internal::TraversalResult> result);

    /// Attaches the observer in place of an earlier one; null detaches.
    ResultSetup& observe(internal::TraversalProcessor* processor);
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
    ResultSetup& unique(UniquenessMode mode);

  private:
    ResultSetup& filterByReference(
        const std::function<ResultPolicy(const internal::Link&)>& filter);

    std::shared_ptr<internal::TraversalResult> result_;
};

}  // namespace nuv::zero::traversal
