#pragma once

/// The whole public interface: builders from `Spec`, ready-made predicates and rules, results,
/// ranges of links, observers, listeners, explanations, dumps. Apart from it stands
/// `traversal/StreamOutput.h` alone, which a program includes that wants its output.
#include "traversal/ClassPredicates.h"
#include "traversal/ContainerReferences.h"
#include "traversal/Explanation.h"
#include "traversal/LinkRange.h"
#include "traversal/NamedPredicate.h"
#include "traversal/ResultSetup.h"
#include "traversal/RuleCheck.h"
#include "traversal/Spec.h"
#include "traversal/WalkBoundaries.h"
#include "traversal/WalkPicture.h"
#include "traversal/WalkStatistics.h"
#include "traversal/WhyNot.h"
#include "traversal/internal/Dumps.h"

namespace nuv::zero::traversal {

using internal::dumpElement;
using internal::dumpLink;
using internal::Link;
using internal::LinkHasher;
using internal::TraversalProcessor;
using internal::TraversalResult;
using IterationContext = TraversalResult::IterationContext;

}  // namespace nuv::zero::traversal
