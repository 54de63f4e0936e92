#pragma once

#include <functional>

namespace nuv::zero::benchmarks {

/// Nanoseconds of processor time that the calling thread took for `work`. Processor time, so that
/// other programs on the machine do the least harm.
double nanosecondsOf(const std::function<void()>& work);

}  // namespace nuv::zero::benchmarks
