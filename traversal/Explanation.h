#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "AbstractTraversal.h"
#include "Export.h"
#include "PropertyDecision.h"
#include "internal/TraversalResult.h"

namespace nuv::zero::traversal MODELING_NUV0_OVER {

/// A rule, as explanations name it.
struct ExplainedRule {
    Property property;
    /// The class under which it is filed.
    Class owner;
    /// Its number among the rules given for the property, from 1. `check` numbers all calls that
    /// gave a rule, whatever the property.
    std::size_t number = 0;
    /// Empty unless `named` gave it one.
    std::string name;
    ResultPolicy policy = ResultPolicy::WalkOnly;

    bool operator==(const ExplainedRule& other) const = default;
};

/// What is decided about one property for the elements of a class, and why.
struct MODELING_NUV0_TRAVERSAL_EXPORT ExplainedProperty {
    Property property;
    bool isFollowed = false;
    /// Of the links that are followed.
    ResultPolicy policy = ResultPolicy::WalkOnly;
    Reason reason = Reason::NotNamed;
    /// The rule that answered.
    std::optional<ExplainedRule> rule;
    /// Those that were asked before it and refused; all, where none accepted.
    std::vector<ExplainedRule> refused;
    /// Those that were never asked, because it answered.
    std::vector<ExplainedRule> shadowed;

    bool operator==(const ExplainedProperty& other) const = default;
    /// What is decided and why, for people, without the property's name.
    std::string text() const;
};

/// Why elements of a class are walked as they are.
struct MODELING_NUV0_TRAVERSAL_EXPORT Explanation {
    Class type;
    /// What is followed, and what might have been, in the order in which a walk follows it; then
    /// the other properties of the class, in its own order.
    std::vector<ExplainedProperty> properties;

    bool operator==(const Explanation& other) const = default;
    /// What is said of a property; null where the class does not have it.
    const ExplainedProperty* find(const Property& property) const noexcept;
    /// A line for each property, for people.
    std::string text() const;
};

/// Explains what a result's walks do with the elements of a class.
///
///     std::cout << explain(result, block).text();
///
/// It is what the walks themselves compute, once more: each predicate is called as often as a walk
/// calls it that comes to the class. A null class has no properties. Throws
/// `std::invalid_argument` for a null result, and what predicates throw. It holds handles of
/// properties and classes, which keep them alive as any handle does.
MODELING_NUV0_TRAVERSAL_EXPORT Explanation
explain(const std::shared_ptr<internal::TraversalResult>& result, const Class& type);

/// The same for a builder as its rules stand now.
template <class Impl>
Explanation explain(const AbstractTraversal<Impl>& builder, const Class& type) {
    return explain(builder.depthFirst(std::vector<ModelElement>()), type);
}

}  // namespace nuv::zero::traversal
