#include "model/memory/Class.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/model/Blocks.h"

namespace nuv::zero::test {
namespace {

using Properties = std::vector<meta::Property>;

TEST(ClassTest, ListsInheritedPropertiesFirstThenItsOwnInOrderOfDeclaration) {
    const Blocks m;
    EXPECT_EQ(m.block->getAllClassProperties(),
              (Properties{m.name, m.ports, m.boss, m.tags, m.sizes}));
    EXPECT_EQ(m.port->getAllClassProperties(), (Properties{m.name, m.owner, m.size}));
}

// clang-format off
//
//        Top          superclass order as written:
//       /   |         Bottom -> Left, Right
//    Left   Right
//       |   /
//      Bottom
//
// clang-format on
struct Diamond {
    memory::Metamodel metamodel;
    meta::Class top = metamodel.addClass(u"Top");
    meta::Class left = metamodel.addClass(u"Left", {top});
    meta::Class right = metamodel.addClass(u"Right", {top});
    meta::Class bottom = metamodel.addClass(u"Bottom", {left, right});

    meta::Property add(const meta::Class& owner, std::u16string_view name) {
        return metamodel.addProperty(owner, name, top);
    }
};

TEST(ClassTest, ListsThePropertiesOfADiamondOnce) {
    Diamond m;
    const meta::Property ofBottom = m.add(m.bottom, u"b");
    const meta::Property ofRight = m.add(m.right, u"r");
    const meta::Property ofLeft = m.add(m.left, u"l");
    const meta::Property ofTop = m.add(m.top, u"t");
    EXPECT_EQ(m.bottom->getAllClassProperties(), (Properties{ofTop, ofLeft, ofRight, ofBottom}));
    EXPECT_EQ(m.right->getAllClassProperties(), (Properties{ofTop, ofRight}));
}

TEST(ClassTest, KeepsTheGivenOrderOfSuperclasses) {
    Diamond m;
    const meta::Class mirrored = m.metamodel.addClass(u"Mirrored", {m.right, m.left});
    const meta::Property ofLeft = m.add(m.left, u"l");
    const meta::Property ofRight = m.add(m.right, u"r");
    EXPECT_EQ(m.bottom->getAllClassProperties(), (Properties{ofLeft, ofRight}));
    EXPECT_EQ(mirrored->getAllClassProperties(), (Properties{ofRight, ofLeft}));
    EXPECT_EQ(mirrored->getSuperclasses(), (std::vector<meta::Class>{m.right, m.left}));
}

TEST(ClassTest, LooksUpItsOwnPropertiesBeforeInheritedOnes) {
    Diamond m;
    const meta::Property ofTop = m.add(m.top, u"x");
    EXPECT_EQ(m.bottom->getProperty(u"x"), ofTop);
    const meta::Property ofRight = m.add(m.right, u"x");
    EXPECT_EQ(m.right->getProperty(u"x"), ofRight);
    EXPECT_EQ(m.left->getProperty(u"x"), ofTop);
    EXPECT_EQ(m.bottom->getProperty(u"x"), ofTop) << "found by way of the first superclass";
    const meta::Property ofBottom = m.add(m.bottom, u"x");
    EXPECT_EQ(m.bottom->getProperty(u"x"), ofBottom);
    EXPECT_FALSE(m.bottom->getProperty(u"y"));
}

TEST(ClassTest, HasItsOwnAndInheritedPropertiesOnly) {
    const Blocks m;
    EXPECT_TRUE(m.block->hasProperty(m.ports));
    EXPECT_TRUE(m.block->hasProperty(m.name));
    EXPECT_FALSE(m.block->hasProperty(m.owner));
    EXPECT_FALSE(m.named->hasProperty(m.ports));
    EXPECT_FALSE(m.block->hasProperty({}));
}

TEST(ClassTest, IsKindOfItselfAndItsAncestors) {
    const Diamond m;
    const auto kindOf = [](const meta::Class& type, const meta::Class& other) {
        return type->isKindOf(*other.get());
    };
    EXPECT_TRUE(kindOf(m.top, m.top));
    for (const meta::Class& ancestor : {m.top, m.left, m.right, m.bottom}) {
        EXPECT_TRUE(kindOf(m.bottom, ancestor));
    }
    EXPECT_FALSE(kindOf(m.left, m.right));
    EXPECT_FALSE(kindOf(m.top, m.bottom));
    EXPECT_FALSE(kindOf(m.left, m.bottom));
}

TEST(ClassTest, BelowAClassWithTwoSuperclassesIsKindOfBoth) {
    memory::Metamodel metamodel(u"m");
    const meta::Class first = metamodel.addClass(u"First");
    const meta::Class second = metamodel.addClass(u"Second");
    const meta::Class both = metamodel.addClass(u"Both", {first, second});
    const meta::Class below = metamodel.addClass(u"Below", {both});
    for (const meta::Class& ancestor : {first, second, both, below}) {
        EXPECT_TRUE(below->isKindOf(*ancestor.get()));
    }
    EXPECT_FALSE(both->isKindOf(*below.get()));
}

TEST(ClassTest, ConformsToTheStandardMetaClasses) {
    const Blocks m;
    EXPECT_TRUE(m.block->conformsTo(m.named));
    EXPECT_FALSE(m.named->conformsTo(m.block));
    EXPECT_TRUE(m.block->conformsTo(ModelElement::metaClass()));
    EXPECT_TRUE(m.block->conformsTo(meta::Class::metaClass()));
    EXPECT_FALSE(m.block->conformsTo({}));
    EXPECT_FALSE(m.block->conformsTo(m.integer));
    EXPECT_FALSE(m.integer->conformsTo(ModelElement::metaClass()));
    EXPECT_TRUE(m.integer->conformsTo(m.integer));
}

TEST(ClassTest, MetaObjectsAreElementsOfTheStandardClasses) {
    const Blocks m;
    EXPECT_EQ(ModelElement(m.block)->getClass(), meta::Class::metaClass());
    EXPECT_EQ(meta::Class::metaClass()->getClass(), meta::Class::metaClass());
    EXPECT_EQ(ModelElement(m.ports)->getClass()->getName(), u"Property");
    EXPECT_EQ(ModelElement(m.integer)->getClass()->getName(), u"PrimitiveType");
}

TEST(ClassTest, IsNullOverAPrimitiveTypeOrANullType) {
    const Blocks m;
    EXPECT_FALSE(meta::Class(meta::StructuredType(m.integer)));
    EXPECT_FALSE(meta::Class(meta::StructuredType()));
}

TEST(ClassTest, AddingASuperclassReachesAllDescendants) {
    Diamond m;
    const meta::Property ofBottom = m.add(m.bottom, u"b");
    const meta::Class extra = m.metamodel.addClass(u"Extra");
    const meta::Property ofExtra = m.add(extra, u"e");
    m.metamodel.addSuperclass(m.top, extra);
    EXPECT_TRUE(m.bottom->isKindOf(*extra.get()));
    EXPECT_EQ(m.bottom->getAllClassProperties(), (Properties{ofExtra, ofBottom}));
    EXPECT_TRUE(m.right->hasProperty(ofExtra));
}

TEST(ClassTest, AHierarchyOfAThousandLevelsAnswersFromTopToBottom) {
    memory::Metamodel metamodel;
    const meta::Class top = metamodel.addClass(u"C");
    meta::Class bottom = top;
    for (int level = 1; level < 1000; ++level) bottom = metamodel.addClass(u"C", {bottom});
    const meta::Property late = metamodel.addProperty(top, u"late", top);
    EXPECT_TRUE(bottom->isKindOf(*top.get()));
    EXPECT_FALSE(top->isKindOf(*bottom.get()));
    EXPECT_EQ(bottom->getProperty(u"late"), late);
}

TEST(ClassTest, ElementsMadeBeforeALatePropertyReadItAsNeverSetAndCanHoldIt) {
    Blocks m;
    memory::Model model;
    const ModelElement block = model.create(m.block, u"b");
    const ModelElement boss = model.create(m.block, u"boss");
    model.set(block, m.boss, boss);

    const meta::Property lateSingle = m.metamodel.addProperty(m.named, u"one", m.block);
    const meta::Property lateMany =
        m.metamodel.addProperty(m.block, u"many", m.block, memory::unbounded);
    EXPECT_FALSE(elementOf(block, lateSingle));
    EXPECT_EQ(elementsOf(block, lateMany), Elements{});

    model.add(block, lateMany, boss);
    model.set(block, lateSingle, boss);
    model.add(block, lateMany, block);
    EXPECT_EQ(elementsOf(block, lateMany), (Elements{boss, block}));
    EXPECT_EQ(elementOf(block, lateSingle), boss);
    EXPECT_EQ(elementOf(block, m.boss), boss);
    EXPECT_FALSE(elementOf(boss, lateSingle));
}

TEST(ClassTest, ElementsKeepTheirValuesWhenASuperclassIsAdded) {
    Blocks m;
    memory::Model model;
    const ModelElement block = model.create(m.block, u"b");
    const meta::Class extra = m.metamodel.addClass(u"Extra");
    const meta::Property note =
        m.metamodel.addProperty(extra, u"note", meta::StandardTypes::stringMeta());
    m.metamodel.addSuperclass(m.named, extra);
    model.set(block, note, u"n");
    EXPECT_EQ(access::toString(access::read(block, m.name)), u"b");
    EXPECT_EQ(access::toString(access::read(block, note)), u"n");
}

}  // namespace
}  // namespace nuv::zero::test
