#pragma once

#include <cstdint>

#include "ClassPredicate.h"
#include "Export.h"
#include "RuleTree.h"
#include "fwd.h"

namespace nuv::zero::traversal MODELING_NUV0_OVER {

/// Why a property is followed from the elements of a class, or is not.
enum class Reason : std::int32_t {
    /// It holds values that are no elements, or no links.
    NotAnAssociation = 0,
    /// It computes its values.
    Derived = 1,
    /// The composition kind follows containments alone.
    NotAContainment = 2,
    /// The additive kind follows what is named alone.
    NotNamed = 3,
    /// A rule cuts it away.
    CutByRule = 4,
    /// A rule selects it.
    AcceptedByRule = 5,
    /// It has rules, and none of them accepts the class.
    NoRuleAccepts = 6,
    /// It has no rules, and the kind follows it without.
    NoRules = 7,
};

/// What a provider decides about one property for the elements of one class.
struct PropertyDecision {
    Property property;
    bool isFollowed = false;
    ResultPolicy policy = ResultPolicy::WalkOnly;
    Reason reason = Reason::NotNamed;
    /// The rule that answered, where one did; its provider's.
    const internal::RuleTree::Rule* rule = nullptr;
};

}  // namespace nuv::zero::traversal
