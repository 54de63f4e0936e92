#include "tests/support/EngineAccess.h"

#include "tests/support/PrivateAccess.h"

namespace nuv::zero::testing_support {

using traversal::AbstractTraversal;
using traversal::AdditiveTraversalImpl;
using traversal::Algo;
using traversal::CompositionTraversalImpl;
using traversal::ResultPolicy;
using traversal::SubtractiveTraversalImpl;

struct ResultAddFilter {
    friend auto pointerTo(ResultAddFilter);
};
struct ResultDoAttach {
    friend auto pointerTo(ResultDoAttach);
};
struct ResultUniqueness {
    friend auto pointerTo(ResultUniqueness);
};
struct ResultCreateMaintainer {
    friend auto pointerTo(ResultCreateMaintainer);
};
struct ResultProvider {
    friend auto pointerTo(ResultProvider);
};
struct AdditiveCreateResult {
    friend auto pointerTo(AdditiveCreateResult);
};
struct CompositionCreateResult {
    friend auto pointerTo(CompositionCreateResult);
};
struct SubtractiveCreateResult {
    friend auto pointerTo(SubtractiveCreateResult);
};

struct AdditiveRules {
    friend auto pointerTo(AdditiveRules);
};
struct AdditiveProperties {
    friend auto pointerTo(AdditiveProperties);
};
struct AdditiveProvider {
    friend auto pointerTo(AdditiveProvider);
};

template struct Expose<ResultAddFilter, &TraversalResult::addFilter>;
template struct Expose<ResultDoAttach, &TraversalResult::doAttach>;
template struct Expose<ResultUniqueness, &TraversalResult::uniqueness_>;
template struct Expose<ResultCreateMaintainer, &TraversalResult::createUniquenessMaintainer>;
template struct Expose<ResultProvider, &TraversalResult::provider_>;
template struct Expose<AdditiveCreateResult,
                       &AbstractTraversal<AdditiveTraversalImpl>::createResult>;
template struct Expose<CompositionCreateResult,
                       &AbstractTraversal<CompositionTraversalImpl>::createResult>;
template struct Expose<SubtractiveCreateResult,
                       &AbstractTraversal<SubtractiveTraversalImpl>::createResult>;

template struct Expose<AdditiveRules, &AbstractTraversal<AdditiveTraversalImpl>::matchersMap_>;
template struct Expose<AdditiveProperties, &AdditiveTraversalImpl::traversedProperties_>;
template struct Expose<AdditiveProvider, &AdditiveTraversalImpl::createPropertyProvider>;

std::shared_ptr<traversal::PropertyProvider> makeAdditiveProvider(
    const traversal::MatchersMap& rules, const std::vector<meta::Property>& properties) {
    const auto builder = traversal::Spec::additiveTraversal();
    (*builder).*pointerTo(AdditiveRules()) = rules;
    (*builder).*pointerTo(AdditiveProperties()) = properties;
    return ((*builder).*pointerTo(AdditiveProvider()))();
}

void addFilter(TraversalResult& result, const std::function<ResultPolicy(Link)>& filter) {
    (result.*pointerTo(ResultAddFilter()))(filter);
}

void attach(TraversalResult& result, TraversalProcessor* processor) {
    (result.*pointerTo(ResultDoAttach()))(processor);
}

void setUniqueness(TraversalResult& result, traversal::UniquenessMode mode) {
    result.*pointerTo(ResultUniqueness()) = mode;
}

std::unique_ptr<UniquenessMaintainer> createUniquenessMaintainer(const TraversalResult& result) {
    return (result.*pointerTo(ResultCreateMaintainer()))();
}

traversal::PropertyProvider& providerOf(TraversalResult& result) {
    return *(result.*pointerTo(ResultProvider()));
}

std::shared_ptr<TraversalResult> createResult(AdditiveTraversalImpl& builder,
                                              const std::vector<ModelElement>& inputs, Algo algo,
                                              ResultPolicy policy) {
    return (builder.*pointerTo(AdditiveCreateResult()))(inputs, algo, policy);
}

std::shared_ptr<TraversalResult> createResult(CompositionTraversalImpl& builder,
                                              const std::vector<ModelElement>& inputs, Algo algo,
                                              ResultPolicy policy) {
    return (builder.*pointerTo(CompositionCreateResult()))(inputs, algo, policy);
}

std::shared_ptr<TraversalResult> createResult(SubtractiveTraversalImpl& builder,
                                              const std::vector<ModelElement>& inputs, Algo algo,
                                              ResultPolicy policy) {
    return (builder.*pointerTo(SubtractiveCreateResult()))(inputs, algo, policy);
}

}  // namespace nuv::zero::testing_support
