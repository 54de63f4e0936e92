#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <tuple>
#include <utility>

#include "tests/support/CyclicModel.h"
#include "tests/support/Points.h"
#include "tests/support/WalkLog.h"

/// A predicate, a filter or an observer acts on the walk that calls it: prunes it, copies it, walks
/// another one, or tries to advance it; at each call of a small walk with cycles, in each kind and
/// order. Links, events and questions have to be those of the oracle whose callback does the same.
namespace nuv::zero::traversal::internal {
namespace {

using test::Kind;
using test::Lines;
using test::ModelBuilder;
using test::OracleGround;
using test::OracleWalk;
using test::text;

constexpr auto refusal = "A walk cannot be advanced or assigned from its own callbacks.";

enum class Act {
    Nothing,
    PruneAllChildren,
    PruneChildrenX,
    PruneChildrenY,
    PruneSiblings,
    PruneAll,
    /// In every third call from the acting one on.
    PruneInTurn,
    CopyForLater,
    CopyAndWalkAtOnce,
    WalkAnother,
    AdvanceAndCatch,
    AssignAndCatch,
    Advance,
    Assign,
};

/// One side of the comparison. Its callbacks write down that they were called; one of them acts.
template <class Walk>
class ActingSide {
  public:
    ActingSide(const ModelBuilder& model, Kind wanted, Algo inOrder, Act act, int actingCall)
        : m(model), kind(wanted), order(inOrder), act_(act), actingCall_(actingCall) {}
    ActingSide(const ActingSide&) = delete;
    ActingSide& operator=(const ActingSide&) = delete;
    virtual ~ActingSide() = default;

    /// What the walk and its callbacks did.
    Lines run() {
        begin(walk_);
        counted_ = &*walk_;
        lines.push_back(text(walk_->getCurrent()));
        toTheEnd(*walk_);
        counted_ = nullptr;
        if (copy_) {
            lines.emplace_back("the copy");
            toTheEnd(*copy_);
        }
        return lines;
    }
    bool hasActed() const { return calls_ >= actingCall_; }

  protected:
    virtual void begin(std::optional<Walk>& walk) = 0;
    /// What advancing or assigning the walk from its callback does.
    virtual void advanceFromWithin(Walk& walk) = 0;
    virtual void assignFromWithin(Walk& walk) = 0;

    test::Predicates predicates() {
        return [this](bool answer) {
            return [this, answer](const Class& type) {
                called("asked about " + access::toUtf8(access::nameOf(type)));
                return answer;
            };
        };
    }
    std::function<ResultPolicy(Link)> filter() {
        return [this](const Link& link) {
            called("filter " + text(link));
            return link.getTarget() == m("D") ? ResultPolicy::WalkOnly : ResultPolicy::Report;
        };
    }
    std::vector<ModelElement> inputs() const { return {m("A"), m("H"), m("C")}; }

    class ActingObserver : public test::EventLog {
      public:
        explicit ActingObserver(ActingSide& side) : EventLog(side.unused_), side_(side) {}

      protected:
        void note(std::string line) override { side_.called(line); }

      private:
        ActingSide& side_;
    };

    Lines lines;
    const ModelBuilder& m;
    Kind kind;
    Algo order;
    ActingObserver observer{*this};

  private:
    void called(const std::string& line) {
        lines.push_back(line);
        if (counted_ == nullptr) return;
        const int later = ++calls_ - actingCall_;
        if (act_ == Act::PruneInTurn ? later < 0 || later % 3 != 0 : later != 0) return;
        // Only callbacks of the first walk act, whatever is called meanwhile.
        Walk& walk = *std::exchange(counted_, nullptr);
        act(walk);
        counted_ = &walk;
    }

    void act(Walk& walk) {
        switch (act_) {
            case Act::Nothing:
                break;
            case Act::PruneAllChildren:
                walk.pruneAllChildren();
                break;
            case Act::PruneChildrenX:
                walk.pruneChildren(m["Node.x"]);
                break;
            case Act::PruneChildrenY:
                walk.pruneChildren(m["Node.y"]);
                break;
            case Act::PruneSiblings:
                walk.pruneSiblings();
                break;
            case Act::PruneAll:
                walk.pruneSiblings();
                walk.pruneAllChildren();
                break;
            case Act::PruneInTurn:
                switch ((calls_ - actingCall_) / 3 % 4) {
                    case 0:
                        return walk.pruneChildren(m["Node.x"]);
                    case 1:
                        return walk.pruneSiblings();
                    case 2:
                        return walk.pruneChildren(m["Node.y"]);
                    default:
                        return walk.pruneAllChildren();
                }
            case Act::CopyForLater:
                copy_.emplace(walk);
                break;
            case Act::CopyAndWalkAtOnce: {
                Walk copy(walk);
                toTheEnd(copy);
                break;
            }
            case Act::WalkAnother: {
                std::optional<Walk> another;
                begin(another);
                toTheEnd(*another);
                break;
            }
            case Act::AdvanceAndCatch:
                refused([&] { advanceFromWithin(walk); });
                break;
            case Act::AssignAndCatch:
                refused([&] { assignFromWithin(walk); });
                break;
            case Act::Advance:
                counted_ = &walk;
                advanceFromWithin(walk);
                break;
            case Act::Assign:
                counted_ = &walk;
                assignFromWithin(walk);
                break;
        }
    }

    template <class Do>
    void refused(Do&& action) {
        try {
            action();
        } catch (const std::logic_error& error) {
            lines.push_back(std::string("refused: ") + error.what());
        }
    }

    void toTheEnd(Walk& walk) {
        for (int steps = 0; steps < 1000; ++steps) {
            const Link before = walk.getCurrent();
            try {
                walk.advance();
            } catch (const std::logic_error& error) {
                lines.push_back(std::string("failed: ") + error.what());
                EXPECT_TRUE(walk.getCurrent() == before) << "a failed step moved the walk";
                continue;
            }
            lines.push_back(text(walk.getCurrent()));
            if (!walk.getCurrent()) return;
        }
        FAIL() << "the walk does not end";
    }

    Act act_;
    int actingCall_;
    int calls_ = 0;
    Lines unused_;
    /// The walk whose callbacks are counted.
    Walk* counted_ = nullptr;
    std::optional<Walk> walk_;
    std::optional<Walk> copy_;
};

class ActingEngine : public ActingSide<TraversalResult::IterationContext> {
  public:
    using ActingSide::ActingSide;

  private:
    using Walk = TraversalResult::IterationContext;

    void begin(std::optional<Walk>& walk) override {
        if (!result_) {
            result_ = test::cyclicResult(m, kind, order, inputs(), predicates());
            ResultSetup(result_).observe(&observer).filter(filter());
        }
        walk.emplace(result_);
    }
    void advanceFromWithin(Walk& walk) override { walk.advance(); }
    void assignFromWithin(Walk& walk) override { walk = Walk(); }

    std::shared_ptr<TraversalResult> result_;
};

class ActingOracle : public ActingSide<OracleWalk> {
  public:
    using ActingSide::ActingSide;

  private:
    void begin(std::optional<OracleWalk>& walk) override {
        if (!result_) {
            ground_.observer = &observer;
            ground_.filters = {filter()};
            const oracle::Rules rules = test::cyclicRules(m, ground_, kind, predicates());
            result_ = ground_.result(rules, inputs(), order);
        }
        walk.emplace(ground_, result_);
    }
    void advanceFromWithin(OracleWalk& /*walk*/) override { throw std::logic_error(refusal); }
    void assignFromWithin(OracleWalk& /*walk*/) override { throw std::logic_error(refusal); }

    OracleGround ground_{m};
    std::shared_ptr<oracle::NaiveResult> result_;
};

class WalkCallbacksEverywhereTest : public testing::TestWithParam<std::tuple<Kind, Algo>> {
  protected:
    /// Lets each call act in turn, and gives the number of calls.
    int compareAtEachCall(Act act) {
        for (int call = 1;; ++call) {
            ActingOracle naive(m, std::get<Kind>(GetParam()), std::get<Algo>(GetParam()), act,
                               call);
            ActingEngine engine(m, std::get<Kind>(GetParam()), std::get<Algo>(GetParam()), act,
                                call);
            const Lines expected = naive.run();
            EXPECT_EQ(engine.run(), expected) << "acting at call " << call;
            if (!naive.hasActed() || HasFailure()) return call - 1;
        }
    }

    ModelBuilder m{test::cyclicMetamodel, test::cyclicModel};
};

TEST_P(WalkCallbacksEverywhereTest, PruningFromAnyCallbackActsAsInTheOracle) {
    long calls = 0;
    for (const Act act : {Act::PruneAllChildren, Act::PruneChildrenX, Act::PruneChildrenY,
                          Act::PruneSiblings, Act::PruneAll, Act::PruneInTurn}) {
        SCOPED_TRACE("act " + std::to_string(static_cast<int>(act)));
        calls += compareAtEachCall(act);
    }
    EXPECT_GT(calls, 150);
    test::recordPoints(calls, "callbacks that prune");
}

TEST_P(WalkCallbacksEverywhereTest, CopyMadeInAnyCallbackGoesOnIndependently) {
    long calls = 0;
    for (const Act act : {Act::CopyForLater, Act::CopyAndWalkAtOnce}) {
        SCOPED_TRACE("act " + std::to_string(static_cast<int>(act)));
        calls += compareAtEachCall(act);
    }
    EXPECT_GT(calls, 60);
    test::recordPoints(calls, "callbacks that copy their walk");
}

TEST_P(WalkCallbacksEverywhereTest, AnotherWalkInAnyCallbackDoesNotDisturb) {
    const int calls = compareAtEachCall(Act::WalkAnother);
    EXPECT_GT(calls, 30);
    test::recordPoints(calls, "callbacks that walk the same result");
}

TEST_P(WalkCallbacksEverywhereTest, AdvancingOrAssigningItsOwnWalkIsRefusedAndLeavesItAlone) {
    long calls = 0;
    for (const Act act : {Act::AdvanceAndCatch, Act::AssignAndCatch}) {
        SCOPED_TRACE("act " + std::to_string(static_cast<int>(act)));
        calls += compareAtEachCall(act);
    }
    test::recordPoints(calls, "callbacks that are refused");
}

TEST_P(WalkCallbacksEverywhereTest, RefusalThatIsNotCaughtEndsTheStepLikeAnyException) {
    long calls = 0;
    for (const Act act : {Act::Advance, Act::Assign}) {
        SCOPED_TRACE("act " + std::to_string(static_cast<int>(act)));
        calls += compareAtEachCall(act);
    }
    test::recordPoints(calls, "callbacks that fail with a refusal");
}

INSTANTIATE_TEST_SUITE_P(KindsAndOrders, WalkCallbacksEverywhereTest,
                         testing::Combine(testing::ValuesIn(test::everyKind()),
                                          testing::ValuesIn(test::everyOrder())),
                         [](const auto& each) {
                             return std::string(nameOf(std::get<Kind>(each.param))) +
                                    test::nameOf(std::get<Algo>(each.param));
                         });

}  // namespace
}  // namespace nuv::zero::traversal::internal
