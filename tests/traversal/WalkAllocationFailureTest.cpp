#include <gtest/gtest.h>

#include <memory>
#include <new>
#include <set>
#include <string>
#include <tuple>
#include <vector>

#include "tests/support/AllocationMeter.h"
#include "tests/support/CyclicModel.h"
#include "tests/support/Points.h"
#include "tests/support/WalkLog.h"

/// Every single allocation of a walk fails in turn, prunes included, and the rest of the walk, its
/// events too, has to be that of the oracle that runs out of memory at one of the places where a
/// walk has to remember something. Nothing else may follow a failure.
namespace nuv::zero::traversal {
namespace {

using test::AllocationMeter;
using test::Kind;
using test::Lines;
using test::ModelBuilder;
using test::OracleGround;
using test::OracleWalk;
using test::text;
using Walk = TraversalResult::IterationContext;

struct WalkedModel {
    const char* name;
    std::string model;
    std::vector<const char*> inputs;
    /// Walks are copied at every step of the small model, and now and then in long walks.
    int stepsBetweenCopies;
};

const std::vector<WalkedModel>& worlds() {
    // The ring is deeper than what a walk makes room for at once.
    static const std::vector<WalkedModel> all{{"Small", test::cyclicModel, {"A", "H", "C"}, 1},
                                              {"Ring", test::ringModel(70), {"N3", "N40"}, 4}};
    return all;
}

/// The last says whether walks go up to a distance and remember paths.
using Parameter = std::tuple<std::size_t, Kind, Algo, UniquenessMode, bool>;
constexpr std::size_t distance = 2;

class WalkAllocationFailureTest : public testing::TestWithParam<Parameter> {
  protected:
    WalkAllocationFailureTest() {
        for (const char* name : world.inputs) inputs.push_back(m(name));
        ground.filters = {[this](const Link& link) { return filter(link); }};
    }

    /// Neither what it writes down nor its own copies of links are the walk's.
    class ExemptObserver : public test::EventLog {
      public:
        using EventLog::EventLog;

      protected:
        void note(std::string line) override { EventLog::note(std::move(line)); }
        void onEnterInputElement(const ModelElement& element) override {
            const AllocationMeter::Exempt exempt;
            EventLog::onEnterInputElement(element);
        }
        void onEnterElement(const ModelElement& element) override {
            const AllocationMeter::Exempt exempt;
            EventLog::onEnterElement(element);
        }
        void onEnterProperty(const ModelElement& element, const Property& property) override {
            const AllocationMeter::Exempt exempt;
            EventLog::onEnterProperty(element, property);
        }
        void onExitProperty(const ModelElement& element, const Property& property) override {
            const AllocationMeter::Exempt exempt;
            EventLog::onExitProperty(element, property);
        }
        void onExitElement(const ModelElement& element) override {
            const AllocationMeter::Exempt exempt;
            EventLog::onExitElement(element);
        }
        void onExitInputElement(const ModelElement& element) override {
            const AllocationMeter::Exempt exempt;
            EventLog::onExitInputElement(element);
        }
    };

    /// Begins, prunes now and then, and steps to the end; writes down where it failed.
    template <class Begin>
    void drive(Begin&& begin, Lines& lines) {
        const auto note = [&lines](std::string line) {
            const AllocationMeter::Exempt exempt;
            lines.push_back(std::move(line));
        };
        const auto noteLink = [&lines](const Link& link) {
            const AllocationMeter::Exempt exempt;
            lines.push_back(text(link));
        };
        const auto notePath = [this, &lines](const auto& walk) {
            const AllocationMeter::Exempt exempt;
            if (!isLimited) return;
            for (const Link& link : walk.path()) lines.push_back("over " + text(link));
        };
        decltype(begin()) walk;
        while (!walk) {
            try {
                walk = begin();
            } catch (const std::bad_alloc&) {
                note("no walk");
            }
        }
        noteLink(walk->getCurrent());
        for (int step = 0; step < 1000; ++step) {
            const Link before = walk->getCurrent();
            try {
                if (step % 6 == 4) walk->pruneSiblings();
                if (step % 7 == 3) walk->pruneChildren(pruned);
                if (step % 11 == 5) walk->pruneAllChildren();
            } catch (const std::bad_alloc&) {
                note("not pruned");
            }
            try {
                walk->advance();
            } catch (const std::bad_alloc&) {
                note("failed");
                if (!(walk->getCurrent() == before)) note("and yet it moved");
                continue;
            }
            noteLink(walk->getCurrent());
            notePath(*walk);
            if (!walk->getCurrent()) return;
        }
        note("the walk does not end");
    }

    ResultPolicy filter(const Link& link) const {
        const AllocationMeter::Exempt exempt;
        return text(link.getTarget()) == "D" ? ResultPolicy::WalkOnly : ResultPolicy::Report;
    }

    /// The oracle that fails at the place with this number; false when there was none.
    bool oracleFailingAt(int place, Lines& lines) {
        int passed = 0;
        const auto mayFail = [&] {
            if (++passed == place) throw std::bad_alloc();
        };
        ExemptObserver observer(lines);
        ground.observer = &observer;
        ground.onRemember = mayFail;
        const auto result = ground.result(rules, inputs, order);
        result->uniqueness = static_cast<int>(mode);
        if (isLimited) result->upTo = distance;
        drive(
            [&] {
                mayFail();
                return isLimited
                           ? std::make_unique<OracleWalk>(OracleWalk::prepared(ground, result))
                           : std::make_unique<OracleWalk>(ground, result);
            },
            lines);
        return passed >= place;
    }

    /// The engine's walk of which the allocation with this number fails; false when there was none.
    bool engineFailingAt(long allocation, Lines& lines) {
        ExemptObserver observer(lines);
        const auto result = test::cyclicResult(m, kind, order, inputs);
        ResultSetup(result).observe(&observer).unique(mode).filter(
            [this](const Link& link) { return filter(link); });
        if (isLimited) ResultSetup(result).upTo(distance).rememberPaths();
        AllocationMeter::failAt(allocation);
        drive(
            [&] {
                return isLimited ? std::make_unique<Walk>(result->prepare())
                                 : std::make_unique<Walk>(result);
            },
            lines);
        AllocationMeter::failAt(0);
        return AllocationMeter::hasFailed();
    }

    const WalkedModel& world = worlds()[std::get<0>(GetParam())];
    const Kind kind = std::get<1>(GetParam());
    const Algo order = std::get<2>(GetParam());
    const UniquenessMode mode = std::get<3>(GetParam());
    const bool isLimited = std::get<4>(GetParam());
    ModelBuilder m{test::cyclicMetamodel, world.model};
    OracleGround ground{m};
    const oracle::Rules rules = test::cyclicRules(m, ground, kind);
    const Property pruned = m["Node.y"];
    std::vector<ModelElement> inputs;
};

TEST_P(WalkAllocationFailureTest, WalkGoesOnAsTheOracleThatRanOutOfMemoryAndLeaksNothing) {
    std::set<Lines> permitted;
    for (int place = 0;; ++place) {
        Lines lines;
        const bool failed = oracleFailingAt(place, lines);
        permitted.insert(std::move(lines));
        if (place > 0 && !failed) break;
    }
    Lines undisturbed;
    oracleFailingAt(0, undisturbed);
    long points = 0;
    for (;; ++points) {
        const long before = AllocationMeter::live();
        bool failed = false;
        {
            Lines lines;
            failed = engineFailingAt(points, lines) && points > 0;
            ASSERT_TRUE(permitted.contains(lines))
                << "allocation " << points << ": " << testing::PrintToString(lines);
            if (!failed) {
                ASSERT_EQ(lines, undisturbed);
            }
        }
        ASSERT_EQ(AllocationMeter::live(), before) << "leaked at allocation " << points;
        if (points > 0 && !failed) break;
    }
    test::recordPoints(points - 1, "failing allocations in walks");
    EXPECT_GT(points, 10);
}

std::string nameOf(UniquenessMode mode) {
    switch (mode) {
        case UniquenessMode::UniqueLinks:
            return "UniqueLinks";
        case UniquenessMode::UniqueElements:
            return "UniqueElements";
        case UniquenessMode::NoUniqueness:
            break;
    }
    return "WithRepeats";
}

auto everyMode() {
    return testing::Combine(
        testing::Range<std::size_t>(0, worlds().size()), testing::ValuesIn(test::everyKind()),
        testing::ValuesIn(test::everyOrder()),
        testing::Values(UniquenessMode::NoUniqueness, UniquenessMode::UniqueElements,
                        UniquenessMode::UniqueLinks),
        testing::Values(false));
}
auto everyLimit() {
    return testing::Combine(testing::Range<std::size_t>(0, worlds().size()),
                            testing::ValuesIn(test::everyKind()),
                            testing::ValuesIn(test::everyOrder()),
                            testing::Values(UniquenessMode::NoUniqueness), testing::Values(true));
}
std::string nameOfParameter(const testing::TestParamInfo<Parameter>& each) {
    return worlds()[std::get<0>(each.param)].name + std::string(nameOf(std::get<1>(each.param))) +
           test::nameOf(std::get<2>(each.param)) + nameOf(std::get<3>(each.param));
}

INSTANTIATE_TEST_SUITE_P(WorldsKindsOrdersAndModes, WalkAllocationFailureTest, everyMode(),
                         nameOfParameter);
INSTANTIATE_TEST_SUITE_P(LimitedWorldsKindsAndOrders, WalkAllocationFailureTest, everyLimit(),
                         nameOfParameter);

/// Copies of walks in mid-walk.
class CopyAllocationFailureTest : public testing::TestWithParam<Parameter> {
  protected:
    CopyAllocationFailureTest() {
        for (const char* name : world.inputs) inputs.push_back(m(name));
        result = test::cyclicResult(m, std::get<1>(GetParam()), std::get<2>(GetParam()), inputs);
        ResultSetup(result).unique(std::get<3>(GetParam()));
        if (std::get<4>(GetParam())) ResultSetup(result).upTo(distance).rememberPaths();
    }
    /// The walk after some steps, with prunes that leave cursors of every sort behind.
    Walk at(int steps) const {
        Walk walk = result->begin();
        for (int i = 0; i < steps; ++i) {
            if (i % 5 == 2) walk.pruneChildren(pruned);
            walk.advance();
        }
        return walk;
    }

    /// Fails each allocation of an action in turn until the action succeeds; the points tried.
    template <class Action, class AfterFailure>
    static long failEverywhere(Action&& action, AfterFailure&& afterFailure) {
        for (long allocation = 1;; ++allocation) {
            const long before = AllocationMeter::live();
            bool threw = false;
            AllocationMeter::failAt(allocation);
            try {
                action();
            } catch (const std::bad_alloc&) {
                threw = true;
            }
            AllocationMeter::failAt(0);
            EXPECT_EQ(threw, AllocationMeter::hasFailed());
            if (!threw) return allocation - 1;
            EXPECT_EQ(AllocationMeter::live(), before) << "leaked at allocation " << allocation;
            afterFailure();
        }
    }

    const WalkedModel& world = worlds()[std::get<0>(GetParam())];
    const int stride = world.stepsBetweenCopies;
    ModelBuilder m{test::cyclicMetamodel, world.model};
    const Property pruned = m["Node.y"];
    std::vector<ModelElement> inputs;
    std::shared_ptr<TraversalResult> result;
};

TEST_P(CopyAllocationFailureTest, CopyThatFailsLeavesTheOriginalAsItWas) {
    long points = 0;
    Walk walk = at(0);
    for (int step = 0; !!walk.getCurrent() && step < 1000; step += stride) {
        Walk untouched = at(step);
        std::unique_ptr<Walk> copy;
        points += failEverywhere([&] { copy = std::make_unique<Walk>(walk); },
                                 [&] { ASSERT_TRUE(walk == untouched); });
        ASSERT_TRUE(*copy == walk);
        const Lines expected = test::rest(untouched);
        ASSERT_EQ(test::rest(*copy), expected) << "the copy, from step " << step;
        // The original goes on through all steps, each of them after failed copies.
        for (int i = step; i < step + stride && !!walk.getCurrent(); ++i) {
            if (i % 5 == 2) walk.pruneChildren(pruned);
            walk.advance();
        }
    }
    Walk ended = at(0);
    const Lines links = test::rest(ended);
    EXPECT_TRUE(walk == ended);
    test::recordPoints(points, "failing allocations in copies of walks");
}

TEST_P(CopyAllocationFailureTest, AssignmentThatFailsLeavesBothWalksAsTheyWere) {
    long points = 0;
    Walk source = at(0);
    for (int step = 0; !!source.getCurrent() && step < 1000; step += stride) {
        const int place = step * 7 % 13;
        Walk target = at(place);
        Walk oldTarget = target;
        Walk oldSource = source;
        points += failEverywhere([&] { target = source; },
                                 [&] {
                                     ASSERT_TRUE(target == oldTarget);
                                     ASSERT_TRUE(source == oldSource);
                                 });
        ASSERT_TRUE(target == source);
        const Lines expected = test::rest(oldSource);
        ASSERT_EQ(test::rest(target), expected) << "assigned at step " << step;

        // The walk that an assignment left as it was goes on as if there had been none.
        Walk kept = at(place);
        bool threw = false;
        AllocationMeter::failAt(1 + step % 3);
        try {
            kept = source;
        } catch (const std::bad_alloc&) {
            threw = true;
        }
        AllocationMeter::failAt(0);
        const Lines rest = test::rest(oldTarget);
        ASSERT_EQ(test::rest(kept), threw ? rest : expected) << "kept at step " << step;
        for (int i = step; i < step + stride && !!source.getCurrent(); ++i) {
            if (i % 5 == 2) source.pruneChildren(pruned);
            source.advance();
        }
    }
    test::recordPoints(points, "failing allocations in assignments of walks");
}

INSTANTIATE_TEST_SUITE_P(WorldsKindsOrdersAndModes, CopyAllocationFailureTest, everyMode(),
                         nameOfParameter);
INSTANTIATE_TEST_SUITE_P(LimitedWorldsKindsAndOrders, CopyAllocationFailureTest, everyLimit(),
                         nameOfParameter);

}  // namespace
}  // namespace nuv::zero::traversal
