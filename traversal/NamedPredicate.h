#pragma once

#include <string>
#include <utility>

#include "ClassPredicate.h"
#include "Export.h"

namespace nuv::zero::traversal MODELING_NUV0_OVER {

/// A predicate with a name, by which explanations and findings call the rule that it is given to.
struct NamedPredicate {
    std::string name;
    ClassPredicate predicate;

    bool operator()(const Class& type) const { return predicate(type); }
};

/// Gives a rule a name:
///
///     builder->prune(owner, named("no owners"));              // for all classes
///     builder->prune(owner, named("no owners of ports", isPort));
///
/// The name changes nothing about what the rule does. Names need not differ.
inline NamedPredicate named(std::string name, ClassPredicate predicate = EveryClass()) {
    return {std::move(name), std::move(predicate)};
}
template <PredicateOverElements F, class = typename RefusedPredicate<F>::Always>
NamedPredicate named(std::string name, const F& predicate) = delete;

/// The predicate with a name that stands in another one; null where there is none.
inline const NamedPredicate* namedIn(const ClassPredicate& predicate) noexcept {
    return predicate.target<NamedPredicate>();
}

}  // namespace nuv::zero::traversal
