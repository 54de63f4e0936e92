#include "traversal/CompositeMatcher.h"

namespace nuv::zero::traversal MODELING_NUV0_OVER {

CompositeMatcher::CompositeMatcher(VisitMode mode) : mode_(mode) {}
CompositeMatcher::CompositeMatcher(const CompositeMatcher& other) = default;
CompositeMatcher::CompositeMatcher(CompositeMatcher&& other) noexcept = default;
CompositeMatcher& CompositeMatcher::operator=(const CompositeMatcher& other) = default;
CompositeMatcher& CompositeMatcher::operator=(CompositeMatcher&& other) noexcept = default;
CompositeMatcher::~CompositeMatcher() = default;

void CompositeMatcher::composeMatcher(const Class& owner,
                                      const std::function<bool(const Class&)>& matcher,
                                      ResultPolicy policy) {
    rules_.file(owner, matcher, policy);
}

void CompositeMatcher::composePolicy(const Class& owner, ResultPolicy policy) {
    rules_.setPolicy(owner, policy);
}

std::pair<bool, ResultPolicy> CompositeMatcher::anyMatches(const Class& type) const {
    const auto [rule, policy] = answer(type);
    return {rule != nullptr, policy};
}

ResultPolicy CompositeMatcher::getPolicy(const Class& type) const {
    return answer(type).policy;
}

CompositeMatcher::Answer CompositeMatcher::answer(const Class& type) const {
    if (const auto* rule = rules_.firstAccepting(type)) return {rule, rule->policy};
    return {nullptr, isPruning() ? ResultPolicy::Report : ResultPolicy::WalkOnly};
}

MODELING_NUV0_WITHOUT_QUALIFIER_REMARKS
// NOLINTNEXTLINE(readability-const-return-type)
const bool CompositeMatcher::isPruning() const {
    return mode_ == VisitMode::Prune;
}
MODELING_NUV0_WITH_QUALIFIER_REMARKS

}  // namespace nuv::zero::traversal
