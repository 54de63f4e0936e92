#pragma once

#include <map>

#include "tests/oracle/CalmCase.h"
#include "traversal/WhyNot.h"

namespace nuv::zero::oracle {

/// What came up while answers were compared.
struct WhyNotCounts {
    std::map<traversal::Obstacle, int> met;
    int unreferred = 0;
};

/// Walks a random case, asks of every element why it was not entered, and compares the answers with
/// all links of the world. Differences are failures of the test that calls it.
void compareWhyNot(Choices& choices, WhyNotCounts& counts);

}  // namespace nuv::zero::oracle
