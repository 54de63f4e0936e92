#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <optional>
#include <ostream>
#include <random>
#include <string>
#include <tuple>
#include <vector>

#include "tests/support/AllocationMeter.h"
#include "tests/support/ModelBuilder.h"
#include "tests/support/WalkLog.h"

/// The memory that walks take for each element they enter, for models of several shapes.
namespace nuv::zero::traversal {
namespace {

using test::AllocationMeter;
using test::ModelBuilder;
using Walk = TraversalResult::IterationContext;

/// A shape of models, and what a walk of one may take.
struct MeasuredShape {
    const char* name;
    std::size_t count;
    /// The class of a numbered element.
    const char* (*classOf)(std::size_t number);
    void (*link)(ModelBuilder& m, const std::vector<ModelElement>& all);
    double bytesPerElement;
    double allocationsPerElement;
};

void PrintTo(const MeasuredShape& shape, std::ostream* out) {
    *out << shape.name;
}

/// Twelve classes on three levels. The elements are of the lowest level, which has six properties
/// that link, two of them always empty.
constexpr auto metamodel =
    "Item; GroupA < Item; GroupB < Item; GroupC < Item; KindA < GroupA; KindB < GroupB; KindC < "
    "GroupC; KindD < GroupA; KindE < GroupB; KindF < GroupC; KindG < GroupA; KindH < GroupB; "
    "Item.owner -> Item; Item.parts => Item *; Item.uses -> Item *; Item.peer -> Item; "
    "GroupA.notes => Item *; GroupB.notes => Item *; GroupC.notes => Item *; "
    "KindA.extras -> Item *; KindB.extras -> Item *; KindC.extras -> Item *; "
    "KindD.extras -> Item *; KindE.extras -> Item *; KindF.extras -> Item *; "
    "KindG.extras -> Item *; KindH.extras -> Item *";

const char* plainClass(std::size_t /*number*/) {
    return "Item";
}
const char* richClass(std::size_t number) {
    static constexpr const char* kinds[] = {"KindA", "KindB", "KindC", "KindD",
                                            "KindE", "KindF", "KindG", "KindH"};
    return kinds[number * 7 % 8];
}

void linkTree(ModelBuilder& m, const std::vector<ModelElement>& all) {
    for (std::size_t i = 1; i < all.size(); ++i) {
        m.model.add(all[(i - 1) / 8], m["Item.parts"], all[i]);
    }
}
void linkStar(ModelBuilder& m, const std::vector<ModelElement>& all) {
    for (std::size_t i = 1; i < all.size(); ++i) m.model.add(all[0], m["Item.parts"], all[i]);
}
void linkChain(ModelBuilder& m, const std::vector<ModelElement>& all) {
    for (std::size_t i = 1; i < all.size(); ++i) m.model.set(all[i - 1], m["Item.peer"], all[i]);
}
/// A tree in which every element knows its owner and two others, drawn by lot.
void linkRichly(ModelBuilder& m, const std::vector<ModelElement>& all) {
    linkTree(m, all);
    std::mt19937 random(20240229);
    for (std::size_t i = 0; i < all.size(); ++i) {
        if (i > 0) m.model.set(all[i], m["Item.owner"], all[(i - 1) / 8]);
        m.model.add(all[i], m["Item.uses"], all[random() % all.size()]);
        m.model.set(all[i], m["Item.peer"], all[random() % all.size()]);
    }
}

/// The sizes are just below those at which the table of what was entered doubles.
const std::vector<MeasuredShape>& shapes() {
    static const std::vector<MeasuredShape> all{
        {"Tree", 32000, plainClass, linkTree, 60, 0.1},
        {"Star", 32000, plainClass, linkStar, 60, 0.1},
        {"Chain", 32000, plainClass, linkChain, 120, 0.1},
        {"Rich", 32000, richClass, linkRichly, 110, 0.3},
        {"Small", 10000, richClass, linkRichly, 120, 0.3},
    };
    return all;
}

struct Cost {
    long allocations;
    long peakBytes;
};

class WalkMemoryTest : public testing::TestWithParam<std::tuple<MeasuredShape, Algo>> {
  protected:
    WalkMemoryTest() {
        std::vector<ModelElement> all;
        while (all.size() < shape.count) {
            all.push_back(m.model.create(m.type(shape.classOf(all.size()))));
        }
        shape.link(m, all);
        root = all.front();
    }

    std::shared_ptr<TraversalResult> run() const {
        return Spec::subtractiveTraversal()->run({root}, std::get<Algo>(GetParam()));
    }
    /// What a whole walk takes. REQUIRES: it enters every element.
    Cost costOf(const std::shared_ptr<TraversalResult>& result) const {
        AllocationMeter::restartPeak();
        const long allocations = AllocationMeter::total();
        const long bytes = AllocationMeter::bytes();
        std::size_t entered = 0;
        for (Walk walk = result->begin(); !!walk.getCurrent(); walk.advance()) {
            entered += walk.getCurrent().shouldCascade() ? 1 : 0;
        }
        const Cost cost{AllocationMeter::total() - allocations,
                        AllocationMeter::peakBytes() - bytes};
        EXPECT_EQ(entered, shape.count);
        return cost;
    }
    double perElement(long amount) const {
        return static_cast<double>(amount) / static_cast<double>(shape.count);
    }
    /// What an allocator may make of the same requests another time.
    static long withRounding(long bytes) { return bytes + bytes / 50 + 4096; }
    /// The walk when half of the elements have been reported.
    Walk halfway(const std::shared_ptr<TraversalResult>& result) const {
        Walk walk = result->begin();
        for (std::size_t i = 0; i < shape.count / 2; ++i) walk.advance();
        return walk;
    }

    const MeasuredShape shape = std::get<MeasuredShape>(GetParam());
    ModelBuilder m{metamodel};
    ModelElement root;
};

TEST_P(WalkMemoryTest, PeakAndAllocationsPerElementStayWithinTheirBounds) {
    const Cost cost = costOf(run());
    EXPECT_LE(perElement(cost.peakBytes), shape.bytesPerElement);
    EXPECT_LE(perElement(cost.allocations), shape.allocationsPerElement);
}

TEST_P(WalkMemoryTest, IdleObserverTakesNothing) {
    const Cost unobserved = costOf(run());
    TraversalProcessor idle;
    const auto result = run();
    ResultSetup(result).observe(&idle);
    const Cost observed = costOf(result);
    EXPECT_EQ(observed.allocations, unobserved.allocations);
    EXPECT_LE(observed.peakBytes, withRounding(unobserved.peakBytes));
}

TEST_P(WalkMemoryTest, CopyOfAWalkTakesNoMoreThanTheWalkAndFreesIt) {
    const auto result = run();
    // The settings of all classes, which belong to the result.
    costOf(result);
    const long before = AllocationMeter::bytes();
    const Walk walk = halfway(result);
    const long ofWalk = AllocationMeter::bytes() - before;
    AllocationMeter::restartPeak();
    const long allocations = AllocationMeter::total();
    {
        const Walk copy(walk);
        EXPECT_LE(AllocationMeter::peakBytes() - before, withRounding(2 * ofWalk));
        EXPECT_LE(perElement(AllocationMeter::total() - allocations), shape.allocationsPerElement);
    }
    EXPECT_EQ(AllocationMeter::bytes() - before, ofWalk);
}

/// Remembers what walks say they hold, and allocates nothing.
struct HeldBytes : WalkListener {
    void onLink(const WalkView& walk, const Link& /*link*/, Fate /*fate*/,
                std::size_t /*filter*/) override {
        latest = walk.bytesHeld();
        most = std::max(most, latest);
    }
    std::size_t latest = 0;
    std::size_t most = 0;
};

TEST_P(WalkMemoryTest, WalkSaysHowManyBytesItHolds) {
    for (const bool remembersAll : {false, true}) {
        const auto result = run();
        HeldBytes held;
        ResultSetup setup(result);
        setup.trace(&held);
        if (remembersAll) {
            setup.rememberPaths().unique(UniquenessMode::UniqueLinks).upTo(shape.count);
        }
        // The settings of all classes, which belong to the result.
        costOf(result);
        const long before = AllocationMeter::bytes();
        const Walk walk = halfway(result);
        const long taken = AllocationMeter::bytes() - before;
        // What the allocator rounds up, the walk itself, and what single cursors have.
        EXPECT_LE(static_cast<long>(held.latest), taken);
        EXPECT_GE(static_cast<long>(held.latest), taken * 9 / 10 - 4096);
        EXPECT_GE(held.most, held.latest);
    }
}

TEST_P(WalkMemoryTest, ListenerThatDoesNothingTakesNothing) {
    const Cost untraced = costOf(run());
    WalkListener idle;
    const auto result = run();
    ResultSetup(result).trace(&idle);
    const Cost traced = costOf(result);
    // The list of listeners.
    EXPECT_LE(traced.allocations, untraced.allocations + 1);
    EXPECT_LE(traced.peakBytes, withRounding(untraced.peakBytes));
}

INSTANTIATE_TEST_SUITE_P(ShapesAndOrders, WalkMemoryTest,
                         testing::Combine(testing::ValuesIn(shapes()),
                                          testing::ValuesIn(test::everyOrder())),
                         [](const auto& each) {
                             return std::string(std::get<MeasuredShape>(each.param).name) +
                                    test::nameOf(std::get<Algo>(each.param));
                         });

/// A builder with many rules, each for a property and a class of its own.
class BuilderMemoryTest : public testing::Test {
  protected:
    static constexpr long rules = 100;

    BuilderMemoryTest() {
        std::string text = "Item";
        for (long i = 0; i < rules; ++i) {
            text += ";Item.p" + std::to_string(i) + " -> Item";
        }
        m.emplace(text, "A.p0 = B; B.p99 = A");
        for (long i = 0; i < rules; ++i) {
            matchers.emplace_back((*m)["Item.p" + std::to_string(i)]);
        }
    }

    std::optional<ModelBuilder> m;
    std::vector<PropertyMatcher> matchers;
};

TEST_F(BuilderMemoryTest, RulesOfABuilderAndOfItsResultTakeABoundedAmountEach) {
    const std::vector<ModelElement> inputs{(*m)("A")};
    const auto perRule = [](auto&& action) {
        AllocationMeter::restartPeak();
        const long allocations = AllocationMeter::total();
        const long bytes = AllocationMeter::bytes();
        const auto kept = action();
        EXPECT_LE(AllocationMeter::total() - allocations, 5 * rules);
        EXPECT_LE(AllocationMeter::peakBytes() - bytes, 400 * rules);
        return kept;
    };
    const auto builder = perRule(
        [&] { return Spec::additiveTraversal()->traverse(matchers, ResultPolicy::Report); });
    const auto result = perRule([&] { return builder->depthFirst(inputs); });
    EXPECT_EQ(perRule([&] { return test::linesOf(result); }).size(), 3U);
    const auto copy = perRule([&] { return AdditiveTraversalImpl(*builder); });
}

}  // namespace
}  // namespace nuv::zero::traversal
