#include "model/memory/Value.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "model/memory/MessageException.h"
#include "tests/model/Blocks.h"

namespace nuv::zero::test {
namespace {

struct ValueTest : BlocksModel {
    Value planted(memory::PlantedValue value) {
        model.plant(b1, m.ports, std::move(value));
        return access::read(b1, m.ports);
    }

    /// The type that a conversion names as it fails.
    template <class Conversion>
    static std::u16string failureOf(const Value& value, Conversion conversion) {
        try {
            (value.*conversion)();
        } catch (const CannotCastIncompatibleTypes& failure) {
            return failure.arguments().at(0);
        }
        return u"no failure";
    }
    static std::u16string elementFailure(const Value& value) {
        return failureOf(value, &Value::asElement);
    }
    static std::u16string elementsFailure(const Value& value) {
        return failureOf(value, &Value::asElements);
    }
    static std::u16string stringFailure(const Value& value) {
        return failureOf(value, &Value::asString);
    }
};

TEST_F(ValueTest, TellsItsTypeAndMultiplicity) {
    const Value ports = access::read(b1, m.ports);
    EXPECT_EQ(ports.getMeta().getType(), m.port);
    EXPECT_TRUE(ports.getMeta().isMany());
    EXPECT_FALSE(ports.getMeta().isSingle());
    const Value boss = access::read(b1, m.boss);
    EXPECT_EQ(boss.getMeta().getType(), m.block);
    EXPECT_TRUE(boss.getMeta().isSingle());
}

TEST_F(ValueTest, IsSetWhenItHoldsSomethingAnEmptyCollectionIncluded) {
    EXPECT_TRUE(access::read(b1, m.ports).isSet());
    EXPECT_FALSE(access::read(b1, m.boss).isSet());
    EXPECT_FALSE(Value().isSet());
    EXPECT_FALSE(planted(many(m.port)).isSet());
    EXPECT_TRUE(planted(single(m.port, ModelElement())).isSet());
}

TEST_F(ValueTest, ConvertsASingleValueOfAClassToItsElement) {
    EXPECT_EQ(planted(single(m.port, p1)).asElement(), p1);
    EXPECT_EQ(planted(single(m.port, ModelElement())).asElement(), ModelElement());
    EXPECT_EQ(planted(single(m.port)).asElement(), ModelElement());
}

TEST_F(ValueTest, FailsToConvertAnythingElseToAnElement) {
    EXPECT_EQ(elementFailure(planted(many(m.port, Elements{p1}))), u"m::Port");
    EXPECT_EQ(elementFailure(planted(many(m.port))), u"m::Port");
    EXPECT_EQ(elementFailure(planted(single(m.integer, std::int64_t{1}))), u"m::Integer");
    EXPECT_EQ(elementFailure(planted(single(m.integer))), u"m::Integer");
    EXPECT_EQ(elementFailure(planted(single(m.port, std::u16string(u"x")))), u"m::Port");
    EXPECT_EQ(elementFailure(planted(single({}, p1))), u"");
    EXPECT_EQ(elementFailure(Value()), u"");
}

TEST_F(ValueTest, ConvertsACollectionOfAClassToItsElements) {
    EXPECT_EQ(planted(many(m.port, Elements{p1, {}, b1})).asElements(), (Elements{p1, {}, b1}));
    EXPECT_EQ(planted(many(m.port, Elements{})).asElements(), Elements{});
}

TEST_F(ValueTest, FailsToConvertAnythingElseToElements) {
    EXPECT_EQ(elementsFailure(planted(many(m.port))), u"m::Port") << "no payload";
    EXPECT_EQ(elementsFailure(planted(single(m.port, p1))), u"m::Port");
    EXPECT_EQ(elementsFailure(planted(single(m.port, Elements{p1}))), u"m::Port");
    EXPECT_EQ(elementsFailure(planted(many(m.integer, Elements{}))), u"m::Integer");
    EXPECT_EQ(elementsFailure(planted(many(m.port, std::vector<std::int64_t>{}))), u"m::Port");
    EXPECT_EQ(elementsFailure(planted(many(m.port, p1))), u"m::Port");
    EXPECT_EQ(elementsFailure(planted(many({}, Elements{}))), u"");
    EXPECT_EQ(elementsFailure(access::read(b1, m.tags)), u"String") << "empty, but of texts";
}

TEST_F(ValueTest, ConvertsASingleValueOfTheStandardStringTypeToItsText) {
    const meta::PrimitiveType& string = meta::StandardTypes::stringMeta();
    EXPECT_EQ(planted(single(string, std::u16string(u"x"))).asString(), u"x");
    EXPECT_EQ(planted(single(string)).asString(), u"");
}

TEST_F(ValueTest, FailsToConvertAnythingElseToAText) {
    const meta::PrimitiveType& string = meta::StandardTypes::stringMeta();
    const meta::PrimitiveType otherString =
        m.metamodel.addPrimitive(u"m::String", memory::TypeObject::Kind::Text);
    const std::u16string x = u"x";
    EXPECT_EQ(stringFailure(planted(many(string, std::vector<std::u16string>{x}))), u"String");
    EXPECT_EQ(stringFailure(planted(single(otherString, x))), u"m::String");
    EXPECT_EQ(stringFailure(planted(single(otherString))), u"m::String") << "unset as well";
    EXPECT_EQ(stringFailure(planted(single(m.port, p1))), u"m::Port");
    EXPECT_EQ(stringFailure(planted(single(string, std::int64_t{1}))), u"String");
    EXPECT_EQ(stringFailure(Value()), u"");
}

TEST_F(ValueTest, KeepsWhatItHoldsWhenTheModelIsEdited) {
    model.set(b1, m.ports, Elements{p1});
    const Value before = access::read(b1, m.ports);
    const Value copy = before;
    model.add(b1, m.ports, p2);
    EXPECT_EQ(before.asElements(), Elements{p1});
    EXPECT_EQ(copy.asElements(), Elements{p1});
    EXPECT_EQ(elementsOf(b1, m.ports), (Elements{p1, p2}));
    model.clear(b1, m.ports);
    EXPECT_EQ(before.asElements(), Elements{p1});
}

TEST_F(ValueTest, KeepsWhatItHoldsWhenTheModelIsGone) {
    Value text;
    Value list;
    {
        memory::Model shortLived;
        const ModelElement block = shortLived.create(m.block, u"gone");
        shortLived.add(block, m.ports, shortLived.create(m.port));
        text = access::read(block, m.name);
        list = access::read(block, m.ports);
    }
    EXPECT_EQ(text.asString(), u"gone");
    EXPECT_EQ(list.asElements().at(0)->getClass(), m.port);
}

}  // namespace
}  // namespace nuv::zero::test
