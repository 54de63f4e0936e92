#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "traversal/Spec.h"
#include "traversal/internal/UniquenessMaintainer.h"

/// The private operations and fields of results and builders, for tests.
namespace nuv::zero::testing_support {

using traversal::internal::Link;
using traversal::internal::TraversalProcessor;
using traversal::internal::TraversalResult;
using traversal::internal::UniquenessMaintainer;

void addFilter(TraversalResult& result, const std::function<traversal::ResultPolicy(Link)>& filter);
void attach(TraversalResult& result, TraversalProcessor* processor);
void setUniqueness(TraversalResult& result, traversal::UniquenessMode mode);
std::unique_ptr<UniquenessMaintainer> createUniquenessMaintainer(const TraversalResult& result);
traversal::PropertyProvider& providerOf(TraversalResult& result);

/// The provider of an additive traversal over these rules and named properties, also such as no
/// builder makes.
std::shared_ptr<traversal::PropertyProvider> makeAdditiveProvider(
    const traversal::MatchersMap& rules, const std::vector<meta::Property>& properties);

/// Runs a builder with a policy for the inputs' own links that is not the builder's.
std::shared_ptr<TraversalResult> createResult(traversal::AdditiveTraversalImpl& builder,
                                              const std::vector<ModelElement>& inputs,
                                              traversal::Algo algo, traversal::ResultPolicy policy);
std::shared_ptr<TraversalResult> createResult(traversal::CompositionTraversalImpl& builder,
                                              const std::vector<ModelElement>& inputs,
                                              traversal::Algo algo, traversal::ResultPolicy policy);
std::shared_ptr<TraversalResult> createResult(traversal::SubtractiveTraversalImpl& builder,
                                              const std::vector<ModelElement>& inputs,
                                              traversal::Algo algo, traversal::ResultPolicy policy);

}  // namespace nuv::zero::testing_support
