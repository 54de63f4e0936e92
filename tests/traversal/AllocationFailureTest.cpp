#include <gtest/gtest.h>

#include <memory>
#include <new>
#include <set>
#include <string>
#include <tuple>
#include <unordered_set>
#include <utility>
#include <vector>

#include "tests/support/AllocationMeter.h"
#include "tests/support/ModelBuilder.h"
#include "tests/support/Points.h"
#include "tests/support/WalkLog.h"

/// Every single allocation of a walk fails in turn; the same against a plainly written walk is in
/// WalkAllocationFailureTest.
namespace nuv::zero::traversal {
namespace {

using test::AllocationMeter;
using test::ModelBuilder;
using test::text;
using Walk = TraversalResult::IterationContext;

constexpr auto metamodelText =
    "Node; Leaf < Node; Node.x => Node *; Node.y -> Node *; Node.boss -> Node; Leaf.z => Leaf *";
constexpr auto modelText =
    "L : Leaf; M : Leaf; A.x = B C L; A.y = D B; A.boss = A; B.x = C D; B.boss = A; C.y = A E; "
    "E.x = F; L.z = M L; L.y = A; M.boss = G; G.x = A; H.x = I; H.y = B";

/// Remembers without allocating what it was told.
class QuietObserver : public TraversalProcessor {
  public:
    QuietObserver() { entered.reserve(1000); }
    void onEnterElement(const ModelElement& element) override { entered.push_back(element); }
    std::vector<ModelElement> entered;
};

class AllocationFailureTest
    : public testing::TestWithParam<std::tuple<Algo, UniquenessMode, bool>> {
  protected:
    Algo order() const { return std::get<0>(GetParam()); }

    /// Walks to the end while the allocation with this number fails; false when there was none.
    bool walkFailingAt(long allocation) {
        QuietObserver observer;
        std::vector<Link> reported;
        reported.reserve(1000);
        bool moved = false;
        const long before = AllocationMeter::live();
        {
            const auto result = Spec::subtractiveTraversal()
                                    ->prune(m["Leaf.z"], [](const Class&) { return false; })
                                    ->run(inputs, order());
            ResultSetup(result)
                .observe(std::get<2>(GetParam()) ? &observer : nullptr)
                .unique(std::get<1>(GetParam()));
            AllocationMeter::failAt(allocation);
            std::unique_ptr<Walk> walk;
            for (int attempts = 0; !walk && attempts < 2; ++attempts) {
                try {
                    walk = std::make_unique<Walk>(result);
                } catch (const std::bad_alloc&) {
                }
                if (!walk) observer.entered.clear();
            }
            while (walk && !!walk->getCurrent() && reported.size() < 900) {
                reported.push_back(walk->getCurrent());
                try {
                    walk->pruneChildren(m.kept);
                    if (reported.size() % 4 == 0) Walk copy(*walk);
                } catch (const std::bad_alloc&) {
                }
                for (int tries = 0; tries < 3; ++tries) {
                    try {
                        walk->advance();
                        break;
                    } catch (const std::bad_alloc&) {
                        moved = moved || !(walk->getCurrent() == reported.back());
                    }
                }
            }
            AllocationMeter::failAt(0);
            EXPECT_NE(walk, nullptr);
        }
        const long after = AllocationMeter::live();
        EXPECT_EQ(after, before) << "something was leaked";
        EXPECT_FALSE(moved) << "a failed step moved the walk";
        EXPECT_LT(reported.size(), 900U) << "the walk does not end";
        check(reported, observer.entered);
        return AllocationMeter::hasFailed();
    }

    /// An element is entered at most once, and entered where a link says that it was.
    void check(const std::vector<Link>& reported, const std::vector<ModelElement>& entered) const {
        std::multiset<std::string> reached;
        std::set<std::string> brackets;
        for (const ModelElement& element : entered) {
            EXPECT_TRUE(brackets.insert(text(element)).second) << text(element);
        }
        for (const Link& link : reported) {
            if (link.shouldCascade()) reached.insert(text(link.getTarget()));
            if (std::get<2>(GetParam())) {
                EXPECT_EQ(brackets.count(text(link.getTarget())), 1U)
                    << text(link) << " leads to an element that has no turn";
            }
        }
        for (const std::string& target : reached) EXPECT_EQ(reached.count(target), 1U) << target;
    }

    struct KeepingModel : ModelBuilder {
        using ModelBuilder::ModelBuilder;
        /// A property to prune, looked up beforehand, since looking up allocates.
        Property kept = (*this)["Node.boss"];
    };
    KeepingModel m{metamodelText, modelText};
    std::vector<ModelElement> inputs{m("A"), m("H"), m("C")};
};

TEST_P(AllocationFailureTest, WalkGoesOnAfterEachFailingAllocationAndLeaksNothing) {
    walkFailingAt(0);
    long allocation = 1;
    while (walkFailingAt(allocation)) ++allocation;
    EXPECT_GT(allocation, 10);
    test::recordPoints(allocation - 1, "failing allocations in walks that are copied now and then");
}

INSTANTIATE_TEST_SUITE_P(OrdersAndModes, AllocationFailureTest,
                         testing::Combine(testing::ValuesIn(test::everyOrder()),
                                          testing::Values(UniquenessMode::UniqueLinks,
                                                          UniquenessMode::UniqueElements,
                                                          UniquenessMode::NoUniqueness),
                                          testing::Bool()),
                         [](const auto& each) {
                             return std::string(test::nameOf(std::get<0>(each.param))) + "Mode" +
                                    std::to_string(static_cast<int>(std::get<1>(each.param))) +
                                    (std::get<2>(each.param) ? "Observed" : "");
                         });

class SecondWayTest : public testing::TestWithParam<Algo> {
  protected:
    static constexpr std::size_t length = 300;

    SecondWayTest() {
        for (std::size_t i = 0; i < length; ++i) {
            chain.push_back(m.model.create(m.type("Node")));
            if (i == 0) continue;
            m.model.add(chain[i - 1], m["Node.x"], chain[i]);
            m.model.add(chain[i - 1], m["Node.y"], chain[i]);
        }
    }

    ModelBuilder m{"Node; Node.x -> Node *; Node.y -> Node *"};
    std::vector<ModelElement> chain;
};

// Two links lead to every element, and the input comes twice: what cannot be entered for want of
// memory is entered the second time. The chain is longer than what a walk makes room for at once.
TEST_P(SecondWayTest, WhatOneLinkFailsToEnterTheNextOneEnters) {
    for (long allocation = 1;; ++allocation) {
        const auto result =
            Spec::subtractiveTraversal()->run({chain.front(), chain.front()}, GetParam());
        QuietObserver observers[2];
        std::vector<ModelElement> reached;
        reached.reserve(2 * length);
        AllocationMeter::failAt(allocation);
        std::unique_ptr<Walk> walk;
        while (!walk) {
            try {
                walk = std::make_unique<Walk>(result);
            } catch (const std::bad_alloc&) {
            }
        }
        for (std::size_t step = 0; !!walk->getCurrent(); ++step) {
            if (walk->getCurrent().shouldCascade()) {
                reached.push_back(walk->getCurrent().getTarget());
            }
            ResultSetup(result).observe(&observers[step % 2]);
            for (bool isDone = false; !isDone;) {
                try {
                    walk->advance();
                    isDone = true;
                } catch (const std::bad_alloc&) {
                }
            }
        }
        AllocationMeter::failAt(0);
        EXPECT_EQ(std::unordered_set<ModelElement>(reached.begin(), reached.end()).size(), length)
            << allocation;
        EXPECT_EQ(reached.size(), length) << allocation;
        if (!AllocationMeter::hasFailed()) break;
    }
}

INSTANTIATE_TEST_SUITE_P(Orders, SecondWayTest, testing::ValuesIn(test::everyOrder()),
                         [](const auto& each) { return test::nameOf(each.param); });

// Symptom: an observer that was detached long ago heard of an element that was entered after that.
TEST(ObserverAllocationFailureTest, ElementWhoseEnteringFailedIsNotTiedToTheObserverOfThatTime) {
    ModelBuilder m("Node; Node.x -> Node *", "A");
    constexpr int children = 40;
    for (int round = 0; round < 2; ++round) {
        for (int i = 0; i < children; ++i) m.extend("A.x = N" + std::to_string(i));
    }
    const std::vector<ModelElement> inputs{m("A")};
    for (int step = 0; step < children; ++step) {
        for (long allocation = 1; allocation < 6; ++allocation) {
            QuietObserver passing;
            const auto result = Spec::subtractiveTraversal()->breadthFirst(inputs);
            Walk walk = result->begin();
            for (int i = 0; i < step; ++i) walk.advance();
            bool threw = false;
            ResultSetup(result).observe(&passing);
            AllocationMeter::failAt(allocation);
            try {
                walk.advance();
            } catch (const std::bad_alloc&) {
                threw = true;
            }
            AllocationMeter::failAt(0);
            ResultSetup(result).observe(nullptr);
            test::rest(walk);
            EXPECT_EQ(passing.entered.size(), threw ? 0U : 1U) << step << ", " << allocation;
        }
    }
}

TEST(EventCallablesAllocationFailureTest, SetupThatFailsLeavesWhatWasGivenBefore) {
    const ModelBuilder m("Node; Node.x -> Node *", "A");
    const std::vector<ModelElement> inputs{m("A")};
    bool failed = true;
    long allocation = 0;
    while (failed) {
        const long before = AllocationMeter::live();
        {
            int first = 0;
            int second = 0;
            QuietObserver observer;
            const auto result = Spec::subtractiveTraversal()->depthFirst(inputs);
            AllocationMeter::failAt(++allocation);
            int given = 0;
            try {
                ResultSetup setup(result);
                setup.onEnterElement([&first](const ModelElement&) { ++first; });
                ++given;
                setup.observe(&observer);
                ++given;
                setup.onExitElement([&second](const ModelElement&) { ++second; });
                ++given;
            } catch (const std::bad_alloc&) {
            }
            AllocationMeter::failAt(0);
            failed = AllocationMeter::hasFailed();
            EXPECT_EQ(given, failed ? given : 3);
            test::linesOf(result);
            EXPECT_EQ(first, given >= 1 ? 1 : 0) << allocation;
            EXPECT_EQ(observer.entered.size(), given >= 2 ? 1U : 0U) << allocation;
            EXPECT_EQ(second, given >= 3 ? 1 : 0) << allocation;
            ResultSetup(result).onExitElement([&second](const ModelElement&) { ++second; });
            test::linesOf(result);
            EXPECT_EQ(second, given >= 3 ? 3 : 1) << allocation;
        }
        EXPECT_EQ(AllocationMeter::live(), before) << "leaked at allocation " << allocation;
    }
    EXPECT_GT(allocation, 3);
    test::recordPoints(allocation - 1, "failing allocations in setting up callables");
}

TEST(EventCallablesAllocationFailureTest, ObserversThatComeAndGoTakeNoMemory) {
    const ModelBuilder m("Node; Node.x -> Node *", "A");
    const auto result = Spec::subtractiveTraversal()->depthFirst(m("A"));
    QuietObserver observer;
    ResultSetup setup(result);
    setup.onEnterElement([](const ModelElement&) {}).observe(&observer).observe(nullptr);
    const long bytes = AllocationMeter::bytes();
    for (int times = 0; times < 1000; ++times) setup.observe(&observer).observe(nullptr);
    EXPECT_EQ(AllocationMeter::bytes(), bytes);
}

}  // namespace
}  // namespace nuv::zero::traversal
