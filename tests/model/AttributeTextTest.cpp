#include "model/memory/AttributeText.h"

#include <gtest/gtest.h>

#include "tests/model/Blocks.h"

namespace nuv::zero::test {
namespace {

using memory::textOf;

struct AttributeTextTest : testing::Test {
    Blocks m;
    memory::Model model;
    ModelElement b1 = model.create(m.block, u"b\u00e4r");
    ModelElement p1 = model.create(m.port);
};

TEST_F(AttributeTextTest, ReadsByPropertyAndByName) {
    EXPECT_EQ(textOf(b1, m.name), "b\xc3\xa4r");
    EXPECT_EQ(textOf(b1, u"name"), "b\xc3\xa4r");
}

TEST_F(AttributeTextTest, ShowsNumbersAndCollections) {
    model.set(p1, m.size, -7);
    model.set(b1, m.tags, {u"x", u"y, z"});
    model.set(b1, m.sizes, {3});
    EXPECT_EQ(textOf(p1, u"size"), "-7");
    EXPECT_EQ(textOf(b1, u"tags"), "x, y, z");
    EXPECT_EQ(textOf(b1, u"sizes"), "3");
    model.add(b1, m.sizes, 40);
    EXPECT_EQ(textOf(b1, m.sizes), "3, 40");
}

TEST_F(AttributeTextTest, NothingIsNoText) {
    EXPECT_EQ(textOf(p1, u"name"), "");
    EXPECT_EQ(textOf(p1, u"size"), "");
    EXPECT_EQ(textOf(b1, u"tags"), "");
    model.unset(b1, m.tags);
    EXPECT_EQ(textOf(b1, u"tags"), "");
}

TEST_F(AttributeTextTest, HandleThatOutlivesItsModelReadsAsNeverSet) {
    model = memory::Model();
    EXPECT_EQ(textOf(b1, u"name"), "");
}

TEST_F(AttributeTextTest, WhatHasNoTextIsRefusedByName) {
    const ModelElement none;
    EXPECT_EQ(errorOf([&] { textOf(none, u"name"); }),
              "The property 'name' of a null element has no text.");
    EXPECT_EQ(errorOf([&] { textOf(none, m.name); }),
              "The property Named.name of a null element has no text.");
    EXPECT_EQ(errorOf([&] { textOf(b1, meta::Property()); }), "A null property has no text.");
    EXPECT_EQ(errorOf([&] { textOf(b1, u"colour"); }),
              "The class Block does not have the property 'colour'.");
    EXPECT_EQ(errorOf([&] { textOf(b1, m.size); }),
              "The class Block does not have the property Port.size.");
    EXPECT_EQ(errorOf([&] { textOf(b1, u"ports"); }),
              "The property Block.ports holds elements, which have no text.");
    EXPECT_EQ(errorOf([&] { textOf(p1, u"block"); }),
              "The property Port.block holds elements, which have no text.");
    model.plant(p1, m.size, single(m.block, b1));
    EXPECT_EQ(errorOf([&] { textOf(p1, m.size); }),
              "The property Port.size holds elements, which have no text.");
}

}  // namespace
}  // namespace nuv::zero::test
