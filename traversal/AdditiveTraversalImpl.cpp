#include "traversal/AdditiveTraversalImpl.h"

#include <utility>

#include "traversal/AbstractTraversalDefinitions.h"

namespace nuv::zero::traversal MODELING_NUV0_OVER {

template class AbstractTraversal<AdditiveTraversalImpl>;

namespace {

/// Follows the named properties only, in the order in which they were first named.
class AdditivePropertyProvider final : public PropertyProvider {
  public:
    AdditivePropertyProvider(MatchersMap matchers, std::vector<Property> properties)
        : PropertyProvider(std::move(matchers)), traversedProperties_(std::move(properties)) {
        letWalksAskRules();
    }

    std::vector<AssociationSetting> computeSettings(const Class& type) override {
        return settingsBy(decide(type));
    }
    ResultPolicy getResultPolicy(const Class& type, const Property& property) override {
        return policyOf(type, property);
    }

  private:
    std::vector<PropertyDecision> decide(const Class& type) override {
        std::vector<PropertyDecision> decisions;
        if (!type) return decisions;
        for (const Property& property : traversedProperties_) {
            if (const auto obstacle = obstacleOf(property)) {
                decisions.push_back({property, false, ResultPolicy::WalkOnly, *obstacle, nullptr});
                continue;
            }
            const auto rules = matchers().find(property);
            if (rules == matchers().end() || !access::hasProperty(type, property)) continue;
            const auto [rule, policy] = rules->second.answer(type);
            const bool isAccepted = rule != nullptr;
            decisions.push_back({property, isAccepted, policy,
                                 isAccepted ? Reason::AcceptedByRule : Reason::NoRuleAccepts,
                                 rule});
        }
        return decisions;
    }

    std::vector<Property> traversedProperties_;
};

}  // namespace

// NOLINTNEXTLINE(performance-unnecessary-value-param): tokens are empty
AdditiveTraversalImpl::AdditiveTraversalImpl(InstantiateToken /*token*/) {}
AdditiveTraversalImpl::AdditiveTraversalImpl(const AdditiveTraversalImpl& other) = default;
AdditiveTraversalImpl& AdditiveTraversalImpl::operator=(const AdditiveTraversalImpl& other) {
    if (this != &other) {
        // Copied first: a failure must not leave properties without their rules.
        std::vector<Property> properties(other.traversedProperties_);
        AbstractTraversal::operator=(other);
        traversedProperties_.swap(properties);
    }
    return *this;
}
AdditiveTraversalImpl::~AdditiveTraversalImpl() = default;

std::shared_ptr<AdditiveTraversalImpl> AdditiveTraversalImpl::traverse(
    const PropertyMatcher& matcher, ResultPolicy policy) {
    give({RuleCall::Operation::Traverse, matcher, policy});
    return shared_from_this();
}

std::shared_ptr<AdditiveTraversalImpl> AdditiveTraversalImpl::traverse(
    const PropertyMatcher& matcher, const std::function<bool(const Class&)>& classMatcher,
    ResultPolicy policy) {
    return traverse(PropertyMatcher(matcher.getProperty(), classMatcher, matcher.getOwner()),
                    policy);
}

std::shared_ptr<AdditiveTraversalImpl> AdditiveTraversalImpl::traverse(
    const std::vector<PropertyMatcher>& matchers, ResultPolicy policy) {
    for (const PropertyMatcher& matcher : matchers) traverse(matcher, policy);
    return shared_from_this();
}

void AdditiveTraversalImpl::apply(const RuleCall& call) {
    if (call.operation == RuleCall::Operation::Traverse) return follow(call.matcher, call.policy);
    AbstractTraversal::apply(call);
}

void AdditiveTraversalImpl::follow(const PropertyMatcher& matcher, ResultPolicy policy) {
    const Property& property = matcher.getProperty();
    const auto known = matchersMap().find(property);
    if (known != matchersMap().end()) {
        known->second.composeMatcher(matcher.getOwner(), matcher.getMatcher(), policy);
        return;
    }
    CompositeMatcher rules(CompositeMatcher::VisitMode::Visit);
    rules.composeMatcher(matcher.getOwner(), matcher.getMatcher(), policy);
    // The provider relies on every named property having rules: room for the name first, then the
    // rules, and the name when nothing can fail any more.
    if (traversedProperties_.size() == traversedProperties_.capacity()) {
        traversedProperties_.reserve(2 * traversedProperties_.size() + 1);
    }
    matchersMap().emplace(property, std::move(rules));
    traversedProperties_.push_back(property);
}

void AdditiveTraversalImpl::doSetResultPolicy(const PropertyMatcher& matcher, ResultPolicy policy) {
    const auto known = matchersMap().find(matcher.getProperty());
    if (known != matchersMap().end()) known->second.composePolicy(matcher.getOwner(), policy);
}

void AdditiveTraversalImpl::forgetRules() {
    AbstractTraversal::forgetRules();
    traversedProperties_.clear();
}

std::shared_ptr<PropertyProvider> AdditiveTraversalImpl::createPropertyProvider() {
    return std::make_shared<AdditivePropertyProvider>(matchersMap(), traversedProperties_);
}

}  // namespace nuv::zero::traversal
