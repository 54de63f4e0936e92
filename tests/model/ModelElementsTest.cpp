#include <gtest/gtest.h>

#include <utility>
#include <vector>

#include "tests/model/Blocks.h"

/// What a model tells of its elements as a whole.
namespace nuv::zero::test {
namespace {

struct ModelElementsTest : BlocksModel {};

TEST_F(ModelElementsTest, ElementsComeInTheOrderInWhichTheyWereMade) {
    EXPECT_EQ(model.elements(), (Elements{b1, p1, b2, p2}));
    EXPECT_EQ(memory::Model().elements(), Elements{});
    EXPECT_EQ(memory::Model().roots(), Elements{});
}

TEST_F(ModelElementsTest, ElementsOfManyChunksAndSizesAreAllThere) {
    Elements made = model.elements();
    for (int i = 0; i < 20000; ++i) made.push_back(model.create(i % 3 == 0 ? m.block : m.port));
    EXPECT_EQ(model.elements(), made);
    EXPECT_EQ(model.elements().size(), model.size());
    EXPECT_EQ(model.roots(), made);
}

TEST_F(ModelElementsTest, RootsAreWhatNothingContains) {
    EXPECT_EQ(model.roots(), (Elements{b1, p1, b2, p2}));
    model.set(b1, m.ports, {p2});
    EXPECT_EQ(model.roots(), (Elements{b1, p1, b2}));
    model.add(b1, m.ports, p1);
    EXPECT_EQ(model.roots(), (Elements{b1, b2}));
    model.set(p2, m.owner, b2);
    model.set(b1, m.boss, b2);
    EXPECT_EQ(model.roots(), (Elements{b1, b2})) << "a reference contains nothing";
    model.unset(b1, m.ports);
    EXPECT_EQ(model.roots(), (Elements{b1, p1, b2, p2}));
}

TEST_F(ModelElementsTest, SingleContainmentCountsDerivedAndMereAttributesDoNot) {
    using Flags = memory::PropertyFlags;
    const auto cover = m.metamodel.addProperty(m.block, u"cover", m.port, 1,
                                               Flags::Association | Flags::Composite);
    const auto computed = m.metamodel.addProperty(
        m.block, u"computed", m.port, 1, Flags::Association | Flags::Composite | Flags::Derived);
    const auto plain = m.metamodel.addProperty(m.block, u"plain", m.port, 1, Flags::Composite);
    model.set(b1, computed, p1);
    model.set(b1, plain, p1);
    EXPECT_EQ(model.roots(), (Elements{b1, p1, b2, p2}));
    model.set(b2, cover, p1);
    EXPECT_EQ(model.roots(), (Elements{b1, b2, p2}));
    model.set(b2, cover, ModelElement());
    EXPECT_EQ(model.roots(), (Elements{b1, p1, b2, p2}));
}

TEST_F(ModelElementsTest, RingOfContainersHasNoRootAndOtherModelsHaveNoSay) {
    using Flags = memory::PropertyFlags;
    const auto parts = m.metamodel.addProperty(m.block, u"parts", m.block, memory::unbounded,
                                               Flags::Association | Flags::Composite);
    model.set(b1, parts, {b2});
    model.set(b2, parts, {b1});
    EXPECT_EQ(model.roots(), (Elements{p1, p2}));
    memory::Model other;
    const ModelElement outside = other.create(m.block, u"outside");
    other.set(outside, m.ports, {p1});
    EXPECT_EQ(model.roots(), (Elements{p1, p2}));
    EXPECT_EQ(other.roots(), Elements{outside});
}

TEST_F(ModelElementsTest, SomethingElsePlantedInAContainmentContainsNothing) {
    model.plant(b1, m.ports, single(m.integer, std::int64_t{7}));
    EXPECT_EQ(model.roots(), (Elements{b1, p1, b2, p2}));
}

TEST_F(ModelElementsTest, ElementsThatWereMovedAreTheOtherModels) {
    const memory::Model other(std::move(model));
    EXPECT_EQ(other.elements(), (Elements{b1, p1, b2, p2}));
    EXPECT_EQ(model.elements(), Elements{});  // NOLINT(bugprone-use-after-move): what is tested
}

}  // namespace
}  // namespace nuv::zero::test
