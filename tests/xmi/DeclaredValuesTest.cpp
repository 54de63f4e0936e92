#include <gtest/gtest.h>

#include "tests/xmi/ReaderFixture.h"
#include "xmi/AttributeValue.h"

namespace nuv::zero::xmi::test {
namespace {

const std::string color =
    R"(<eClassifiers xsi:type="ecore:EEnum" name="Color"><eLiterals name="red"/>)"
    R"(<eLiterals name="green" value="1" literal="GREEN"/></eClassifiers>)";

LoadedMetamodel lamps() {
    return metamodelOf(
        eClass("Lamp",
               attribute("name") + attribute("color", "#//Color") + attribute("isOn", "EBoolean") +
                   attribute("watts", "EInt", R"(defaultValueLiteral="60")") +
                   attribute("level", "EInt", R"(unsettable="true" lowerBound="1")") +
                   attribute("mark", "EString", R"(defaultValueLiteral="" transient="true")")) +
        color);
}

struct DeclaredValues : testing::Test {
    meta::Property property(std::u16string_view called) const {
        return metamodel.findClass("urn:p", "Lamp")->getProperty(called);
    }
    const DataType& type(std::u16string_view called) const {
        return *metamodel.dataType(property(called));
    }
    LoadedMetamodel metamodel = lamps();
};

TEST_F(DeclaredValues, EnumerationHoldsItsLiterals) {
    EXPECT_EQ(type(u"color").kind(), DataType::Kind::Enumeration);
    EXPECT_EQ(type(u"color").qualifiedName(), "p::Color");
    EXPECT_TRUE(type(u"color").holds("red"));
    EXPECT_TRUE(type(u"color").holds("GREEN"));
    EXPECT_TRUE(type(u"color").holds("green"));
    EXPECT_FALSE(type(u"color").holds("PURPLE"));
    EXPECT_FALSE(type(u"color").holds(""));
}

TEST_F(DeclaredValues, BooleansAndIntegersHoldTheirs) {
    EXPECT_TRUE(type(u"isOn").holds("true"));
    EXPECT_TRUE(type(u"isOn").holds("0"));
    EXPECT_FALSE(type(u"isOn").holds("yes"));
    EXPECT_TRUE(type(u"watts").holds(" +7 "));
    EXPECT_TRUE(type(u"watts").holds("*"));
    EXPECT_FALSE(type(u"watts").holds("7.5"));
    EXPECT_FALSE(type(u"watts").holds("9223372036854775808"));
    EXPECT_TRUE(type(u"name").holds("anything"));
}

TEST_F(DeclaredValues, DeclarationsAreKept) {
    EXPECT_EQ(metamodel.declaration(property(u"watts")).defaultText, "60");
    EXPECT_EQ(metamodel.declaration(property(u"mark")).defaultText, "");
    EXPECT_TRUE(metamodel.declaration(property(u"mark")).isTransient);
    EXPECT_TRUE(metamodel.declaration(property(u"level")).isUnsettable);
    EXPECT_TRUE(metamodel.declaration(property(u"level")).isRequired());
    EXPECT_FALSE(metamodel.declaration(property(u"name")).defaultText);
}

TEST_F(DeclaredValues, WhatNobodySetIsReadAsDeclared) {
    const LoadedModel model = modelOf(metamodel, root("Lamp", R"(watts="60" level="0")"));
    const auto told = [&](std::u16string_view called) {
        const AttributeValue value =
            AttributeValue::of(metamodel, model.roots().front(), property(called));
        return value.text.value_or("nothing") + (value.isSet ? " set" : "");
    };
    EXPECT_EQ(told(u"name"), "nothing");
    EXPECT_EQ(told(u"color"), "red");
    EXPECT_EQ(told(u"isOn"), "false");
    EXPECT_EQ(told(u"watts"), "60");
    EXPECT_EQ(told(u"level"), "0 set");
    EXPECT_EQ(told(u"mark"), "");
}

TEST_F(DeclaredValues, WhatTheFileSaysIsSet) {
    const LoadedModel model =
        modelOf(metamodel, root("Lamp", R"(watts="40" color="GREEN" name="n")"));
    const auto told = [&](std::u16string_view called) {
        const AttributeValue value =
            AttributeValue::of(metamodel, model.roots().front(), property(called));
        return value.text.value_or("nothing") + (value.isSet ? " set" : "");
    };
    EXPECT_EQ(told(u"name"), "n set");
    EXPECT_EQ(told(u"color"), "GREEN set");
    EXPECT_EQ(told(u"watts"), "40 set");
    EXPECT_EQ(told(u"level"), "0");
}

TEST(DerivedId, IsOneThatNoFileHolds) {
    const LoadedMetamodel metamodel = metamodelOf(
        eClass("A", attribute("u", "EString", R"(iD="true" derived="true")")) +
        eClass("B", attribute("i", "EString", R"(iD="true")"), R"(eSuperTypes="#//A")") +
        eClass("C"));
    EXPECT_TRUE(metamodel.hasDerivedId(metamodel.findClass("urn:p", "A")));
    EXPECT_FALSE(metamodel.hasDerivedId(metamodel.findClass("urn:p", "B")));
    EXPECT_FALSE(metamodel.hasDerivedId(metamodel.findClass("urn:p", "C")));
}

}  // namespace
}  // namespace nuv::zero::xmi::test
