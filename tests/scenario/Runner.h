#pragma once

#include <ostream>
#include <string>

#include "tests/scenario/Scenario.h"

namespace nuv::zero::scenario {

/// Executes the statements in order and writes the transcript. Throws `ScenarioError` at the first
/// statement that is malformed; the transcript up to there has been written.
void runScenario(const Scenario& scenario, std::ostream& transcript);

/// Compares a transcript with the one that the scenario says it gives. Returns where they differ,
/// as lines to be shown; an empty text when they agree.
std::string differences(const Scenario& scenario, const std::string& transcript);

}  // namespace nuv::zero::scenario
