#include "model/memory/Metamodel.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>

#include "tests/model/Blocks.h"

namespace nuv::zero::test {
namespace {

using memory::Metamodel;
using Kind = memory::TypeObject::Kind;

TEST(MetamodelTest, NamesAClassWithinTheMetamodelUnlessToldOtherwise) {
    Metamodel metamodel(u"m");
    EXPECT_EQ(metamodel.addClass(u"Block")->getQualifiedName(), u"m::Block");
    EXPECT_EQ(metamodel.addClass(u"Block", {}, u"a.b.Block")->getQualifiedName(), u"a.b.Block");
    EXPECT_EQ(metamodel.addClass(u"Block", {}, u"")->getQualifiedName(), u"");
    EXPECT_EQ(Metamodel().addClass(u"Block")->getQualifiedName(), u"Block");
    EXPECT_EQ(metamodel.name(), u"m");
}

TEST(MetamodelTest, ListsItsClassesInOrderOfDeclaration) {
    Metamodel metamodel;
    const meta::Class first = metamodel.addClass(u"Z");
    const meta::Class second = metamodel.addClass(u"A");
    EXPECT_EQ(metamodel.classes(), (std::vector<meta::Class>{first, second}));
}

TEST(MetamodelTest, DescribesAPropertyAsItWasDeclared) {
    const Blocks m;
    EXPECT_EQ(m.ports->getName(), u"ports");
    EXPECT_EQ(m.ports->getType(), m.port);
    EXPECT_EQ(m.ports->getUpperBound(), memory::unbounded);
    EXPECT_FALSE(m.ports->isSingleValued());
    EXPECT_TRUE(m.ports->isAssociation());
    EXPECT_TRUE(m.ports->isComposite());
    EXPECT_FALSE(m.ports->isDerived());
    EXPECT_EQ(m.ports->getOwningType(), m.block);
    EXPECT_EQ(meta::Class(m.ports->getOwningType()), m.block);
    EXPECT_TRUE(m.boss->isSingleValued());
    EXPECT_FALSE(m.size->isAssociation());
}

TEST(MetamodelTest, ManyValuedIsEveryUpperBoundButOne) {
    Metamodel metamodel;
    const meta::Class type = metamodel.addClass(u"C");
    EXPECT_FALSE(metamodel.addProperty(type, u"two", type, 2)->isSingleValued());
    EXPECT_TRUE(metamodel.addProperty(type, u"one", type, 1)->isSingleValued());
}

TEST(MetamodelTest, SetsAnOppositeOneWayOrBothWays) {
    Blocks m;
    EXPECT_FALSE(m.ports->getOpposite());
    m.metamodel.setOpposite(m.ports, m.owner);
    EXPECT_EQ(m.ports->getOpposite(), m.owner);
    EXPECT_FALSE(m.owner->getOpposite());
    m.metamodel.setOpposites(m.owner, m.ports);
    EXPECT_EQ(m.owner->getOpposite(), m.ports);
    m.metamodel.setOpposite(m.boss, m.boss);
    EXPECT_EQ(m.boss->getOpposite(), m.boss);
}

// A property that outlived its metamodel was freed too early when its opposite had been set twice.
TEST(MetamodelTest, SettingTheSameOppositeAgainReleasesNothing) {
    meta::Property owner;
    {
        Blocks m;
        for (int times = 0; times < 3; ++times) m.metamodel.setOpposite(m.ports, m.owner);
        owner = m.owner;
    }
    EXPECT_EQ(owner->getName(), u"block");
}

TEST(MetamodelTest, RefusesASecondOppositeAndKeepsTheFirst) {
    Blocks m;
    m.metamodel.setOpposites(m.ports, m.owner);
    EXPECT_EQ(errorOf([&] { m.metamodel.setOpposite(m.ports, m.boss); }),
              "The property Block.ports cannot have the opposite Block.boss, because it has the "
              "opposite Port.block already.");
    EXPECT_EQ(errorOf([&] { m.metamodel.setOpposites(m.boss, m.owner); }),
              "The property Port.block cannot have the opposite Block.boss, because it has the "
              "opposite Block.ports already.");
    EXPECT_EQ(m.ports->getOpposite(), m.owner);
    EXPECT_FALSE(m.boss->getOpposite());
}

TEST(MetamodelTest, RefusesNullAndForeignOpposites) {
    Blocks m;
    Blocks other;
    EXPECT_EQ(errorOf([&] { m.metamodel.setOpposite({}, m.boss); }),
              "A null property cannot have an opposite.");
    EXPECT_EQ(errorOf([&] { m.metamodel.setOpposite(m.boss, {}); }),
              "The property Block.boss cannot have a null opposite.");
    EXPECT_EQ(errorOf([&] { m.metamodel.setOpposite(m.ports, other.owner); }),
              "The property Block.ports cannot have the opposite Port.block, because Port.block is "
              "not of the metamodel 'm'.");
}

TEST(MetamodelTest, RefusesSuperclassesThatAreNullOrGivenTwice) {
    Blocks m;
    EXPECT_EQ(errorOf([&] {
                  m.metamodel.addClass(u"X", {m.block, {}});
              }),
              "The class 'X' cannot have a null superclass.");
    EXPECT_EQ(errorOf([&] {
                  m.metamodel.addClass(u"X", {m.block, m.block});
              }),
              "The class 'X' cannot have the superclass Block twice.");
    EXPECT_EQ(errorOf([&] { m.metamodel.addSuperclass(m.block, {}); }),
              "The class Block cannot have a null superclass.");
    EXPECT_EQ(errorOf([&] { m.metamodel.addSuperclass({}, m.block); }),
              "A null class cannot have a superclass.");
    EXPECT_EQ(errorOf([&] { m.metamodel.addSuperclass(m.block, m.named); }),
              "The class Block has the superclass Named already.");
    EXPECT_EQ(m.metamodel.classes().size(), 3U);
}

TEST(MetamodelTest, RefusesAnInheritanceCycle) {
    Blocks m;
    const meta::Class special = m.metamodel.addClass(u"Special", {m.block});
    EXPECT_EQ(errorOf([&] { m.metamodel.addSuperclass(m.named, special); }),
              "The class Named cannot have the superclass Special, because it would become its own "
              "ancestor.");
    EXPECT_NE(errorOf([&] { m.metamodel.addSuperclass(m.named, m.named); }), "");
    EXPECT_TRUE(m.named->getSuperclasses().empty());
    EXPECT_FALSE(m.named->isKindOf(*special.get()));
}

TEST(MetamodelTest, RefusesWrongProperties) {
    Blocks m;
    Blocks other;
    EXPECT_EQ(errorOf([&] { m.metamodel.addProperty({}, u"p", m.block); }),
              "A null class cannot have the property 'p'.");
    EXPECT_EQ(errorOf([&] { m.metamodel.addProperty(other.block, u"p", m.block); }),
              "The class Block cannot have the property 'p' from the metamodel 'm', because it is "
              "of another one.");
    EXPECT_EQ(errorOf([&] { m.metamodel.addProperty(m.block, u"p", {}); }),
              "The class Block cannot have the property 'p' without a type.");
    EXPECT_FALSE(m.block->getProperty(u"p"));
}

TEST(MetamodelTest, RefusesToExtendAForeignClass) {
    Blocks m;
    Blocks other;
    EXPECT_EQ(errorOf([&] { m.metamodel.addSuperclass(other.block, m.named); }),
              "The class Block is not of the metamodel 'm', which therefore cannot add a "
              "superclass.");
}

TEST(MetamodelTest, RefusesAPrimitiveTypeThatWouldBeAClass) {
    Metamodel metamodel;
    EXPECT_EQ(errorOf([&] { metamodel.addPrimitive(u"m::T", Kind::Class); }),
              "The primitive type 'm::T' cannot be a class; its values are texts or integers.");
    const meta::PrimitiveType type = metamodel.addPrimitive(u"m::T", Kind::Text);
    EXPECT_EQ(type->getQualifiedName(), u"m::T");
    EXPECT_EQ(type->getName(), u"T");
    EXPECT_FALSE(type->isClass());
}

TEST(MetamodelTest, UsesClassesOfAnotherMetamodelOneWayOnly) {
    Metamodel base(u"base");
    const meta::Class shape = base.addClass(u"Shape");
    Metamodel middle(u"middle");
    const meta::Class circle = middle.addClass(u"Circle", {shape});
    Metamodel user(u"user");
    const meta::Class picture = user.addClass(u"Picture");
    user.addProperty(picture, u"circles", circle, memory::unbounded);

    EXPECT_TRUE(circle->isKindOf(*shape.get()));
    EXPECT_EQ(errorOf([&] { base.addProperty(shape, u"picture", picture); }),
              "The metamodel 'base' cannot use Picture, because the metamodel 'user' uses it "
              "already.");
    EXPECT_EQ(errorOf([&] { base.addClass(u"Loop", {circle}); }),
              "The metamodel 'base' cannot use Circle, because the metamodel 'middle' uses it "
              "already.");
    EXPECT_EQ(base.classes(), std::vector<meta::Class>{shape});
}

TEST(MetamodelTest, ReachesSubclassesOfOtherMetamodelsWithLateProperties) {
    Metamodel base(u"base");
    const meta::Class shape = base.addClass(u"Shape");
    Metamodel user(u"user");
    const meta::Class circle = user.addClass(u"Circle", {shape});
    const meta::Property colour = base.addProperty(shape, u"colour", shape);
    EXPECT_TRUE(circle->hasProperty(colour));
    { const Metamodel dropped = std::move(user); }
    base.addProperty(shape, u"more", shape);
    EXPECT_EQ(circle->getAllClassProperties().size(), 2U);
}

TEST(MetamodelTest, ForgetsTheSubclassesOfADroppedMetamodel) {
    Metamodel base(u"base");
    const meta::Class shape = base.addClass(u"Shape");
    { Metamodel(u"user").addClass(u"Circle", {shape}); }
    const meta::Property late = base.addProperty(shape, u"late", shape);
    EXPECT_EQ(shape->getAllClassProperties(), std::vector<meta::Property>{late});
}

// A moved-from metamodel refused everything.
TEST(MetamodelTest, IsEmptyAndUsableAfterItWasMovedFrom) {
    Metamodel metamodel(u"m");
    const meta::Class block = metamodel.addClass(u"Block");
    Metamodel other(std::move(metamodel));
    EXPECT_EQ(other.name(), u"m");
    EXPECT_EQ(other.classes(), std::vector<meta::Class>{block});
    // NOLINTBEGIN(bugprone-use-after-move): that is what is tested
    EXPECT_EQ(metamodel.name(), u"");
    EXPECT_TRUE(metamodel.classes().empty());
    EXPECT_EQ(errorOf([&] { metamodel.addProperty(block, u"p", block); }),
              "The class Block cannot have the property 'p' from the metamodel '', because it is "
              "of another one.");
    const meta::Class fresh = metamodel.addClass(u"Fresh", {block});
    EXPECT_EQ(fresh->getQualifiedName(), u"Fresh");
    EXPECT_TRUE(fresh->isKindOf(*block.get()));
    // NOLINTEND(bugprone-use-after-move)
    metamodel = std::move(other);
    EXPECT_EQ(metamodel.name(), u"m");
    Metamodel& alias = metamodel;
    metamodel = std::move(alias);
    EXPECT_EQ(metamodel.classes(), std::vector<meta::Class>{block});
}

// Upper bounds of zero and below -1 were refused.
TEST(MetamodelTest, TakesEveryUpperBoundAndExactlyOneIsSingleValued) {
    Blocks m;
    for (const int bound : {INT_MIN, -2, -1, 0, 1, 2, INT_MAX}) {
        const meta::Property made = m.metamodel.addProperty(m.block, u"p", m.block, bound);
        EXPECT_EQ(made->getUpperBound(), bound);
        EXPECT_EQ(made->isSingleValued(), bound == 1) << bound;
    }
}

}  // namespace
}  // namespace nuv::zero::test
