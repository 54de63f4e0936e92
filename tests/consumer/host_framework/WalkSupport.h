#pragma once

#include "model/Framework.h"

namespace nuv_consumer {

/// Calls what stands in for operations that the host's framework does not offer. The property has
/// a value. False when something comes back that should not.
bool callWalkSupport(const nuv::zero::ModelElement& element,
                     const nuv::zero::meta::Property& property);

}  // namespace nuv_consumer
