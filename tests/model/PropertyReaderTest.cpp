#include "model/memory/PropertyReader.h"

#include <gtest/gtest.h>

#include "tests/model/Readings.h"

namespace nuv::zero::test {
namespace {

using memory::PropertyReader;

Reading read(const PropertyReader& reader, const ModelElement& element,
             const meta::Property& property) {
    return readingOf([&] { return taken(reader.read(element, property)); });
}
/// What a reader that was made for a class gives for an element.
Reading read(const meta::Class& type, const ModelElement& element, const meta::Property& property) {
    return read(PropertyReader(type, property), element, property);
}

struct PropertyReaderTest : testing::Test, BlocksOfAModel {};

TEST_F(PropertyReaderTest, GivesWhatTheElementGivesInEveryState) {
    const auto agreesForAll = [&](const char* state) {
        for (const auto& property : {m.ports, m.boss, m.name, m.tags, m.sizes}) {
            EXPECT_EQ(read(m.block, b1, property), viewed(b1, property)) << state;
        }
    };
    agreesForAll("as it was made");
    model.set(b1, m.ports, Elements{p2, p1});
    model.set(b1, m.boss, b2);
    EXPECT_EQ(read(m.block, b1, m.ports), Reading(Elements{p2, p1}));
    EXPECT_EQ(read(m.block, b1, m.boss), Reading(Elements{b2}));
    agreesForAll("set");
    model.set(b1, m.boss, ModelElement());
    model.unset(b1, m.ports);
    agreesForAll("unset");
    model.plant(b1, m.boss, single(m.integer, std::int64_t{1}));
    model.plant(b1, m.ports, many(m.port, Elements{p1}));
    agreesForAll("ill-typed");
}

TEST_F(PropertyReaderTest, ReadsElementsOfOtherClassesToo) {
    model.set(b1, m.boss, b2);
    const meta::Class special = m.metamodel.addClass(u"Special", {m.named, m.block});
    const ModelElement s1 = model.create(special);
    model.set(s1, m.boss, b1);
    EXPECT_EQ(read(special, b1, m.boss), Reading(Elements{b2}));
    EXPECT_EQ(read(m.block, s1, m.boss), Reading(Elements{b1}));
    EXPECT_EQ(read(m.port, b1, m.boss), Reading(Elements{b2}));
    EXPECT_EQ(read(meta::Class(), b1, m.boss), Reading(Elements{b2}));
    EXPECT_EQ(read(m.block, p1, m.boss), viewed(p1, m.boss)) << "it has no such property";
}

TEST_F(PropertyReaderTest, ReadsElementsOfClassesWhosePropertiesStandElsewhere) {
    const meta::Class both = m.metamodel.addClass(u"Both", {m.port, m.block});
    const ModelElement s1 = model.create(both);
    model.set(s1, m.boss, b1);
    model.set(s1, m.ports, Elements{p2, p1});
    model.set(b1, m.boss, b2);
    EXPECT_EQ(read(m.block, s1, m.boss), Reading(Elements{b1}));
    EXPECT_EQ(read(m.block, s1, m.ports), Reading(Elements{p2, p1}));
    EXPECT_EQ(read(both, b1, m.boss), Reading(Elements{b2}));
    EXPECT_EQ(read(both, b1, m.ports), Reading(Elements{}));
}

TEST_F(PropertyReaderTest, ReadsPropertiesThatWereDeclaredAfterTheElementWasMade) {
    const meta::Property late =
        m.metamodel.addProperty(m.block, u"late", m.block, 1, Blocks::Flags::Association);
    EXPECT_EQ(read(m.block, b1, late), Reading(Elements{}));
    model.set(b1, late, b2);
    EXPECT_EQ(read(m.block, b1, late), Reading(Elements{b2}));
}

TEST_F(PropertyReaderTest, ReadsAPropertyThatItsClassCameToInheritLater) {
    const meta::Class general = m.metamodel.addClass(u"General");
    const meta::Property peer =
        m.metamodel.addProperty(general, u"peer", m.block, 1, Blocks::Flags::Association);
    const PropertyReader reader(m.block, peer);
    EXPECT_EQ(read(reader, b1, peer), Reading(Elements{}));
    m.metamodel.addSuperclass(m.block, general);
    model.set(b1, peer, b2);
    EXPECT_EQ(read(reader, b1, peer), Reading(Elements{b2}));
}

}  // namespace
}  // namespace nuv::zero::test
