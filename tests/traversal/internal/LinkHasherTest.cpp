#include <gtest/gtest.h>

#include <set>
#include <unordered_set>

#include "tests/support/ModelBuilder.h"
#include "traversal/internal/Link.h"

namespace nuv::zero::traversal::internal {
namespace {

using meta::Property;

class LinkHasherTest : public testing::Test {
  protected:
    test::ModelBuilder m{"Node; Node.kids -> Node *", "A; B"};
    ModelElement a = m("A");
    ModelElement b = m("B");
    Property kids = m["Node.kids"];
    LinkHasher hash;
};

TEST_F(LinkHasherTest, IsTheExclusiveOrOfTheThreeHashes) {
    const std::hash<ModelElement> element;
    EXPECT_EQ(hash(Link(a, b, kids)), element(a) ^ element(b) ^ element(access::asElement(kids)));
}

TEST_F(LinkHasherTest, LinkAndItsEndsExchangedHashAlike) {
    EXPECT_EQ(hash(Link(a, b, kids)), hash(Link(b, a, kids)));
}

TEST_F(LinkHasherTest, LinkOfAnElementToItselfHashesAsItsProperty) {
    EXPECT_EQ(hash(Link(a, a, kids)), std::hash<ModelElement>()(access::asElement(kids)));
}

TEST_F(LinkHasherTest, CascadeFlagTakesNoPart) {
    Link stopped(a, b, kids);
    stopped.setNoCascade();
    EXPECT_EQ(hash(stopped), hash(Link(a, b, kids)));
}

// Null handles hash like any other, so two of them cancel each other out.
TEST_F(LinkHasherTest, PseudoLinkHashesAsItsTargetAndTheEmptyLinkAsNull) {
    const std::hash<ModelElement> element;
    EXPECT_EQ(hash(Link(ModelElement(), a, Property())), element(a));
    EXPECT_EQ(hash(Link::empty()), element(ModelElement()));
    EXPECT_NE(hash(Link(ModelElement(), a, Property())), hash(Link(ModelElement(), b, Property())));
}

TEST_F(LinkHasherTest, LinksAreKeysOfTheStandardTables) {
    const Link link(a, b, kids);
    EXPECT_EQ(std::hash<Link>()(link), hash(link));
    std::unordered_set<Link> met{link, Link(b, a, kids), link};
    EXPECT_EQ(met.size(), 2U);
    EXPECT_EQ(met.count(Link(b, a, kids)), 1U);
}

// Elements lie at regular distances; hashes of their addresses alone would collide by the hundred.
TEST_F(LinkHasherTest, LinksOfALongChainHardlyEverHashAlike) {
    memory::Model model;
    std::set<std::size_t> hashes;
    ModelElement previous = model.create(m.type("Node"));
    constexpr int length = 20000;
    for (int i = 0; i < length; ++i) {
        const ModelElement next = model.create(m.type("Node"));
        hashes.insert(hash(Link(previous, next, kids)));
        previous = next;
    }
    EXPECT_GE(hashes.size(), static_cast<std::size_t>(length - 2));
}

}  // namespace
}  // namespace nuv::zero::traversal::internal
