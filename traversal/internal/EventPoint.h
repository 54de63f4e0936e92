#pragma once

#include <cstdint>

#include "../Export.h"

namespace nuv::zero::traversal MODELING_NUV0_OVER::internal {

/// The events that a cursor sends to its observer.
enum class EventPoint : std::int32_t {
    EnterElement = 0,
    EnterProperty = 1,
    ExitProperty = 2,
    ExitElement = 3,
};

}  // namespace nuv::zero::traversal::internal
