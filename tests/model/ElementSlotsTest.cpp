#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/model/Blocks.h"

/// Where elements keep their values: beside the element, in a chunk of the model, or behind it for
/// properties that were declared later.
namespace nuv::zero::test {
namespace {

TEST(ElementSlotsTest, PropertiesDeclaredLaterAreSetOneAfterAnother) {
    Blocks m;
    memory::Model model;
    const ModelElement block = model.create(m.block, u"b");
    std::vector<meta::Property> late;
    for (const char16_t* name : {u"one", u"two", u"three"}) {
        late.push_back(m.metamodel.addProperty(m.block, name, m.block));
    }
    std::vector<Elements> seen;
    for (const meta::Property& next : late) {
        model.set(block, next, block);
        seen.emplace_back();
        for (const meta::Property& each : late) seen.back().push_back(elementOf(block, each));
    }
    const std::vector<Elements> expected{
        {block, {}, {}}, {block, block, {}}, {block, block, block}};
    EXPECT_EQ(seen, expected);
}

TEST(ElementSlotsTest, PropertiesDeclaredLaterLetGoOfTheirValuesWithTheModel) {
    Blocks m;
    Value held;
    {
        memory::Model model;
        const ModelElement block = model.create(m.block, u"b");
        const meta::Property late =
            m.metamodel.addProperty(m.block, u"late", m.port, memory::unbounded);
        model.add(block, late, model.create(m.port, u"p"));
        held = access::read(block, late);
    }
    EXPECT_EQ(held.asElements().size(), 1U);
}

TEST(ElementSlotsTest, ElementsMayHaveMorePropertiesThanFitIntoTheFirstChunk) {
    memory::Metamodel metamodel(u"m");
    const meta::Class small = metamodel.addClass(u"Small");
    const meta::Property link = metamodel.addProperty(small, u"link", small);
    const meta::Class large = metamodel.addClass(u"Large", {small});
    std::vector<meta::Property> properties;
    for (int i = 0; i < 40000; ++i) {
        properties.push_back(metamodel.addProperty(large, u"p", small));
    }

    memory::Model model;
    const ModelElement first = model.create(small);
    const ModelElement element = model.create(large);
    const ModelElement last = model.create(small);
    model.set(first, link, last);
    model.set(last, link, first);
    for (const meta::Property& property : properties) model.set(element, property, last);

    EXPECT_EQ(elementOf(first, link), last);
    EXPECT_EQ(elementOf(last, link), first);
    EXPECT_FALSE(elementOf(element, link));
    EXPECT_EQ(elementOf(element, properties.front()), last);
    EXPECT_EQ(elementOf(element, properties.back()), last);
}

}  // namespace
}  // namespace nuv::zero::test
