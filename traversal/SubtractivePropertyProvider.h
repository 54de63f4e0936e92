#pragma once

#include <memory>

#include "Export.h"
#include "PropertyProvider.h"

namespace nuv::zero::traversal MODELING_NUV0_OVER {

/// Which properties the subtractive provider considers.
enum class Candidates : bool { CompositeOnly = false, AllLinking = true };

/// The provider of the composition and the subtractive kind: follows every candidate of a class but
/// those that prune rules cut away, references before compositions, each by name.
std::shared_ptr<PropertyProvider> makeSubtractiveProvider(MatchersMap matchers,
                                                          Candidates candidates);

}  // namespace nuv::zero::traversal
