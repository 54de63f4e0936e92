#include "traversal/internal/UniquenessMaintainer.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

#include "tests/support/ModelBuilder.h"
#include "tests/support/WalkLog.h"

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
    m.metamodel.setOpposite(m["Node.third"], m["Node.kids"]);
    const Link third(m("B"), m("A"), m["Node.third"]);
    // The reverse of `plain` is `back`, and that of `third` is `there`. They count as seen with
    // them, but not with each other, although `there` and `back` are each other's reverses.
    const std::pair<std::vector<Link>, Answers> cases[] = {
        {{plain, third, plain, third}, {true, true, false, false}},
        {{third, plain}, {true, true}},
        {{plain, back, there}, {true, false, false}},
        {{plain, back, plain}, {true, false, false}},
        {{plain, there, there, back}, {true, false, false, false}},
        {{plain, there, third}, {true, false, false}},
        {{there, plain, third}, {true, false, false}},
        {{back, plain}, {true, false}},
        {{Link(m("A"), m("A"), m["Node.next"]), Link(m("A"), m("A"), m["Node.third"])},
         {true, true}},
    };
    for (const auto& [links, expected] : cases) {
        EXPECT_EQ(answers(UniquenessMode::UniqueLinks, links), expected)
            << test::text(links[0]) << ", " << test::text(links[1]) << " ...";
    }
}

/// The sets of inputs, of links, of opposites seen alone, and of properties: each makes room when
/// the first of its kind is met.
TEST_F(UniquenessMaintainerTest, BytesAreThoseOfEverySetAndOfAClone) {
    m.metamodel.setOpposite(m["Node.third"], m["Node.kids"]);
    const auto maintainer = makeUniquenessMaintainer(UniquenessMode::UniqueLinks);
    EXPECT_EQ(maintainer->bytes(), 0U);
    std::size_t bytes = 0;
    for (const Link& link : {pseudo, plain, there, Link(m("C"), m("A"), m["Node.third"])}) {
        maintainer->shouldReport(link);
        EXPECT_GT(maintainer->bytes(), bytes) << test::text(link);
        bytes = maintainer->bytes();
        maintainer->shouldReport(link);
        EXPECT_EQ(maintainer->bytes(), bytes) << test::text(link);
    }
    // A set of 16 pairs, of 32, and so on, each of them the double of what it takes the place of.
    const auto other = maintainer->clone();
    EXPECT_EQ(other->bytes(), bytes);
    const std::size_t setOf16 = 16 * 2 * sizeof(void*);
    for (int i = 0; i < 12; ++i) {
        maintainer->shouldReport(Link(m("A"), m.model.create(m.type("Node")), m["Node.next"]));
    }
    EXPECT_EQ(maintainer->bytes(), bytes + setOf16);
    EXPECT_EQ(other->bytes(), bytes);
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
