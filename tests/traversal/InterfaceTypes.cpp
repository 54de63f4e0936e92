#include <cstdint>
#include <functional>
#include <memory>
#include <type_traits>
#include <utility>

#include "traversal/ClassHierarchyComparator.h"
#include "traversal/Traversal.h"

/// What callers rely on in the types of the interface. No test: where it does not hold, this does
/// not compile.
namespace nuv::zero::traversal {
namespace {

template <class T>
T& lvalue();
template <class T>
const T& constant();

// Callers keep these numbers in settings of their own.
template <class Enumeration>
constexpr bool isNumber32 = std::is_same_v<std::underlying_type_t<Enumeration>, std::int32_t>;
static_assert(isNumber32<Algo> && isNumber32<ResultPolicy> && isNumber32<UniquenessMode>);
static_assert(isNumber32<CompositeMatcher::VisitMode>);
static_assert(isNumber32<Fate> && isNumber32<Pruning> && isNumber32<Reason> &&
              isNumber32<Obstacle>);
static_assert(isNumber32<Meeting> && isNumber32<Progress> && isNumber32<Pruned>);
static_assert(static_cast<int>(Algo::DepthFirstPreOrder) == 0);
static_assert(static_cast<int>(Algo::DepthFirstPostOrder) == 1);
static_assert(static_cast<int>(Algo::BreadthFirst) == 2);
static_assert(static_cast<int>(ResultPolicy::WalkOnly) == 0);
static_assert(static_cast<int>(ResultPolicy::Report) == 1);
static_assert(static_cast<int>(ResultPolicy::Extended) == 2);
static_assert(static_cast<int>(UniquenessMode::UniqueLinks) == 0);
static_assert(static_cast<int>(UniquenessMode::UniqueElements) == 1);
static_assert(static_cast<int>(UniquenessMode::NoUniqueness) == 2);
static_assert(static_cast<int>(CompositeMatcher::VisitMode::Prune) == 0);
static_assert(static_cast<int>(CompositeMatcher::VisitMode::Visit) == 1);

// The engine's types that callers meet have names in the public namespace.
static_assert(std::is_same_v<Link, internal::Link>);
static_assert(std::is_same_v<TraversalResult, internal::TraversalResult>);
static_assert(std::is_same_v<TraversalProcessor, internal::TraversalProcessor>);
static_assert(std::is_same_v<LinkHasher, internal::LinkHasher>);
static_assert(std::is_same_v<IterationContext, internal::TraversalResult::IterationContext>);

// A link is asked whether it is one, and never taken for a number.
static_assert(std::is_constructible_v<bool, const Link&> &&
              !std::is_convertible_v<const Link&, bool>);

// Only `Spec` makes builders: neither nothing, nor braces, nor anything else converts to the token.
template <class Impl>
concept MadeFromBraces = requires {
    Impl({});
}
|| requires {
    Impl({{}});
};
template <class Impl>
constexpr bool onlySpecMakes = !std::is_default_constructible_v<Impl> && !MadeFromBraces<Impl> &&
                               !std::is_constructible_v<Impl, int>;
template <class Impl>
constexpr bool isBuilder = onlySpecMakes<Impl>&& std::has_virtual_destructor_v<Impl>&&
    std::is_base_of_v<std::enable_shared_from_this<Impl>, Impl>;
static_assert(isBuilder<AdditiveTraversalImpl>);
static_assert(isBuilder<CompositionTraversalImpl>);
static_assert(isBuilder<SubtractiveTraversalImpl>);

// Function objects and factories hold nothing.
template <class T>
constexpr bool holdsNothing =
    std::is_empty_v<T>&& std::is_copy_assignable_v<T>&& std::is_move_assignable_v<T>;
static_assert(holdsNothing<Spec>);
static_assert(holdsNothing<ClassHierarchyComparator>);
static_assert(holdsNothing<LinkHasher>);
static_assert(holdsNothing<std::hash<Link>>);

// A setting gives its fields by value, and only where it may be changed.
template <class Setting>
concept GivesItsProperty = requires(Setting setting) {
    setting.getProperty();
};
template <class Setting>
concept GivesItsPolicy = requires(Setting setting) {
    setting.getPolicy();
};
static_assert(!GivesItsProperty<const AssociationSetting>);
static_assert(!GivesItsPolicy<const AssociationSetting>);
static_assert(std::is_same_v<decltype(lvalue<AssociationSetting>().getProperty()), Property>);
static_assert(std::is_same_v<decltype(lvalue<AssociationSetting>().getPolicy()), ResultPolicy>);

// A property passes for a rule.
static_assert(std::is_convertible_v<const Property&, PropertyMatcher>);
static_assert(!std::is_polymorphic_v<PropertyMatcher>);
static_assert(std::is_same_v<decltype(constant<PropertyMatcher>().getProperty()), const Property&>);
static_assert(std::is_same_v<decltype(constant<PropertyMatcher>().getOwner()), const Class&>);
static_assert(std::is_same_v<decltype(constant<PropertyMatcher>().getMatcher()),
                             const std::function<bool(const Class&)>&>);

// Containers move links instead of copying them.
static_assert(std::is_nothrow_move_constructible_v<Link> &&
              std::is_nothrow_move_assignable_v<Link>);

// Observers are derived from a class without data.
static_assert(std::has_virtual_destructor_v<TraversalProcessor>);
static_assert(sizeof(TraversalProcessor) == sizeof(void*));
static_assert(std::is_copy_constructible_v<TraversalProcessor>);
static_assert(std::is_copy_assignable_v<TraversalProcessor>);

}  // namespace
}  // namespace nuv::zero::traversal
