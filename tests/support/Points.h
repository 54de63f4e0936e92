#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

namespace nuv::zero::test {

/// Says how many points of failure a test has been through, in its output and in reports. A test
/// that went through none has tested nothing and fails. Once per test.
inline void recordPoints(long points, const std::string& what) {
    std::printf("[ POINTS   ] %ld %s\n", points, what.c_str());
    std::fflush(stdout);
    testing::Test::RecordProperty("points", std::to_string(points));
    EXPECT_GT(points, 0) << what;
}

}  // namespace nuv::zero::test
