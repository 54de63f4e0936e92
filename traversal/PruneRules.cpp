#include "traversal/PruneRules.h"

#include <utility>

namespace nuv::zero::traversal MODELING_NUV0_OVER {

namespace {

/// Files the matcher as the first rule of its property.
void fileFirst(MatchersMap& matchersMap, const PropertyMatcher& matcher,
               CompositeMatcher::VisitMode mode, ResultPolicy policy) {
    CompositeMatcher rules(mode);
    rules.composeMatcher(matcher.getOwner(), matcher.getMatcher(), policy);
    matchersMap.emplace(matcher.getProperty(), std::move(rules));
}

}  // namespace

void doSetResultPolicyForMatchersMap(MatchersMap& matchersMap, const PropertyMatcher& matcher,
                                     ResultPolicy policy) {
    const auto known = matchersMap.find(matcher.getProperty());
    if (known == matchersMap.end()) {
        fileFirst(matchersMap, matcher, CompositeMatcher::VisitMode::Visit, policy);
        return;
    }
    CompositeMatcher& rules = known->second;
    const auto [matched, fallback] = rules.anyMatches(matcher.getOwner());
    if (rules.isPruning() && !matched) {
        rules.composeMatcher(
            matcher.getOwner(), [](const Class&) { return false; }, fallback);
    }
}

void internal::pruneInMatchersMap(MatchersMap& matchersMap, const PropertyMatcher& matcher) {
    const auto known = matchersMap.find(matcher.getProperty());
    if (known == matchersMap.end()) {
        fileFirst(matchersMap, matcher, CompositeMatcher::VisitMode::Prune, ResultPolicy::WalkOnly);
    } else {
        known->second.composeMatcher(matcher.getOwner(), matcher.getMatcher(),
                                     ResultPolicy::WalkOnly);
    }
}

}  // namespace nuv::zero::traversal
