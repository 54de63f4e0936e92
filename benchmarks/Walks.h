#pragma once

#include <array>
#include <functional>
#include <memory>
#include <string_view>

#include "benchmarks/Checksum.h"
#include "benchmarks/Shapes.h"
#include "traversal/Traversal.h"

namespace nuv::zero::benchmarks {

enum class Kind { Composition, Subtractive, Additive };

inline constexpr std::array<Kind, 3> allKinds = {Kind::Composition, Kind::Subtractive,
                                                 Kind::Additive};
inline constexpr std::array<traversal::Algo, 3> allOrders = {traversal::Algo::DepthFirstPreOrder,
                                                             traversal::Algo::DepthFirstPostOrder,
                                                             traversal::Algo::BreadthFirst};

std::string_view nameOf(Kind kind);
std::string_view nameOf(traversal::Algo order);

/// What the loop asks for beside each link: nothing, where the walk stands, or to be called in
/// between every thousand steps.
enum class Loop { Plain, Where, InSteps };

/// What to walk and how; the library and the hand-written loops take the same description.
struct Walk {
    const Shape* shape = nullptr;
    Kind kind = Kind::Composition;
    traversal::Algo order = traversal::Algo::DepthFirstPreOrder;
    /// With the shape's eight idle rules.
    bool withRules = false;
    traversal::ResultPolicy pseudoLinks = traversal::ResultPolicy::Report;
    /// The following concern the library alone.
    std::function<void(traversal::ResultSetup& setup)> setUp;
    Loop loop = Loop::Plain;
    traversal::UniquenessMode uniqueness = traversal::UniquenessMode::NoUniqueness;
};

/// The result of running the library's builder for a walk.
std::shared_ptr<traversal::TraversalResult> makeResult(const Walk& walk);

/// Runs the library to the end, as often as the shape says, from making the builder to releasing
/// the walk.
Checksum walkLibrary(const Walk& walk);

}  // namespace nuv::zero::benchmarks
