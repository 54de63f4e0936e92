#include "traversal/internal/AbstractStore.h"

#include <gtest/gtest.h>

#include <memory>

#include "tests/support/ModelBuilder.h"
#include "tests/support/WalkLog.h"

namespace nuv::zero::traversal::internal {
namespace {

using test::Lines;
using test::text;

/// How a store is made, and how its order is called.
struct StoreKind {
    const char* name;
    std::unique_ptr<AbstractStore> (*make)();
};

/// What every store promises, whatever its discipline.
class AbstractStoreTest : public testing::TestWithParam<StoreKind> {
  protected:
    Link linkTo(const char* target) const { return {m("A"), m(target), m["Node.x"]}; }
    static Link stopped(Link link) {
        link.setNoCascade();
        return link;
    }
    static Lines drained(AbstractStore& store) {
        Lines lines;
        for (; !store.empty(); store.pop()) lines.push_back(text(store.top()));
        return lines;
    }
    bool isQueue() const { return GetParam().make == makeBfsStore; }

    test::ModelBuilder m{"Node; Node.x -> Node *; Node.y -> Node *", "A; B; C; D"};
    std::unique_ptr<AbstractStore> store = GetParam().make();
    std::unique_ptr<AbstractStore> other = GetParam().make();
};

TEST_P(AbstractStoreTest, IsEmptyAtFirstAndAfterTheLastPop) {
    EXPECT_TRUE(store->empty());
    store->push(linkTo("B"));
    EXPECT_FALSE(store->empty());
    store->pop();
    EXPECT_TRUE(store->empty());
}

TEST_P(AbstractStoreTest, HandsOutInTheOrderOfItsDiscipline) {
    for (const char* target : {"B", "C", "D"}) store->push(linkTo(target));
    EXPECT_EQ(drained(*store),
              isQueue() ? (Lines{"A.x>B", "A.x>C", "A.x>D"}) : (Lines{"A.x>D", "A.x>C", "A.x>B"}));
}

TEST_P(AbstractStoreTest, TopDoesNotRemove) {
    store->push(linkTo("B"));
    EXPECT_TRUE(store->top() == linkTo("B"));
    EXPECT_TRUE(store->top() == linkTo("B"));
    EXPECT_FALSE(store->empty());
}

TEST_P(AbstractStoreTest, KeepsTheCascadeFlag) {
    store->push(stopped(linkTo("B")));
    EXPECT_FALSE(store->top().shouldCascade());
    store->pop();
    store->push(linkTo("B"));
    EXPECT_TRUE(store->top().shouldCascade());
}

TEST_P(AbstractStoreTest, HoldsThousandsOfLinksThroughPushesAndPops) {
    for (int i = 0; i < 5000; ++i) {
        store->push(linkTo(i % 2 == 0 ? "B" : "C"));
        if (i % 3 == 0) store->pop();
    }
    EXPECT_EQ(drained(*store).size(), 5000U - 1667U);
}

TEST_P(AbstractStoreTest, EqualsAStoreOfItsKindWithEqualLinksAtEqualPlaces) {
    EXPECT_TRUE(store->equals(*other));
    store->push(linkTo("B"));
    EXPECT_FALSE(store->equals(*other));
    other->push(linkTo("B"));
    EXPECT_TRUE(store->equals(*other));
    store->push(linkTo("C"));
    store->push(linkTo("D"));
    other->push(linkTo("D"));
    other->push(linkTo("C"));
    EXPECT_FALSE(store->equals(*other));
    EXPECT_TRUE(store->equals(*store));
}

TEST_P(AbstractStoreTest, ComparesEachHandleOfALink) {
    store->push(linkTo("B"));
    other->push(Link(m("A"), m("B"), m["Node.y"]));
    EXPECT_FALSE(store->equals(*other));
    other->pop();
    other->push(Link(m("C"), m("B"), m["Node.x"]));
    EXPECT_FALSE(store->equals(*other));
}

TEST_P(AbstractStoreTest, EqualityIgnoresTheCascadeFlags) {
    store->push(linkTo("B"));
    other->push(stopped(linkTo("B")));
    EXPECT_TRUE(store->equals(*other));
}

TEST_P(AbstractStoreTest, CloneIsEqualOfTheSameKindAndIndependent) {
    store->push(linkTo("B"));
    store->push(stopped(linkTo("C")));
    const auto clone = store->clone();
    EXPECT_TRUE(clone->equals(*store));
    EXPECT_TRUE(store->equals(*clone));
    store->push(linkTo("D"));
    EXPECT_FALSE(clone->equals(*store));
    EXPECT_EQ(drained(*clone), isQueue() ? (Lines{"A.x>B", "A.x>C!"}) : (Lines{"A.x>C!", "A.x>B"}));
    EXPECT_FALSE(store->empty());
}

TEST_P(AbstractStoreTest, CloneOutlivesItsOriginal) {
    store->push(linkTo("B"));
    const auto clone = store->clone();
    store.reset();
    EXPECT_EQ(drained(*clone), Lines{"A.x>B"});
}

INSTANTIATE_TEST_SUITE_P(Stores, AbstractStoreTest,
                         testing::Values(StoreKind{"Queue", makeBfsStore},
                                         StoreKind{"Stack", makeDfsStore}),
                         [](const auto& each) { return each.param.name; });

TEST(AbstractStoreKindsTest, QueueAndStackAreUnequalEvenWhenBothAreEmpty) {
    EXPECT_FALSE(makeBfsStore()->equals(*makeDfsStore()));
    EXPECT_FALSE(makeDfsStore()->equals(*makeBfsStore()));
}

}  // namespace
}  // namespace nuv::zero::traversal::internal
