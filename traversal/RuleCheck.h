#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include "AbstractTraversal.h"
#include "Export.h"
#include "RuleCall.h"

namespace nuv::zero::traversal MODELING_NUV0_OVER {

/// What is remarkable about a rule.
enum class RuleProblem : std::int32_t {
    /// It is on no property.
    NoProperty = 0,
    /// None of the classes has its property.
    NoClassHasProperty = 1,
    /// No kind of walk follows its property: an attribute, or derived.
    NeverFollowed = 2,
    /// This kind does not follow its property: a reference, under composition.
    NotFollowedByKind = 3,
    /// Its predicate accepts none of the classes that have its property.
    AcceptsNoClass = 4,
    /// A policy for a property, or for an owner, that no `traverse` before it has named.
    PolicyWithoutRule = 5,
    /// A policy for a property that has rules already, which is not used.
    PolicyNotUsed = 6,
    /// Does not cut the property away, because a policy was set for it first: it makes its links
    /// silent.
    PruneUndone = 7,
    /// A later call under the same owner puts another rule in its place.
    Overwritten = 8,
    /// It decides for no class: other rules answer for every class that it accepts.
    Shadowed = 9,
    /// It decides, but the property would be followed like this without it.
    Redundant = 10,
    /// It is asked before or after the other only because of the order in which they were given:
    /// the name of an owner sorts behind the name of its superclass.
    OrderOfGivingDecides = 11,
};

/// A finding about one rule of a builder.
struct RuleFinding {
    RuleProblem problem;
    /// The number of the call that gave the rule, from 1. `explain` numbers the rules of each
    /// property.
    std::size_t rule = 0;
    /// The other rules that cause it.
    std::vector<std::size_t> causes;
    /// Whether without the rule something would be followed differently, for one of the classes.
    bool isMissed = false;
    /// A sentence for people that names the rule and the reason.
    std::string text;

    bool operator==(const RuleFinding& other) const = default;
};

/// Looks through the rules of a builder, before any walk, for what does not do what it seems to
/// say; `check` is how it is called. Findings come rule by rule in the order in which they were
/// given.
class MODELING_NUV0_TRAVERSAL_EXPORT RuleCheck {
  public:
    template <class Impl>
    static std::vector<RuleFinding> run(const AbstractTraversal<Impl>& builder,
                                        const std::vector<Class>& classes) {
        constexpr bool isAdditive = std::is_same_v<Impl, AdditiveTraversalImpl>;
        constexpr bool isComposition = std::is_same_v<Impl, CompositionTraversalImpl>;
        return findingsIn(
            isAdditive      ? Kind::Additive
            : isComposition ? Kind::Composition
                            : Kind::Subtractive,
            builder.calls_,
            [&builder](const std::vector<RuleCall>& calls) { return replay(builder, calls); },
            classes);
    }

    /// Of the builder.
    enum class Kind : std::uint8_t { Additive, Composition, Subtractive };

  private:
    class MODELING_NUV0_TRAVERSAL_LOCAL Search;
    using Replay =
        std::function<std::shared_ptr<PropertyProvider>(const std::vector<RuleCall>& calls)>;

    static std::vector<RuleFinding> findingsIn(Kind kind, const std::vector<RuleCall>& calls,
                                               const Replay& replay,
                                               const std::vector<Class>& classes);
    /// The provider of a builder of the same kind that was given these rules.
    template <class Impl>
    static std::shared_ptr<PropertyProvider> replay(const AbstractTraversal<Impl>& builder,
                                                    const std::vector<RuleCall>& calls) {
        Impl copy(static_cast<const Impl&>(builder));
        AbstractTraversal<Impl>& rules = copy;
        rules.forgetRules();
        for (const RuleCall& call : calls) rules.give(call);
        return rules.createPropertyProvider();
    }
};

/// What is remarkable about the rules of a builder, as far as these classes are concerned: those of
/// the models to be walked, best with all their subclasses.
///
///     for (const RuleFinding& finding : check(*builder, metamodel.classes())) {
///         std::cerr << finding.text << '\n';
///     }
///
/// A rule without a finding does what it says, and is needed: without it, something would be
/// followed differently. Found out by trying: the rules are applied again without each in turn, so
/// predicates are called many times; they have to give the same answers. Quadratic in the number of
/// rules, and at worst cubic: where many owners' names sort behind those of their superclasses, all
/// rules are applied once more for each two of these. Throws what predicates throw. Null classes
/// are ignored.
template <class Impl>
std::vector<RuleFinding> check(const AbstractTraversal<Impl>& builder,
                               const std::vector<Class>& classes) {
    return RuleCheck::run(builder, classes);
}

}  // namespace nuv::zero::traversal
