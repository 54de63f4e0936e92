#include <gtest/gtest.h>

#include <new>
#include <string>

#include "tests/support/AllocationMeter.h"
#include "tests/support/ModelBuilder.h"
#include "tests/support/Points.h"
#include "tests/support/WalkLog.h"

/// Every single allocation of the ready-made listeners fails in turn: in what they hear, and when
/// one is assigned to another.
namespace nuv::zero::traversal {
namespace {

using test::AllocationMeter;
using test::ModelBuilder;

std::string shown(const WalkPicture& picture) {
    return picture.text();
}
std::string shown(const WalkStatistics& statistics) {
    return statistics.text();
}
std::string shown(const WalkBoundaries& boundaries) {
    std::string text;
    for (const auto& refusal : boundaries.refusals()) {
        text += std::to_string(refusal.walk) + " " + dumpLink(refusal.link) + "\n";
    }
    for (const auto& cut : boundaries.cuts()) {
        text += std::to_string(cut.walk) + " " + dumpLink(cut.link) + " cut\n";
    }
    return text;
}

/// Tells a listener everything as often as it takes, while each of its allocations fails in turn.
class ToldUntilItIsHeard : public WalkListener {
  public:
    explicit ToldUntilItIsHeard(WalkListener& listener) : listener_(listener) {}

    void onLink(const WalkView& walk, const Link& link, Fate fate, std::size_t filter) override {
        tell([&] { listener_.onLink(walk, link, fate, filter); });
    }
    void onPrune(const WalkView& walk, const Link& link, Pruning pruning, const Property& property,
                 Pruned outcome) override {
        tell([&] { listener_.onPrune(walk, link, pruning, property, outcome); });
    }

    long failures = 0;

  private:
    template <class Told>
    void tell(const Told& told) {
        for (long allocation = 1;; ++allocation) {
            AllocationMeter::failAt(allocation);
            try {
                told();
                AllocationMeter::failAt(0);
                return;
            } catch (const std::bad_alloc&) {
                ++failures;
            }
        }
    }

    WalkListener& listener_;
};

template <class Listener>
class ListenerAllocationFailureTest : public testing::Test {
  protected:
    ListenerAllocationFailureTest() {
        for (int i = 0; i < 40; ++i) {
            const std::string number = std::to_string(i);
            m.extend("A.x = N" + number + "; N" + number + ".y = P" + number + " A");
        }
        m.extend("B.x = A; B.y = B P7");
    }

    /// A walk that every listener hears of from its first link on.
    LinkRange traced(std::initializer_list<WalkListener*> listeners, const char* input) const {
        const auto result = Spec::subtractiveTraversal()->depthFirst({m(input)});
        ResultSetup setup(result);
        setup.descend([](const Link& link) {
            return dumpElement(link.getTarget()).find("P1") == std::string::npos;
        });
        for (WalkListener* listener : listeners) setup.trace(listener);
        return links(result);
    }
    /// Steps that prune what is pruned in each of them.
    void go(LinkRange& walk, int steps) const {
        for (auto link = walk.begin(); link != walk.end() && steps > 0; ++link, --steps) {
            if (steps % 3 == 1 && link->getSource() == m("A")) walk.pruneAllChildren();
        }
    }

    ModelBuilder m{"Node; Node.x -> Node *; Node.y -> Node *", "A.x = N0"};
};

using Listeners = testing::Types<WalkPicture, WalkStatistics, WalkBoundaries>;
TYPED_TEST_SUITE(ListenerAllocationFailureTest, Listeners);

// Symptom: what a picture had no memory to remember was drawn twice when it was told again.
TYPED_TEST(ListenerAllocationFailureTest, WhatFailedIsHeardWholeWhenItIsToldAgain) {
    TypeParam failing;
    TypeParam undisturbed;
    ToldUntilItIsHeard told(failing);
    LinkRange walk = this->traced({&told, &undisturbed}, "B");
    this->go(walk, 1000);
    EXPECT_EQ(shown(failing), shown(undisturbed));
    EXPECT_GT(told.failures, 2);
    test::recordPoints(told.failures, "failing allocations in what listeners hear");
}

// Symptom: a picture that another one could not be assigned to for want of memory was half of each,
// and the next link that it heard of was written beyond its end.
TYPED_TEST(ListenerAllocationFailureTest, AssignmentThatFailsLeavesBothAsTheyWere) {
    long points = 0;
    for (const auto& [targetSteps, sourceSteps] : {std::pair(5, 90), std::pair(90, 12)}) {
        TypeParam source;
        LinkRange sourceWalk = this->traced({&source}, "A");
        this->go(sourceWalk, sourceSteps);
        const std::string sourceText = shown(source);
        for (long allocation = 1;; ++allocation) {
            TypeParam target;
            TypeParam undisturbed;
            LinkRange walk = this->traced({&target, &undisturbed}, "B");
            this->go(walk, targetSteps);
            bool threw = false;
            AllocationMeter::failAt(allocation);
            try {
                target = source;
            } catch (const std::bad_alloc&) {
                threw = true;
            }
            AllocationMeter::failAt(0);
            EXPECT_EQ(shown(source), sourceText);
            if (!threw) {
                EXPECT_EQ(shown(target), sourceText);
                break;
            }
            ++points;
            ASSERT_EQ(shown(target), shown(undisturbed)) << allocation;
            this->go(walk, 1000);
            ASSERT_EQ(shown(target), shown(undisturbed)) << allocation;
        }
    }
    EXPECT_GT(points, 0);
    test::recordPoints(points, "failing allocations in assignments of listeners");
}

TYPED_TEST(ListenerAllocationFailureTest, AssignmentToItselfChangesNothing) {
    TypeParam listener;
    LinkRange walk = this->traced({&listener}, "B");
    this->go(walk, 20);
    const std::string before = shown(listener);
    const TypeParam& same = listener;
    listener = same;
    EXPECT_EQ(shown(listener), before);
}

}  // namespace
}  // namespace nuv::zero::traversal
