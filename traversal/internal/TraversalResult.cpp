#include "traversal/internal/TraversalResult.h"

#include "traversal/PropertyProvider.h"
#include "traversal/internal/EventCallables.h"
#include "traversal/internal/UniquenessMaintainer.h"

namespace nuv::zero::traversal MODELING_NUV0_OVER::internal {

// NOLINTNEXTLINE(performance-unnecessary-value-param): tags are empty
TraversalResult::TraversalResult(privateTag /*tag*/, const std::vector<ModelElement>& inputs,
                                 const std::shared_ptr<PropertyProvider>& provider, Algo algo,
                                 ResultPolicy pseudoLinkPolicy)
    : provider_(provider),
      inputs_(inputs),
      dropsPseudoLinks_(pseudoLinkPolicy == ResultPolicy::WalkOnly),
      algo_(algo) {}

TraversalResult::TraversalResult(const TraversalResult& other) = default;
TraversalResult::~TraversalResult() = default;

TraversalResult::Listening::Listening() noexcept = default;
TraversalResult::Listening::Listening(const Listening& other) : to(other.to) {
    if (other.callables == nullptr) return;
    callables = std::make_unique<EventCallables>(*other.callables);
    to = callables->standIn();
}
TraversalResult::Listening::~Listening() = default;

EventCallables& TraversalResult::Listening::ownCallables() {
    if (callables == nullptr) callables = std::make_unique<EventCallables>(to);
    return *callables;
}

TraversalResult::IterationContext TraversalResult::begin() {
    return IterationContext(shared_from_this());
}

void TraversalResult::addFilter(const std::function<ResultPolicy(Link)>& filter) {
    filters_.emplace_back(filter);
    isAsking_ = true;
}

bool TraversalResult::mayDescend(const Link& link) const {
    // NOLINTNEXTLINE(modernize-loop-convert): a predicate may add another
    for (std::size_t index = 0; index < boundaries_.size(); ++index) {
        if (!boundaries_[index](link)) return false;
    }
    return true;
}

void TraversalResult::doAttach(TraversalProcessor* processor) {
    listening_.to =
        listening_.callables == nullptr ? processor : listening_.callables->observe(processor);
}

TraversalResult::IterationContext TraversalResult::prepare() {
    return IterationContext(IterationContext::Unstarted(), shared_from_this());
}

std::unique_ptr<UniquenessMaintainer> TraversalResult::createUniquenessMaintainer() const {
    return makeUniquenessMaintainer(uniqueness_);
}

}  // namespace nuv::zero::traversal::internal
