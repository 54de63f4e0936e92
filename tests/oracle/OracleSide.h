#pragma once

#include <memory>

#include "tests/oracle/Side.h"

namespace nuv::zero::oracle {

/// The plain walk, which shares no code with the library. The world has to outlive it.
std::unique_ptr<Side> makeOracleSide(const PlainWorld& world, Kind kind);

}  // namespace nuv::zero::oracle
