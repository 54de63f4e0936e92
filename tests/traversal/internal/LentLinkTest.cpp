#include "traversal/internal/LentLink.h"

#include <gtest/gtest.h>

#include <vector>

#include "tests/support/ModelBuilder.h"

namespace nuv::zero::traversal::internal {
namespace {

class LentLinkTest : public testing::Test {
  protected:
    test::ModelBuilder m{"Node; Node.kids -> Node *", "A; B"};
    Link link{m("A"), m("B"), m["Node.kids"]};
};

TEST_F(LentLinkTest, DefaultReadsAsTheEmptyLink) {
    EXPECT_TRUE(!LentLink().get());
    EXPECT_TRUE(LentLink().get().shouldCascade());
}

TEST_F(LentLinkTest, ReadsAsTheLinkItWasMadeOf) {
    EXPECT_TRUE(LentLink(link).get() == link);
    EXPECT_TRUE(LentLink(link).get().shouldCascade());
    link.setNoCascade();
    EXPECT_FALSE(LentLink(link).get().shouldCascade());
    EXPECT_FALSE(LentLink(m("A"), m("B"), m["Node.kids"], false).get().shouldCascade());
}

TEST_F(LentLinkTest, CopiesAndAssignmentsCarryAllFields) {
    link.setNoCascade();
    const LentLink original(link);
    const LentLink copy(original);
    LentLink assigned;
    assigned = copy;
    const LentLink& same = assigned;
    assigned = same;
    for (const LentLink* each : {&copy, &std::as_const(assigned)}) {
        EXPECT_TRUE(each->get() == link);
        EXPECT_FALSE(each->get().shouldCascade());
    }
}

TEST_F(LentLinkTest, CopyOfTheLinkReadCountsForItselfAndOutlivesTheModel) {
    Link kept;
    {
        test::ModelBuilder other("Node; Node.kids -> Node *", "A; B");
        const Link original(other("A"), other("B"), other["Node.kids"]);
        const LentLink lent(original);
        kept = lent.get();
    }
    EXPECT_EQ(access::nameOf(access::classOf(kept.getSource())), u"Node");
}

TEST_F(LentLinkTest, ManyComeAndGoWithoutTouchingTheElements) {
    std::vector<LentLink> links(1000, LentLink(link));
    links.resize(10);
    links.insert(links.begin(), 500, LentLink());
    EXPECT_TRUE(links.back().get() == link);
    links.clear();
    EXPECT_EQ(access::nameOf(access::classOf(link.getSource())), u"Node");
}

TEST_F(LentLinkTest, LentHandleCopiesMovesAndForgets) {
    Lent<ModelElement> lent(m("A"));
    const Lent<ModelElement> copy(lent);
    Lent<ModelElement> assigned;
    assigned = copy;
    EXPECT_EQ(copy.get(), m("A"));
    EXPECT_EQ(assigned.get(), m("A"));
    const Lent<ModelElement> moved(std::move(lent));
    EXPECT_EQ(moved.get(), m("A"));
    assigned = Lent<ModelElement>();
    EXPECT_FALSE(assigned.get());
}

}  // namespace
}  // namespace nuv::zero::traversal::internal
