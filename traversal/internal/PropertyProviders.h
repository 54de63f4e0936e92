#pragma once

#include <memory>
#include <unordered_map>
#include <vector>

#include "traversal/PropertyProvider.h"

/// The two providers behind the three kinds of traversal.
namespace nuv::zero::traversal::internal {

/// Follows the named properties only, in the order in which they were named.
/// REQUIRES: every named property has its rules in `matchers`.
std::shared_ptr<PropertyProvider> makeAdditiveProvider(
    std::unordered_map<Property, CompositeMatcher> matchers, std::vector<Property> properties);

/// Which properties the subtractive provider considers.
enum class Candidates : bool { CompositeOnly = false, AllLinking = true };

/// Follows every candidate of a class but those that prune rules cut away: references before
/// compositions, each by name.
std::shared_ptr<PropertyProvider> makeSubtractiveProvider(
    std::unordered_map<Property, CompositeMatcher> matchers, Candidates candidates);

}  // namespace nuv::zero::traversal::internal
