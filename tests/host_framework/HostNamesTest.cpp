#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "tests/host_framework/HostLines.h"
#include "tests/host_framework/HostNullWatch.h"
#include "tests/host_framework/HostWorld.h"
#include "traversal/ClassHierarchyComparator.h"
#include "traversal/Traversal.h"

/// Names of a host, which are compared as texts, whatever type they have there.
namespace {

using nuv::zero::ModelElement;
using nuv::zero::meta::Class;
using nuv::zero::meta::Property;
using namespace nuv::zero::traversal;

using Lines = std::vector<std::string>;

class HostNames : public testing::Test {
  protected:
    host::World world;
    const ClassHierarchyComparator less{};
    host::NullWatch watch;
};

TEST_F(HostNames, RightNameIsFetchedBeforeTheLeftOne) {
    const Class a = world.addClass(u"A");
    const Class b = world.addClass(u"B");
    EXPECT_TRUE(less(a, b));
    EXPECT_EQ(host::Calls::all().qualifiedNames, (Lines{"B", "A"}));
}

TEST_F(HostNames, NoNameIsFetchedOfAClassAndItselfNorOfASubclass) {
    const Class base = world.addClass(u"A");
    const Class derived = world.addClass(u"B", base);
    EXPECT_FALSE(less(base, Class(base)));
    EXPECT_TRUE(less(derived, base));
    EXPECT_EQ(host::Calls::all().qualifiedNames, Lines{});
}

// A host whose names are pointers had their addresses compared.
TEST_F(HostNames, ClassesAreOrderedByTextWhereverTheTextStands) {
    // Wherever two names stand, exchanging them exchanges the order.
    Class one = world.addClass(u"alpha");
    Class other = world.addClass(u"beta");
    EXPECT_TRUE(less(one, other));
    EXPECT_FALSE(less(other, one));
    std::swap(one->qualifiedName, other->qualifiedName);
    EXPECT_FALSE(less(one, other));
    EXPECT_TRUE(less(other, one));
    one->qualifiedName = other->qualifiedName;
    EXPECT_FALSE(less(one, other) || less(other, one));
}

TEST_F(HostNames, UnitsAreUnsignedAndCodePointsAreNotLookedFor) {
    Class one = world.addClass(u"");
    Class other = world.addClass(u"");
    const auto isBefore = [&](const char16_t* left, const char16_t* right) {
        one->qualifiedName = left;
        other->qualifiedName = right;
        return less(one, other) && !less(other, one);
    };
    EXPECT_TRUE(isBefore(u"z", u"\uFF5E"));
    EXPECT_TRUE(isBefore(u"\U00010000", u"\uFF5E"));
    EXPECT_TRUE(isBefore(u"ab", u"abc"));
}

// A host whose names have a `<` of their own had its properties followed in that order.
TEST_F(HostNames, PropertiesAreFollowedInTheOrderOfTheirTexts) {
    const Class part = world.addClass(u"Part");
    world.addName(part);
    const ModelElement a = world.create(part, u"a");
    Lines expected{"Not an element-[pseudo]-Part'a'"};
    for (const char16_t* name : {u"c", u"a", u"ab", u"b"}) {
        host::World::link(a, world.addSingle(part, name), a);
    }
    for (const char* name : {"a", "ab", "b", "c"}) {
        expected.push_back("Part'a'-[" + std::string(name) + "]-Part'a' (no cascade)");
    }
    EXPECT_EQ(host::linesOf(Spec::subtractiveTraversal()->depthFirst({a})), expected);
}

// A host whose names are pointers had its rules asked in the order of addresses.
TEST_F(HostNames, RulesOfUnrelatedClassesAreAskedInTheOrderOfTheirTexts) {
    const std::vector<Class> classes{world.addClass(u"c"), world.addClass(u"a"),
                                     world.addClass(u"d"), world.addClass(u"b")};
    const Class asked = world.addClass(u"Asked");
    std::string order;
    CompositeMatcher rules(CompositeMatcher::VisitMode::Visit);
    for (const Class& owner : classes) {
        const char name = static_cast<char>(owner->name[0]);
        rules.composeMatcher(
            owner, [&order, name](const Class&) { return order.push_back(name), false; },
            ResultPolicy::Report);
    }
    rules.anyMatches(asked);
    EXPECT_EQ(order, "abcd");
}

}  // namespace
