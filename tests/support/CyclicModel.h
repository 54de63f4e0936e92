#pragma once

#include <functional>
#include <memory>
#include <ostream>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "tests/support/ModelBuilder.h"
#include "traversal/Traversal.h"
#include "traversal/internal/PropertyProviders.h"

/// Small models full of cycles and a traversal of each kind over them, once as a result of the
/// engine's and once as the bare provider that a plainly written walk needs. For suites that make
/// everything fail once.
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

enum class BuilderKind { Additive, Composition, Subtractive };

inline std::vector<BuilderKind> everyKind() {
    return {BuilderKind::Additive, BuilderKind::Composition, BuilderKind::Subtractive};
}
inline const char* nameOf(BuilderKind kind) {
    switch (kind) {
        case BuilderKind::Additive:
            return "Additive";
        case BuilderKind::Composition:
            return "Composition";
        case BuilderKind::Subtractive:
            break;
    }
    return "Subtractive";
}

/// For the names of parameterised tests.
inline void PrintTo(BuilderKind kind, std::ostream* out) {
    *out << nameOf(kind);
}

/// Gives the predicates of the rules; each of them is asked for the answer that it has to give.
using Predicates = std::function<std::function<bool(const meta::Class&)>(bool)>;

inline Predicates steadyPredicates() {
    return [](bool answer) { return [answer](const meta::Class&) { return answer; }; };
}

inline std::shared_ptr<traversal::TraversalResult> cyclicResult(
    const ModelBuilder& m, BuilderKind kind, traversal::Algo order,
    const std::vector<ModelElement>& inputs, const Predicates& saying = steadyPredicates()) {
    using traversal::ResultPolicy;
    using traversal::Spec;
    switch (kind) {
        case BuilderKind::Additive:
            return Spec::additiveTraversal()
                ->traverse(m["Node.y"], saying(true), ResultPolicy::Report)
                ->traverse(m["Node.x"], saying(true), ResultPolicy::Report)
                ->traverse(m["Leaf.z"], saying(true), ResultPolicy::Extended)
                ->traverse(m["Node.boss"], saying(true), ResultPolicy::WalkOnly)
                ->run(inputs, order);
        case BuilderKind::Composition:
            return Spec::compositionTraversal()
                ->prune(m["Node.x"], saying(false))
                ->prune(m["Leaf.z"], saying(false))
                ->run(inputs, order);
        case BuilderKind::Subtractive:
            break;
    }
    return Spec::subtractiveTraversal()
        ->prune(m["Node.x"], saying(false))
        ->prune(m["Node.boss"], saying(false))
        ->setResultPolicy({m["Node.y"], saying(true), m.type("Node")}, ResultPolicy::Report)
        ->run(inputs, order);
}

inline std::shared_ptr<traversal::PropertyProvider> cyclicProvider(
    const ModelBuilder& m, BuilderKind kind, const Predicates& saying = steadyPredicates()) {
    using traversal::CompositeMatcher;
    using traversal::ResultPolicy;
    using traversal::internal::Candidates;
    using Mode = CompositeMatcher::VisitMode;
    std::unordered_map<meta::Property, CompositeMatcher> rules;
    const auto add = [&](const char* name, Mode mode, bool answer, ResultPolicy policy) {
        const meta::Property property = m[name];
        rules.try_emplace(property, mode)
            .first->second.composeMatcher(access::owningClass(property), saying(answer), policy);
    };
    switch (kind) {
        case BuilderKind::Additive:
            add("Node.y", Mode::Visit, true, ResultPolicy::Report);
            add("Node.x", Mode::Visit, true, ResultPolicy::Report);
            add("Leaf.z", Mode::Visit, true, ResultPolicy::Extended);
            add("Node.boss", Mode::Visit, true, ResultPolicy::WalkOnly);
            return traversal::internal::makeAdditiveProvider(
                rules, {m["Node.y"], m["Node.x"], m["Leaf.z"], m["Node.boss"]});
        case BuilderKind::Composition:
            add("Node.x", Mode::Prune, false, ResultPolicy::WalkOnly);
            add("Leaf.z", Mode::Prune, false, ResultPolicy::WalkOnly);
            return traversal::internal::makeSubtractiveProvider(rules, Candidates::CompositeOnly);
        case BuilderKind::Subtractive:
            break;
    }
    add("Node.x", Mode::Prune, false, ResultPolicy::WalkOnly);
    add("Node.boss", Mode::Prune, false, ResultPolicy::WalkOnly);
    add("Node.y", Mode::Visit, true, ResultPolicy::Report);
    return traversal::internal::makeSubtractiveProvider(rules, Candidates::AllLinking);
}

}  // namespace nuv::zero::test
