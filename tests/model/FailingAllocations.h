#pragma once

#include <functional>

namespace nuv::zero::test {

/// Runs a call in which the first `allowed` allocations of this thread succeed and the next one
/// fails; whether the call got through. Needs an executable that replaces the global operator new,
/// as the source of this header does.
bool succeedsWith(long allowed, const std::function<void()>& call);

/// The same where the one allocation after the first `allowed` ones fails and later ones do not.
bool succeedsWithout(long allowed, const std::function<void()>& call);

/// Allocations of this thread that have not been freed.
long liveAllocations();

}  // namespace nuv::zero::test
