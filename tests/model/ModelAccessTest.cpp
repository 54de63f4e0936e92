#include "model/memory/ModelAccess.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "model/Framework.h"
#include "tests/model/Blocks.h"

namespace nuv::zero::test {
namespace {

TEST(ModelAccessTest, TheClassOfANullElementIsANullClassWithoutProperties) {
    const meta::Class& none = access::classOf(ModelElement());
    EXPECT_FALSE(none);
    EXPECT_TRUE(access::allProperties(none).empty());
    EXPECT_FALSE(access::propertyNamed(none, u"name"));
}

TEST(ModelAccessTest, ANullClassHasNoPropertiesAndConformsToNothing) {
    const Blocks m;
    EXPECT_FALSE(access::hasProperty({}, m.ports));
    EXPECT_FALSE(access::hasProperty(m.block, {}));
    EXPECT_FALSE(access::conformsTo({}, m.block));
    EXPECT_FALSE(access::conformsTo(m.block, {}));
    EXPECT_FALSE(access::conformsTo({}, {}));
}

TEST(ModelAccessTest, ANullPropertyHasNoFlagsAndNoOwner) {
    EXPECT_FALSE(access::isAssociation({}));
    EXPECT_FALSE(access::isDerived({}));
    EXPECT_FALSE(access::isComposite({}));
    EXPECT_FALSE(access::owningClass({}));
}

TEST(ModelAccessTest, AnswersWhatTheHandlesKnow) {
    Blocks m;
    m.metamodel.setOpposite(m.ports, m.owner);
    const meta::Property derived =
        m.metamodel.addProperty(m.block, u"d", m.block, 1, memory::PropertyFlags::Derived);
    memory::Model model;
    const ModelElement b1 = model.create(m.block, u"b1");

    EXPECT_EQ(access::classOf(b1), m.block);
    EXPECT_EQ(access::nameOf(m.block), u"Block");
    EXPECT_EQ(access::qualifiedNameOf(m.block), u"m::Block");
    EXPECT_EQ(access::nameOf(m.ports), u"ports");
    EXPECT_EQ(access::allProperties(m.port),
              (std::vector<meta::Property>{m.name, m.owner, m.size}));
    EXPECT_EQ(access::propertyNamed(m.block, u"ports"), m.ports);
    EXPECT_FALSE(access::propertyNamed(m.block, u"nothing"));
    EXPECT_TRUE(access::hasProperty(m.block, m.name));
    EXPECT_TRUE(access::conformsTo(m.block, m.named));
    EXPECT_EQ(access::owningClass(m.ports), m.block);
    EXPECT_EQ(access::oppositeOf(m.ports), m.owner);
    EXPECT_FALSE(access::oppositeOf(m.owner));
    EXPECT_TRUE(access::isComposite(m.ports));
    EXPECT_TRUE(access::isAssociation(m.ports));
    EXPECT_TRUE(access::isDerived(derived));
    EXPECT_FALSE(access::isSingleValued(m.ports));
    EXPECT_TRUE(access::isSingleValued(m.boss));
    EXPECT_EQ(access::toUtf8(u"\u00FC"), "\xC3\xBC");
}

TEST(ModelAccessTest, TheStringTypeComesFromTheRegistry) {
    EXPECT_EQ(meta::internal::getPrimitiveTypeFromMetaRegistry(u"String"),
              meta::StandardTypes::stringMeta());
    EXPECT_FALSE(meta::internal::getPrimitiveTypeFromMetaRegistry(u"string"));
    EXPECT_EQ(meta::StandardTypes::stringMeta()->getQualifiedName(), u"String");
}

TEST(ModelAccessTest, ReadingAPropertyThatTheClassLacksGivesItAsNeverSet) {
    Blocks m;
    memory::Model model;
    const ModelElement p1 = model.create(m.port);
    EXPECT_FALSE(elementOf(p1, m.boss));
    EXPECT_TRUE(elementsOf(p1, m.ports).empty());
    EXPECT_FALSE(
        access::isSet(p1->get({}, ModelElement::Impl::ReflectionPrivateTag::PUBLIC_ACCESS)));
}

}  // namespace
}  // namespace nuv::zero::test
