#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/host_framework/HostFramework.h"

namespace host {

/// Forgets all calls, and fails the test if by its end the host was asked about a null handle. The
/// last member of a fixture, so that what the fixture builds is not counted.
class NullWatch {
  public:
    NullWatch() { Calls::forget(); }
    NullWatch(const NullWatch&) = delete;
    NullWatch& operator=(const NullWatch&) = delete;
    ~NullWatch() {
        EXPECT_EQ(Calls::all().onNull, std::vector<std::string>())
            << "operations that were given a null handle";
        Calls::forget();
    }
};

}  // namespace host
