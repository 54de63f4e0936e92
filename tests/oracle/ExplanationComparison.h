#pragma once

#include "tests/oracle/CalmCase.h"

namespace nuv::zero::oracle {

/// Compares what is explained about a class with what walks do, and with the oracle's own
/// decisions. Differences are failures of the test that calls it.
void compareExplanation(CalmCase& random, int type);

}  // namespace nuv::zero::oracle
