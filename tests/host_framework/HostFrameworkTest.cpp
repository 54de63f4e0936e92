#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/host_framework/HostLines.h"
#include "tests/host_framework/HostNullWatch.h"
#include "tests/host_framework/HostWorld.h"
#include "traversal/Traversal.h"

namespace {

using nuv::zero::ModelElement;
using nuv::zero::meta::Class;
using nuv::zero::meta::Property;
using namespace nuv::zero::traversal;

using Lines = std::vector<std::string>;

// clang-format off
//            parts
//   root ---------> a ---next---> b
//     |                           ^ |
//     |   parts                   | |next
//     +-----------> b             | v
//                                 +-- c (b.next = c, c.next = a)
//
// Everybody's `owner`, the opposite of `parts`, leads back.
// clang-format on
class HostFramework : public testing::Test {
  protected:
    HostFramework() {
        host::World::setOpposite(parts, owner);
        host::World::setOpposite(owner, parts);
        for (const ModelElement& element : {a, b}) {
            host::World::link(root, parts, element);
            host::World::link(element, owner, root);
        }
        host::World::link(a, next, b);
        host::World::link(b, next, c);
        host::World::link(c, next, a);
    }

    host::World world;
    Class part = world.addClass(u"Part");
    Class assembly = world.addClass(u"Assembly", part);
    Property name = world.addName(part);
    Property owner = world.addSingle(part, u"owner");
    Property next = world.addSingle(part, u"next");
    Property parts = world.addMany(assembly, u"parts", true);
    ModelElement root = world.create(assembly, u"root");
    ModelElement a = world.create(part, u"a");
    ModelElement b = world.create(part, u"b");
    ModelElement c = world.create(part, u"c");
    host::NullWatch watch;
};

TEST_F(HostFramework, WalksACyclicModelInPreOrder) {
    const Lines expected{
        "Not an element-[pseudo]-Assembly'root'",
        "Assembly'root'-[parts]-Part'a'",
        "Part'a'-[next]-Part'b'",
        "Part'b'-[next]-Part'c'",
        "Part'c'-[next]-Part'a' (no cascade)",
        "Assembly'root'-[parts]-Part'b' (no cascade)",
    };
    EXPECT_EQ(expected, host::linesOf(Spec::additiveTraversal()
                                          ->traverse(parts, ResultPolicy::Report)
                                          ->traverse(next, ResultPolicy::Report)
                                          ->depthFirst({root})));
}

TEST_F(HostFramework, WalksACyclicModelInPostOrder) {
    const Lines expected{
        "Part'c'-[next]-Part'a' (no cascade)",
        "Part'b'-[next]-Part'c'",
        "Part'a'-[next]-Part'b'",
        "Assembly'root'-[parts]-Part'a'",
        "Assembly'root'-[parts]-Part'b' (no cascade)",
        "Not an element-[pseudo]-Assembly'root'",
    };
    EXPECT_EQ(expected, host::linesOf(Spec::additiveTraversal()
                                          ->traverse(parts, ResultPolicy::Report)
                                          ->traverse(next, ResultPolicy::Report)
                                          ->depthFirstPostOrder({root})));
}

TEST_F(HostFramework, WalksACyclicModelBreadthFirst) {
    const Lines expected{
        "Not an element-[pseudo]-Assembly'root'", "Assembly'root'-[parts]-Part'a'",
        "Assembly'root'-[parts]-Part'b'",         "Part'b'-[next]-Part'c'",
        "Part'a'-[next]-Part'b' (no cascade)",    "Part'c'-[next]-Part'a' (no cascade)",
    };
    EXPECT_EQ(expected, host::linesOf(Spec::additiveTraversal()
                                          ->traverse(parts, ResultPolicy::Report)
                                          ->traverse(next, ResultPolicy::Report)
                                          ->breadthFirst({root})));
}

TEST_F(HostFramework, SubtractiveWalkFollowsContainmentLastAndNamesInOrder) {
    const Lines expected{
        "Not an element-[pseudo]-Part'c'",
        "Part'c'-[next]-Part'a'",
        "Part'a'-[next]-Part'b'",
        "Part'b'-[next]-Part'c' (no cascade)",
        "Part'b'-[owner]-Assembly'root'",
        "Assembly'root'-[parts]-Part'a' (no cascade)",
        "Assembly'root'-[parts]-Part'b' (no cascade)",
        "Part'a'-[owner]-Assembly'root' (no cascade)",
    };
    EXPECT_EQ(expected, host::linesOf(Spec::subtractiveTraversal()->depthFirst({c})));
}

TEST_F(HostFramework, CompositionWalkPrunesAndReportsEachPairOfOppositesOnce) {
    const Lines contained{"Assembly'root'-[parts]-Part'a'", "Assembly'root'-[parts]-Part'b'"};
    EXPECT_EQ(contained, host::linesOf(Spec::compositionTraversal()
                                           ->includeInitialPseudoLink(ResultPolicy::WalkOnly)
                                           ->breadthFirst({root})));

    const auto unique = Spec::additiveTraversal()
                            ->traverse(parts, ResultPolicy::Report)
                            ->traverse(owner, ResultPolicy::Report)
                            ->includeInitialPseudoLink(ResultPolicy::WalkOnly)
                            ->depthFirst({root});
    ResultSetup(unique).unique(UniquenessMode::UniqueLinks);
    EXPECT_EQ(contained, host::linesOf(unique));
}

TEST_F(HostFramework, ObserverSeesPropertiesOfTheHost) {
    struct PropertyRecorder : TraversalProcessor {
        void onEnterProperty(const ModelElement& element, const Property& property) override {
            lines.push_back(dumpElement(element) + "." +
                            nuv::zero::access::toUtf8(nuv::zero::access::nameOf(property)));
        }
        Lines lines;
    };
    PropertyRecorder recorder;
    const auto result = Spec::compositionTraversal()->prune(parts)->depthFirst({root});
    ResultSetup(result).observe(&recorder);
    EXPECT_EQ(Lines{"Not an element-[pseudo]-Assembly'root'"}, host::linesOf(result));
    EXPECT_EQ(Lines{}, recorder.lines);

    const auto open = Spec::compositionTraversal()->depthFirst({root});
    ResultSetup(open).observe(&recorder);
    host::linesOf(open);
    EXPECT_EQ(Lines{"Assembly'root'.parts"}, recorder.lines);
}

}  // namespace
