#include "traversal/support/PairSet.h"

#include <gtest/gtest.h>

#include <vector>

#include "tests/support/ModelBuilder.h"

namespace nuv::zero::traversal::internal {
namespace {

class PairSetTest : public testing::Test {
  protected:
    test::ModelBuilder m{"Node", "A; B; C"};
    ModelElement a{m("A")};
    ModelElement b{m("B")};
    ModelElement c{m("C")};
    ModelElement null;
    PairSet set;
};

TEST_F(PairSetTest, PairIsNewOnce) {
    EXPECT_TRUE(set.insert(a, b));
    EXPECT_FALSE(set.insert(a, b));
}

TEST_F(PairSetTest, PairsAreToldApartByBothElementsAndTheirOrder) {
    EXPECT_TRUE(set.insert(a, b));
    EXPECT_TRUE(set.insert(b, a));
    EXPECT_TRUE(set.insert(a, c));
    EXPECT_TRUE(set.insert(c, b));
    EXPECT_TRUE(set.insert(a, a));
    EXPECT_FALSE(set.insert(b, a));
}

TEST_F(PairSetTest, NullIsAnElementLikeAnyOther) {
    for (const bool isNew : {true, false}) {
        EXPECT_EQ(set.insert(null, a), isNew);
        EXPECT_EQ(set.insert(a, null), isNew);
        EXPECT_EQ(set.insert(null, null), isNew);
    }
}

// Grows several times, and loses nothing that was there.
TEST_F(PairSetTest, HoldsEveryPairOfMany) {
    std::vector<ModelElement> elements{null};
    for (int i = 0; i < 40; ++i) elements.push_back(m.model.create(m.type("Node")));
    const auto insertAll = [&] {
        int newOnes = 0;
        for (const ModelElement& first : elements) {
            for (const ModelElement& second : elements) newOnes += set.insert(first, second);
        }
        return newOnes;
    };
    EXPECT_EQ(insertAll(), 41 * 41);
    EXPECT_EQ(insertAll(), 0);
}

TEST_F(PairSetTest, CopyIsIndependent) {
    set.insert(a, b);
    PairSet copy(set);
    EXPECT_FALSE(copy.insert(a, b));
    EXPECT_TRUE(copy.insert(b, c));
    EXPECT_TRUE(set.insert(b, c));
}

}  // namespace
}  // namespace nuv::zero::traversal::internal
