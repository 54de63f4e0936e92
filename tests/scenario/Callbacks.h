#pragma once

#include <functional>
#include <string>

#include "tests/scenario/Workspace.h"

namespace nuv::zero::scenario {

/// The class predicate that a word such as `log:tag:isKindOf:Block` describes. It keeps a reference
/// to the workspace. Throws `Malformed`.
std::function<bool(const meta::Class&)> predicateOf(Workspace& workspace, const std::string& word);

/// The same for the filter that a word such as `notElem:b` describes.
std::function<ResultPolicy(Link)> filterOf(Workspace& workspace, const std::string& word);

}  // namespace nuv::zero::scenario
