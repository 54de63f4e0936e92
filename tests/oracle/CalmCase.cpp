#include "tests/oracle/CalmCase.h"

#include <array>

#include <utility>

#include "traversal/NamedPredicate.h"

namespace nuv::zero::oracle {

namespace {

using traversal::AdditiveTraversalImpl;
using traversal::Spec;

/// How many rules a case has at most. The world has a predicate for each of them, because the
/// recorders look at the world from the beginning.
constexpr int mostRules = 9;

}  // namespace

PlainWorld CalmCase::makeCalmWorld(Choices& choices) {
    PlainWorld world = makeWorld(choices);
    world.failingCalls.clear();
    for (PropertyDefinition& property : world.properties) {
        // What is unset then is empty, and does not fail.
        if (property.type < 0) property.association = false;
    }
    std::erase_if(world.values, [&](const auto& entry) {
        const auto& [place, value] = entry;
        const PropertyDefinition& property =
            world.properties[static_cast<std::size_t>(place.second)];
        return value.payload != ValueDefinition::Payload::Elements || value.type != property.type ||
               value.many != (property.upperBound != 1);
    });
    for (FilterDefinition& filter : world.filters) {
        if (filter.kind == FilterDefinition::Kind::Empty)
            filter.kind = FilterDefinition::Kind::Pass;
    }
    world.predicates.clear();
    constexpr std::array kinds = {PredicateDefinition::Kind::All, PredicateDefinition::Kind::None,
                                  PredicateDefinition::Kind::KindOf,
                                  PredicateDefinition::Kind::Exactly};
    for (int count = 0; count < mostRules; ++count) {
        world.predicates.push_back({kinds[static_cast<std::size_t>(choices.index(kinds.size()))],
                                    choices.index(world.classes.size())});
    }
    return world;
}

CalmCase::CalmCase(Choices& choices)
    : world_(makeCalmWorld(choices)),
      kind_(static_cast<Kind>(choices.upTo(2))),
      model_(world_),
      rules_{kind_, {}, {}, 1},
      asked_(world_) {
    if (kind_ == Kind::Additive) builder_ = Spec::additiveTraversal();
    if (kind_ == Kind::Composition) builder_ = Spec::compositionTraversal();
    if (kind_ == Kind::Subtractive) builder_ = Spec::subtractiveTraversal();
    const int most = choices.upTo(mostRules);
    for (int predicate = 0; predicate < most; ++predicate) {
        RuleOperation rule = makeRule(world_, choices);
        rule.predicate = rule.otherPredicate = predicate;
        if (rule.property == none) rule.property = choices.index(world_.properties.size());
        if (rule.owner == none) rule.owner = choices.index(world_.classes.size());
        give(rule);
    }
    asked_.take();
}

void CalmCase::give(RuleOperation rule) {
    count(rule);
    std::visit([&](auto& builder) { apply(*builder, rule); }, builder_);
    CallRecorder unheard(world_);
    rules_.apply(world_, rule, unheard);
}

/// Counts a rule that is going to be filed, by the oracle's account of what is filed.
void CalmCase::count(const RuleOperation& rule) {
    if (rule.kind == RuleOperation::Kind::Pseudo) return;
    if (rule.kind == RuleOperation::Kind::SetPolicy) {
        if (kind_ == Kind::Additive) return;
        const auto filed = rules_.sets.find(rule.property);
        CallRecorder unheard(world_);
        if (filed != rules_.sets.end()) {
            const bool files =
                filed->second.prunes() && !filed->second.anyMatches(rule.owner, unheard).first;
            if (files) ++given_[rule.property];
            return;
        }
    }
    numbers_[rule.predicate] = ++given_[rule.property];
}

template <class Impl>
void CalmCase::apply(Impl& builder, const RuleOperation& rule) {
    const auto policy = static_cast<traversal::ResultPolicy>(rule.policy);
    const auto predicate = traversal::named(
        "r" + std::to_string(rule.predicate), [this, index = rule.predicate](const auto& type) {
            return asked_.predicate(index, model_.indexOf(type));
        });
    const traversal::PropertyMatcher matcher(model_.propertyAt(rule.property), predicate,
                                             model_.classAt(rule.owner));
    if (rule.kind == RuleOperation::Kind::Pseudo) {
        builder.includeInitialPseudoLink(policy);
    } else if (rule.kind == RuleOperation::Kind::SetPolicy) {
        builder.setResultPolicy(matcher, policy);
    } else if constexpr (std::is_same_v<Impl, AdditiveTraversalImpl>) {
        builder.traverse(matcher, policy);
    } else {
        builder.prune(matcher);
    }
}

std::shared_ptr<traversal::internal::TraversalResult> CalmCase::run(const std::vector<int>& inputs,
                                                                    int algo) {
    std::vector<ModelElement> elements;
    for (const int input : inputs) elements.push_back(model_.elementAt(input));
    return std::visit(
        [&](auto& builder) { return builder->run(elements, static_cast<traversal::Algo>(algo)); },
        builder_);
}

std::function<traversal::ResultPolicy(const traversal::internal::Link&)> CalmCase::filter(
    int index) {
    return [this, index](const traversal::internal::Link& link) {
        CallRecorder unheard(world_);
        return static_cast<traversal::ResultPolicy>(unheard.filter(index, model_.stepOf(link)));
    };
}

}  // namespace nuv::zero::oracle
