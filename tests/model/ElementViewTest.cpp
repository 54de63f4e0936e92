#include "model/memory/ElementView.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

#include "tests/model/Readings.h"

namespace nuv::zero::test {
namespace {

using memory::ElementView;

/// The long way: read the value and convert it as the property's multiplicity asks for.
Reading converted(const ModelElement& element, const meta::Property& property) {
    return readingOf([&]() -> Elements {
        const Value value = access::read(element, property);
        if (!access::isSingleValued(property)) return value.asElements();
        if (!value.isSet()) return {};
        const ModelElement single = value.asElement();
        return single ? Elements{single} : Elements{};
    });
}

struct ElementViewTest : testing::Test, BlocksOfAModel {};

TEST_F(ElementViewTest, ShowsTheStoredElementsInOrder) {
    model.set(b1, m.ports, Elements{p2, p1, p2});
    EXPECT_EQ(taken(view(b1, m.ports)), (Elements{p2, p1, p2}));
    model.set(b1, m.boss, b2);
    EXPECT_EQ(taken(view(b1, m.boss)), Elements{b2});
}

TEST_F(ElementViewTest, IsEmptyWhereNothingIsHeld) {
    EXPECT_EQ(view(b1, m.ports).size(), 0U);
    EXPECT_EQ(view(b1, m.boss).size(), 0U);
    EXPECT_EQ(view(p1, m.size).size(), 0U) << "an unset number is no failure";
    model.set(b1, m.boss, ModelElement());
    EXPECT_EQ(view(b1, m.boss).size(), 0U);
    EXPECT_EQ(view(b1, {}).size(), 0U);
    EXPECT_EQ(ElementView().size(), 0U);
}

TEST_F(ElementViewTest, FailsNamingTheTypeWhereThereAreNoElements) {
    model.set(p1, m.size, 1);
    model.unset(b1, m.ports);
    EXPECT_EQ(viewed(p1, m.size), Reading(u"m::Integer"));
    EXPECT_EQ(viewed(b1, m.ports), Reading(u"m::Port"));
    EXPECT_EQ(viewed(b1, m.tags), Reading(u"String"));
    EXPECT_EQ(viewed(b1, m.name), Reading(u"String"));
}

TEST_F(ElementViewTest, AgreesWithReadingAndConvertingWhateverIsStored) {
    const meta::PrimitiveType& string = meta::StandardTypes::stringMeta();
    const std::vector<meta::Type> types = {{}, m.port, m.integer, string};
    const std::vector<memory::Content> contents = {std::monostate(),
                                                   ModelElement(),
                                                   p1,
                                                   Elements{},
                                                   Elements{p1, {}, b2},
                                                   std::u16string(u"x"),
                                                   std::vector<std::u16string>{},
                                                   std::int64_t{1},
                                                   std::vector<std::int64_t>{}};
    for (const auto& property : {m.ports, m.boss, m.name, m.tags, m.sizes}) {
        EXPECT_EQ(viewed(b1, property), converted(b1, property)) << "as it was made";
        model.unset(b1, property);
        EXPECT_EQ(viewed(b1, property), converted(b1, property)) << "unset";
        for (const bool isMany : {false, true}) {
            for (std::size_t type = 0; type < types.size(); ++type) {
                for (const auto& content : contents) {
                    model.plant(b1, property, {types[type], isMany, content});
                    EXPECT_EQ(viewed(b1, property), converted(b1, property))
                        << "type " << type << ", many " << isMany << ", content "
                        << content.index();
                }
            }
        }
        model.clear(b1, property);
        EXPECT_EQ(viewed(b1, property), converted(b1, property)) << "cleared";
    }
}

TEST_F(ElementViewTest, KeepsTheListThatStoodThereWhenTheModelIsEdited) {
    model.set(b1, m.ports, Elements{p1});
    const ElementView before = view(b1, m.ports);
    const ElementView copy = before;
    model.add(b1, m.ports, p2);
    model.add(b1, m.ports, p2);
    EXPECT_EQ(taken(before), Elements{p1});
    EXPECT_EQ(taken(view(b1, m.ports)), (Elements{p1, p2, p2}));
    model.clear(b1, m.ports);
    EXPECT_EQ(taken(copy), Elements{p1});
}

TEST_F(ElementViewTest, CopiesAndMovesShareTheList) {
    model.set(b1, m.ports, Elements{p1, p2});
    ElementView first = view(b1, m.ports);
    ElementView second = first;
    ElementView moved = std::move(first);
    EXPECT_EQ(first.size(), 0U);  // NOLINT(bugprone-use-after-move): moving empties a view
    second.clear();
    EXPECT_EQ(second.size(), 0U);
    second = moved;
    EXPECT_EQ(taken(second), (Elements{p1, p2}));
    second = view(b1, m.boss);
    EXPECT_EQ(second.size(), 0U);
    EXPECT_EQ(taken(moved), (Elements{p1, p2}));
}

TEST_F(ElementViewTest, OutlivesTheModelWithTheListItShares) {
    ElementView last;
    {
        memory::Model shortLived;
        const ModelElement block = shortLived.create(m.block);
        shortLived.add(block, m.ports, shortLived.create(m.port));
        last = view(block, m.ports);
    }
    EXPECT_EQ(taken(last).at(0)->getClass(), m.port);
}

}  // namespace
}  // namespace nuv::zero::test
