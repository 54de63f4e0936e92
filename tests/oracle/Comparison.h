#pragma once

#include <string>
#include <vector>

#include "tests/oracle/Choices.h"

namespace nuv::zero::oracle {

struct Outcome {
    /// Empty when engine and oracle agree; otherwise the world, the script up to the first
    /// difference, and the difference.
    std::string difference;
    /// What was done, and what was observed on it.
    std::vector<std::string> log;
};

/// Makes a metamodel, a model, rules and a script of walks out of the choices, runs the script on
/// the engine and on the oracle, and compares what can be observed after every step: events,
/// predicate and filter calls, exceptions, links, ends and equality of walks.
Outcome compareOnce(Choices& choices);
/// The same with choices of their own for metamodel, model and callbacks, so that a fuzzer can
/// change one part and keep the other.
Outcome compareOnce(Choices& world, Choices& script);

}  // namespace nuv::zero::oracle
