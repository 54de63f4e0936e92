#include "traversal/internal/Link.h"

#include <gtest/gtest.h>

#include <utility>

#include "tests/support/ModelBuilder.h"

namespace nuv::zero::traversal::internal {
namespace {

using meta::Property;

class LinkTest : public testing::Test {
  protected:
    test::ModelBuilder m{
        "Node; Node.kids => Node *; Node.home -> Node; Node.kids <> Node.home; Node.next -> Node",
        "A; B"};
    ModelElement a = m("A");
    ModelElement b = m("B");
    Link link{a, b, m["Node.kids"]};
};

TEST_F(LinkTest, DefaultIsEmptyAndCascades) {
    EXPECT_TRUE(!Link());
    EXPECT_TRUE(Link() == Link::empty());
    EXPECT_TRUE(Link().shouldCascade());
    EXPECT_TRUE(Link::empty().shouldCascade());
    EXPECT_FALSE(Link().getSource());
    EXPECT_FALSE(Link().getTarget());
    EXPECT_FALSE(Link().getProperty());
}

TEST_F(LinkTest, EmptyLinkHandedOutCannotSpoilTheNextOne) {
    Link::empty().setNoCascade();
    EXPECT_TRUE(Link::empty().shouldCascade());
}

TEST_F(LinkTest, HoldsItsThreeHandlesAndCascades) {
    EXPECT_EQ(link.getSource(), a);
    EXPECT_EQ(link.getTarget(), b);
    EXPECT_EQ(link.getProperty(), m["Node.kids"]);
    EXPECT_TRUE(link.shouldCascade());
    EXPECT_FALSE(!link);
}

TEST_F(LinkTest, IsAskedWhetherItIsNotEmpty) {
    EXPECT_FALSE(Link());
    EXPECT_TRUE(Link(ModelElement(), a, Property())) << "a pseudo-link";
    EXPECT_TRUE(link);
}

TEST_F(LinkTest, AnyHandleMakesALinkNonEmpty) {
    EXPECT_FALSE(!Link(a, ModelElement(), Property()));
    EXPECT_FALSE(!Link(ModelElement(), b, Property()));
    EXPECT_FALSE(!Link(ModelElement(), ModelElement(), m["Node.kids"]));
    EXPECT_TRUE(!Link(ModelElement(), ModelElement(), Property()));
}

TEST_F(LinkTest, EmptinessIgnoresTheCascadeFlag) {
    Link empty;
    empty.setNoCascade();
    EXPECT_TRUE(!empty);
}

TEST_F(LinkTest, EqualityIsIdentityOfAllThreeHandles) {
    EXPECT_TRUE(link == Link(a, b, m["Node.kids"]));
    EXPECT_TRUE(link != Link(b, b, m["Node.kids"]));
    EXPECT_TRUE(link != Link(a, a, m["Node.kids"]));
    EXPECT_TRUE(link != Link(a, b, m["Node.next"]));
    EXPECT_FALSE(link != Link(a, b, m["Node.kids"]));
}

TEST_F(LinkTest, NoCascadeCopyStaysEqual) {
    Link stopped(link);
    stopped.setNoCascade();
    EXPECT_FALSE(stopped.shouldCascade());
    EXPECT_TRUE(link.shouldCascade());
    EXPECT_TRUE(stopped == link);
}

TEST_F(LinkTest, CopiesAndMovesCarryTheCascadeFlag) {
    link.setNoCascade();
    const Link copy(link);
    Link assigned;
    assigned = link;
    Link source(link);
    const Link moved(std::move(source));
    Link another(link);
    Link moveAssigned;
    moveAssigned = std::move(another);
    for (const Link& each : {copy, assigned, moved, moveAssigned}) {
        EXPECT_TRUE(each == link);
        EXPECT_FALSE(each.shouldCascade());
    }
}

TEST_F(LinkTest, MovedFromHandlesAreNull) {
    Link source(link);
    const Link moved(std::move(source));
    EXPECT_TRUE(!source);  // NOLINT(bugprone-use-after-move): what a move leaves is promised
}

TEST_F(LinkTest, OppositeSwapsTheEndsOverTheOppositeProperty) {
    const auto opposite = link.getOpposite();
    ASSERT_TRUE(opposite.has_value());
    EXPECT_TRUE(*opposite == Link(b, a, m["Node.home"]));
}

TEST_F(LinkTest, OppositeOfANoCascadeLinkCascades) {
    link.setNoCascade();
    ASSERT_TRUE(link.getOpposite().has_value());
    EXPECT_TRUE(link.getOpposite()->shouldCascade());
}

TEST_F(LinkTest, PseudoLinkAndPropertyWithoutOppositeHaveNoOppositeLink) {
    EXPECT_FALSE(Link(ModelElement(), b, Property()).getOpposite().has_value());
    EXPECT_FALSE(Link(a, b, m["Node.next"]).getOpposite().has_value());
    EXPECT_FALSE(Link().getOpposite().has_value());
}

TEST_F(LinkTest, KeepsItsElementsValidWithoutTheModel) {
    Link kept;
    {
        test::ModelBuilder other("Node; Node.kids -> Node *", "A.kids = B");
        kept = Link(other("A"), other("B"), other["Node.kids"]);
    }
    EXPECT_EQ(access::nameOf(kept.getProperty()), u"kids");
    EXPECT_EQ(access::nameOf(access::classOf(kept.getTarget())), u"Node");
}

}  // namespace
}  // namespace nuv::zero::traversal::internal
