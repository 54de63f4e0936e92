#include <gtest/gtest.h>

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "tests/host_framework/HostKinds.h"
#include "tests/host_framework/HostWorld.h"
#include "traversal/Traversal.h"

/// How often a walk asks the framework of the host.
namespace {

using nuv::zero::ModelElement;
using nuv::zero::meta::Class;
using nuv::zero::meta::Property;
using namespace nuv::zero::traversal;

using Calls = std::map<std::string, int>;
using Walk = TraversalResult::IterationContext;

// A ring with chords: a.next = b, b.next = c, c.next = a; a.parts = b c, c.parts = a d; everybody
// has an `owner`, which is empty but for b's; d has nothing.
class HostReads : public testing::TestWithParam<Algo> {
  protected:
    HostReads() {
        host::World::link(a, next, b);
        host::World::link(b, next, c);
        host::World::link(c, next, a);
        host::World::link(a, parts, b);
        host::World::link(a, parts, c);
        host::World::link(c, parts, a);
        host::World::link(c, parts, d);
        host::World::link(b, owner, a);
        host::Calls::forget();
    }

    const Calls everything{{"a.next", 1},  {"a.owner", 1}, {"a.parts", 1}, {"b.next", 1},
                           {"b.owner", 1}, {"b.parts", 1}, {"c.next", 1},  {"c.owner", 1},
                           {"c.parts", 1}, {"d.next", 1},  {"d.owner", 1}, {"d.parts", 1}};
    static Calls reads() { return host::Calls::all().reads; }
    static Calls listings() { return host::Calls::all().listings; }

    static void toTheEnd(Walk& walk) {
        while (!!walk.getCurrent()) walk.advance();
    }

    host::World world;
    Class part = world.addClass(u"Part");
    Class leaf = world.addClass(u"Leaf", part);
    Property owner = world.addSingle(part, u"owner");
    Property next = world.addSingle(part, u"next");
    Property parts = world.addMany(part, u"parts", true);
    ModelElement a = world.create(part, u"a");
    ModelElement b = world.create(part, u"b");
    ModelElement c = world.create(part, u"c");
    ModelElement d = world.create(leaf, u"d");
};

TEST_P(HostReads, EachFollowedPropertyOfEachElementEnteredIsReadOnce) {
    Walk walk = Spec::subtractiveTraversal()->run({a, c}, GetParam())->begin();
    toTheEnd(walk);
    EXPECT_EQ(reads(), everything);
}

TEST_P(HostReads, WhatNoRuleFollowsIsNeverRead) {
    Walk walk = Spec::additiveTraversal()
                    ->traverse(parts, ResultPolicy::WalkOnly)
                    ->run({a}, GetParam())
                    ->begin();
    toTheEnd(walk);
    EXPECT_EQ(reads(), (Calls{{"a.parts", 1}, {"b.parts", 1}, {"c.parts", 1}, {"d.parts", 1}}));
}

TEST_P(HostReads, NothingIsReadBeforeTheWalkAsksForIt) {
    const auto result = Spec::subtractiveTraversal()->run({a}, GetParam());
    EXPECT_EQ(reads(), Calls{});
    const Walk walk = result->begin();
    if (GetParam() != Algo::DepthFirstPostOrder) {
        EXPECT_EQ(reads(), Calls{}) << "the input's own link needs no value";
    }
    const Calls before = reads();
    const Walk copy(walk);
    EXPECT_TRUE(copy == walk);
    EXPECT_EQ(reads(), before) << "copies and comparisons read nothing";
}

TEST_P(HostReads, PropertyPrunedBeforeItsTurnIsNotRead) {
    Walk walk = Spec::subtractiveTraversal()->run({a}, GetParam())->begin();
    for (; !!walk.getCurrent(); walk.advance()) {
        if (!walk.getCurrent().shouldCascade()) continue;
        if (walk.getCurrent().getTarget() == a) walk.pruneChildren(owner);
        if (walk.getCurrent().getTarget() == b) walk.pruneChildren(parts);
        if (walk.getCurrent().getTarget() == c) walk.pruneChildren(next);
        if (walk.getCurrent().getTarget() == d) walk.pruneAllChildren();
    }
    const Calls left{{"a.next", 1},  {"a.parts", 1}, {"b.next", 1},
                     {"b.owner", 1}, {"c.owner", 1}, {"c.parts", 1}};
    // Post-order, links come when nothing is left to prune below their targets.
    EXPECT_EQ(reads(), GetParam() == Algo::DepthFirstPostOrder ? everything : left);
}

TEST_P(HostReads, PrunedSiblingsCostNoReadOfTheirElements) {
    Walk walk = Spec::additiveTraversal()
                    ->traverse(parts, ResultPolicy::Report)
                    ->run({a}, GetParam())
                    ->begin();
    for (; !!walk.getCurrent(); walk.advance()) {
        if (walk.getCurrent().getTarget() == b) walk.pruneSiblings();
    }
    EXPECT_EQ(reads(), (Calls{{"a.parts", 1}, {"b.parts", 1}}));
}

TEST_P(HostReads, CopyInMidWalkReadsOnlyWhatIsLeft) {
    const auto result = Spec::subtractiveTraversal()->run({a}, GetParam());
    Walk walk = result->begin();
    for (int step = 0; step < 3; ++step) walk.advance();
    Walk copy(walk);
    const Calls read = reads();
    host::Calls::forget();
    toTheEnd(walk);
    const Calls left = reads();
    host::Calls::forget();
    toTheEnd(copy);
    EXPECT_EQ(reads(), left);
    for (const auto& [place, times] : left) EXPECT_EQ(read.count(place), 0U) << place;
}

TEST_P(HostReads, PropertiesOfAClassAreListedOncePerResult) {
    const auto traversal = Spec::subtractiveTraversal();
    const Calls once{{"Leaf", 1}, {"Part", 1}};
    const auto result = traversal->run({a}, GetParam());
    EXPECT_EQ(listings(), Calls{});
    for (int times = 0; times < 2; ++times) {
        Walk walk = result->begin();
        toTheEnd(walk);
        EXPECT_EQ(listings(), once) << "walk " << times;
    }
    host::Calls::forget();
    Walk another = traversal->run({a}, GetParam())->begin();
    toTheEnd(another);
    EXPECT_EQ(listings(), once);
}

/// What a walk asked rules and filters, in order.
class HostQuestions : public HostReads {
  protected:
    ClassPredicate saying(std::string name, bool answer) {
        return [this, name = std::move(name), answer](const Class&) {
            ++asked[name];
            return answer;
        };
    }
    std::function<ResultPolicy(Link)> answering(std::string name, ResultPolicy answer) {
        return [this, name = std::move(name), answer](const Link&) {
            ++asked[name];
            return answer;
        };
    }
    Calls walk(const std::shared_ptr<TraversalResult>& result) {
        Walk walk = result->begin();
        toTheEnd(walk);
        return std::exchange(asked, {});
    }

    Calls asked;
};

// Eight links follow properties: each asks for the policy of its property when it is tried.
TEST_P(HostQuestions, PruneRulesAreAskedOncePerClassAndOncePerLinkOfTheirProperty) {
    const auto result = Spec::subtractiveTraversal()
                            ->prune(next, saying("next", false))
                            ->prune(owner, saying("owner", true))
                            ->run({a}, GetParam());
    EXPECT_EQ(walk(result), (Calls{{"next", 2 + 3}, {"owner", 2}}));
    EXPECT_EQ(walk(result), (Calls{{"next", 3}})) << "the settings of both classes are known";
}

TEST_P(HostQuestions, AskingTheRulesOfAPropertyStopsAtTheFirstThatAccepts) {
    // Filed under unrelated classes, whose order is that of their names.
    const Class first = world.addClass(u"1");
    const Class second = world.addClass(u"2");
    const Class third = world.addClass(u"3");
    const auto result =
        Spec::additiveTraversal()
            ->traverse({parts, saying("third", true), third}, ResultPolicy::WalkOnly)
            ->traverse({parts, saying("first", false), first}, ResultPolicy::WalkOnly)
            ->traverse({parts, saying("second", true), second}, ResultPolicy::Report)
            ->run({a}, GetParam());
    EXPECT_EQ(walk(result), (Calls{{"first", 2 + 4}, {"second", 2 + 4}}));
}

TEST_P(HostQuestions, LinkThatIsOnlyWalkedAsksNeitherTheMemoryOfRepeatsNorFilters) {
    const auto result = Spec::additiveTraversal()
                            ->traverse(next, ResultPolicy::WalkOnly)
                            ->traverse(parts, ResultPolicy::Report)
                            ->includeInitialPseudoLink(ResultPolicy::WalkOnly)
                            ->run({a}, GetParam());
    ResultSetup(result).unique(UniquenessMode::UniqueElements).filter([this](const Link& link) {
        ++asked[link.getProperty() == next ? "filter about next" : "filter about parts"];
        return ResultPolicy::Report;
    });
    // Had a link of `next` been remembered, the link of `parts` to its target would be a repeat. So
    // is the one back to the input, but for post-order, where the input's own link comes last.
    const int times = GetParam() == Algo::DepthFirstPostOrder ? 4 : 3;
    EXPECT_EQ(walk(result), (Calls{{"filter about parts", times}}));
}

TEST_P(HostQuestions, RepeatAsksNoFilter) {
    const auto result = Spec::additiveTraversal()
                            ->traverse(next, ResultPolicy::Report)
                            ->traverse(parts, ResultPolicy::Report)
                            ->run({a, a}, GetParam());
    ResultSetup(result)
        .unique(UniquenessMode::UniqueElements)
        .filter(answering("filter", ResultPolicy::WalkOnly));
    EXPECT_EQ(walk(result), (Calls{{"filter", 4}})) << "once for each of a, b, c and d";
}

TEST_P(HostQuestions, FiltersAreAskedInOrderUpToTheFirstThatSaysWalkOnly) {
    const auto result = Spec::subtractiveTraversal()->run({a}, GetParam());
    std::vector<std::string> order;
    const auto noting = [&order](const char* name, ResultPolicy answer) {
        return [&order, name, answer](const Link&) {
            order.emplace_back(name);
            return answer;
        };
    };
    ResultSetup(result)
        .filter(noting("1", ResultPolicy::Extended))
        .filter(noting("2", ResultPolicy::Report))
        .filter(noting("3", ResultPolicy::WalkOnly))
        .filter(noting("4", ResultPolicy::Report));
    walk(result);
    std::vector<std::string> expected;
    for (int link = 0; link < 9; ++link) expected.insert(expected.end(), {"1", "2", "3"});
    EXPECT_EQ(order, expected);
}

/// What `whyNot` compares to explain an element to which so many links were refused.
long comparisonsOfWhyNot(int links) {
    host::World world;
    const Class part = world.addClass(u"Part");
    const Property next = world.addSingle(part, u"next");
    const Property parts = world.addMany(part, u"parts", true);
    const ModelElement root = world.create(part, u"root");
    const ModelElement missed = world.create(part, u"missed");
    for (int i = 0; i < links; ++i) {
        const ModelElement child = world.create(part, u"child");
        host::World::link(root, parts, child);
        host::World::link(child, next, missed);
    }
    WalkBoundaries boundaries;
    const auto result = Spec::subtractiveTraversal()->depthFirst(root);
    ResultSetup(result).trace(&boundaries).descend([&](const Link& link) {
        return !(link.getTarget() == missed);
    });
    Walk walk = result->begin();
    for (; !!walk.getCurrent(); walk.advance()) {
        if (walk.getCurrent().getTarget() == missed) walk.pruneSiblings();
    }
    host::Calls::forget();
    const WhyNot answer = whyNot(walk, missed, &boundaries);
    EXPECT_EQ(answer.count(Obstacle::Boundary), static_cast<std::size_t>(links));
    return host::Calls::all().comparisons;
}

// Symptom: each link that had led to an element was looked for among all that a listener had heard.
TEST(HostComparisons, WhyNotComparesInProportionToTheLinksThatWereRefused) {
    const long few = comparisonsOfWhyNot(100);
    EXPECT_LT(comparisonsOfWhyNot(400), 6 * few);
}

INSTANTIATE_TEST_SUITE_P(Orders, HostReads, testing::ValuesIn(host::everyOrder()),
                         [](const auto& each) { return host::nameOf(each.param); });
INSTANTIATE_TEST_SUITE_P(Orders, HostQuestions, testing::ValuesIn(host::everyOrder()),
                         [](const auto& each) { return host::nameOf(each.param); });

}  // namespace
