#include "traversal/internal/TraversalProcessor.h"

namespace nuv::zero::traversal MODELING_NUV0_OVER::internal {

TraversalProcessor::TraversalProcessor() = default;
TraversalProcessor::TraversalProcessor(const TraversalProcessor& other) = default;
TraversalProcessor& TraversalProcessor::operator=(const TraversalProcessor& other) = default;
TraversalProcessor::~TraversalProcessor() = default;

void TraversalProcessor::onEnterInputElement(const ModelElement& /*element*/) {}
void TraversalProcessor::onEnterElement(const ModelElement& /*element*/) {}
void TraversalProcessor::onEnterProperty(const ModelElement& /*element*/,
                                         const meta::Property& /*property*/) {}
void TraversalProcessor::onExitProperty(const ModelElement& /*element*/,
                                        const meta::Property& /*property*/) {}
void TraversalProcessor::onExitElement(const ModelElement& /*element*/) {}
void TraversalProcessor::onExitInputElement(const ModelElement& /*element*/) {}

}  // namespace nuv::zero::traversal::internal
