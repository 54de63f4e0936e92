#pragma once

/// The whole public interface: builders from `Spec`, ready-made predicates and rules, results,
/// ranges of links, observers, listeners, explanations, dumps. Apart from it stands
/// `traversal/StreamOutput.h` alone, which a program includes that wants its output.
#include "ClassPredicates.h"
#include "ContainerReferences.h"
#include "Explanation.h"
#include "Export.h"
#include "LinkRange.h"
#include "NamedPredicate.h"
#include "ResultSetup.h"
#include "RuleCheck.h"
#include "Spec.h"
#include "WalkBoundaries.h"
#include "WalkPicture.h"
#include "WalkStatistics.h"
#include "WhyNot.h"
#include "internal/Dumps.h"

namespace nuv::zero::traversal MODELING_NUV0_OVER {

using internal::dumpElement;
using internal::dumpLink;
using internal::Link;
using internal::LinkHasher;
using internal::TraversalProcessor;
using internal::TraversalResult;
using IterationContext = TraversalResult::IterationContext;

}  // namespace nuv::zero::traversal
