#include "traversal/ClassHierarchyComparator.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "tests/support/ModelBuilder.h"

namespace nuv::zero::traversal {
namespace {

const ClassHierarchyComparator less;

/// Two unrelated classes with these qualified names, in both directions.
std::pair<bool, bool> compareNames(const std::u16string& left, const std::u16string& right) {
    memory::Metamodel metamodel(u"m");
    const Class a = metamodel.addClass(u"A", {}, left);
    const Class b = metamodel.addClass(u"B", {}, right);
    return {less(a, b), less(b, a)};
}
constexpr std::pair leftFirst{true, false};
constexpr std::pair equivalent{false, false};

TEST(ClassHierarchyComparatorTest, ClassIsNotLessThanItself) {
    const test::ModelBuilder m("B");
    const Class again = m.type("B");
    EXPECT_FALSE(less(m.type("B"), again));
}

// A null class answers no question, so only a test of identity that comes first can settle this.
TEST(ClassHierarchyComparatorTest, IdentityIsSettledBeforeTheFrameworkIsAsked) {
    EXPECT_FALSE(less(Class(), Class()));
}

TEST(ClassHierarchyComparatorTest, SubclassComesBeforeItsSuperclass) {
    const test::ModelBuilder m("B; A < B; Deep < A");
    EXPECT_EQ(std::pair(less(m.type("A"), m.type("B")), less(m.type("B"), m.type("A"))), leftFirst);
    EXPECT_TRUE(less(m.type("Deep"), m.type("B")));
}

TEST(ClassHierarchyComparatorTest, SuperclassIsComparedByNameAgainstItsSubclass) {
    const test::ModelBuilder m("B; A < B; C < B");
    EXPECT_FALSE(less(m.type("B"), m.type("A")));
    EXPECT_TRUE(less(m.type("B"), m.type("C")));
}

TEST(ClassHierarchyComparatorTest, EachIsLessWhenTheSubclassNameSortsAfterTheSuperclassName) {
    const test::ModelBuilder m("B; D < B");
    EXPECT_TRUE(less(m.type("D"), m.type("B")));
    EXPECT_TRUE(less(m.type("B"), m.type("D")));
}

TEST(ClassHierarchyComparatorTest, UnrelatedClassesOfEqualNamesAreEquivalent) {
    EXPECT_EQ(compareNames(u"same", u"same"), equivalent);
}

TEST(ClassHierarchyComparatorTest, ComparesQualifiedNamesNotNames) {
    const test::ModelBuilder m("Z=a::Z; A=z::A");
    EXPECT_TRUE(less(m.type("Z"), m.type("A")));
    EXPECT_FALSE(less(m.type("A"), m.type("Z")));
}

TEST(ClassHierarchyComparatorTest, ProperPrefixComesFirst) {
    EXPECT_EQ(compareNames(u"ab", u"abc"), leftFirst);
    EXPECT_EQ(compareNames(u"", u"a"), leftFirst);
}

TEST(ClassHierarchyComparatorTest, UnitsAbove7FFFSortAfterEveryAsciiUnit) {
    EXPECT_EQ(compareNames(u"z", u"\uFF5E"), leftFirst);
    EXPECT_EQ(compareNames(u"~", u"\u8000"), leftFirst);
}

// U+10000 is D800 DC00 in UTF-16, which is below FF5E; by code point and in UTF-8 it is above.
TEST(ClassHierarchyComparatorTest, ComparesCodeUnitsNotCodePoints) {
    EXPECT_EQ(compareNames(u"\U00010000", u"\uFF5E"), leftFirst);
}

TEST(ClassHierarchyComparatorTest, UpperCaseSortsBeforeLowerCaseWhateverTheLocale) {
    EXPECT_EQ(compareNames(u"Z", u"a"), leftFirst);
    EXPECT_EQ(compareNames(u"z", u"\u00E4"), leftFirst);
}

TEST(ClassHierarchyComparatorTest, NullClassComesFirst) {
    const test::ModelBuilder m("B");
    EXPECT_TRUE(less(Class(), m.type("B")));
    EXPECT_FALSE(less(m.type("B"), Class()));
}

}  // namespace
}  // namespace nuv::zero::traversal
