#pragma once

#include <vector>

#include "Value.h"

namespace nuv::zero::memory {

/// The elements that none of them contains, in their order.
std::vector<ModelElement> rootsAmong(std::vector<ModelElement> elements);

}  // namespace nuv::zero::memory
