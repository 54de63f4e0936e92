#pragma once

#include <functional>
#include <type_traits>
#include <utility>

#include "../model/Framework.h"
#include "Export.h"

namespace nuv::zero::traversal MODELING_NUV0_OVER {

using meta::Class;
using meta::Property;

/// The condition of a rule: whether it applies to elements of a class.
using ClassPredicate = std::function<bool(const Class&)>;

/// A callable whose one parameter is an element. A class is an element too, so it would pass for a
/// `ClassPredicate`. Generic callables name no parameter type, and are none.
template <class F>
inline constexpr bool takesAnElement = false;
template <class Result, class Parameter>
inline constexpr bool takesAnElement<std::function<Result(Parameter)>> =
    std::is_same_v<std::remove_cvref_t<Parameter>, ModelElement>;
template <class F>
concept PredicateOverElements = requires {
    requires takesAnElement<decltype(std::function(std::declval<std::decay_t<F>>()))>;
};

/// Says why when a predicate over elements is given to a rule; such overloads are deleted.
template <class F>
struct RefusedPredicate {
    static_assert(!PredicateOverElements<F>,
                  "A rule is asked about classes: its predicate has to take a const Class&. One "
                  "that takes an element would be handed the class itself, not elements of it.");
    using Always = void;
};

/// The predicate of a rule for all classes; a type of its own, so that it is known without asking.
struct EveryClass {
    bool operator()(const Class& /*type*/) const noexcept { return true; }
};

}  // namespace nuv::zero::traversal
