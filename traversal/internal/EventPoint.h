#pragma once

#include <cstdint>

namespace nuv::zero::traversal::internal {

/// The events that a cursor sends to its observer.
enum class EventPoint : std::int32_t {
    EnterElement = 0,
    EnterProperty = 1,
    ExitProperty = 2,
    ExitElement = 3,
};

}  // namespace nuv::zero::traversal::internal
