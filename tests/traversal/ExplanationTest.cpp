#include "traversal/Explanation.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "tests/support/ModelBuilder.h"
#include "tests/support/WalkLog.h"

namespace nuv::zero::traversal {
namespace {

using test::Lines;

class ExplanationTest : public testing::Test {
  protected:
    /// A property and what is decided about it, as in `x: cut by 1`.
    template <class Explained>
    Lines shortLinesOf(const Explained& explanation) {
        constexpr const char* reasons[] = {"no association", "derived", "no containment",
                                           "not named",      "cut",     "accepted",
                                           "none accepts",   "no rules"};
        Lines lines;
        for (const ExplainedProperty& each : explanation.properties) {
            std::string line = access::toUtf8(access::nameOf(each.property)) + ": ";
            line +=
                each.isFollowed ? "+" + std::to_string(static_cast<int>(each.policy)) + " " : "- ";
            line += reasons[static_cast<std::size_t>(each.reason)];
            if (each.rule) line += " by " + std::to_string(each.rule->number);
            lines.push_back(line);
        }
        return lines;
    }
    ClassPredicate is(const char* name) {
        return [type = m.type(name)](const Class& asked) { return asked == type; };
    }

    // Qualified names that sort subclasses first.
    test::ModelBuilder m{
        "Node=n::Z; Leaf=n::A < Node; Node.part => Node *; Node.peer -> Node *; Node.text -- "
        "String; Node.all ~> Node *; Leaf.own => Node *; Leaf.use -> Node *"};
    const Class node = m.type("Node");
    const Class leaf = m.type("Leaf");
};

TEST_F(ExplanationTest, NullResultIsRefusedAndANullClassHasNothing) {
    EXPECT_THROW(explain(nullptr, node), std::invalid_argument);
    const auto builder = Spec::subtractiveTraversal();
    EXPECT_EQ(explain(*builder, Class()), (Explanation{Class(), {}}));
    EXPECT_EQ(explain(*builder, Class()).text(), "no class\n");
    EXPECT_EQ(explain(*builder, node).find(Property()), nullptr);
    EXPECT_EQ(explain(*builder, node).find(m["Leaf.own"]), nullptr);
}

TEST_F(ExplanationTest, AdditiveReasons) {
    const auto builder = Spec::additiveTraversal()
                             ->traverse(m["Leaf.use"], is("Node"), ResultPolicy::Report)
                             ->traverse(m["Node.peer"], ResultPolicy::Extended)
                             ->traverse(m["Node.all"], ResultPolicy::Report);
    EXPECT_EQ(shortLinesOf(explain(*builder, leaf)),
              (Lines{"use: - none accepts", "peer: +2 accepted by 1", "name: - no association",
                     "part: - not named", "text: - no association", "all: - derived",
                     "own: - not named"}));
    EXPECT_EQ(shortLinesOf(explain(*builder, node)),
              (Lines{"peer: +2 accepted by 1", "name: - no association", "part: - not named",
                     "text: - no association", "all: - derived"}))
        << "what the class does not have does not occur";
}

TEST_F(ExplanationTest, CompositionReasons) {
    const auto builder =
        Spec::compositionTraversal()
            ->prune({m["Node.part"], is("Node"), node})
            ->setResultPolicy({m["Leaf.own"], is("Leaf"), leaf}, ResultPolicy::WalkOnly);
    EXPECT_EQ(shortLinesOf(explain(*builder, leaf)),
              (Lines{"own: +0 accepted by 1", "part: +1 none accepts", "name: - no association",
                     "peer: - no containment", "text: - no association", "all: - derived",
                     "use: - no containment"}));
    EXPECT_EQ(shortLinesOf(explain(*builder, node)),
              (Lines{"part: - cut by 1", "name: - no association", "peer: - no containment",
                     "text: - no association", "all: - derived"}));
    EXPECT_EQ(shortLinesOf(explain(*Spec::compositionTraversal(), node)).front(),
              "part: +1 no rules");
}

TEST_F(ExplanationTest, SubtractiveReasons) {
    const auto builder =
        Spec::subtractiveTraversal()
            ->prune(m["Node.peer"])
            ->setResultPolicy({m["Leaf.own"], is("Node"), leaf}, ResultPolicy::Report)
            ->setResultPolicy({m["Leaf.use"], is("Leaf"), leaf}, ResultPolicy::Extended);
    EXPECT_EQ(shortLinesOf(explain(*builder, leaf)),
              (Lines{"peer: - cut by 1", "use: +2 accepted by 1", "own: +0 none accepts",
                     "part: +1 no rules", "name: - no association", "text: - no association",
                     "all: - derived"}));
}

TEST_F(ExplanationTest, TextNamesRulesThatAnsweredRefusedAndWereNotAsked) {
    const auto builder = Spec::subtractiveTraversal()
                             ->prune({m["Node.part"], named("all parts"), node})
                             ->prune({m["Node.part"], named("parts of nodes", is("Node")), leaf});
    EXPECT_EQ(explain(*builder, leaf).text(),
              "n::A\n"
              "  peer: followed, reported; no rule is against it\n"
              "  use: followed, reported; no rule is against it\n"
              "  own: followed, reported; no rule is against it\n"
              "  part: not followed; cut by rule 1 \"all parts\" (filed under n::Z); refused by "
              "rule 2 \"parts of nodes\" (filed under n::A)\n"
              "  name: not followed; it is no association\n"
              "  text: not followed; it is no association\n"
              "  all: not followed; it is derived\n");
    const Explanation ofNodes = explain(*builder, node);
    EXPECT_EQ(ofNodes.find(m["Node.part"])->text(),
              "not followed; cut by rule 2 \"parts of nodes\" (filed under n::A); not asked: rule "
              "1 \"all parts\" (filed under n::Z)");
    const std::vector<ExplainedRule> shadowed{
        {m["Node.part"], node, 1, "all parts", ResultPolicy::WalkOnly}};
    EXPECT_EQ(ofNodes.find(m["Node.part"])->shadowed, shadowed);
    EXPECT_TRUE(ofNodes.find(m["Node.part"])->refused.empty());
}

TEST_F(ExplanationTest, TextTellsPoliciesAndOtherReasons) {
    const auto builder = Spec::additiveTraversal()
                             ->traverse(m["Node.part"], ResultPolicy::WalkOnly)
                             ->traverse(m["Node.peer"], static_cast<ResultPolicy>(7))
                             ->traverse(m["Leaf.own"], ResultPolicy::Extended)
                             ->traverse(m["Leaf.use"], is("Node"), ResultPolicy::Report);
    EXPECT_EQ(explain(*builder, leaf).text(),
              "n::A\n"
              "  part: followed, walked silently; accepted by rule 1 (filed under n::Z)\n"
              "  peer: followed, reported (policy 7); accepted by rule 1 (filed under n::Z)\n"
              "  own: followed, reported (extended); accepted by rule 1 (filed under n::A)\n"
              "  use: not followed; no rule accepts the class; refused by rule 1 (filed under "
              "n::A)\n"
              "  name: not followed; it is no association\n"
              "  text: not followed; it is no association\n"
              "  all: not followed; it is derived\n");
    const std::string composed = explain(*Spec::compositionTraversal(), node).text();
    EXPECT_NE(composed.find("  peer: not followed; it is no containment\n"), std::string::npos);
    const std::string unnamed = explain(*Spec::additiveTraversal(), node).text();
    EXPECT_NE(unnamed.find("  peer: not followed; no rule names it\n"), std::string::npos);
}

TEST_F(ExplanationTest, RuleThatReplacesAnotherCountsAsALaterOne) {
    const auto builder =
        Spec::additiveTraversal()
            ->traverse({m["Node.part"], named("first"), node}, ResultPolicy::Report)
            ->traverse({m["Node.part"], named("second"), node}, ResultPolicy::WalkOnly);
    const Explanation explanation = explain(*builder, leaf);
    const ExplainedProperty& part = *explanation.find(m["Node.part"]);
    EXPECT_EQ(part.rule,
              (ExplainedRule{m["Node.part"], node, 2, "second", ResultPolicy::WalkOnly}));
    EXPECT_TRUE(part.refused.empty() && part.shadowed.empty());
}

TEST_F(ExplanationTest, NameChangesNothingAboutARule) {
    int asked = 0;
    const auto counting = [&asked](const Class&) {
        ++asked;
        return true;
    };
    test::ModelBuilder small("Node; Node.x -> Node *", "A.x = B C");
    const auto linesWith = [&](const ClassPredicate& predicate) {
        asked = 0;
        return test::linesOf(
            Spec::additiveTraversal()
                ->traverse(PropertyMatcher(small["Node.x"], predicate, small.type("Node")),
                           ResultPolicy::Report)
                ->depthFirst({small("A")}));
    };
    const Lines unnamed = linesWith(counting);
    const int times = asked;
    EXPECT_EQ(linesWith(named("x", counting)), unnamed);
    EXPECT_EQ(asked, times);
    EXPECT_EQ(linesWith(named("x")), unnamed);
}

TEST_F(ExplanationTest, EachPredicateIsAskedOnceAndWhatItThrowsPasses) {
    int asked = 0;
    const auto builder = Spec::subtractiveTraversal()->prune(m["Node.part"], [&](const Class&) {
        if (++asked == 2) throw std::runtime_error("no answer");
        return false;
    });
    const auto result = builder->depthFirst(std::vector<ModelElement>());
    const Explanation first = explain(result, leaf);
    EXPECT_EQ(asked, 1);
    EXPECT_THROW(explain(result, leaf), std::runtime_error);
    EXPECT_EQ(explain(result, leaf), first);
    EXPECT_EQ(asked, 3);
}

TEST_F(ExplanationTest, BuilderIsExplainedAsItsRulesStandNowAndAResultAsTheyStood) {
    const auto builder = Spec::subtractiveTraversal();
    const auto result = builder->depthFirst(std::vector<ModelElement>());
    const Explanation before = explain(*builder, node);
    builder->prune(m["Node.part"]);
    EXPECT_NE(explain(*builder, node), before);
    EXPECT_EQ(explain(result, node), before);
}

}  // namespace
}  // namespace nuv::zero::traversal
