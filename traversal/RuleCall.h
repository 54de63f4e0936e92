#pragma once

#include <cstdint>

#include "Export.h"
#include "PropertyMatcher.h"
#include "fwd.h"

namespace nuv::zero::traversal MODELING_NUV0_OVER {

/// A call that gave a builder a rule.
struct RuleCall {
    enum class Operation : std::int32_t { Traverse = 0, Prune = 1, SetResultPolicy = 2 };

    Operation operation;
    PropertyMatcher matcher;
    /// Of `traverse` and `setResultPolicy`.
    ResultPolicy policy = ResultPolicy::WalkOnly;
};

}  // namespace nuv::zero::traversal
