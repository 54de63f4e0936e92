#include "traversal/internal/Dumps.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/ModelBuilder.h"

namespace nuv::zero::traversal::internal {
namespace {

class DumpsTest : public testing::Test {
  protected:
    test::ModelBuilder m{"Block; Port < Block; Block.ports -> Port *",
                         "b1 : Block; p1 : Port; b1.ports = p1"};
    meta::Property name = access::propertyNamed(m.type("Block"), u"name");
};

TEST_F(DumpsTest, NullElementIsNotAnElement) {
    EXPECT_EQ(dumpElement(ModelElement()), "Not an element");
}

TEST_F(DumpsTest, ElementIsItsClassAndItsNameInApostrophes) {
    EXPECT_EQ(dumpElement(m("b1")), "Block'b1'");
    EXPECT_EQ(dumpElement(m("p1")), "Port'p1'");
}

TEST_F(DumpsTest, UnsetNameGivesTwoAdjacentApostrophes) {
    m.model.unset(m("b1"), name);
    EXPECT_EQ(dumpElement(m("b1")), "Block''");
}

TEST_F(DumpsTest, ClassWithoutANamePropertyGivesTwoAdjacentApostrophes) {
    const meta::Class nameless = m.metamodel.addClass(u"Nameless");
    EXPECT_EQ(dumpElement(m.model.create(nameless)), "Nameless''");
}

TEST_F(DumpsTest, LinkIsSourcePropertyAndTarget) {
    EXPECT_EQ(dumpLink(Link(m("b1"), m("p1"), m["Block.ports"])), "Block'b1'-[ports]-Port'p1'");
}

TEST_F(DumpsTest, PseudoLinkSaysSo) {
    EXPECT_EQ(dumpLink(Link(ModelElement(), m("b1"), meta::Property())),
              "Not an element-[pseudo]-Block'b1'");
    EXPECT_EQ(dumpLink(Link()), "Not an element-[pseudo]-Not an element");
}

TEST_F(DumpsTest, CascadeFlagDoesNotShow) {
    Link link(m("b1"), m("p1"), m["Block.ports"]);
    link.setNoCascade();
    EXPECT_EQ(dumpLink(link), "Block'b1'-[ports]-Port'p1'");
}

TEST_F(DumpsTest, NamesOutsideAsciiAreUtf8) {
    const meta::Class type = m.metamodel.addClass(u"Gr\u00F6\u00DFe", {m.type("Block")});
    const ModelElement element = m.model.create(type, u"\u20AC\U0001F600");
    const meta::Property property =
        m.metamodel.addProperty(type, u"\u00E9", type, 1, memory::PropertyFlags::Association);
    EXPECT_EQ(dumpLink(Link(element, element, property)),
              "Gr\xC3\xB6\xC3\x9F"
              "e'\xE2\x82\xAC\xF0\x9F\x98\x80'-[\xC3\xA9]-Gr\xC3\xB6\xC3\x9F"
              "e'\xE2\x82\xAC\xF0\x9F\x98\x80'");
}

TEST_F(DumpsTest, UnpairedSurrogateBecomesTheReplacementCharacter) {
    m.model.set(m("b1"), name, std::u16string{u'a', static_cast<char16_t>(0xD800), u'b'});
    EXPECT_EQ(dumpElement(m("b1")),
              "Block'a\xEF\xBF\xBD"
              "b'");
}

/// The type that a dump complains about.
template <class Dump>
std::u16string complaintOf(Dump&& dump) {
    try {
        dump();
    } catch (const CannotCastIncompatibleTypes& error) {
        EXPECT_EQ(error.catalog(), "nuv0:messages");
        EXPECT_EQ(error.id(), "CannotCastIncompatibleTypes");
        EXPECT_EQ(error.arguments().size(), 1U);
        return error.arguments().at(0);
    }
    return u"nothing";
}

TEST_F(DumpsTest, NameThatIsNoSingleStringFailsNamingItsType) {
    m.model.plant(m("b1"), name, {m.type("Port"), false, m("p1")});
    EXPECT_EQ(complaintOf([this] { dumpElement(m("b1")); }), u"m::Port");
    m.model.plant(m("b1"), name,
                  {meta::StandardTypes::stringMeta(), true, std::vector<std::u16string>{u"x"}});
    EXPECT_EQ(complaintOf([this] { dumpElement(m("b1")); }), u"String");
}

TEST_F(DumpsTest, UnsetNameOfAnotherTypeFailsAllTheSame) {
    m.model.plant(m("b1"), name, {m.type("Port"), false, {}});
    EXPECT_EQ(complaintOf([this] { dumpElement(m("b1")); }), u"m::Port");
}

TEST_F(DumpsTest, TargetIsDumpedBeforeTheSource) {
    m.model.plant(m("b1"), name, {m.type("Block"), false, {}});
    m.model.plant(m("p1"), name, {m.type("Port"), false, {}});
    EXPECT_EQ(complaintOf([this] { dumpLink(Link(m("b1"), m("p1"), m["Block.ports"])); }),
              u"m::Port");
    EXPECT_EQ(complaintOf([this] { dumpLink(Link(m("b1"), ModelElement(), m["Block.ports"])); }),
              u"m::Block");
}

}  // namespace
}  // namespace nuv::zero::traversal::internal
