#include <gtest/gtest.h>

#include <optional>
#include <utility>

#include "tests/model/Readings.h"

/// What keeps a metamodel alive after the object that made it.
namespace nuv::zero::test {
namespace {

using memory::Model;

TEST(MetamodelLifetimeTest, AHandleOfAPropertyKeepsItsWholeMetamodel) {
    meta::Property last;
    {
        Blocks m;
        m.metamodel.setOpposites(m.ports, m.owner);
        last = m.ports;
    }
    const meta::Property opposite = last->getOpposite();
    last = {};
    EXPECT_EQ(opposite->getOpposite()->getName(), u"ports");
    EXPECT_EQ(opposite->getType()->getName(), u"Block");
}

TEST(MetamodelLifetimeTest, AMetamodelKeepsTheMetamodelsThatItUses) {
    std::optional<memory::Metamodel> base(u"base");
    const memory::Metamodel user(u"user");
    meta::Class circle;
    {
        memory::Metamodel& writable = const_cast<memory::Metamodel&>(user);
        circle = writable.addClass(u"Circle", {base->addClass(u"Shape")});
    }
    base.reset();
    EXPECT_EQ(circle->getSuperclasses().at(0)->getQualifiedName(), u"base::Shape");
}

TEST(MetamodelLifetimeTest, AModelKeepsTheMetamodelOfItsElements) {
    std::optional<Blocks> m(std::in_place);
    Model model;
    const ModelElement b1 = model.create(m->block, u"b1");
    m.reset();
    const meta::Property boss = b1->getClass()->getProperty(u"boss");
    model.set(b1, boss, b1);
    EXPECT_EQ(elementOf(b1, boss), b1);
}

TEST(MetamodelLifetimeTest, APlantedValueKeepsTheMetamodelOfItsType) {
    const Blocks m;
    Model model;
    const ModelElement b1 = model.create(m.block);
    {
        memory::Metamodel other(u"other");
        model.plant(b1, m.boss, single(other.addClass(u"Other")));
    }
    EXPECT_EQ(access::read(b1, m.boss).getMeta().getType()->getQualifiedName(), u"other::Other");
}

}  // namespace
}  // namespace nuv::zero::test
