#include "model/memory/Model.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <string>
#include <vector>

#include "model/memory/MessageException.h"
#include "tests/model/Blocks.h"

namespace nuv::zero::test {
namespace {

using Texts = std::vector<std::u16string>;
using Numbers = std::vector<std::int64_t>;

struct ModelTest : BlocksModel {
    template <class T>
    T held(const ModelElement& element, const meta::Property& property) {
        return std::get<T>(access::read(element, property).content());
    }
    bool isSet(const ModelElement& element, const meta::Property& property) {
        return access::read(element, property).isSet();
    }
};

TEST_F(ModelTest, CountsTheElementsMade) {
    EXPECT_EQ(model.size(), 4U);
    EXPECT_EQ(memory::Model().size(), 0U);
}

TEST_F(ModelTest, MakesElementsOfAClassWithOrWithoutAName) {
    EXPECT_EQ(b1->getClass(), m.block);
    EXPECT_EQ(access::toString(access::read(b1, m.name)), u"b1");
    EXPECT_FALSE(isSet(model.create(m.block), m.name));
}

TEST_F(ModelTest, NeverSetReadsAsUnsetOrAsAnEmptyCollectionOfTheDeclaredType) {
    EXPECT_FALSE(isSet(b1, m.boss));
    EXPECT_FALSE(isSet(p1, m.size));
    EXPECT_EQ(elementsOf(b1, m.ports), Elements{});
    EXPECT_EQ(held<Texts>(b1, m.tags), Texts{});
    EXPECT_EQ(held<Numbers>(b1, m.sizes), Numbers{});
}

TEST_F(ModelTest, SetsAndReplacesSingleValues) {
    model.set(b1, m.boss, b2);
    EXPECT_EQ(elementOf(b1, m.boss), b2);
    model.set(b1, m.boss, b1);
    EXPECT_EQ(elementOf(b1, m.boss), b1);
    model.set(p1, m.size, 7);
    EXPECT_EQ(held<std::int64_t>(p1, m.size), 7);
    model.set(b1, m.name, u"other");
    EXPECT_EQ(access::toString(access::read(b1, m.name)), u"other");
}

TEST_F(ModelTest, ASingleValueMayHoldNoElementAndIsSetThen) {
    model.set(b1, m.boss, b2);
    model.set(b1, m.boss, ModelElement());
    EXPECT_TRUE(isSet(b1, m.boss));
    EXPECT_FALSE(elementOf(b1, m.boss));
}

TEST_F(ModelTest, SetsWholeCollections) {
    model.set(b1, m.ports, Elements{p2, p1, p2});
    EXPECT_EQ(elementsOf(b1, m.ports), (Elements{p2, p1, p2}));
    model.set(b1, m.ports, Elements{});
    EXPECT_EQ(elementsOf(b1, m.ports), Elements{});
    model.set(b1, m.tags, Texts{u"x", u"y"});
    EXPECT_EQ(held<Texts>(b1, m.tags), (Texts{u"x", u"y"}));
    model.set(b1, m.sizes, Numbers{1, -2});
    EXPECT_EQ(held<Numbers>(b1, m.sizes), (Numbers{1, -2}));
}

TEST_F(ModelTest, AddsToCollectionsInOrder) {
    model.add(b1, m.ports, p1);
    model.add(b1, m.ports, p2);
    model.add(b1, m.ports, p1);
    EXPECT_EQ(elementsOf(b1, m.ports), (Elements{p1, p2, p1}));
    model.add(b1, m.tags, u"x");
    model.add(b1, m.tags, u"y");
    EXPECT_EQ(held<Texts>(b1, m.tags), (Texts{u"x", u"y"}));
    model.add(b1, m.sizes, 1);
    model.add(b1, m.sizes, 2);
    EXPECT_EQ(held<Numbers>(b1, m.sizes), (Numbers{1, 2}));
}

TEST_F(ModelTest, UnsetLeavesACollectionWithoutPayloadAndClearLeavesItEmpty) {
    model.add(b1, m.ports, p1);
    model.unset(b1, m.ports);
    EXPECT_FALSE(isSet(b1, m.ports));
    EXPECT_THROW(elementsOf(b1, m.ports), CannotCastIncompatibleTypes);
    model.clear(b1, m.ports);
    EXPECT_EQ(elementsOf(b1, m.ports), Elements{});
    model.unset(b1, m.ports);
    model.add(b1, m.ports, p2);
    EXPECT_EQ(elementsOf(b1, m.ports), Elements{p2});
}

TEST_F(ModelTest, UnsetAndClearBothLeaveASingleValueUnset) {
    for (const auto& empty : {&memory::Model::unset, &memory::Model::clear}) {
        model.set(b1, m.boss, b2);
        (model.*empty)(b1, m.boss);
        EXPECT_FALSE(isSet(b1, m.boss));
        EXPECT_FALSE(elementOf(b1, m.boss));
    }
}

TEST_F(ModelTest, PlantsAnyValueAndReplacesItByACheckedOne) {
    model.plant(b1, m.boss, many(m.integer, Numbers{1}));
    const Value planted = access::read(b1, m.boss);
    EXPECT_TRUE(planted.getMeta().isMany());
    EXPECT_EQ(planted.getMeta().getType(), m.integer);
    EXPECT_EQ(std::get<Numbers>(planted.content()), Numbers{1});
    model.set(b1, m.boss, b2);
    EXPECT_EQ(elementOf(b1, m.boss), b2);

    model.plant(b1, m.ports, many(m.port, Elements{p1, {}}));
    EXPECT_EQ(elementsOf(b1, m.ports), (Elements{p1, {}}));
    EXPECT_EQ(errorOf([&] { model.add(b1, m.ports, p2); }),
              "The property Block.ports of Block'b1' cannot hold Port'p2' as well, because what it "
              "holds was planted; set or clear it first.");
}

TEST_F(ModelTest, RefersToElementsOfOtherModelsAndToMetaObjects) {
    memory::Model other;
    const ModelElement far = other.create(m.block, u"far");
    model.set(b1, m.boss, far);
    EXPECT_EQ(elementOf(b1, m.boss), far);

    const meta::Property type = m.metamodel.addProperty(m.block, u"type", meta::Class::metaClass());
    const meta::Property any = m.metamodel.addProperty(m.block, u"any", ModelElement::metaClass());
    model.set(b1, type, m.port);
    model.set(b1, any, m.ports);
    EXPECT_EQ(elementOf(b1, type), ModelElement(m.port));
    EXPECT_EQ(elementOf(b1, any), ModelElement(m.ports));
    EXPECT_NE(errorOf([&] { model.set(b1, type, b2); }), "") << "an ordinary element is no class";
}

TEST_F(ModelTest, RefusesNullAndForeignElements) {
    memory::Model other;
    const ModelElement far = other.create(m.block, u"far");
    EXPECT_EQ(errorOf([&] { model.set({}, m.boss, b1); }),
              "The property Block.boss cannot be set on a null element.");
    EXPECT_EQ(errorOf([&] { model.set(far, m.boss, b1); }),
              "The property Block.boss cannot be set on Block'far', because that element is of "
              "another model.");
    EXPECT_EQ(errorOf([&] { model.set(b1, {}, b1); }),
              "A null property cannot be set on Block'b1'.");
    EXPECT_EQ(errorOf([&] { model.create({}); }), "An element cannot be made of a null class.");
    EXPECT_EQ(errorOf([&] { model.create({}, u"x"); }),
              "An element 'x' cannot be made of a null class.");
}

TEST_F(ModelTest, RefusesAPropertyThatTheClassLacks) {
    EXPECT_EQ(errorOf([&] { model.add(p1, m.ports, p2); }),
              "The property Block.ports cannot be set on Port'p1', because the class Port does not "
              "have it.");
    EXPECT_NE(errorOf([&] { model.plant(p1, m.ports, {}); }), "");
    EXPECT_NE(errorOf([&] { model.unset(p1, m.ports); }), "");
    EXPECT_NE(errorOf([&] { model.clear(p1, m.ports); }), "");
}

TEST_F(ModelTest, RefusesValuesOfAnotherType) {
    const auto refusal = [](const char* property, const char* value, const char* type) {
        return std::string("The property ") + property + " cannot hold " + value +
               ", because its type is " + type + ".";
    };
    EXPECT_EQ(errorOf([&] { model.set(b1, m.boss, p1); }),
              refusal("Block.boss of Block'b1'", "Port'p1'", "Block"));
    EXPECT_EQ(errorOf([&] { model.set(b1, m.boss, u"x"); }),
              refusal("Block.boss of Block'b1'", "'x'", "Block"));
    EXPECT_EQ(errorOf([&] { model.set(b1, m.boss, 5); }),
              refusal("Block.boss of Block'b1'", "5", "Block"));
    EXPECT_EQ(errorOf([&] { model.set(p1, m.size, ModelElement()); }),
              refusal("Port.size of Port'p1'", "null", "Integer"));
    EXPECT_EQ(errorOf([&] { model.add(b1, m.tags, 5); }),
              refusal("Block.tags of Block'b1'", "5", "String"));
    EXPECT_EQ(errorOf([&] {
                  model.set(b1, m.ports, Elements{p1, b2});
              }),
              refusal("Block.ports of Block'b1'", "Block'b2'", "Port"));
    EXPECT_EQ(errorOf([&] { model.set(b1, m.ports, Texts{}); }),
              refusal("Block.ports of Block'b1'", "a list of texts", "Port"));
    EXPECT_EQ(errorOf([&] { model.set(b1, m.tags, Elements{}); }),
              refusal("Block.tags of Block'b1'", "a list of elements", "String"));
    EXPECT_EQ(errorOf([&] { model.set(b1, m.tags, Numbers{1}); }),
              refusal("Block.tags of Block'b1'", "a list of integers", "String"));
}

TEST_F(ModelTest, RefusesASingleValueForACollectionAndTheReverse) {
    EXPECT_EQ(errorOf([&] { model.set(b1, m.ports, p1); }),
              "The property Block.ports of Block'b1' cannot hold Port'p1' as a single value, "
              "because it holds a collection.");
    EXPECT_EQ(errorOf([&] { model.set(b1, m.boss, Elements{b2}); }),
              "The property Block.boss of Block'b1' cannot hold a collection, because it holds a "
              "single value.");
    EXPECT_EQ(errorOf([&] { model.add(b1, m.boss, b2); }),
              "The property Block.boss of Block'b1' cannot hold Block'b2' as one more value, "
              "because it holds a single value.");
}

TEST_F(ModelTest, RefusesANullEntryAndChangesNothing) {
    model.add(b1, m.ports, p1);
    const std::string refusal =
        "The property Block.ports of Block'b1' cannot hold a null entry, because the entries of a "
        "collection are elements.";
    EXPECT_EQ(errorOf([&] { model.add(b1, m.ports, ModelElement()); }), refusal);
    EXPECT_EQ(errorOf([&] { model.set(b1, m.ports, Elements{p2, {}}); }), refusal);
    EXPECT_EQ(elementsOf(b1, m.ports), Elements{p1});
}

TEST_F(ModelTest, RefusesMoreValuesThanTheUpperBound) {
    const meta::Property pair = m.metamodel.addProperty(m.block, u"pair", m.port, 2);
    model.set(b1, pair, Elements{p1, p2});
    EXPECT_EQ(errorOf([&] { model.add(b1, pair, p1); }),
              "The property Block.pair of Block'b1' cannot hold 3 values, because its upper bound "
              "is 2.");
    EXPECT_NE(errorOf([&] { model.set(b1, pair, Elements{p1, p1, p1}); }), "");
    EXPECT_EQ(elementsOf(b1, pair), (Elements{p1, p2}));
}

TEST_F(ModelTest, RefusesANameForAnElementWithoutAnyAndMakesNone) {
    const meta::Class nameless = m.metamodel.addClass(u"Nameless");
    const meta::Class numbered = m.metamodel.addClass(u"Numbered");
    m.metamodel.addProperty(numbered, u"name", m.integer);
    EXPECT_EQ(errorOf([&] { model.create(nameless, u"x"); }),
              "An element of the class Nameless cannot have the name 'x', because the class has no "
              "property called 'name' that holds one text.");
    EXPECT_NE(errorOf([&] { model.create(numbered, u"x"); }), "");
    EXPECT_EQ(model.size(), 4U);
}

TEST_F(ModelTest, RefusesANameWhereNamesAreACollection) {
    const meta::Class crowd = m.metamodel.addClass(u"Crowd");
    m.metamodel.addProperty(crowd, u"name", meta::StandardTypes::stringMeta(), memory::unbounded);
    const std::size_t before = model.size();
    EXPECT_THROW(model.create(crowd, u"c"), memory::ModelError);
    EXPECT_EQ(model.size(), before);
}

TEST_F(ModelTest, UpperBoundsBelowZeroAreNoLimitAndZeroIsOne) {
    for (const int bound : {INT_MIN, -2}) {
        const meta::Property many = m.metamodel.addProperty(m.block, u"many", m.port, bound);
        model.set(b1, many, Elements{p1, p2});
        model.add(b1, many, p1);
        EXPECT_EQ(elementsOf(b1, many), (Elements{p1, p2, p1}));
    }
    const meta::Property none = m.metamodel.addProperty(m.block, u"none", m.port, 0);
    EXPECT_EQ(errorOf([&] { model.add(b1, none, p1); }),
              "The property Block.none of Block'b1' cannot hold 1 values, because its upper bound "
              "is 0.");
    model.set(b1, none, Elements{});
    EXPECT_EQ(elementsOf(b1, none), Elements{});
}

// A moved-from model refused everything.
TEST_F(ModelTest, IsEmptyAndUsableAfterItWasMovedFrom) {
    memory::Model other(std::move(model));
    EXPECT_EQ(other.size(), 4U);
    EXPECT_EQ(model.size(), 0U);
    EXPECT_EQ(errorOf([&] { model.set(b1, m.boss, b2); }),
              "The property Block.boss cannot be set on Block'b1', because that element is of "
              "another model.");
    const ModelElement fresh = model.create(m.block);
    model.set(fresh, m.boss, fresh);
    EXPECT_EQ(elementOf(fresh, m.boss), fresh);
    other.set(b1, m.boss, b2);
    model = std::move(other);
    EXPECT_EQ(elementOf(b1, m.boss), b2);
    EXPECT_FALSE(elementOf(fresh, m.boss)) << "its model is gone";
    memory::Model& alias = model;
    model = std::move(alias);
    EXPECT_EQ(model.size(), 4U);
    EXPECT_EQ(elementOf(b1, m.boss), b2);
}

// Braces around one element were a single value, which a collection refuses; empty braces were the
// number 0.
TEST_F(ModelTest, BracesAreCollectionsHoweverFewValuesStandInThem) {
    model.set(b1, m.ports, {p1});
    EXPECT_EQ(elementsOf(b1, m.ports), Elements{p1});
    model.set(b1, m.ports, {p1, p2});
    EXPECT_EQ(elementsOf(b1, m.ports), (Elements{p1, p2}));
    model.set(b1, m.ports, {});
    EXPECT_EQ(elementsOf(b1, m.ports), Elements{});
    model.set(b1, m.tags, {u"x"});
    EXPECT_EQ(held<Texts>(b1, m.tags), Texts{u"x"});
    model.set(b1, m.tags, {std::u16string(u"x"), std::u16string(u"y")});
    EXPECT_EQ(held<Texts>(b1, m.tags), (Texts{u"x", u"y"}));
    model.set(b1, m.tags, {});
    EXPECT_EQ(held<Texts>(b1, m.tags), Texts{});
    model.set(b1, m.sizes, {5});
    EXPECT_EQ(held<Numbers>(b1, m.sizes), Numbers{5});
    model.set(b1, m.sizes, {std::int64_t{5}, std::int64_t{6}});
    EXPECT_EQ(held<Numbers>(b1, m.sizes), (Numbers{5, 6}));
    model.set(b1, m.sizes, {});
    EXPECT_EQ(held<Numbers>(b1, m.sizes), Numbers{});
}

TEST_F(ModelTest, BracesAreRefusedWhereASingleValueIsHeld) {
    model.set(b1, m.boss, b2);
    const std::string refusal =
        "The property Block.boss of Block'b1' cannot hold a collection, because it holds a single "
        "value.";
    EXPECT_EQ(errorOf([&] { model.set(b1, m.boss, {b2}); }), refusal);
    EXPECT_EQ(errorOf([&] { model.set(b1, m.boss, {}); }), refusal);
    EXPECT_NE(errorOf([&] { model.set(p1, m.size, {}); }), "");
    EXPECT_NE(errorOf([&] { model.set(p1, m.size, {1}); }), "");
    EXPECT_NE(errorOf([&] { model.set(b1, m.name, {u"x"}); }), "");
    EXPECT_EQ(elementOf(b1, m.boss), b2);
}

TEST_F(ModelTest, HoldsNumbersOfEverySize) {
    for (const unsigned bits : {0U, 1U, 27U, 28U, 29U, 31U, 59U, 60U, 61U, 62U}) {
        for (const std::int64_t off : {-1, 0, 1}) {
            for (const std::int64_t sign : {-1, 1}) {
                const std::int64_t number = sign * ((std::int64_t{1} << bits) + off);
                model.set(p1, m.size, number);
                EXPECT_EQ(held<std::int64_t>(p1, m.size), number);
            }
        }
    }
    for (const std::int64_t number : {INT64_MIN, INT64_MAX}) {
        model.set(p1, m.size, number);
        EXPECT_EQ(held<std::int64_t>(p1, m.size), number);
    }
}

TEST_F(ModelTest, HoldsTextsOfEveryLengthAndUnit) {
    for (std::size_t length = 0; length < 20; ++length) {
        for (const char16_t unit : {u'\0', u'a', u'\xff', u'\x100', u'\xd800', u'\xffff'}) {
            std::u16string text(length, u'x');
            if (length > 0) text[length / 2] = unit;
            if (length > 1) text.back() = unit;
            model.set(b1, m.name, text);
            EXPECT_TRUE(isSet(b1, m.name));
            EXPECT_EQ(held<std::u16string>(b1, m.name), text);
            EXPECT_EQ(access::toString(access::read(b1, m.name)), text);
        }
    }
}

}  // namespace
}  // namespace nuv::zero::test
