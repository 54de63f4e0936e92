#pragma once

#include <type_traits>
#include <utility>

#include "ClassPredicate.h"
#include "Export.h"

/// Ready-made conditions of rules. They combine with each other and with predicates of the
/// caller's own:
///
///     builder->prune(parts, isKindOf(machine));
///     builder->traverse(ports, noneOf(isKindOf(pump), isExactly(tank)), ResultPolicy::Report);
///     builder->prune(notes, allOf(isKindOf(machine), noneOf(isKindOf(pump))));
///
/// A predicate keeps its class alive, is copied as a `std::function` is, holds no state besides,
/// and may be asked on several threads, as far as those that it combines may. What these throw,
/// it throws. No predicate accepts a null class but those of the caller, `noneOf`, and `allOf` of
/// nothing.
namespace nuv::zero::traversal MODELING_NUV0_OVER {

/// Accepts a class and its subclasses. Throws `std::invalid_argument` for a null class.
MODELING_NUV0_TRAVERSAL_EXPORT ClassPredicate isKindOf(const Class& type);

/// Accepts a class, and none of its subclasses. Throws `std::invalid_argument` for a null class.
MODELING_NUV0_TRAVERSAL_EXPORT ClassPredicate isExactly(const Class& type);

namespace internal {

/// A predicate that can be combined with others; says why when something is none.
template <class Predicate>
ClassPredicate combinable(Predicate&& predicate) {
    static_assert(!std::is_convertible_v<Predicate, const Class&>,
                  "A class is no predicate: isKindOf(c) accepts it with its subclasses, "
                  "isExactly(c) without them.");
    static_assert(!PredicateOverElements<Predicate>,
                  "A rule is asked about classes: its predicate has to take a const Class&. One "
                  "that takes an element would be handed the class itself, not elements of it.");
    return ClassPredicate(std::forward<Predicate>(predicate));
}

}  // namespace internal

/// Accepts what any of the predicates accepts, asked in order up to the first that does; of no
/// predicates, nothing.
template <class... Predicates>
ClassPredicate anyOf(Predicates&&... predicates) {
    return [... accepts = internal::combinable(std::forward<Predicates>(predicates))](
               const Class& type) { return (accepts(type) || ...); };
}

/// Accepts what all of the predicates accept, asked in order up to the first that does not; of no
/// predicates, everything.
template <class... Predicates>
ClassPredicate allOf(Predicates&&... predicates) {
    return [... accepts = internal::combinable(std::forward<Predicates>(predicates))](
               const Class& type) { return (accepts(type) && ...); };
}

/// Accepts what none of the predicates accepts, asked as by `anyOf`; of no predicates, everything.
template <class... Predicates>
ClassPredicate noneOf(Predicates&&... predicates) {
    return [... accepts = internal::combinable(std::forward<Predicates>(predicates))](
               const Class& type) { return !(accepts(type) || ...); };
}

}  // namespace nuv::zero::traversal
