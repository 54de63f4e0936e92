#include <gtest/gtest.h>

#include <sys/resource.h>

#include <chrono>
#include <cstdio>
#include <memory>
#include <stdexcept>
#include <string>
#include <tuple>
#include <utility>

#include "tests/support/ModelBuilder.h"
#include "tests/support/SmallStack.h"
#include "tests/support/WalkLog.h"

/// The deepest and the widest of models: everything that a walk, a result and a model can go
/// through happens on a stack far too small for a recursion, from the first element made to the
/// last one destroyed.
namespace nuv::zero::traversal {
namespace {

using test::deepModelSize;
using Walk = TraversalResult::IterationContext;

constexpr auto all = static_cast<std::size_t>(deepModelSize);

enum class GiantShape { Chain, Star };

const char* nameOf(GiantShape shape) {
    return shape == GiantShape::Chain ? "Chain" : "Star";
}
void PrintTo(GiantShape shape, std::ostream* out) {
    *out << nameOf(shape);
}

/// What the body of a small stack found; compared outside, where there is room for messages.
struct Findings {
    std::size_t links = 0;
    std::size_t asked = 0;
    std::size_t thrown = 0;
    bool copyWasEqual = false;
    bool copyWasEqualAfterStep = true;
    bool kept = false;
    bool ended = false;
};

/// All elements of a model of one shape, and its first.
class Giant {
  public:
    explicit Giant(GiantShape shape) {
        first_ = model_.create(node_);
        if (shape == GiantShape::Chain) {
            ModelElement last = first_;
            for (int i = 1; i < deepModelSize; ++i) {
                ModelElement next = model_.create(node_);
                model_.set(last, next_, next);
                last = std::move(next);
            }
        } else {
            for (int i = 1; i < deepModelSize; ++i) {
                model_.add(first_, many_, model_.create(node_));
            }
        }
    }

    std::shared_ptr<TraversalResult> run(Algo order) const {
        return Spec::subtractiveTraversal()->run({first_}, order);
    }
    /// Reports nothing at all; counts how often the rules are asked, and throws at one of the
    /// times.
    std::shared_ptr<TraversalResult> runSilently(Algo order, std::size_t& asked,
                                                 std::size_t throwing = 0) const {
        const auto counting = [&asked, throwing](const Class&) {
            if (++asked == throwing) throw std::runtime_error("on the way");
            return true;
        };
        return Spec::additiveTraversal()
            ->traverse(next_, counting, ResultPolicy::WalkOnly)
            ->traverse(many_, counting, ResultPolicy::WalkOnly)
            ->includeInitialPseudoLink(ResultPolicy::WalkOnly)
            ->run({first_}, order);
    }

  private:
    memory::Metamodel metamodel_{u"m"};
    Class node_ = metamodel_.addClass(u"Node");
    Property next_ =
        metamodel_.addProperty(node_, u"next", node_, 1, memory::PropertyFlags::Association);
    Property many_ = metamodel_.addProperty(node_, u"many", node_, memory::unbounded,
                                            memory::PropertyFlags::Association);
    memory::Model model_;
    ModelElement first_;
};

/// Throws once, when half of the elements have been left: in every order, after the walk began.
class HalfWay : public TraversalProcessor {
  public:
    void onEnterElement(const ModelElement& /*element*/) override { count(); }
    void onExitElement(const ModelElement& /*element*/) override { count(); }

  private:
    void count() {
        if (++events_ == all + all / 2) throw std::runtime_error("half way");
    }
    std::size_t events_ = 0;
};

class DepthAndWidthTest : public testing::TestWithParam<std::tuple<GiantShape, Algo>> {
  protected:
    /// Builds the model, hands it to the body and destroys it, all on the small stack.
    template <class Body>
    void withModelOnSmallStack(Body&& body) {
        const auto start = std::chrono::steady_clock::now();
        test::onSmallStack([&] {
            const Giant giant(std::get<GiantShape>(GetParam()));
            body(giant, std::get<Algo>(GetParam()));
        });
        const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
        rusage usage{};
        getrusage(RUSAGE_SELF, &usage);
        std::printf("[ SIZE     ] %d elements, stack of %zu KiB, %.1f s, at most %ld MiB\n",
                    deepModelSize, test::stackBytesGranted() / 1024, taken.count(),
                    usage.ru_maxrss / 1024);
    }

    static std::size_t restOf(Walk& walk) {
        std::size_t links = 0;
        for (; !!walk.getCurrent(); walk.advance()) ++links;
        return links;
    }

    Findings found;
};

TEST_P(DepthAndWidthTest, ReportedWalkIsCopiedComparedAbandonedAndGoesOn) {
    withModelOnSmallStack([this](const Giant& giant, Algo order) {
        auto result = giant.run(order);
        Walk walk = result->begin();
        for (; found.links < all / 2; ++found.links) walk.advance();
        auto copy = std::make_unique<Walk>(walk);
        found.copyWasEqual = *copy == walk;
        walk.advance();
        ++found.links;
        found.copyWasEqualAfterStep = *copy == walk;
        // The walk alone owns the result from here on, and is the last to need it.
        result.reset();
        copy.reset();
        found.links += restOf(walk);
        found.ended = walk == Walk();
    });
    EXPECT_TRUE(found.copyWasEqual);
    EXPECT_FALSE(found.copyWasEqualAfterStep);
    EXPECT_EQ(found.links, all);
    EXPECT_TRUE(found.ended);
}

TEST_P(DepthAndWidthTest, SilentWalkGoesThroughAllInOneStep) {
    withModelOnSmallStack([this](const Giant& giant, Algo order) {
        const auto walk = giant.runSilently(order, found.asked)->begin();
        found.ended = walk == Walk();
    });
    EXPECT_TRUE(found.ended);
    // For each property once for the class, and once for each link.
    EXPECT_EQ(found.asked, all + 1);
}

TEST_P(DepthAndWidthTest, WalkWhoseObserverThrowsHalfWayIsCopiedAndGoesOn) {
    withModelOnSmallStack([this](const Giant& giant, Algo order) {
        HalfWay observer;
        const auto result = giant.run(order);
        ResultSetup(result).observe(&observer);
        Walk walk = result->begin();
        for (bool ended = false; !ended; ended = !walk.getCurrent()) {
            const Link before = walk.getCurrent();
            ++found.links;
            try {
                walk.advance();
                continue;
            } catch (const std::runtime_error&) {
                ++found.thrown;
            }
            --found.links;
            found.kept = walk.getCurrent() == before;
            const Walk copy = walk;
            found.copyWasEqual = copy == walk;
            walk = copy;
        }
        ResultSetup(result).observe(nullptr);
    });
    EXPECT_EQ(found.thrown, 1U);
    EXPECT_TRUE(found.kept) << "a failed step moved the walk";
    EXPECT_TRUE(found.copyWasEqual);
    EXPECT_EQ(found.links, all);
}

TEST_P(DepthAndWidthTest, SilentWalkWhosePredicateThrowsHalfWayLeavesNoWalk) {
    withModelOnSmallStack([this](const Giant& giant, Algo order) {
        const auto result = giant.runSilently(order, found.asked, all / 2);
        try {
            result->begin();
        } catch (const std::runtime_error&) {
            ++found.thrown;
        }
        found.ended = result->begin() == Walk();
    });
    EXPECT_EQ(found.thrown, 1U);
    EXPECT_TRUE(found.ended);
}

TEST_P(DepthAndWidthTest, PathToTheDeepestElementIsWholeThereAndAtTheEnd) {
    const bool isChain = std::get<GiantShape>(GetParam()) == GiantShape::Chain;
    const std::size_t deepest = isChain ? all - 1 : 1;
    withModelOnSmallStack([this, deepest](const Giant& giant, Algo order) {
        const auto result = giant.run(order);
        ResultSetup(result).rememberPaths();
        Walk walk = result->begin();
        while (walk.depth() != deepest) walk.advance();
        const ModelElement element = walk.getCurrent().getTarget();
        found.links = walk.path().size();
        found.kept = walk.path().back() == walk.getCurrent();
        while (!walk.hasEnded()) walk.advance();
        found.asked = walk.pathTo(element).size();
        found.ended = walk.path().empty();
    });
    EXPECT_EQ(found.links, deepest + 1);
    EXPECT_EQ(found.asked, deepest + 1);
    EXPECT_TRUE(found.kept);
    EXPECT_TRUE(found.ended);
}

TEST_P(DepthAndWidthTest, SilentPassOfALimitedWalkReachesAsFarAsTheLimit) {
    const bool isChain = std::get<GiantShape>(GetParam()) == GiantShape::Chain;
    withModelOnSmallStack([this](const Giant& giant, Algo order) {
        const auto result = giant.run(order);
        ResultSetup(result).upTo(all / 2);
        Walk walk = result->begin();
        found.links = restOf(walk);
        found.asked = walk.enteredCount();
    });
    EXPECT_EQ(found.links, isChain ? all / 2 + 1 : all);
    EXPECT_EQ(found.asked, found.links);
}

INSTANTIATE_TEST_SUITE_P(ShapesAndOrders, DepthAndWidthTest,
                         testing::Combine(testing::Values(GiantShape::Chain, GiantShape::Star),
                                          testing::ValuesIn(test::everyOrder())),
                         [](const auto& each) {
                             return std::string(nameOf(std::get<GiantShape>(each.param))) +
                                    test::nameOf(std::get<Algo>(each.param));
                         });

}  // namespace
}  // namespace nuv::zero::traversal
