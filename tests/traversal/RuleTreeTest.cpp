#include "traversal/RuleTree.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/Failures.h"
#include "tests/support/ModelBuilder.h"
#include "tests/support/Predicates.h"

namespace nuv::zero::traversal::internal {
namespace {

using test::always;
using test::FailurePlan;
using test::ModelBuilder;
using test::never;
using Names = std::vector<std::string>;

/// Files a rule under a class that writes the class's name down when it is asked, and rejects.
void fileAsking(RuleTree& rules, const ModelBuilder& m, Names& asked, const std::string& name) {
    rules.file(
        m.type(name),
        [&asked, name](const Class&) {
            asked.push_back(name);
            return false;
        },
        ResultPolicy::Report);
}

/// The order in which rules are asked that were filed in this order.
Names orderAfterFiling(const ModelBuilder& m, const Names& filed) {
    Names asked;
    RuleTree rules;
    for (const std::string& name : filed) fileAsking(rules, m, asked, name);
    EXPECT_EQ(rules.firstAccepting(Class()), nullptr);
    return asked;
}

TEST(RuleTreeTest, EmptyTreeAcceptsNothing) {
    EXPECT_EQ(RuleTree().firstAccepting(Class()), nullptr);
}

TEST(RuleTreeTest, UnrelatedClassesAreAskedByNameWhateverTheOrderOfFiling) {
    const ModelBuilder m("A; B; C; D");
    const Names byName{"A", "B", "C", "D"};
    EXPECT_EQ(orderAfterFiling(m, {"A", "B", "C", "D"}), byName);
    EXPECT_EQ(orderAfterFiling(m, {"D", "C", "B", "A"}), byName);
    EXPECT_EQ(orderAfterFiling(m, {"C", "A", "D", "B"}), byName);
}

TEST(RuleTreeTest, SubclassesWithNamesBeforeTheBaseAreAskedBeforeItWhateverTheOrderOfFiling) {
    const ModelBuilder m("Z; A < Z; B < Z");
    const Names subclassesFirst{"A", "B", "Z"};
    EXPECT_EQ(orderAfterFiling(m, {"Z", "A", "B"}), subclassesFirst);
    EXPECT_EQ(orderAfterFiling(m, {"B", "Z", "A"}), subclassesFirst);
    EXPECT_EQ(orderAfterFiling(m, {"A", "B", "Z"}), subclassesFirst);
}

TEST(RuleTreeTest, BaseFiledBeforeSubclassesWhoseNamesSortAfterItStaysFirst) {
    const ModelBuilder m("Base; C < Base; D < Base; E < Base; F < C D");
    EXPECT_EQ(orderAfterFiling(m, {"Base", "D"}), (Names{"Base", "D"}));
    EXPECT_EQ(orderAfterFiling(m, {"Base", "D", "C", "E"}), (Names{"Base", "C", "D", "E"}));
    EXPECT_EQ(orderAfterFiling(m, {"Base", "E", "D", "C", "F"}),
              (Names{"Base", "C", "D", "E", "F"}));
}

TEST(RuleTreeTest, SubclassFiledBeforeItsBaseStaysFirstWhenItsNameSortsAfterIt) {
    const ModelBuilder m("Base; C < Base; D < Base");
    EXPECT_EQ(orderAfterFiling(m, {"D", "Base"}), (Names{"D", "Base"}));
    // C is less than D by name, and D stands at the root: C goes to its left, before the base.
    EXPECT_EQ(orderAfterFiling(m, {"D", "Base", "C"}), (Names{"C", "D", "Base"}));
    // D comes to the base first, which is less than D by name, and goes to its right.
    EXPECT_EQ(orderAfterFiling(m, {"C", "Base", "D"}), (Names{"C", "Base", "D"}));
}

TEST(RuleTreeTest, FilingAClassAgainReplacesItsRuleInPlace) {
    const ModelBuilder m("Base; C < Base; D < Base");
    RuleTree rules;
    for (const char* name : {"Base", "D", "C"}) {
        rules.file(m.type(name), never, ResultPolicy::WalkOnly);
    }
    for (const char* name : {"C", "D", "Base"}) {
        rules.file(m.type(name), always, ResultPolicy::Extended);
        const RuleTree::Rule* rule = rules.firstAccepting(m.type("Base"));
        ASSERT_NE(rule, nullptr) << name;
        EXPECT_EQ(rule->owner, m.type(name));
        EXPECT_EQ(rule->policy, ResultPolicy::Extended);
        rules.file(m.type(name), never, ResultPolicy::WalkOnly);
        EXPECT_EQ(rules.firstAccepting(m.type("Base")), nullptr) << "an older rule was left";
    }
}

TEST(RuleTreeTest, RuleForAllClassesAcceptsAllUntilItIsReplaced) {
    const ModelBuilder m("Base; C < Base");
    RuleTree rules;
    rules.file(m.type("Base"), EveryClass(), ResultPolicy::Report);
    EXPECT_NE(rules.firstAccepting(m.type("C")), nullptr);
    EXPECT_NE(rules.firstAccepting(Class()), nullptr);
    rules.file(m.type("Base"), never, ResultPolicy::Report);
    EXPECT_EQ(rules.firstAccepting(m.type("C")), nullptr);
    rules.file(m.type("Base"), EveryClass(), ResultPolicy::Extended);
    EXPECT_NE(rules.firstAccepting(m.type("C")), nullptr);
}

TEST(RuleTreeTest, EveryClassFindsItsEntryAgainAmongHundredsOfBasesAndSubclasses) {
    memory::Metamodel metamodel(u"m");
    std::vector<Class> classes;
    unsigned scrambled = 7;
    for (int i = 0; i < 400; ++i) {
        scrambled = scrambled * 1103515245U + 12345U;
        const std::string digits = std::to_string((scrambled >> 8U) % 100000U);
        std::vector<Class> supers;
        if (i > 0 && i % 3 != 0) supers.push_back(classes[(scrambled >> 4U) % classes.size()]);
        classes.push_back(metamodel.addClass(std::u16string(digits.begin(), digits.end()), supers));
    }
    RuleTree rules;
    for (const Class& type : classes) rules.file(type, never, ResultPolicy::Report);
    for (const Class& type : classes) {
        rules.file(type, always, ResultPolicy::Report);
        const RuleTree::Rule* rule = rules.firstAccepting(type);
        ASSERT_NE(rule, nullptr);
        // Of two unrelated classes of one name, the first keeps the entry.
        ASSERT_EQ(access::qualifiedNameOf(rule->owner), access::qualifiedNameOf(type));
        rules.file(type, never, ResultPolicy::Report);
        ASSERT_EQ(rules.firstAccepting(type), nullptr);
    }
}

TEST(RuleTreeTest, UnrelatedClassesOfOneNameShareTheEntryOfTheFirst) {
    const ModelBuilder m("A=same; B=same");
    RuleTree rules;
    rules.file(m.type("A"), never, ResultPolicy::WalkOnly);
    rules.file(m.type("B"), always, ResultPolicy::Extended);
    const RuleTree::Rule* rule = rules.firstAccepting(m.type("A"));
    ASSERT_NE(rule, nullptr);
    EXPECT_EQ(rule->owner, m.type("A"));
    EXPECT_EQ(rule->policy, ResultPolicy::Extended);
}

TEST(RuleTreeTest, SettingAPolicyKeepsThePredicateAndAddsNoEntry) {
    const ModelBuilder m("A; B");
    RuleTree rules;
    rules.setPolicy(m.type("A"), ResultPolicy::Extended);
    EXPECT_EQ(rules.firstAccepting(m.type("A")), nullptr);
    rules.file(m.type("A"), always, ResultPolicy::Report);
    rules.setPolicy(m.type("B"), ResultPolicy::WalkOnly);
    EXPECT_EQ(rules.firstAccepting(m.type("A"))->policy, ResultPolicy::Report);
    rules.setPolicy(m.type("A"), ResultPolicy::Extended);
    EXPECT_EQ(rules.firstAccepting(m.type("A"))->policy, ResultPolicy::Extended);
}

TEST(RuleTreeTest, CopyAnswersAlikeAndBothGoOnByThemselves) {
    const ModelBuilder m("Base; C < Base; D < Base; E < Base");
    Names asked;
    RuleTree original;
    for (const char* name : {"Base", "D"}) fileAsking(original, m, asked, name);
    RuleTree copy(original);
    fileAsking(original, m, asked, "C");
    fileAsking(copy, m, asked, "E");

    original.firstAccepting(Class());
    EXPECT_EQ(asked, (Names{"Base", "C", "D"}));
    asked.clear();
    copy.firstAccepting(Class());
    EXPECT_EQ(asked, (Names{"Base", "D", "E"}));
}

TEST(RuleTreeTest, NullClassHasAnEntryLikeAnyOther) {
    const ModelBuilder m("A");
    RuleTree rules;
    rules.file(m.type("A"), always, ResultPolicy::Report);
    rules.file(Class(), always, ResultPolicy::WalkOnly);
    EXPECT_FALSE(rules.firstAccepting(m.type("A"))->owner);
    rules.file(Class(), never, ResultPolicy::WalkOnly);
    EXPECT_EQ(rules.firstAccepting(m.type("A"))->owner, m.type("A"));
}

TEST(RuleTreeTest, PredicateThatThrowsLeavesTheRulesAsTheyWere) {
    const ModelBuilder m("A; B");
    RuleTree rules;
    FailurePlan plan(1);
    rules.file(
        m.type("A"),
        [&plan](const Class&) {
            plan.call("predicate");
            return false;
        },
        ResultPolicy::Report);
    rules.file(m.type("B"), always, ResultPolicy::Extended);
    EXPECT_THROW(rules.firstAccepting(m.type("A")), test::PlannedFailure);
    EXPECT_EQ(rules.firstAccepting(m.type("A"))->policy, ResultPolicy::Extended);
}

}  // namespace
}  // namespace nuv::zero::traversal::internal
