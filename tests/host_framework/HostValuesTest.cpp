#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/host_framework/HostLines.h"
#include "tests/host_framework/HostWorld.h"
#include "traversal/Traversal.h"

namespace {

using nuv::zero::ModelElement;
using nuv::zero::meta::Class;
using nuv::zero::meta::Property;
using namespace nuv::zero::traversal;

using Lines = std::vector<std::string>;

/// A host may say that a property is set and yet have no element there.
TEST(HostValues, SingleValueWithoutAnElementIsNoTargetAnEntryOfACollectionIs) {
    host::World world;
    const Class part = world.addClass(u"Part");
    world.addName(part);
    const Property next = world.addSingle(part, u"next");
    const Property parts = world.addMany(part, u"parts", true);
    const ModelElement a = world.create(part, u"a");
    const ModelElement b = world.create(part, u"b");
    for (const Property& property : {next, parts}) {
        host::World::link(a, property, ModelElement());
        host::World::link(a, property, b);
    }

    const Lines expected{"Not an element-[pseudo]-Part'a'", "Part'a'-[parts]-Not an element",
                         "Part'a'-[parts]-Part'b'"};
    EXPECT_EQ(host::linesOf(Spec::subtractiveTraversal()->depthFirst({a})), expected);
}

}  // namespace
