#pragma once

#include <unordered_map>
#include <utility>

#include "ClassPredicate.h"
#include "Export.h"
#include "RuleTree.h"
#include "fwd.h"

namespace nuv::zero::traversal MODELING_NUV0_OVER {

/// All rules given for one property.
///
/// Each rule is filed under a class; rules are asked in the order of `ClassHierarchyComparator`,
/// subclasses first, and the first whose predicate accepts a class answers for it. Where a
/// subclass's name sorts after its superclass's, either may come first, and the order of filing
/// decides; of two such rules the one filed first is asked first. The class asked about is never
/// compared with the classes that rules are filed under.
///
///     CompositeMatcher rules(CompositeMatcher::VisitMode::Visit);
///     rules.composeMatcher(block, isKindOfBlock, ResultPolicy::Report);
///     auto [matched, policy] = rules.anyMatches(port);
///
/// Cost: asking is linear in the number of rules up to the first that accepts. A copy has its own
/// entries. A predicate that throws, or is empty, throws through; nothing changes then.
class MODELING_NUV0_TRAVERSAL_EXPORT CompositeMatcher {
  public:
    /// What the rules mean. Every value but `Prune` acts as `Visit`.
    enum class VisitMode : std::int32_t {
        /// Rules cut the property away; a class that none accepts keeps it, with `Report`.
        Prune = 0,
        /// Rules select the property; a class that none accepts has no match, with `WalkOnly`.
        Visit = 1,
    };

    explicit CompositeMatcher(VisitMode mode);
    CompositeMatcher(const CompositeMatcher& other);
    CompositeMatcher(CompositeMatcher&& other) noexcept;
    CompositeMatcher& operator=(const CompositeMatcher& other);
    CompositeMatcher& operator=(CompositeMatcher&& other) noexcept;
    ~CompositeMatcher();

    /// Files a rule under a class; the last rule composed under a class replaces the earlier one. A
    /// predicate that is being asked may file rules, but not replace its own.
    void composeMatcher(const Class& owner, const std::function<bool(const Class&)>& matcher,
                        ResultPolicy policy);
    template <PredicateOverElements F, class = typename RefusedPredicate<F>::Always>
    void composeMatcher(const Class& owner, const F& matcher, ResultPolicy policy) = delete;
    /// Changes the policy of the rule filed under a class; without such a rule nothing happens.
    void composePolicy(const Class& owner, ResultPolicy policy);

    /// Whether some rule accepts the class, and the policy that applies to it.
    std::pair<bool, ResultPolicy> anyMatches(const Class& type) const;
    /// The policy that applies to the class.
    ResultPolicy getPolicy(const Class& type) const;
    /// The rule that answers for a class, null where none accepts it, and the policy that applies.
    struct Answer {
        const internal::RuleTree::Rule* rule;
        ResultPolicy policy;
    };
    Answer answer(const Class& type) const;
    /// All rules, in the order in which they are asked.
    const internal::RuleTree& rules() const noexcept { return rules_; }
    /// Whether the answers are known without asking a predicate: the same for every class.
    bool answersAlike() const noexcept { return rules_.answersAlike(); }
    // g++ remarks that the const of a result has no effect.
    MODELING_NUV0_WITHOUT_QUALIFIER_REMARKS
    const bool isPruning() const;  // NOLINT(readability-const-return-type)
    MODELING_NUV0_WITH_QUALIFIER_REMARKS

  private:
    internal::RuleTree rules_;
    VisitMode mode_;
};

/// The rules of a traversal, by property.
using MatchersMap = std::unordered_map<Property, CompositeMatcher>;

}  // namespace nuv::zero::traversal
