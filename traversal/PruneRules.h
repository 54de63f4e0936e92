#pragma once

#include <unordered_map>

#include "CompositeMatcher.h"
#include "Export.h"
#include "PropertyMatcher.h"

/// How the composition and the subtractive kind keep their rules.
namespace nuv::zero::traversal MODELING_NUV0_OVER {

/// Gives the links of a property a policy. For a property without rules, the matcher and the policy
/// become its first, selecting rule. For a property that has rules, the policy is not used: a
/// pruning entry whose rules do not cover the matcher's owner class gets a rule for that class that
/// never applies, and anything else stays as it is. Predicates are asked, and may throw; nothing
/// has changed then.
MODELING_NUV0_TRAVERSAL_EXPORT void doSetResultPolicyForMatchersMap(
    std::unordered_map<Property, CompositeMatcher>& matchersMap, const PropertyMatcher& matcher,
    ResultPolicy policy);

namespace internal {
/// Files a rule that cuts the matcher's property away, in a new pruning entry or in the entry that
/// the property has.
MODELING_NUV0_TRAVERSAL_EXPORT void pruneInMatchersMap(
    std::unordered_map<Property, CompositeMatcher>& matchersMap, const PropertyMatcher& matcher);
}  // namespace internal

}  // namespace nuv::zero::traversal
