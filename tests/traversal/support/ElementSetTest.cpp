#include "traversal/support/ElementSet.h"

#include <gtest/gtest.h>

#include <vector>

#include "tests/support/ModelBuilder.h"

namespace nuv::zero::traversal::internal {
namespace {

/// A framework that gives its elements no numbers.
struct WithoutNumbers {
    template <class Handle>
    using Hash = WalkSupport::Hash<Handle>;
};
static_assert(NumbersElements<WalkSupport>);
static_assert(!NumbersElements<WithoutNumbers>);

template <class Set>
class ElementSetTest : public testing::Test {
  protected:
    ElementSetTest() {
        for (int i = 0; i < 3000; ++i) elements.push_back(m.model.create(m.type("Node")));
    }

    test::ModelBuilder m{"Node"};
    std::vector<ModelElement> elements;
    Set set;
};

using Sets = testing::Types<ElementSetBy<WalkSupport>, ElementSetBy<WithoutNumbers>>;
class SetNames {
  public:
    template <class Set>
    static std::string GetName(int index) {
        return index == 0 ? "ByNumber" : "ByHandle";
    }
};
TYPED_TEST_SUITE(ElementSetTest, Sets, SetNames);

TYPED_TEST(ElementSetTest, HoldsWhatWasInsertedAndNothingElse) {
    for (std::size_t i = 0; i < this->elements.size(); i += 2) {
        this->set.prefetch(this->elements[i]);
        EXPECT_TRUE(this->set.insert(this->elements[i]));
        EXPECT_FALSE(this->set.insert(this->elements[i]));
    }
    EXPECT_EQ(this->set.size(), 1500U);
    for (std::size_t i = 0; i < this->elements.size(); ++i) {
        EXPECT_EQ(this->set.contains(this->elements[i]), i % 2 == 0) << i;
    }
}

TYPED_TEST(ElementSetTest, NullIsAnElementLikeAnyOther) {
    EXPECT_FALSE(this->set.contains(ModelElement()));
    EXPECT_TRUE(this->set.insert(ModelElement()));
    EXPECT_FALSE(this->set.insert(ModelElement()));
    EXPECT_TRUE(this->set.contains(ModelElement()));
    EXPECT_EQ(this->set.size(), 1U);
}

TYPED_TEST(ElementSetTest, CopyIsIndependent) {
    this->set.insert(this->elements[0]);
    TypeParam copy(this->set);
    EXPECT_TRUE(copy.contains(this->elements[0]));
    copy.insert(this->elements[1]);
    EXPECT_FALSE(this->set.contains(this->elements[1]));
}

}  // namespace
}  // namespace nuv::zero::traversal::internal
