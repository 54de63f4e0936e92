#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "tests/support/AllocationMeter.h"
#include "tests/support/ModelBuilder.h"
#include "tests/support/WalkLog.h"
#include "traversal/internal/LinkQueue.h"

/// What walks cost, counted: allocations and questions. Times are for the benchmarks.
namespace nuv::zero::traversal {
namespace {

using test::AllocationMeter;
using test::ModelBuilder;
using Walk = TraversalResult::IterationContext;

/// How a model of many nodes hangs together.
enum class CountedShape { Chain, Star, Tree };

class CountsTest : public testing::TestWithParam<Algo> {
  protected:
    ModelElement grow(CountedShape shape, std::size_t count) {
        const Class node = m.type("Node");
        const Property x = m["Node.x"];
        std::vector<ModelElement> all{m.model.create(node)};
        while (all.size() < count) {
            const std::size_t last = all.size();
            const std::size_t parent = shape == CountedShape::Chain
                                           ? last - 1
                                           : (shape == CountedShape::Star ? 0 : (last - 1) / 8);
            all.push_back(m.model.create(node));
            m.model.add(all[parent], x, all.back());
        }
        return all.front();
    }
    /// Allocations of a whole walk, and the links that it reported.
    static std::pair<long, std::size_t> costOf(const std::shared_ptr<TraversalResult>& result) {
        const long before = AllocationMeter::total();
        std::size_t links = 0;
        for (Walk walk = result->begin(); !!walk.getCurrent(); walk.advance()) ++links;
        return {AllocationMeter::total() - before, links};
    }

    ModelBuilder m{"Node; Node.x -> Node *; Node.y -> Node *"};
};

TEST_P(CountsTest, WalkAllocatesLessThanOncePerTenElements) {
    constexpr std::size_t count = 20000;
    for (const CountedShape shape : {CountedShape::Chain, CountedShape::Star, CountedShape::Tree}) {
        const ModelElement root = grow(shape, count);
        const auto [allocations, links] =
            costOf(Spec::subtractiveTraversal()->run({root}, GetParam()));
        EXPECT_EQ(links, count);
        EXPECT_LT(allocations, static_cast<long>(count / 10)) << static_cast<int>(shape);
    }
}

TEST_P(CountsTest, SmallWalkAllocatesLittle) {
    m.extend("A.x = B C; B.x = A; C.y = B");
    const auto [allocations, links] =
        costOf(Spec::subtractiveTraversal()->run({m("A")}, GetParam()));
    EXPECT_EQ(links, 5U);
    EXPECT_LT(allocations, 40);
}

TEST_P(CountsTest, StepsOnAStarAllocateAtMostForTheTablesAndOncePerManyQueuedLinks) {
    const ModelElement root = grow(CountedShape::Star, 2000);
    const auto result = Spec::additiveTraversal()
                            ->traverse(m["Node.x"], ResultPolicy::Report)
                            ->run({root}, GetParam());
    Walk walk = result->begin();
    for (int i = 0; i < 1100; ++i) walk.advance();
    const long before = AllocationMeter::total();
    for (int i = 0; i < 500; ++i) walk.advance();
    // Breadth-first, what waits is kept in blocks of at least eight links.
    EXPECT_LE(AllocationMeter::total() - before, GetParam() == Algo::BreadthFirst ? 500 / 8 : 2);
}

TEST_P(CountsTest, FirstLinkCostsTheSameWhateverTheSizeOfTheModel) {
    const auto costOfBegin = [this](std::size_t count) {
        const ModelElement root = grow(CountedShape::Tree, count);
        const auto result = Spec::subtractiveTraversal()->run({root}, GetParam());
        const long before = AllocationMeter::total();
        const Walk walk = result->begin();
        return AllocationMeter::total() - before;
    };
    // Post-order, the first link is that to the deepest element, and the stack doubles on the way.
    const long more = GetParam() == Algo::DepthFirstPostOrder ? 3 : 0;
    const long ofSmall = costOfBegin(10);
    const long ofLarge = costOfBegin(10000);
    EXPECT_GE(ofLarge, ofSmall);
    EXPECT_LE(ofLarge, ofSmall + more);
}

TEST_P(CountsTest, PredicatesAreAskedOncePerClassAndPropertyAndOncePerTriedLink) {
    int asked = 0;
    ModelBuilder small("Node; Leaf < Node; Node.x -> Node *; Node.y -> Node *",
                       "L : Leaf; M : Leaf; A.x = B L; L.x = M A; B.y = A C");
    const auto counting = [&asked](const Class&) {
        ++asked;
        return true;
    };
    const auto result = Spec::additiveTraversal()
                            ->traverse(small["Node.x"], counting, ResultPolicy::Report)
                            ->traverse(small["Node.y"], counting, ResultPolicy::Report)
                            ->run({small("A")}, GetParam());
    EXPECT_EQ(asked, 0);
    const std::size_t links = test::linesOf(result).size();
    EXPECT_EQ(links, 7U) << "the pseudo-link asks nobody";
    EXPECT_EQ(asked, 2 * 2 + 6);
    asked = 0;
    test::linesOf(result);
    EXPECT_EQ(asked, 6) << "the second walk has the settings of both classes";
}

TEST_P(CountsTest, FiltersAreAskedOncePerLink) {
    m.extend("A.x = B C; B.x = A; C.y = B");
    int asked = 0;
    const auto result = Spec::subtractiveTraversal()->run({m("A")}, GetParam());
    ResultSetup(result).filter([&asked](const Link&) {
        ++asked;
        return ResultPolicy::WalkOnly;
    });
    EXPECT_EQ(test::linesOf(result).size(), 0U);
    EXPECT_EQ(asked, 5);
}

TEST_P(CountsTest, ListenersAskNobodyMore) {
    m.extend("A.x = B C; B.x = A; C.y = B");
    int asked = 0;
    const auto countedWith = [&](WalkListener* listener) {
        const auto result = Spec::additiveTraversal()
                                ->traverse(
                                    m["Node.x"],
                                    [&asked](const Class&) {
                                        ++asked;
                                        return true;
                                    },
                                    ResultPolicy::Report)
                                ->run({m("A")}, GetParam());
        ResultSetup setup(result);
        setup.filter([&asked](const Link&) {
            asked += 100;
            return ResultPolicy::Report;
        });
        setup.descend([&asked](const Link&) {
            asked += 10000;
            return true;
        });
        if (listener != nullptr) setup.trace(listener);
        asked = 0;
        test::linesOf(result);
        return asked;
    };
    const int plain = countedWith(nullptr);
    EXPECT_EQ(plain, 2 * 10000 + 4 * 100 + 1 + 3);
    WalkListener idle;
    WalkStatistics statistics;
    WalkPicture picture;
    WalkBoundaries boundaries;
    for (WalkListener* listener :
         std::initializer_list<WalkListener*>{&idle, &statistics, &picture, &boundaries}) {
        EXPECT_EQ(countedWith(listener), plain);
    }
}

TEST_P(CountsTest, AbandonedWalkLeavesNothingBehind) {
    const ModelElement root = grow(CountedShape::Tree, 3000);
    const auto result = Spec::subtractiveTraversal()->run({root}, GetParam());
    result->begin();
    const long before = AllocationMeter::live();
    {
        Walk walk = result->begin();
        for (int i = 0; i < 1000; ++i) walk.advance();
        walk.pruneAllChildren();
        const Walk copy(walk);
        walk.advance();
    }
    EXPECT_EQ(AllocationMeter::live(), before);
}

TEST_P(CountsTest, BuildersResultsAndWalksFreeAllTheyTook) {
    m.extend("A.x = B C; B.x = A; C.y = B");
    const std::vector<ModelElement> inputs{m("A"), m("B")};
    const Property x = m["Node.x"];
    const auto use = [&] {
        const auto builder = Spec::additiveTraversal()->traverse(x, ResultPolicy::Report);
        const AdditiveTraversalImpl copy(*builder);
        const auto result = builder->run(inputs, GetParam());
        ResultSetup(result).unique(UniquenessMode::UniqueLinks).filter([](const Link&) {
            return ResultPolicy::Report;
        });
        std::size_t links = 0;
        for (const Link& link : traversal::links(result)) links += link.shouldCascade() ? 1U : 0U;
        return links;
    };
    use();
    const long before = AllocationMeter::live();
    use();
    EXPECT_EQ(AllocationMeter::live(), before);
}

TEST_P(CountsTest, PruningWhatNeedsNoCursorAllocatesNothing) {
    m.extend("A.x = B C; B.y = A; C.y = B");
    Walk walk = Spec::subtractiveTraversal()->run({m("A")}, GetParam())->begin();
    // Back to an element that has all its links found, or stands on the path.
    while (walk.getCurrent().shouldCascade()) walk.advance();
    Walk copy(walk);
    const Property x = m["Node.x"];
    for (Walk* each : {&walk, &copy}) {
        const long before = AllocationMeter::total();
        each->pruneAllChildren();
        each->pruneChildren(x);
        each->pruneSiblings();
        EXPECT_EQ(AllocationMeter::total(), before);
    }
}

TEST_P(CountsTest, CursorsOfWhatWasPrunedAreFreed) {
    const ModelElement root = grow(CountedShape::Star, 400);
    const auto result = Spec::subtractiveTraversal()->run({root}, GetParam());
    const auto kept = [&](bool isPruning) {
        const long before = AllocationMeter::live();
        Walk walk = result->begin();
        for (; !!walk.getCurrent(); walk.advance()) {
            if (isPruning && walk.getCurrent().getProperty()) walk.pruneAllChildren();
        }
        return AllocationMeter::live() - before;
    };
    kept(false);
    EXPECT_LT(kept(true), kept(false) + 10);
}

INSTANTIATE_TEST_SUITE_P(Orders, CountsTest, testing::ValuesIn(test::everyOrder()),
                         [](const auto& each) { return test::nameOf(each.param); });

TEST(QueueCountsTest, QueueThatStaysShortAllocatesForItsBeginningAlone) {
    ModelBuilder m("Node", "A");
    const ModelElement a = m("A");
    internal::LinkQueue queue;
    const auto run = [&](int links) {
        const long before = AllocationMeter::total();
        for (int i = 0; i < links; ++i) {
            queue.reserveOne();
            queue.push({ModelElement(), nullptr, a, true});
            if (queue.size() > 3) queue.pop();
        }
        return AllocationMeter::total() - before;
    };
    run(2000);
    EXPECT_EQ(run(50000), 0);
}

}  // namespace
}  // namespace nuv::zero::traversal
