#pragma once

#include <limits>
#include <stdexcept>
#include <string>

namespace nuv::zero::test {

/// What a test throws on purpose.
class PlannedFailure : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// Fails at one call out of many, so that a test can fail at each of them in turn.
class FailurePlan {
  public:
    static constexpr int never = std::numeric_limits<int>::max();

    /// Fails at the call with this number, counted from 1.
    explicit FailurePlan(int failingCall = never) : failingCall_(failingCall) {}

    void call(const char* what) {
        if (++calls_ == failingCall_) throw PlannedFailure(what);
    }
    int calls() const { return calls_; }

  private:
    int failingCall_;
    int calls_ = 0;
};

}  // namespace nuv::zero::test
