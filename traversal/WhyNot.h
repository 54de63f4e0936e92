#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "Explanation.h"
#include "Export.h"
#include "LinkRange.h"
#include "WalkBoundaries.h"

namespace nuv::zero::traversal MODELING_NUV0_OVER {

/// Why a link was not followed that would have led to an element.
enum class Obstacle : std::int32_t {
    /// The rules do not follow its property from the class of its source.
    Rules = 0,
    /// A `descend` predicate refused it.
    Boundary = 1,
    /// The caller has pruned its source.
    Pruned = 2,
    /// Its source is as far from the inputs as the walk goes.
    OutOfReach = 3,
    /// The walk has still to come there. Not known of an input while its own `onEnterInputElement`
    /// runs, which may lose it.
    NotYet = 4,
    /// The walk has left its source without taking it: it was refused, pruned or lost by an
    /// exception, and no listener has recorded which.
    NotTaken = 5,
};

/// A link that leads to an element from one that was entered, and was not followed.
struct MissedLink {
    /// An input's own link where the element is an input.
    internal::Link link;
    /// How many links lead from the nearest input to its source.
    std::size_t distance = 0;
    Obstacle obstacle = Obstacle::NotTaken;
    /// What the rules decide, where they are the obstacle.
    std::optional<ExplainedProperty> decision;
    /// What was pruned, where that is it.
    std::optional<Pruning> pruning;

    bool operator==(const MissedLink& other) const = default;
};

/// How near a walk has come to an element.
struct MODELING_NUV0_TRAVERSAL_EXPORT WhyNot {
    ModelElement element;
    bool isEntered = false;
    /// How many elements the walk has entered.
    std::size_t enteredCount = 0;
    /// None for an element that was entered, and where nothing that was entered refers to it. The
    /// nearest come first; those of one source in the order in which its class has its properties.
    std::vector<MissedLink> links;

    std::size_t count(Obstacle obstacle) const noexcept;
    bool operator==(const WhyNot& other) const = default;
    /// For people: a line, and one for each link. Throws as `dumpLink` does.
    std::string text() const;
};

/// Explains why a walk has not entered an element, as far as it has gone.
///
///     WalkBoundaries boundaries;
///     ResultSetup(result).trace(&boundaries);
///     auto walk = links(result);
///     for (const Link& link : walk) ...
///     std::cout << whyNot(walk, pump, &boundaries).text();
///
/// Goes once over the elements that the walk has entered, beginning with the inputs, and reads
/// their associations, also those that the walk does not follow. The walk stays as it is. Without a
/// listener, what was refused or pruned is told as `NotTaken`, or as `NotYet` as long as the walk
/// has not left the source.
///
/// Predicates are asked as by `explain`, for the classes from which a link was found that the rules
/// do not follow. Throws `std::invalid_argument` for a null element, and what predicates and the
/// model throw.
MODELING_NUV0_TRAVERSAL_EXPORT WhyNot
whyNot(const internal::TraversalResult::IterationContext& walk, const ModelElement& element,
       const WalkBoundaries* boundaries = nullptr);
MODELING_NUV0_TRAVERSAL_EXPORT WhyNot whyNot(const LinkRange& walk, const ModelElement& element,
                                             const WalkBoundaries* boundaries = nullptr);

}  // namespace nuv::zero::traversal
