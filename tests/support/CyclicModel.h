#pragma once

#include <functional>
#include <memory>
#include <ostream>
#include <string>
#include <type_traits>
#include <vector>

#include "tests/support/ModelBuilder.h"
#include "tests/support/OracleWalk.h"
#include "traversal/Traversal.h"

/// Small models full of cycles and a traversal of each kind over them, for the library and for the
/// oracle. For suites that make everything fail once.
namespace nuv::zero::test {

inline constexpr auto cyclicMetamodel =
    "Node; Leaf < Node; Node.x => Node *; Node.y -> Node *; Node.boss -> Node; Leaf.z => Leaf *; "
    "Node.x <> Node.y";
inline constexpr auto cyclicModel =
    "L : Leaf; M : Leaf; A.x = B C L; A.y = D B; A.boss = A; B.x = C D; B.boss = A; C.y = A E; "
    "E.x = F; L.z = M L; L.y = A; M.boss = G; G.x = A; H.x = I; H.y = B";

/// A ring by way of `x`, with a chord from every node, over the same metamodel: `N0` to
/// `N<size-1>`.
inline std::string ringModel(int size) {
    std::string model;
    for (int i = 0; i < size; ++i) {
        const std::string from = "N" + std::to_string(i);
        model += from + ".x = N" + std::to_string((i + 1) % size) + ';';
        model += from + ".y = N" + std::to_string(i * 7 % size) + ';';
    }
    return model;
}

using oracle::Kind;

inline std::vector<Kind> everyKind() {
    return {Kind::Additive, Kind::Composition, Kind::Subtractive};
}

/// Gives the predicates of the rules; each of them is asked for the answer that it has to give.
using Predicates = std::function<std::function<bool(const meta::Class&)>(bool)>;

inline Predicates steadyPredicates() {
    return [](bool answer) { return [answer](const meta::Class&) { return answer; }; };
}

/// A rule of the traversal of a kind, with the answer that its predicate gives.
struct CyclicRule {
    oracle::RuleOperation::Kind operation;
    const char* property;
    bool answer;
    traversal::ResultPolicy policy;
};

inline std::vector<CyclicRule> cyclicRules(Kind kind) {
    using traversal::ResultPolicy;
    using Operation = oracle::RuleOperation::Kind;
    switch (kind) {
        case Kind::Additive:
            return {{Operation::Add, "Node.y", true, ResultPolicy::Report},
                    {Operation::Add, "Node.x", true, ResultPolicy::Report},
                    {Operation::Add, "Leaf.z", true, ResultPolicy::Extended},
                    {Operation::Add, "Node.boss", true, ResultPolicy::WalkOnly}};
        case Kind::Composition:
            return {{Operation::Add, "Node.x", false, ResultPolicy::WalkOnly},
                    {Operation::Add, "Leaf.z", false, ResultPolicy::WalkOnly}};
        case Kind::Subtractive:
            break;
    }
    return {{Operation::Add, "Node.x", false, ResultPolicy::WalkOnly},
            {Operation::Add, "Node.boss", false, ResultPolicy::WalkOnly},
            {Operation::SetPolicy, "Node.y", true, ResultPolicy::Report}};
}

/// Gives a builder of the library's the rules of its kind.
template <class Impl>
std::shared_ptr<Impl> withCyclicRules(std::shared_ptr<Impl> builder, const ModelBuilder& m,
                                      Kind kind, const Predicates& saying) {
    for (const CyclicRule& rule : cyclicRules(kind)) {
        const meta::Property property = m[rule.property];
        const traversal::PropertyMatcher matcher(property, saying(rule.answer),
                                                 access::owningClass(property));
        if (rule.operation == oracle::RuleOperation::Kind::SetPolicy) {
            builder->setResultPolicy(matcher, rule.policy);
        } else if constexpr (std::is_same_v<Impl, traversal::AdditiveTraversalImpl>) {
            builder->traverse(matcher, rule.policy);
        } else {
            builder->prune(matcher);
        }
    }
    return builder;
}

inline std::shared_ptr<traversal::TraversalResult> cyclicResult(
    const ModelBuilder& m, Kind kind, traversal::Algo order,
    const std::vector<ModelElement>& inputs, const Predicates& saying = steadyPredicates()) {
    using traversal::Spec;
    switch (kind) {
        case Kind::Additive:
            return withCyclicRules(Spec::additiveTraversal(), m, kind, saying)->run(inputs, order);
        case Kind::Composition:
            return withCyclicRules(Spec::compositionTraversal(), m, kind, saying)
                ->run(inputs, order);
        case Kind::Subtractive:
            break;
    }
    return withCyclicRules(Spec::subtractiveTraversal(), m, kind, saying)->run(inputs, order);
}

/// The same rules for the oracle; their predicates go to the ground.
inline oracle::Rules cyclicRules(const ModelBuilder& m, OracleGround& ground, Kind kind,
                                 const Predicates& saying = steadyPredicates()) {
    oracle::Rules rules{kind, {}, {}, 1};
    for (const CyclicRule& rule : cyclicRules(kind)) {
        const meta::Property property = m[rule.property];
        oracle::RuleOperation operation;
        operation.kind = rule.operation;
        operation.property = ground.indexOf(property);
        operation.predicate = static_cast<int>(ground.predicates.size());
        operation.owner = ground.indexOf(access::owningClass(property));
        operation.policy = static_cast<int>(rule.policy);
        ground.predicates.push_back(saying(rule.answer));
        rules.apply(ground.world(), operation, ground);
    }
    return rules;
}

}  // namespace nuv::zero::test

namespace nuv::zero::oracle {
/// For the names of parameterised tests.
inline void PrintTo(Kind kind, std::ostream* out) {
    *out << nameOf(kind);
}
}  // namespace nuv::zero::oracle
