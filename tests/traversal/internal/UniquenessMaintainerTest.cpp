#include "traversal/internal/UniquenessMaintainer.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "tests/support/ModelBuilder.h"

namespace nuv::zero::traversal::internal {
namespace {

class UniquenessMaintainerTest : public testing::TestWithParam<UniquenessMode> {
  protected:
    /// What a maintainer says of links, one after another.
    static std::vector<bool> answers(UniquenessMaintainer& maintainer,
                                     const std::vector<Link>& links) {
        std::vector<bool> all;
        for (const Link& link : links) all.push_back(maintainer.shouldReport(link));
        return all;
    }
    static std::vector<bool> answers(UniquenessMode mode, const std::vector<Link>& links) {
        return answers(*makeUniquenessMaintainer(mode), links);
    }

    test::ModelBuilder m{
        "Node; Node.kids -> Node *; Node.home -> Node; Node.kids <> Node.home; Node.next -> Node; "
        "Node.third -> Node",
        "A; B; C"};
    Link there{m("A"), m("B"), m["Node.kids"]};
    Link back{m("B"), m("A"), m["Node.home"]};
    Link plain{m("A"), m("B"), m["Node.next"]};
    Link fromC{m("C"), m("B"), m["Node.next"]};
    Link pseudo{ModelElement(), m("B"), meta::Property()};
};

using Answers = std::vector<bool>;

TEST_F(UniquenessMaintainerTest, NoUniquenessAlwaysReports) {
    EXPECT_EQ(answers(UniquenessMode::NoUniqueness, {there, there, back, pseudo, pseudo}),
              Answers(5, true));
}

TEST_F(UniquenessMaintainerTest, EveryOtherModeValueReportsAlways) {
    EXPECT_EQ(answers(static_cast<UniquenessMode>(3), {there, there}), Answers(2, true));
    EXPECT_EQ(answers(static_cast<UniquenessMode>(-1), {there, there}), Answers(2, true));
}

TEST_F(UniquenessMaintainerTest, LinkAndItsOppositeAreReportedOnceWhicheverComesFirst) {
    EXPECT_EQ(answers(UniquenessMode::UniqueLinks, {there, back}), (Answers{true, false}));
    EXPECT_EQ(answers(UniquenessMode::UniqueLinks, {back, there}), (Answers{true, false}));
}

TEST_F(UniquenessMaintainerTest, LinkWithoutOppositeIsRefusedOnlyWhenItComesAgain) {
    EXPECT_EQ(answers(UniquenessMode::UniqueLinks, {plain, fromC, plain, fromC}),
              (Answers{true, true, false, false}));
}

/// A link was left out as repeated that had not been seen: where a third property names one of two
/// mutual opposites as its own, a link of it counted for both of them.
TEST_F(UniquenessMaintainerTest, OneWayOppositeOfAMutualOneHasThatOneSeenAlone) {
    const meta::Property kids = m["Node.kids"];
    const meta::Property home = m["Node.home"];
    const meta::Property one = m.metamodel.addProperty(m.type("Node"), u"one", m.type("Node"));
    const meta::Property other = m.metamodel.addProperty(m.type("Node"), u"other", m.type("Node"));
    m.metamodel.setOpposite(one, home);
    m.metamodel.setOpposite(other, kids);
    const ModelElement a = m("A");
    const ModelElement b = m("B");
    const Link byOne(a, b, one);
    const Link byOther(b, a, other);
    // Both have their reverses, B.home>A and A.kids>B, seen for the first time.
    EXPECT_EQ(answers(UniquenessMode::UniqueLinks, {byOne, byOther, byOne, byOther}),
              (Answers{true, true, false, false}));
    EXPECT_EQ(answers(UniquenessMode::UniqueLinks, {byOne, back, there}),
              (Answers{true, false, false}));
    EXPECT_EQ(answers(UniquenessMode::UniqueLinks, {byOne, there, byOther}),
              (Answers{true, false, false}));
    EXPECT_EQ(answers(UniquenessMode::UniqueLinks, {there, byOne, byOther}),
              (Answers{true, false, false}));
    EXPECT_EQ(answers(UniquenessMode::UniqueLinks, {Link(a, a, one), Link(a, a, other)}),
              (Answers{true, true}));
}

TEST_F(UniquenessMaintainerTest, InputIsRefusedOnlyWhenItComesAgain) {
    const Link toC(ModelElement(), m("C"), meta::Property());
    EXPECT_EQ(answers(UniquenessMode::UniqueLinks, {pseudo, toC, pseudo, toC}),
              (Answers{true, true, false, false}));
}

TEST_F(UniquenessMaintainerTest, LinksOfDifferentPropertiesAreToldApart) {
    const Link alsoBack(m("B"), m("A"), m["Node.next"]);
    EXPECT_EQ(answers(UniquenessMode::UniqueLinks, {alsoBack, plain, there, back, alsoBack}),
              (Answers{true, true, true, false, false}));
    EXPECT_EQ(answers(UniquenessMode::UniqueLinks, {plain, back, there, plain}),
              (Answers{true, true, false, false}));
}

TEST_F(UniquenessMaintainerTest, NoCascadeCopyCountsAsTheSameLink) {
    Link stopped(plain);
    stopped.setNoCascade();
    EXPECT_EQ(answers(UniquenessMode::UniqueLinks, {plain, stopped}), (Answers{true, false}));
}

// home of B is set one way only: the opposite of B-home-A is A-kids-B, which was met before as the
// opposite of another link.
TEST_F(UniquenessMaintainerTest, NewLinkWhoseOppositeWasMetIsRefusedAndRemembered) {
    const meta::Property oneWay = m.metamodel.addProperty(m.type("Node"), u"oneWay", m.type("Node"),
                                                          1, memory::PropertyFlags::Association);
    m.metamodel.setOpposite(oneWay, m["Node.kids"]);
    const Link link(m("B"), m("A"), oneWay);
    EXPECT_EQ(answers(UniquenessMode::UniqueLinks, {there, link, link}),
              (Answers{true, false, false}));
}

/// A link was refused though neither it nor its reverse had been met: a third property, whose
/// opposite is one of two that are each other's, counted for both of them.
TEST_F(UniquenessMaintainerTest, OppositeOfAThirdPropertyIsSeenWithoutItsOwnReverse) {
    m.metamodel.setOpposite(m["Node.next"], m["Node.home"]);
    // Its reverse is `back`, and counts as seen; `there` does not.
    EXPECT_EQ(answers(UniquenessMode::UniqueLinks, {plain, back, plain}),
              (Answers{true, false, false}));
    // New, and remembered, but its reverse was met.
    EXPECT_EQ(answers(UniquenessMode::UniqueLinks, {plain, there, there, back}),
              (Answers{true, false, false, false}));
    EXPECT_EQ(answers(UniquenessMode::UniqueLinks, {back, plain}), (Answers{true, false}));
    EXPECT_EQ(answers(UniquenessMode::UniqueLinks, {there, plain}), (Answers{true, false}));

    // The reverse of `third` is `there`, and that of `plain` is `back`: they have nothing to do
    // with each other, although `there` and `back` are each other's reverses.
    const Link third(m("B"), m("A"), m["Node.third"]);
    m.metamodel.setOpposite(m["Node.third"], m["Node.kids"]);
    EXPECT_EQ(answers(UniquenessMode::UniqueLinks, {third, plain}), (Answers{true, true}));
    EXPECT_EQ(answers(UniquenessMode::UniqueLinks, {plain, third}), (Answers{true, true}));
}

TEST_F(UniquenessMaintainerTest, UniqueElementsReportsEachTargetOncePseudoLinksIncluded) {
    EXPECT_EQ(answers(UniquenessMode::UniqueElements, {plain, fromC, back, pseudo}),
              (Answers{true, false, true, false}));
    EXPECT_EQ(answers(UniquenessMode::UniqueElements, {pseudo, there}), (Answers{true, false}));
}

TEST_P(UniquenessMaintainerTest, CloneAnswersAlikeAndThenGoesItsOwnWay) {
    const auto original = makeUniquenessMaintainer(GetParam());
    original->shouldReport(there);
    const auto clone = original->clone();
    const auto witness = original->clone();
    EXPECT_EQ(answers(*clone, {there, plain, back}), answers(*original, {there, plain, back}));
    // What the clone met meanwhile is news to the witness.
    const Link toC(m("A"), m("C"), m["Node.next"]);
    EXPECT_TRUE(clone->shouldReport(toC));
    EXPECT_TRUE(witness->shouldReport(toC));
}

INSTANTIATE_TEST_SUITE_P(Modes, UniquenessMaintainerTest,
                         testing::Values(UniquenessMode::UniqueLinks,
                                         UniquenessMode::UniqueElements,
                                         UniquenessMode::NoUniqueness),
                         [](const auto& each) {
                             switch (each.param) {
                                 case UniquenessMode::UniqueLinks:
                                     return "UniqueLinks";
                                 case UniquenessMode::UniqueElements:
                                     return "UniqueElements";
                                 case UniquenessMode::NoUniqueness:
                                     break;
                             }
                             return "NoUniqueness";
                         });

}  // namespace
}  // namespace nuv::zero::traversal::internal
