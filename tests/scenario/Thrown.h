#pragma once

namespace nuv::zero::scenario {

/// What the callbacks of a scenario throw when told to. Types of the runner's own, unrelated to any
/// exception that the library or the standard library throws.
struct PredicateThrown {};
struct FilterThrown {};
struct ProcessorThrown {};

}  // namespace nuv::zero::scenario
