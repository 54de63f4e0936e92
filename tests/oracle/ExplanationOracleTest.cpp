#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <utility>
#include <vector>

#include "tests/oracle/ExplanationComparison.h"
#include "traversal/Explanation.h"

/// Explanations of random rules, compared with what walks do by them and with the oracle's own
/// decisions.
namespace nuv::zero::oracle {
namespace {

using traversal::explain;
using traversal::Reason;

TEST(ExplanationOracleTest, ExplanationsSettingsPoliciesAndTheOracleAgree) {
    std::map<std::pair<Kind, Reason>, int> met;
    int refused = 0;
    int shadowed = 0;
    for (std::uint32_t seed = 1; seed <= 1500; ++seed) {
        RandomChoices choices(seed);
        CalmCase random(choices);
        for (int type = 0; type < static_cast<int>(random.world().classes.size()); ++type) {
            compareExplanation(random, type);
            for (const auto& each :
                 explain(random.run({}, 0), random.model().classAt(type)).properties) {
                ++met[std::pair(random.kind(), each.reason)];
                refused += each.rule && !each.refused.empty() ? 1 : 0;
                shadowed += each.shadowed.empty() ? 0 : 1;
            }
        }
        ASSERT_FALSE(HasFailure()) << "seed " << seed;
    }
    // Every reason that a kind may have came up often.
    const std::map<Kind, std::vector<Reason>> reasons{
        {Kind::Additive,
         {Reason::NotAnAssociation, Reason::Derived, Reason::NotNamed, Reason::AcceptedByRule,
          Reason::NoRuleAccepts}},
        {Kind::Composition,
         {Reason::NotAnAssociation, Reason::Derived, Reason::NotAContainment, Reason::CutByRule,
          Reason::AcceptedByRule, Reason::NoRuleAccepts, Reason::NoRules}},
        {Kind::Subtractive,
         {Reason::NotAnAssociation, Reason::Derived, Reason::CutByRule, Reason::AcceptedByRule,
          Reason::NoRuleAccepts, Reason::NoRules}}};
    std::size_t pairs = 0;
    for (const auto& [kind, ofKind] : reasons) {
        pairs += ofKind.size();
        for (const Reason reason : ofKind) {
            EXPECT_GE((met[std::pair(kind, reason)]), 20)
                << nameOf(kind) << static_cast<int>(reason);
        }
    }
    EXPECT_EQ(met.size(), pairs) << "no other reason";
    EXPECT_GE(refused, 50);
    EXPECT_GE(shadowed, 50);
}

}  // namespace
}  // namespace nuv::zero::oracle
