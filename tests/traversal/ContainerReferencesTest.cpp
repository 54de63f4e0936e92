#include "traversal/ContainerReferences.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <vector>

#include "tests/support/ModelBuilder.h"
#include "tests/support/WalkLog.h"

namespace nuv::zero::traversal {
namespace {

using test::Lines;
using test::ModelBuilder;

class ContainerReferencesTest : public testing::Test {
  protected:
    static Lines namesOf(const std::vector<PropertyMatcher>& rules) {
        Lines names;
        for (const PropertyMatcher& rule : rules) {
            names.push_back(
                access::toUtf8(access::nameOf(access::owningClass(rule.getProperty()))) + "." +
                access::toUtf8(access::nameOf(rule.getProperty())));
        }
        return names;
    }

    // A port knows its block, which contains it; two blocks know each other as neighbours.
    ModelBuilder m{
        "Block; Port; Plug < Port; Block.ports => Port *; Port.block -> Block; Port.to -> Port *;"
        "Port.from -> Port *; Plug.cover => Port; Port.covered -> Plug; Block.parts => Block *;"
        "Block.part -> Block; Block.ports <> Port.block; Port.to <> Port.from;"
        "Plug.cover <> Port.covered; Block.parts <> Block.part",
        "S : Block; p : Port; q : Plug; r : Port; T : Block; S.parts = T; T.part = S;"
        "S.ports = p; p.block = S; T.ports = q; q.block = T; p.to = q; q.from = p;"
        "q.cover = r; r.covered = q"};
};

TEST_F(ContainerReferencesTest, AreTheOppositesOfContainmentsOnBothSidesOfTheClass) {
    EXPECT_EQ(namesOf(containerReferencesOf(m.type("Port"))),
              (Lines{"Port.block", "Port.covered"}));
    EXPECT_EQ(namesOf(containerReferencesOf(m.type("Block"))), (Lines{"Port.block", "Block.part"}));
}

TEST_F(ContainerReferencesTest, OfASubclassIncludeWhatItInheritsAndItsContainmentsHave) {
    EXPECT_EQ(namesOf(containerReferencesOf(m.type("Plug"))),
              (Lines{"Port.block", "Port.covered"}));
}

TEST_F(ContainerReferencesTest, OfSeveralClassesEachComesOnce) {
    EXPECT_EQ(namesOf(containerReferencesOf(m.metamodel.classes())),
              (Lines{"Port.block", "Block.part", "Port.covered"}));
    EXPECT_EQ(namesOf(containerReferencesOf(std::vector<Class>())), Lines{});
}

TEST_F(ContainerReferencesTest, HoldForEveryClass) {
    for (const PropertyMatcher& rule : containerReferencesOf(m.type("Port"))) {
        EXPECT_EQ(rule.getOwner(), m.type("Port"));
        EXPECT_TRUE(rule.matches(m.type("Block")));
    }
}

TEST_F(ContainerReferencesTest, NullClassIsRefused) {
    EXPECT_THROW(containerReferencesOf(Class()), std::invalid_argument);
    EXPECT_THROW(containerReferencesOf({m.type("Port"), Class()}), std::invalid_argument);
}

// A declaration may name the other end from one side only.
TEST_F(ContainerReferencesTest, OppositesCountFromEitherEnd) {
    for (const bool fromContainment : {true, false}) {
        ModelBuilder half("Box; Box.inner => Box *; Box.outer -> Box");
        const meta::Property inner = half["Box.inner"];
        const meta::Property outer = half["Box.outer"];
        half.metamodel.setOpposite(fromContainment ? inner : outer,
                                   fromContainment ? outer : inner);
        EXPECT_EQ(namesOf(containerReferencesOf(half.type("Box"))), Lines{"Box.outer"});
    }
}

TEST_F(ContainerReferencesTest, WhatNoWalkFollowsAndContainmentsAreNone) {
    ModelBuilder odd(
        "Box; Box.inner => Box *; Box.outer ~> Box; Box.a => Box; Box.b => Box; Box.c ~> Box;"
        "Box.d -> Box; Box.inner <> Box.outer; Box.a <> Box.b; Box.c <> Box.d");
    EXPECT_EQ(namesOf(containerReferencesOf(odd.type("Box"))), Lines{});
}

TEST_F(ContainerReferencesTest, PrunedAWalkStaysInItsSubtreeButForOtherReferences) {
    const auto everything = Spec::subtractiveTraversal()->depthFirst(m("T"));
    EXPECT_EQ(test::linesOf(everything).size(), 11U);
    const auto below = Spec::subtractiveTraversal()
                           ->prune(containerReferencesOf(m.metamodel.classes()))
                           ->depthFirst(m("T"));
    EXPECT_EQ(test::linesOf(below), (Lines{">T", "T.ports>q", "q.from>p", "p.to>q!", "q.cover>r"}));
}

}  // namespace
}  // namespace nuv::zero::traversal
