#include "traversal/RuleCheck.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <functional>
#include <memory>
#include <random>
#include <utility>
#include <vector>

#include "tests/support/ModelBuilder.h"
#include "tests/support/Predicates.h"
#include "traversal/Explanation.h"
#include "traversal/NamedPredicate.h"
#include "traversal/Spec.h"

namespace nuv::zero::traversal {
namespace {

using Problems = std::vector<RuleProblem>;

template <class Builder>
Problems problemsOf(const Builder& builder, const std::vector<Class>& classes) {
    Problems problems;
    for (const RuleFinding& finding : check(*builder, classes)) problems.push_back(finding.problem);
    return problems;
}

/// `Alpha` above `Beta`: the name of the subclass sorts behind, so that the order of two rules
/// filed under them is the order in which they are given.
class RuleCheckTest : public ::testing::Test {
  protected:
    std::function<bool(const Class&)> isExactly(const char* name) const {
        return [type = m.type(name)](const Class& asked) { return asked == type; };
    }

    test::ModelBuilder m{
        "Alpha; Beta < Alpha; Other; Alpha.parts => Alpha *; Alpha.uses -> Alpha *;"
        "Alpha.computed ~> Alpha; Alpha.count -- Alpha; Other.alone => Other"};
    const Property parts = m["Alpha.parts"];
    const Property uses = m["Alpha.uses"];
};

TEST_F(RuleCheckTest, FindsNothingInRulesThatDoWhatTheySay) {
    EXPECT_TRUE(check(*Spec::subtractiveTraversal(), m.classes()).empty());
    EXPECT_TRUE(check(*Spec::subtractiveTraversal()->prune(uses), m.classes()).empty());
    EXPECT_TRUE(
        check(*Spec::compositionTraversal()->prune({parts, isExactly("Beta"), m.type("Beta")}),
              m.classes())
            .empty());
    EXPECT_TRUE(check(*Spec::additiveTraversal()
                           ->traverse(parts, ResultPolicy::Report)
                           ->setResultPolicy(parts, ResultPolicy::WalkOnly),
                      m.classes())
                    .empty());
    EXPECT_TRUE(check(*Spec::subtractiveTraversal()->setResultPolicy(parts, ResultPolicy::WalkOnly),
                      m.classes())
                    .empty());
}

TEST_F(RuleCheckTest, NamesPropertiesThatNoWalkFollows) {
    EXPECT_EQ(problemsOf(Spec::subtractiveTraversal()->prune(m["Alpha.computed"]), m.classes()),
              Problems{RuleProblem::NeverFollowed});
    EXPECT_EQ(
        problemsOf(Spec::additiveTraversal()->traverse(m["Alpha.count"], ResultPolicy::Report),
                   m.classes()),
        Problems{RuleProblem::NeverFollowed});
    EXPECT_EQ(problemsOf(Spec::additiveTraversal()->traverse(Property(), ResultPolicy::Report),
                         m.classes()),
              Problems{RuleProblem::NoProperty});
}

TEST_F(RuleCheckTest, NamesReferencesInACompositionTraversal) {
    EXPECT_EQ(problemsOf(Spec::compositionTraversal()->prune(uses), m.classes()),
              Problems{RuleProblem::NotFollowedByKind});
}

TEST_F(RuleCheckTest, NamesPropertiesOfOtherClasses) {
    EXPECT_EQ(problemsOf(Spec::subtractiveTraversal()->prune(m["Other.alone"]), {m.type("Alpha")}),
              Problems{RuleProblem::NoClassHasProperty});
    EXPECT_EQ(problemsOf(Spec::subtractiveTraversal()->prune(uses), {}),
              Problems{RuleProblem::NoClassHasProperty});
}

TEST_F(RuleCheckTest, NamesPredicatesThatAcceptNothing) {
    EXPECT_EQ(
        problemsOf(Spec::subtractiveTraversal()->prune(uses, isExactly("Other")), m.classes()),
        Problems{RuleProblem::AcceptsNoClass});
    EXPECT_EQ(
        problemsOf(Spec::additiveTraversal()->traverse(uses, test::never, ResultPolicy::Report),
                   m.classes()),
        Problems{RuleProblem::AcceptsNoClass});
}

TEST_F(RuleCheckTest, NamesPoliciesThatNothingUses) {
    EXPECT_EQ(problemsOf(Spec::additiveTraversal()->setResultPolicy(parts, ResultPolicy::WalkOnly),
                         m.classes()),
              Problems{RuleProblem::PolicyWithoutRule});
    EXPECT_EQ(problemsOf(Spec::subtractiveTraversal()->prune(parts)->setResultPolicy(
                             parts, ResultPolicy::Extended),
                         m.classes()),
              Problems{RuleProblem::PolicyNotUsed});
}

TEST_F(RuleCheckTest, NamesAPruneThatAPolicyHasUndone) {
    const auto builder =
        Spec::subtractiveTraversal()->setResultPolicy(parts, ResultPolicy::Report)->prune(parts);
    const std::vector<RuleFinding> findings = check(*builder, m.classes());
    const auto undone = std::find_if(findings.begin(), findings.end(), [](const auto& finding) {
        return finding.problem == RuleProblem::PruneUndone;
    });
    ASSERT_NE(undone, findings.end());
    EXPECT_EQ(undone->rule, 2U);
    EXPECT_EQ(undone->causes, std::vector<std::size_t>{1});
    EXPECT_TRUE(undone->isMissed) << "it makes the links silent";
}

TEST_F(RuleCheckTest, NamesRulesThatOthersReplaceOrHide) {
    EXPECT_EQ(problemsOf(Spec::subtractiveTraversal()->prune(parts, test::never)->prune(parts),
                         m.classes()),
              Problems{RuleProblem::Overwritten});
    // Both accept every class, and the one filed under the subclass is asked first.
    const auto builder =
        Spec::additiveTraversal()
            ->traverse({parts, test::always, m.type("Beta")}, ResultPolicy::Report)
            ->traverse({parts, test::always, m.type("Alpha")}, ResultPolicy::Extended);
    const std::vector<RuleFinding> findings = check(*builder, m.classes());
    ASSERT_FALSE(findings.empty());
    EXPECT_EQ(findings.front().problem, RuleProblem::Shadowed);
    EXPECT_EQ(findings.front().rule, 2U);
    EXPECT_FALSE(findings.front().isMissed);
}

/// A rule that decides for a class, and says what the rule behind it says as well, was told never
/// to decide.
TEST_F(RuleCheckTest, RuleThatAnswersAsTheNextOneWouldIsRedundant) {
    const auto builder =
        Spec::additiveTraversal()
            ->traverse({parts, isExactly("Beta"), m.type("Beta")}, ResultPolicy::Report)
            ->traverse(parts, ResultPolicy::Report);
    ASSERT_EQ(explain(*builder, m.type("Beta")).find(parts)->rule->number, 1U);
    const std::vector<RuleFinding> findings = check(*builder, m.classes());
    ASSERT_EQ(findings.size(), 1U);
    EXPECT_EQ(findings.front().problem, RuleProblem::Redundant);
    EXPECT_FALSE(findings.front().isMissed);
    EXPECT_EQ(
        findings.front().text,
        "Rule 1 (traverse m::Alpha.parts, owner m::Beta) changes nothing beside the others on the "
        "property: rule 2 (traverse m::Alpha.parts, owner m::Alpha).");
}

/// The only rule on a property was told that others say the same.
TEST_F(RuleCheckTest, OnlyRuleThatChangesNothingNamesNoOthers) {
    const auto builder = Spec::subtractiveTraversal()->setResultPolicy(parts, ResultPolicy::Report);
    const std::vector<RuleFinding> findings = check(*builder, m.classes());
    ASSERT_EQ(findings.size(), 1U);
    EXPECT_EQ(findings.front().problem, RuleProblem::Redundant);
    EXPECT_TRUE(findings.front().causes.empty());
    EXPECT_EQ(
        findings.front().text,
        "Rule 1 (setResultPolicy of m::Alpha.parts, owner m::Alpha) changes nothing: the property "
        "is followed like this without it.");
}

/// A prune in whose place `setResultPolicy` had put a rule that never applies was said to be hidden
/// by rules that answer for all its classes; none did.
TEST_F(RuleCheckTest, PruneThatAPolicyHasReplacedIsOverwritten) {
    const auto builder = Spec::subtractiveTraversal()
                             ->prune({parts, isExactly("Beta"), m.type("Alpha")})
                             ->setResultPolicy(parts, ResultPolicy::Report);
    ASSERT_EQ(explain(*builder, m.type("Beta")).find(parts)->rule, std::nullopt);
    const std::vector<RuleFinding> findings = check(*builder, m.classes());
    ASSERT_FALSE(findings.empty());
    EXPECT_EQ(findings.front().problem, RuleProblem::Overwritten);
    EXPECT_EQ(findings.front().rule, 1U);
    EXPECT_EQ(findings.front().causes, std::vector<std::size_t>{2});
}

TEST_F(RuleCheckTest, NamesRulesWhoseOrderIsThatOfGiving) {
    const auto builder =
        Spec::additiveTraversal()
            ->traverse({parts, isExactly("Alpha"), m.type("Alpha")}, ResultPolicy::Report)
            ->traverse({parts, test::always, m.type("Beta")}, ResultPolicy::Extended);
    const std::vector<RuleFinding> findings = check(*builder, m.classes());
    ASSERT_EQ(findings.size(), 1U);
    EXPECT_EQ(findings.front().problem, RuleProblem::OrderOfGivingDecides);
    EXPECT_EQ(findings.front().rule, 2U);
    EXPECT_EQ(findings.front().causes, std::vector<std::size_t>{1});
}

TEST_F(RuleCheckTest, SaysWhichRuleItMeans) {
    const auto builder = Spec::compositionTraversal()->prune(uses, named("no uses"));
    const std::vector<RuleFinding> findings = check(*builder, m.classes());
    ASSERT_EQ(findings.size(), 1U);
    EXPECT_EQ(
        findings.front().text,
        "Rule 1 \"no uses\" (prune m::Alpha.uses, owner m::Alpha) is on a property that is no "
        "containment, which a composition traversal does not follow.");
}

TEST_F(RuleCheckTest, LeavesTheBuilderAsItIs) {
    const auto builder = Spec::subtractiveTraversal()->prune(uses);
    const std::vector<RuleFinding> once = check(*builder, m.classes());
    EXPECT_EQ(check(*builder, m.classes()), once);
    const auto copy = *builder;
    EXPECT_EQ(check(copy, m.classes()), once);
}

TEST_F(RuleCheckTest, PassesOnWhatAPredicateThrows) {
    const auto builder =
        Spec::subtractiveTraversal()->prune(uses, std::function<bool(const Class&)>());
    EXPECT_THROW(check(*builder, m.classes()), std::bad_function_call);
}

/// Random rules over a few properties and classes, given to builders of one kind; one of them may
/// be left out.
class RandomRules {
  public:
    RandomRules(const test::ModelBuilder& m, unsigned seed) : m_(m), random_(seed) {
        const std::size_t count = 1 + below(5);
        for (std::size_t i = 0; i < count; ++i) {
            rules_.push_back({below(2), below(6), below(3), below(4), below(3)});
        }
    }
    std::size_t size() const { return rules_.size(); }
    PropertyMatcher matcher(std::size_t index) const { return matcherOf(rules_[index]); }
    bool isPolicy(std::size_t index) const { return rules_[index].operation == 0; }

    template <class Builder>
    Builder give(Builder builder, std::size_t without = static_cast<std::size_t>(-1)) const {
        for (std::size_t i = 0; i < rules_.size(); ++i) {
            if (i != without) giveOne(*builder, rules_[i]);
        }
        return builder;
    }

  private:
    struct Rule {
        std::size_t operation;
        std::size_t property;
        std::size_t owner;
        std::size_t predicate;
        std::size_t policy;
    };

    std::size_t below(std::size_t limit) { return random_() % limit; }
    PropertyMatcher matcherOf(const Rule& rule) const {
        static constexpr std::array properties{"Alpha.parts", "Alpha.parts", "Alpha.parts",
                                               "Alpha.uses",  "Alpha.uses",  "Other.alone"};
        const Class owner = m_.classes()[rule.owner];
        const auto accepts = [asked = rule.predicate, owner](const Class& type) {
            return asked == 0 || (asked == 1 && type == owner) || (asked == 2 && !(type == owner));
        };
        return {m_[properties[rule.property]], accepts, owner};
    }
    template <class Builder>
    void giveOne(Builder& builder, const Rule& rule) const {
        const auto policy = static_cast<ResultPolicy>(rule.policy);
        if (rule.operation == 0) {
            builder.setResultPolicy(matcherOf(rule), policy);
        } else if constexpr (requires { builder.traverse(matcherOf(rule), policy); }) {
            builder.traverse(matcherOf(rule), policy);
        } else {
            builder.prune(matcherOf(rule));
        }
    }

    const test::ModelBuilder& m_;
    std::mt19937 random_;
    std::vector<Rule> rules_;
};

/// What is followed from the elements of each class, in order, and how it is reported.
template <class Builder>
std::vector<std::vector<std::pair<Property, ResultPolicy>>> followed(const test::ModelBuilder& m,
                                                                     const Builder& builder) {
    std::vector<std::vector<std::pair<Property, ResultPolicy>>> all;
    for (const Class& type : m.classes()) {
        auto& ofType = all.emplace_back();
        for (const ExplainedProperty& property : explain(*builder, type).properties) {
            if (property.isFollowed) ofType.emplace_back(property.property, property.policy);
        }
    }
    return all;
}

/// Whether the rule of a property and an owner answers for one of the classes.
template <class Builder>
bool answers(const test::ModelBuilder& m, const Builder& builder, const PropertyMatcher& matcher) {
    return std::ranges::any_of(m.classes(), [&](const Class& type) {
        const Explanation explained = explain(*builder, type);
        const ExplainedProperty* found = explained.find(matcher.getProperty());
        return found != nullptr && found->rule && found->rule->owner == matcher.getOwner();
    });
}

template <class Make>
void checkRandomRules(const test::ModelBuilder& m, const Make& make) {
    int useless = 0;
    int all = 0;
    for (unsigned seed = 0; seed < 300; ++seed) {
        const RandomRules rules(m, seed);
        const auto findings = check(*rules.give(make()), m.classes());
        const auto answer = followed(m, rules.give(make()));
        for (std::size_t i = 0; i < rules.size(); ++i) {
            const bool isReportedUseless =
                std::any_of(findings.begin(), findings.end(), [&](const RuleFinding& finding) {
                    return finding.rule == i + 1 && !finding.isMissed;
                });
            EXPECT_EQ(isReportedUseless, followed(m, rules.give(make(), i)) == answer)
                << "seed " << seed << ", rule " << i + 1;
            useless += isReportedUseless ? 1 : 0;
            ++all;
        }
    }
    EXPECT_GT(useless, all / 20);
    EXPECT_LT(useless, all);
}

template <class Make>
void checkWhoDecides(const test::ModelBuilder& m, const Make& make) {
    int shadowed = 0;
    int redundant = 0;
    for (unsigned seed = 0; seed < 300; ++seed) {
        const RandomRules rules(m, seed);
        const auto builder = rules.give(make());
        for (const RuleFinding& finding : check(*builder, m.classes())) {
            const bool isShadowed = finding.problem == RuleProblem::Shadowed;
            const bool isRedundant = finding.problem == RuleProblem::Redundant;
            if ((!isShadowed && !isRedundant) || rules.isPolicy(finding.rule - 1)) continue;
            EXPECT_EQ(answers(m, builder, rules.matcher(finding.rule - 1)), isRedundant)
                << "seed " << seed << ": " << finding.text;
            shadowed += isShadowed ? 1 : 0;
            redundant += isRedundant ? 1 : 0;
        }
    }
    EXPECT_GT(shadowed, 5);
    EXPECT_GT(redundant, 5);
}

TEST_F(RuleCheckTest, ExactlyTheRulesWhoseAbsenceChangesNothingAreCalledUseless) {
    checkRandomRules(m, [] { return Spec::additiveTraversal(); });
    checkRandomRules(m, [] { return Spec::compositionTraversal(); });
    checkRandomRules(m, [] { return Spec::subtractiveTraversal(); });
}

TEST_F(RuleCheckTest, ShadowedRulesDecideForNoClassAndRedundantOnesDo) {
    checkWhoDecides(m, [] { return Spec::additiveTraversal(); });
    checkWhoDecides(m, [] { return Spec::compositionTraversal(); });
    checkWhoDecides(m, [] { return Spec::subtractiveTraversal(); });
}

}  // namespace
}  // namespace nuv::zero::traversal
