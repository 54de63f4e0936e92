#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/AllocationMeter.h"
#include "tests/support/CyclicModel.h"
#include "tests/support/Points.h"
#include "tests/support/WalkLog.h"

/// Every single allocation of every operation on builders fails in turn.
namespace nuv::zero::traversal {
namespace {

using test::AllocationMeter;
using test::Lines;
using test::ModelBuilder;

class BuilderAllocationFailureTest : public testing::Test {
  protected:
    /// Fails each allocation of an action in turn; after each, the builder must run.
    template <class Make, class Action, class Check>
    void failEverywhere(Make&& make, Action&& action, Check&& check) {
        for (long allocation = 1;; ++allocation) {
            const long before = AllocationMeter::live();
            bool threw = false;
            {
                const auto builder = make();
                AllocationMeter::failAt(allocation);
                try {
                    action(*builder);
                } catch (const std::bad_alloc&) {
                    threw = true;
                }
                AllocationMeter::failAt(0);
                EXPECT_EQ(threw, AllocationMeter::hasFailed());
                check(*builder, threw);
            }
            EXPECT_EQ(AllocationMeter::live(), before) << "leaked at allocation " << allocation;
            if (!threw) break;
            ++points;
        }
    }
    void TearDown() override {
        test::recordPoints(points, "failing allocations in operations on builders");
    }

    /// What a builder walks, in all orders.
    template <class Builder>
    Lines walksOf(Builder& builder) {
        Lines lines;
        for (const Algo order : test::everyOrder()) {
            for (const std::string& line : test::linesOf(builder.run(inputs, order))) {
                lines.push_back(line);
            }
        }
        return lines;
    }

    /// A step of giving rules, which may be made of several.
    template <class Impl>
    struct BuilderStep {
        const char* name;
        std::function<void(Impl&)> all;
        /// The parts one by one: a failure may come between them.
        std::vector<std::function<void(Impl&)>> parts;
    };

    /// A step that fails has done some of its parts, from the first on, or none; done again, it
    /// ends where it would have ended.
    template <class Make, class Impl>
    void failSteps(Make&& make, const std::vector<BuilderStep<Impl>>& steps) {
        for (const BuilderStep<Impl>& step : steps) {
            SCOPED_TRACE(step.name);
            std::vector<Lines> permitted;
            {
                const auto builder = make();
                permitted.push_back(walksOf(*builder));
                for (const auto& part : step.parts) {
                    part(*builder);
                    permitted.push_back(walksOf(*builder));
                }
            }
            failEverywhere(make, step.all, [&](Impl& builder, bool threw) {
                const Lines lines = walksOf(builder);
                if (threw) {
                    EXPECT_NE(std::find(permitted.begin(), permitted.end(), lines),
                              permitted.end());
                    step.all(builder);
                    EXPECT_EQ(walksOf(builder), permitted.back()) << "done again";
                } else {
                    EXPECT_EQ(lines, permitted.back());
                }
            });
        }
    }
    /// The same for a step that is one part.
    template <class Impl>
    static BuilderStep<Impl> whole(const char* name, std::function<void(Impl&)> all) {
        return {name, all, {all}};
    }

    ModelBuilder m{test::cyclicMetamodel, test::cyclicModel};
    const Property x = m["Node.x"];
    const Property y = m["Node.y"];
    const Property z = m["Leaf.z"];
    const Property boss = m["Node.boss"];
    const Class leaf = m.type("Leaf");
    const std::vector<ModelElement> inputs{m("A"), m("H")};
    const std::function<bool(const Class&)> isLeaf = [type = leaf](const Class& other) {
        return other == type;
    };
    long points = 0;
};

TEST_F(BuilderAllocationFailureTest, TraverseThatFailsHasNamedThePropertyWithItsRulesOrNotAtAll) {
    const Lines withoutY = test::linesOf(
        Spec::additiveTraversal()->traverse(x, ResultPolicy::Report)->depthFirst({m("A")}));
    const Lines withY = test::linesOf(
        Spec::additiveTraversal()->traverse({x, y}, ResultPolicy::Report)->depthFirst({m("A")}));
    failEverywhere(
        [this] { return Spec::additiveTraversal()->traverse(x, ResultPolicy::Report); },
        [this](AdditiveTraversalImpl& builder) { builder.traverse(y, ResultPolicy::Report); },
        [&](AdditiveTraversalImpl& builder, bool threw) {
            const Lines lines = test::linesOf(builder.depthFirst({m("A")}));
            EXPECT_EQ(lines, threw ? withoutY : withY);
            builder.traverse(y, ResultPolicy::Report);
            EXPECT_EQ(test::linesOf(builder.depthFirst({m("A")})), withY) << "named again";
        });
}

TEST_F(BuilderAllocationFailureTest, PruneAndSetResultPolicyThatFailLeaveTheBuilderUsable) {
    const Lines unpruned = test::linesOf(Spec::subtractiveTraversal()->depthFirst({m("A")}));
    failEverywhere([] { return Spec::subtractiveTraversal(); },
                   [this](SubtractiveTraversalImpl& builder) { builder.prune(y); },
                   [&](SubtractiveTraversalImpl& builder, bool threw) {
                       const Lines lines = test::linesOf(builder.depthFirst({m("A")}));
                       EXPECT_EQ(lines == unpruned, threw);
                   });
    failEverywhere([] { return Spec::subtractiveTraversal(); },
                   [this](SubtractiveTraversalImpl& builder) {
                       builder.setResultPolicy(y, ResultPolicy::WalkOnly);
                   },
                   [&](SubtractiveTraversalImpl& builder, bool threw) {
                       const Lines lines = test::linesOf(builder.depthFirst({m("A")}));
                       EXPECT_EQ(lines == unpruned, threw);
                   });
}

TEST_F(BuilderAllocationFailureTest, ManyRulesForOnePropertySurviveAFailureAnywhere) {
    failEverywhere([this] { return Spec::additiveTraversal()->traverse(x, ResultPolicy::Report); },
                   [this](AdditiveTraversalImpl& builder) {
                       builder.traverse({x, isLeaf, leaf}, ResultPolicy::Extended);
                       builder.setResultPolicy(x, ResultPolicy::WalkOnly);
                   },
                   [this](AdditiveTraversalImpl& builder, bool /*threw*/) {
                       EXPECT_FALSE(test::linesOf(builder.depthFirst({m("A")})).empty());
                   });
}

TEST_F(BuilderAllocationFailureTest, RunningThatFailsCanBeTriedAgain) {
    const auto make = [this] {
        return Spec::additiveTraversal()->traverse({x, y}, ResultPolicy::Report);
    };
    const Lines expected = test::linesOf(make()->depthFirst(inputs));
    failEverywhere(
        make, [&](AdditiveTraversalImpl& builder) { builder.depthFirst(inputs); },
        [&](AdditiveTraversalImpl& builder, bool /*threw*/) {
            EXPECT_EQ(test::linesOf(builder.depthFirst(inputs)), expected);
        });
}

TEST_F(BuilderAllocationFailureTest, EveryStepOfAnAdditiveBuilderIsDoneOrNot) {
    using Impl = AdditiveTraversalImpl;
    failSteps([this] { return Spec::additiveTraversal()->traverse(x, ResultPolicy::Report); },
              std::vector<BuilderStep<Impl>>{
                  whole<Impl>("Traverse", [this](Impl& b) { b.traverse(y, ResultPolicy::Report); }),
                  whole<Impl>("TraverseWithPredicate",
                              [this](Impl& b) { b.traverse(y, isLeaf, ResultPolicy::Extended); }),
                  whole<Impl>("TraverseAgain",
                              [this](Impl& b) { b.traverse(x, isLeaf, ResultPolicy::WalkOnly); }),
                  {"TraverseSeveral",
                   [this](Impl& b) {
                       b.traverse({y, boss, z}, ResultPolicy::Report);
                   },
                   {[this](Impl& b) { b.traverse(y, ResultPolicy::Report); },
                    [this](Impl& b) { b.traverse(boss, ResultPolicy::Report); },
                    [this](Impl& b) { b.traverse(z, ResultPolicy::Report); }}},
                  whole<Impl>("SetResultPolicy",
                              [this](Impl& b) { b.setResultPolicy(x, ResultPolicy::WalkOnly); }),
              });
}

TEST_F(BuilderAllocationFailureTest, EveryStepOfACompositionBuilderIsDoneOrNot) {
    using Impl = CompositionTraversalImpl;
    failSteps([this] { return Spec::compositionTraversal()->prune(z, isLeaf); },
              std::vector<BuilderStep<Impl>>{
                  whole<Impl>("Prune", [this](Impl& b) { b.prune(x); }),
                  whole<Impl>("PruneWithPredicate", [this](Impl& b) { b.prune(x, isLeaf); }),
                  {"PruneSeveral",
                   [this](Impl& b) {
                       b.prune({{z, isLeaf, m.type("Node")}, {x, isLeaf, leaf}});
                   },
                   {[this](Impl& b) {
                        b.prune({z, isLeaf, m.type("Node")});
                    },
                    [this](Impl& b) {
                        b.prune({x, isLeaf, leaf});
                    }}},
                  whole<Impl>("SetResultPolicy",
                              [this](Impl& b) { b.setResultPolicy(x, ResultPolicy::WalkOnly); }),
              });
}

TEST_F(BuilderAllocationFailureTest, EveryStepOfASubtractiveBuilderIsDoneOrNot) {
    using Impl = SubtractiveTraversalImpl;
    failSteps([this] { return Spec::subtractiveTraversal()->prune(boss, isLeaf); },
              std::vector<BuilderStep<Impl>>{
                  whole<Impl>("Prune", [this](Impl& b) { b.prune(y); }),
                  whole<Impl>("PruneWithPredicate", [this](Impl& b) { b.prune(x, isLeaf); }),
                  {"PruneSeveral",
                   [this](Impl& b) {
                       b.prune({y, {boss, isLeaf, leaf}, z});
                   },
                   {[this](Impl& b) { b.prune(y); },
                    [this](Impl& b) {
                        b.prune({boss, isLeaf, leaf});
                    },
                    [this](Impl& b) { b.prune(z); }}},
                  whole<Impl>("SetResultPolicy",
                              [this](Impl& b) { b.setResultPolicy(x, ResultPolicy::WalkOnly); }),
                  {"SetResultPolicies",
                   [this](Impl& b) {
                       b.setResultPolicy({x, y}, ResultPolicy::WalkOnly);
                   },
                   {[this](Impl& b) { b.setResultPolicy(x, ResultPolicy::WalkOnly); },
                    [this](Impl& b) { b.setResultPolicy(y, ResultPolicy::WalkOnly); }}},
              });
}

TEST_F(BuilderAllocationFailureTest, CopiesOfBuildersOfEachKindHaveAllRulesOrAreNotMade) {
    const auto additive = Spec::additiveTraversal()
                              ->traverse({x, y, z}, ResultPolicy::Report)
                              ->traverse({boss, isLeaf, leaf}, ResultPolicy::Report);
    const auto composition = Spec::compositionTraversal()->prune(z, isLeaf)->prune(x, isLeaf);
    const auto subtractive = Spec::subtractiveTraversal()->prune({y, {boss, isLeaf, leaf}});
    const auto copyEverywhere = [this](auto& original) {
        using Impl = std::remove_reference_t<decltype(original)>;
        const Lines expected = walksOf(original);
        failEverywhere(
            [&] { return std::make_unique<std::unique_ptr<Impl>>(); },
            [&](std::unique_ptr<Impl>& copy) { copy = std::make_unique<Impl>(original); },
            [&](std::unique_ptr<Impl>& copy, bool threw) {
                EXPECT_EQ(copy == nullptr, threw);
                if (!threw) {
                    EXPECT_EQ(walksOf(*copy), expected);
                }
                EXPECT_EQ(walksOf(original), expected);
            });
    };
    copyEverywhere(*additive);
    copyEverywhere(*composition);
    copyEverywhere(*subtractive);
}

TEST_F(BuilderAllocationFailureTest, AssignmentsOfEachKindThatFailKeepTheOldRulesWhole) {
    const auto assignEverywhere = [this](auto make, const auto& source) {
        using Impl = std::remove_reference_t<decltype(*make())>;
        const Lines old = walksOf(*make());
        const Lines assigned = walksOf(*source);
        failEverywhere(
            make, [&](Impl& builder) { builder = *source; },
            [&](Impl& builder, bool threw) {
                EXPECT_EQ(walksOf(builder), threw ? old : assigned);
                builder = *source;
                EXPECT_EQ(walksOf(builder), assigned) << "assigned again";
            });
    };
    assignEverywhere(
        [this] { return Spec::additiveTraversal()->traverse(x, ResultPolicy::Report); },
        Spec::additiveTraversal()
            ->includeInitialPseudoLink(ResultPolicy::WalkOnly)
            ->traverse({y, boss}, ResultPolicy::Report));
    assignEverywhere([this] { return Spec::compositionTraversal()->prune(z); },
                     Spec::compositionTraversal()->prune({x, z}));
    assignEverywhere([this] { return Spec::subtractiveTraversal()->prune(y); },
                     Spec::subtractiveTraversal()->prune({boss, isLeaf, leaf})->prune(x));
}

}  // namespace
}  // namespace nuv::zero::traversal
