#pragma once

#include <cstdint>

/// Forward declarations and the small enumerations of the public interface.

namespace nuv::zero::traversal {

/// In which order a walk reports links. Any other value walks as `DepthFirstPreOrder` does.
enum class Algo : std::int32_t {
    /// A link first, then everything below its target.
    DepthFirstPreOrder = 0,
    /// Everything below a link's target first, then the link.
    DepthFirstPostOrder = 1,
    /// All links of an element when its turn comes; turns are taken in the order of discovery.
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

class AdditiveTraversalImpl;
class AssociationSetting;
class CompositeMatcher;
class CompositionTraversalImpl;
class LinkRange;
class PropertyMatcher;
class PropertyProvider;
class ResultSetup;
class Spec;
class SubtractiveTraversalImpl;
template <class Impl>
class AbstractTraversal;

namespace internal {
class ElementProgress;
class Link;
class TraversalProcessor;
class TraversalResult;
class UniquenessMaintainer;
class Walk;
}  // namespace internal

}  // namespace nuv::zero::traversal
