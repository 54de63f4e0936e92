#pragma once

#include <memory>

#include "Names.h"
#include "Options.h"
#include "traversal/Traversal.h"

namespace model_walk {

/// The traversal that the options describe, ready to be walked. Throws `UsageError` for a name that
/// means nothing.
std::shared_ptr<nuv::zero::traversal::TraversalResult> prepare(
    const Options& options, const Names& names, const nuv::zero::xmi::LoadedModel& model);

}  // namespace model_walk
