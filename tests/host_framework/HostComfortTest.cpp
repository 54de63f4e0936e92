#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <unordered_set>
#include <vector>

#include "tests/host_framework/HostLines.h"
#include "tests/host_framework/HostNullWatch.h"
#include "tests/host_framework/HostWorld.h"
#include "traversal/ClassPredicates.h"
#include "traversal/ContainerReferences.h"
#include "traversal/StreamOutput.h"
#include "traversal/Traversal.h"

/// What makes callers' lives easier needs no more of a host than walks do.
namespace {

using nuv::zero::ModelElement;
using nuv::zero::meta::Class;
using nuv::zero::meta::Property;
using namespace nuv::zero::traversal;

using Lines = std::vector<std::string>;

class HostComfort : public testing::Test {
  protected:
    HostComfort() {
        host::World::setOpposite(parts, owner);
        host::World::link(a, parts, b);
        host::World::link(b, owner, a);
        host::World::link(b, next, a);
    }

    host::World world;
    Class part = world.addClass(u"Part");
    Class leaf = world.addClass(u"Leaf", part);
    Class other = world.addClass(u"Other");
    Property name = world.addName(part);
    Property owner = world.addSingle(part, u"owner");
    Property next = world.addSingle(part, u"next");
    Property parts = world.addMany(part, u"parts", true);
    ModelElement a = world.create(part, u"a");
    ModelElement b = world.create(leaf, u"b");
    host::NullWatch watch;
};

TEST_F(HostComfort, PredicatesAskOfClassesWhatRulesAsk) {
    EXPECT_TRUE(isKindOf(part)(leaf) && isExactly(leaf)(leaf) && !isExactly(part)(leaf));
    EXPECT_TRUE(anyOf(isKindOf(other), isExactly(leaf))(leaf));
    EXPECT_FALSE(noneOf(isKindOf(other), isExactly(leaf))(leaf));
    EXPECT_FALSE(allOf(isKindOf(part), isExactly(part))(leaf));
    EXPECT_FALSE(isKindOf(part)(Class()) || isExactly(part)(Class()));
    EXPECT_THROW(isKindOf(Class()), std::invalid_argument);
}

TEST_F(HostComfort, ContainerReferencesAreFoundFromOneDeclaredOpposite) {
    const std::vector<PropertyMatcher> rules = containerReferencesOf({leaf, other});
    ASSERT_EQ(rules.size(), 1U);
    EXPECT_EQ(rules.front().getProperty(), owner);
    EXPECT_EQ(host::linesOf(Spec::subtractiveTraversal()->prune(rules)->depthFirst(b)),
              (Lines{"Not an element-[pseudo]-Leaf'b'", "Leaf'b'-[next]-Part'a'",
                     "Part'a'-[parts]-Leaf'b' (no cascade)"}));
}

TEST_F(HostComfort, ElementsAndLinksAreShown) {
    std::ostringstream out;
    out << a << ' ' << ModelElement() << ' ' << Link(a, b, parts);
    EXPECT_EQ(out.str(), "Part'a' Not an element Part'a'-[parts]-Leaf'b'");
}

TEST_F(HostComfort, ConstantBuilderRunsOnOneElementAndCallablesHearOfIt) {
    const std::shared_ptr<const CompositionTraversalImpl> builder = Spec::compositionTraversal();
    const auto result = builder->breadthFirst(a);
    Lines entered;
    std::unordered_set<Link> met;
    ResultSetup(result)
        .onEnterElement(
            [&](const ModelElement& element) { entered.push_back(dumpElement(element)); })
        .filter([](const Link& link) { return static_cast<bool>(link.getProperty()); });
    for (const Link& link : links(result)) met.insert(link);
    EXPECT_EQ(entered, (Lines{"Part'a'", "Leaf'b'"}));
    EXPECT_EQ(met, (std::unordered_set<Link>{Link(a, b, parts)}));
}

}  // namespace
