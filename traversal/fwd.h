#pragma once

#include <cstdint>

#include "Export.h"

/// Forward declarations and the small enumerations of the public interface.

namespace nuv::zero::traversal MODELING_NUV0_OVER {

/// In which order a walk reports links. Any other value walks as `DepthFirstPreOrder` does.
enum class Algo : std::int32_t {
    /// A link first, then everything below its target.
    DepthFirstPreOrder = 0,
    /// Everything below a link's target first, then the link.
    DepthFirstPostOrder = 1,
    /// The links of an element when its turn comes, but for those to elements entered before, which
    /// wait for turns of their own; turns are taken in the order of discovery.
    BreadthFirst = 2,
};

/// What becomes of a link that is followed. Zero is walked but not reported; every other value is
/// reported. `Extended` is passed through for the caller's own use.
enum class ResultPolicy : std::int32_t {
    WalkOnly = 0,
    Report = 1,
    Extended = 2,
};

/// Which repeated links a walk leaves out. Any other value leaves out none.
enum class UniquenessMode : std::int32_t {
    /// A link and its reverse over the opposite property are one; it is reported once.
    UniqueLinks = 0,
    /// Each element is reported as a target once.
    UniqueElements = 1,
    NoUniqueness = 2,
};

/// How the target of the link on which a walk stands was met.
enum class Meeting : std::int32_t {
    /// The walk stands on no link: before the first input, between two inputs, at a null input and
    /// at the end.
    None = 0,
    /// The target is an input.
    Input = 1,
    /// The link entered its target.
    First = 2,
    /// The target was entered earlier and is not finished. Depth-first these are the links that
    /// close a cycle; breadth-first, its turn has still to come or is under way.
    Open = 3,
    /// The target was entered earlier and is finished. The link by which an element was entered
    /// becomes one of these when a walk pauses right behind that element.
    Done = 4,
    /// The target was not entered, because a `descend` predicate refused the link. As long as
    /// predicates are being asked about a link, and after one that threw, it is one of these too.
    Boundary = 5,
};

/// How a call of `advanceWithin` ended.
enum class Progress : std::int32_t {
    /// The budget is used up; the walk goes on with the next call.
    Paused = 0,
    /// The walk stands on a new link.
    OnLink = 1,
    /// The walk has come to its end.
    Ended = 2,
};

/// What became of a call that prunes.
enum class Pruned : std::int32_t {
    /// There is nothing that it could mean: no link, a target that is null or was not entered, a
    /// property that is not followed from it, or siblings of an input's own link.
    Nothing = 0,
    /// What it should have cut away has been walked already, was cut away before, or there was none
    /// left.
    TooLate = 1,
    /// What was left of it is cut away: values that the walk had not come to, or properties that it
    /// had not looked at, whether they have values or not.
    Cut = 2,
};

class AdditiveTraversalImpl;
class AssociationSetting;
class ClassExplainer;
class CompositeMatcher;
class CompositionTraversalImpl;
class LinkRange;
class PropertyMatcher;
class PropertyProvider;
class ResultSetup;
class RuleCheck;
class Spec;
class SubtractiveTraversalImpl;
class WalkBoundaries;
class WalkListener;
class WalkView;
template <class Impl>
class AbstractTraversal;

namespace internal {
class ElementProgress;
class EventCallables;
class Link;
class TraversalProcessor;
class TraversalResult;
class UniquenessMaintainer;
class Walk;
class WalkAccess;
}  // namespace internal

}  // namespace nuv::zero::traversal
