#pragma once

#include <string_view>
#include <vector>

#include "benchmarks/Walks.h"

namespace nuv::zero::benchmarks {

/// How a hand-written loop remembers what it has visited; see `VisitedSets.h`.
enum class Visited { Flat, Node, Mark };

std::string_view nameOf(Visited visited);

/// The loop that one would write by hand in place of the library, over the same model objects:
/// eager, with an explicit stack or queue, the rules resolved to one list of properties per class,
/// values read where the model keeps them and without counting references.
///
/// It meets the same links in the same order, links to visited elements included, so that the
/// checksums have to be equal. Breadth-first, it therefore queues such links, since the library
/// reports them when their turn comes. What only the library offers (uniqueness, observers) it
/// leaves out.
///
/// REQUIRES: `Visited::Mark` is followed by `clearMarks` before the model is edited or destroyed.
Checksum walkByHand(const Walk& walk, Visited visited);

/// Takes the marks of `Visited::Mark` out of the model.
void clearMarks(const Shape& shape);

/// What `walkLibrary` has to sum up to, uniqueness included: computed from the links of the
/// hand-written loop by the definition of the modes, slowly. Nothing to time, but to check against.
Checksum expectedOf(const Walk& walk);

/// The elements that are entered meanwhile, in the order in which they are reported, each as the
/// target of a link without source and property.
Checksum expectedElementsOf(const Walk& walk);

}  // namespace nuv::zero::benchmarks
