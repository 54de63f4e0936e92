#pragma once

#include <memory>

#include "tests/oracle/Side.h"

namespace nuv::zero::oracle {

/// The library, walking an in-memory model of the world. The world has to outlive it.
std::unique_ptr<Side> makeEngineSide(const PlainWorld& world, Kind kind);

}  // namespace nuv::zero::oracle
