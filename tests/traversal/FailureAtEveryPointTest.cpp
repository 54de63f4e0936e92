#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include "tests/support/CyclicModel.h"
#include "tests/support/Failures.h"
#include "tests/support/PlainWalk.h"
#include "tests/support/Points.h"
#include "tests/support/WalkLog.h"

/// A predicate, a filter or an observer fails at one of its calls, or a value cannot be read; for
/// each call and value of a small walk with cycles, in each kind and order. The rest of the walk,
/// events included, has to be that of the plainly written walk that fails at the same point, and so
/// has the rest of a copy that is made after the failure and takes the walk's place.
namespace nuv::zero::traversal {
namespace {

using test::BuilderKind;
using test::elementsIn;
using test::FailurePlan;
using test::Lines;
using test::ModelBuilder;
using test::PlainWalk;
using test::PlannedFailure;
using test::text;

/// One side by side run: the same rules, filters and observer, each side with a plan of its own.
class FailingSide {
  public:
    FailingSide(const ModelBuilder& m, BuilderKind kind, Algo order, const FailurePlan& plan)
        : m_(m), kind_(kind), order_(order), plan_(plan) {}
    virtual ~FailingSide() = default;

    Lines lines;

  protected:
    test::Predicates failing() {
        return [this](bool answer) {
            return [this, answer](const Class&) {
                plan_.call("predicate");
                return answer;
            };
        };
    }
    std::function<ResultPolicy(Link)> filter() {
        return [this](const Link& link) {
            plan_.call("filter");
            lines.push_back("filter " + text(link));
            return link.getTarget() == m_("D") ? ResultPolicy::WalkOnly : ResultPolicy::Report;
        };
    }
    std::vector<ModelElement> inputs() const { return {m_("A"), m_("H"), m_("C")}; }

    /// Writes the event down before it may fail.
    class FailingObserver : public test::EventLog {
      public:
        FailingObserver(FailingSide& side) : EventLog(side.lines), side_(side) {}

      protected:
        void note(std::string line) override {
            EventLog::note(std::move(line));
            side_.plan_.call("event");
        }

      private:
        FailingSide& side_;
    };

    const ModelBuilder& m_;
    BuilderKind kind_;
    Algo order_;
    FailurePlan plan_;
    FailingObserver observer_{*this};
};

/// Steps to the end; every failure is a line, and leaves the current link as it was. What `onward`
/// does after a failure must not show.
template <class Walk, class Onward>
void stepToTheEnd(Walk& walk, Lines& lines, Onward&& onward) {
    for (int steps = 0; steps < 1000; ++steps) {
        const Link before = walk.getCurrent();
        try {
            walk.advance();
        } catch (const PlannedFailure& failure) {
            lines.push_back(std::string("failed ") + failure.what());
            EXPECT_TRUE(walk.getCurrent() == before) << "a failed step moved the walk";
            onward();
            continue;
        } catch (const CannotCastIncompatibleTypes&) {
            lines.emplace_back("unreadable");
            EXPECT_TRUE(walk.getCurrent() == before) << "a failed step moved the walk";
            onward();
            continue;
        }
        lines.push_back(text(walk.getCurrent()));
        if (!walk.getCurrent()) return;
    }
    FAIL() << "the walk does not end";
}

class FailingEngineSide : public FailingSide {
  public:
    FailingEngineSide(const ModelBuilder& m, BuilderKind kind, Algo order, const FailurePlan& plan,
                      bool copied = false)
        : FailingSide(m, kind, order, plan), copied_(copied) {}
    void run() {
        auto result = test::cyclicResult(m_, kind_, order_, inputs(), failing());
        ResultSetup(result).observe(&observer_).filter(filter());
        TraversalResult::IterationContext walk(result);
        lines.push_back(text(walk.getCurrent()));
        stepToTheEnd(walk, lines, [&walk, this] {
            if (!copied_) return;
            const TraversalResult::IterationContext copy(walk);
            EXPECT_TRUE(copy == walk);
            walk = TraversalResult::IterationContext();
            walk = copy;
        });
        ResultSetup(result).observe(nullptr);
    }

  private:
    bool copied_;
};

/// Goes on with a copy after each failure.
class CopyingEngineSide : public FailingEngineSide {
  public:
    CopyingEngineSide(const ModelBuilder& m, BuilderKind kind, Algo order, const FailurePlan& plan)
        : FailingEngineSide(m, kind, order, plan, true) {}
};

class FailingPlainSide : public FailingSide {
  public:
    using FailingSide::FailingSide;
    void run() {
        const auto provided = test::cyclicProvider(m_, kind_, failing());
        PlainWalk walk(*provided, &observer_, inputs(), {filter()}, order_);
        walk.advance();
        lines.push_back(text(walk.getCurrent()));
        stepToTheEnd(walk, lines, [] {});
    }
};

/// Gives a property its elements back at the end of a scope.
class Kept {
  public:
    Kept(ModelBuilder& m, const ModelElement& element, const Property& property)
        : m_(m), element_(element), property_(property), data_(elementsIn(element, property)) {}
    Kept(const Kept&) = delete;
    Kept& operator=(const Kept&) = delete;
    ~Kept() {
        if (!access::isSingleValued(property_)) {
            m_.model.set(element_, property_, data_);
        } else if (data_.empty()) {
            m_.model.unset(element_, property_);
        } else {
            m_.model.set(element_, property_, data_.front());
        }
    }

  private:
    ModelBuilder& m_;
    ModelElement element_;
    Property property_;
    std::vector<ModelElement> data_;
};

class FailureAtEveryPointTest : public testing::TestWithParam<std::tuple<BuilderKind, Algo>> {
  protected:
    /// Runs a side; where it fails before its walk stands, that is all there is.
    template <class RunningSide>
    Lines run(const FailurePlan& plan) {
        RunningSide side(m, std::get<BuilderKind>(GetParam()), std::get<Algo>(GetParam()), plan);
        try {
            side.run();
        } catch (const PlannedFailure& failure) {
            side.lines.push_back(std::string("no walk: ") + failure.what());
        } catch (const CannotCastIncompatibleTypes&) {
            side.lines.emplace_back("no walk: unreadable");
        }
        return side.lines;
    }

    ModelBuilder m{test::cyclicMetamodel, test::cyclicModel};
};

TEST_P(FailureAtEveryPointTest, UndisturbedTheEngineWalksAsThePlainWalk) {
    const Lines expected = run<FailingPlainSide>(FailurePlan());
    EXPECT_EQ(run<FailingEngineSide>(FailurePlan()), expected);
    EXPECT_GT(expected.size(), 20U);
}

TEST_P(FailureAtEveryPointTest,
       AfterEachFailingPredicateFilterAndEventTheEngineGoesOnAsThePlainWalkDoes) {
    int failures = 0;
    for (int call = 1;; ++call) {
        const Lines expected = run<FailingPlainSide>(FailurePlan(call));
        ASSERT_EQ(run<FailingEngineSide>(FailurePlan(call)), expected)
            << "failing at call " << call;
        ASSERT_EQ(run<CopyingEngineSide>(FailurePlan(call)), expected)
            << "failing at call " << call << ", going on with a copy";
        bool failed = false;
        for (const std::string& line : expected) {
            failed = failed || line.starts_with("failed") || line.starts_with("no walk");
        }
        if (!failed) break;
        ++failures;
    }
    EXPECT_GT(failures, 30);
    test::recordPoints(failures, "failing predicates, filters and events");
}

TEST_P(FailureAtEveryPointTest, AfterEachUnreadableValueTheEngineGoesOnAsThePlainWalkDoes) {
    const auto spoil = [this](const char* element, const Property& property, int how) {
        const meta::Type string = meta::StandardTypes::stringMeta();
        switch (how) {
            case 0:
                m.model.plant(m(element), property, {string, false, u"text"});
                break;
            case 1:
                m.model.plant(m(element), property,
                              {string, true, std::vector<std::u16string>{u"text"}});
                break;
            case 2:
                m.model.plant(m(element), property, {m.type("Node"), true, {}});
                break;
            default:
                m.model.plant(m(element), property, {m.type("Node"), false, m("A")});
        }
    };
    long points = 0;
    for (const char* element : {"A", "B", "C", "D", "E", "F", "G", "H", "I", "L", "M"}) {
        for (const char* property : {"Node.x", "Node.y", "Node.boss", "Leaf.z"}) {
            const Property spoilt = m[property];
            if (!access::hasProperty(access::classOf(m(element)), spoilt)) continue;
            for (int how = 0; how < 4; ++how) {
                const Kept kept(m, m(element), spoilt);
                spoil(element, spoilt, how);
                const Lines expected = run<FailingPlainSide>(FailurePlan());
                ASSERT_EQ(run<FailingEngineSide>(FailurePlan()), expected)
                    << element << " " << property << " " << how;
                ASSERT_EQ(run<CopyingEngineSide>(FailurePlan()), expected)
                    << element << " " << property << " " << how << ", going on with a copy";
                for (const std::string& line : expected) points += line == "unreadable" ? 1 : 0;
            }
        }
    }
    test::recordPoints(points, "unreadable values");
}

INSTANTIATE_TEST_SUITE_P(KindsAndOrders, FailureAtEveryPointTest,
                         testing::Combine(testing::ValuesIn(test::everyKind()),
                                          testing::ValuesIn(test::everyOrder())),
                         [](const auto& each) {
                             return std::string(test::nameOf(std::get<BuilderKind>(each.param))) +
                                    test::nameOf(std::get<Algo>(each.param));
                         });

}  // namespace
}  // namespace nuv::zero::traversal
