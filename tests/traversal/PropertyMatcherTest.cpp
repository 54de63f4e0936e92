#include "traversal/PropertyMatcher.h"

#include <gtest/gtest.h>

#include <utility>

#include "tests/support/ModelBuilder.h"
#include "tests/support/Predicates.h"

namespace nuv::zero::traversal {
namespace {

using test::never;

class PropertyMatcherTest : public testing::Test {
  protected:
    test::ModelBuilder m{"Base; Other; Derived < Base; Base.kids -> Base *"};
    Property kids = m["Base.kids"];
};

TEST_F(PropertyMatcherTest, MadeFromAPropertyAcceptsEveryClassAlsoOneWithoutTheProperty) {
    const PropertyMatcher matcher(kids);
    EXPECT_TRUE(matcher.matches(m.type("Base")));
    EXPECT_TRUE(matcher.matches(m.type("Derived")));
    EXPECT_TRUE(matcher.matches(m.type("Other")));
    EXPECT_TRUE(matcher.matches(Class()));
}

TEST_F(PropertyMatcherTest, OwnerIsTheDeclaringClassNotTheOneThatThePropertyWasReachedFrom) {
    const Property reached = access::propertyNamed(m.type("Derived"), u"kids");
    EXPECT_EQ(PropertyMatcher(reached).getOwner(), m.type("Base"));
}

TEST_F(PropertyMatcherTest, NullPropertyHasANullOwner) {
    const PropertyMatcher matcher{Property()};
    EXPECT_FALSE(matcher.getProperty());
    EXPECT_FALSE(matcher.getOwner());
    EXPECT_TRUE(matcher.matches(m.type("Base")));
}

TEST_F(PropertyMatcherTest, StoresAnUnrelatedOwnerWithoutValidation) {
    const PropertyMatcher matcher(kids, never, m.type("Other"));
    EXPECT_EQ(matcher.getProperty(), kids);
    EXPECT_EQ(matcher.getOwner(), m.type("Other"));
    EXPECT_FALSE(matcher.getMatcher()(m.type("Other")));
}

TEST_F(PropertyMatcherTest, NeitherOwnerNorPropertyTakesPartInMatches) {
    EXPECT_FALSE(PropertyMatcher(kids, never, m.type("Base")).matches(m.type("Base")));
    const auto isOther = [other = m.type("Other")](const Class& type) { return type == other; };
    EXPECT_TRUE(PropertyMatcher(kids, isOther, m.type("Base")).matches(m.type("Other")));
}

TEST_F(PropertyMatcherTest, EmptyPredicateIsAcceptedAndFailsWhenAsked) {
    const PropertyMatcher matcher(kids, nullptr, m.type("Base"));
    EXPECT_FALSE(matcher.getMatcher());
    EXPECT_THROW(matcher.matches(m.type("Base")), std::bad_function_call);
}

TEST_F(PropertyMatcherTest, CopiesAndMovesCarryAllThreeFields) {
    const PropertyMatcher original(kids, never, m.type("Other"));
    PropertyMatcher copy(original);
    PropertyMatcher moved(std::move(copy));
    PropertyMatcher assigned{Property()};
    assigned = moved;
    PropertyMatcher moveAssigned{Property()};
    moveAssigned = std::move(moved);
    for (const PropertyMatcher& matcher : {original, assigned, moveAssigned}) {
        EXPECT_EQ(matcher.getProperty(), kids);
        EXPECT_EQ(matcher.getOwner(), m.type("Other"));
        EXPECT_FALSE(matcher.matches(m.type("Base")));
    }
}

TEST_F(PropertyMatcherTest, PropertyConvertsImplicitly) {
    const PropertyMatcher matcher = kids;
    EXPECT_EQ(matcher.getProperty(), kids);
}

}  // namespace
}  // namespace nuv::zero::traversal
