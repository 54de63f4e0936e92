#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include "tests/support/Failures.h"
#include "tests/support/ModelBuilder.h"
#include "tests/support/PlainWalk.h"
#include "tests/support/WalkLog.h"
#include "traversal/internal/PropertyProviders.h"

/// A predicate, a filter or an observer fails at one of its calls, or a value cannot be read; for
/// each call and value of a small walk with cycles, in each kind and order. The rest of the walk,
/// events included, has to be that of the plainly written walk that fails at the same point.
namespace nuv::zero::traversal {
namespace {

using internal::Candidates;
using test::elementsIn;
using test::FailurePlan;
using test::Lines;
using test::ModelBuilder;
using test::PlainWalk;
using test::PlannedFailure;
using test::text;
using Rules = std::unordered_map<Property, CompositeMatcher>;
using Mode = CompositeMatcher::VisitMode;

enum class Kind { Additive, Composition, Subtractive };
std::string nameOf(Kind kind) {
    switch (kind) {
        case Kind::Additive:
            return "Additive";
        case Kind::Composition:
            return "Composition";
        case Kind::Subtractive:
            break;
    }
    return "Subtractive";
}

constexpr auto metamodelText =
    "Node; Leaf < Node; Node.x => Node *; Node.y -> Node *; Node.boss -> Node; Leaf.z => Leaf *";
constexpr auto modelText =
    "L : Leaf; M : Leaf; A.x = B C L; A.y = D B; A.boss = A; B.x = C D; B.boss = A; C.y = A E; "
    "E.x = F; L.z = M L; L.y = A; M.boss = G; G.x = A; H.x = I; H.y = B";

/// One side by side run: the same rules, filters and observer, each side with a plan of its own.
class Side {
  public:
    Side(const ModelBuilder& m, Kind kind, Algo order, const FailurePlan& plan)
        : m_(m), kind_(kind), order_(order), plan_(plan) {}
    virtual ~Side() = default;

    Lines lines;

  protected:
    std::function<bool(const Class&)> failing(bool answer) {
        return [this, answer](const Class&) {
            plan_.call("predicate");
            return answer;
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
    class Observer : public test::EventLog {
      public:
        Observer(Side& side) : EventLog(side.lines), side_(side) {}

      protected:
        void note(std::string line) override {
            EventLog::note(std::move(line));
            side_.plan_.call("event");
        }

      private:
        Side& side_;
    };

    const ModelBuilder& m_;
    Kind kind_;
    Algo order_;
    FailurePlan plan_;
    Observer observer_{*this};
};

/// Steps to the end; every failure is a line, and leaves the current link as it was.
template <class Walk>
void stepToTheEnd(Walk& walk, Lines& lines) {
    for (int steps = 0; steps < 1000; ++steps) {
        const Link before = walk.getCurrent();
        try {
            walk.advance();
        } catch (const PlannedFailure& failure) {
            lines.push_back(std::string("failed ") + failure.what());
            EXPECT_TRUE(walk.getCurrent() == before) << "a failed step moved the walk";
            continue;
        } catch (const CannotCastIncompatibleTypes&) {
            lines.emplace_back("unreadable");
            EXPECT_TRUE(walk.getCurrent() == before) << "a failed step moved the walk";
            continue;
        }
        lines.push_back(text(walk.getCurrent()));
        if (!walk.getCurrent()) return;
    }
    FAIL() << "the walk does not end";
}

class EngineSide : public Side {
  public:
    using Side::Side;
    void run() {
        auto result = traversal();
        ResultSetup(result).observe(&observer_).filter(filter());
        TraversalResult::IterationContext walk(result);
        lines.push_back(text(walk.getCurrent()));
        stepToTheEnd(walk, lines);
        ResultSetup(result).observe(nullptr);
    }

  private:
    std::shared_ptr<TraversalResult> traversal() {
        std::vector<ModelElement> all = inputs();
        switch (kind_) {
            case Kind::Additive:
                return Spec::additiveTraversal()
                    ->traverse(m_["Node.y"], failing(true), ResultPolicy::Report)
                    ->traverse(m_["Node.x"], failing(true), ResultPolicy::Report)
                    ->traverse(m_["Leaf.z"], failing(true), ResultPolicy::Extended)
                    ->traverse(m_["Node.boss"], failing(true), ResultPolicy::WalkOnly)
                    ->run(all, order_);
            case Kind::Composition:
                return Spec::compositionTraversal()
                    ->prune(m_["Node.x"], failing(false))
                    ->prune(m_["Leaf.z"], failing(false))
                    ->run(all, order_);
            case Kind::Subtractive:
                break;
        }
        return Spec::subtractiveTraversal()
            ->prune(m_["Node.x"], failing(false))
            ->prune(m_["Node.boss"], failing(false))
            ->setResultPolicy({m_["Node.y"], failing(true), m_.type("Node")}, ResultPolicy::Report)
            ->run(all, order_);
    }
};

class PlainSide : public Side {
  public:
    using Side::Side;
    void run() {
        const auto provided = provider();
        PlainWalk walk(*provided, &observer_, inputs(), {filter()}, order_);
        walk.advance();
        lines.push_back(text(walk.getCurrent()));
        stepToTheEnd(walk, lines);
    }

  private:
    void addRule(Rules& rules, const char* property, Mode mode, bool answer, ResultPolicy policy) {
        const Property key = m_[property];
        rules.try_emplace(key, mode).first->second.composeMatcher(access::owningClass(key),
                                                                  failing(answer), policy);
    }
    std::shared_ptr<PropertyProvider> provider() {
        Rules rules;
        switch (kind_) {
            case Kind::Additive:
                addRule(rules, "Node.y", Mode::Visit, true, ResultPolicy::Report);
                addRule(rules, "Node.x", Mode::Visit, true, ResultPolicy::Report);
                addRule(rules, "Leaf.z", Mode::Visit, true, ResultPolicy::Extended);
                addRule(rules, "Node.boss", Mode::Visit, true, ResultPolicy::WalkOnly);
                return internal::makeAdditiveProvider(
                    rules, {m_["Node.y"], m_["Node.x"], m_["Leaf.z"], m_["Node.boss"]});
            case Kind::Composition:
                addRule(rules, "Node.x", Mode::Prune, false, ResultPolicy::WalkOnly);
                addRule(rules, "Leaf.z", Mode::Prune, false, ResultPolicy::WalkOnly);
                return internal::makeSubtractiveProvider(rules, Candidates::CompositeOnly);
            case Kind::Subtractive:
                addRule(rules, "Node.x", Mode::Prune, false, ResultPolicy::WalkOnly);
                addRule(rules, "Node.boss", Mode::Prune, false, ResultPolicy::WalkOnly);
                addRule(rules, "Node.y", Mode::Visit, true, ResultPolicy::Report);
                return internal::makeSubtractiveProvider(rules, Candidates::AllLinking);
        }
        return nullptr;
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

class FailureAtEveryPointTest : public testing::TestWithParam<std::tuple<Kind, Algo>> {
  protected:
    /// Runs a side; where it fails before its walk stands, that is all there is.
    template <class RunningSide>
    Lines run(const FailurePlan& plan) {
        RunningSide side(m, std::get<Kind>(GetParam()), std::get<Algo>(GetParam()), plan);
        try {
            side.run();
        } catch (const PlannedFailure& failure) {
            side.lines.push_back(std::string("no walk: ") + failure.what());
        } catch (const CannotCastIncompatibleTypes&) {
            side.lines.emplace_back("no walk: unreadable");
        }
        return side.lines;
    }

    ModelBuilder m{metamodelText, modelText};
};

TEST_P(FailureAtEveryPointTest, UndisturbedTheEngineWalksAsThePlainWalk) {
    const Lines expected = run<PlainSide>(FailurePlan());
    EXPECT_EQ(run<EngineSide>(FailurePlan()), expected);
    EXPECT_GT(expected.size(), 20U);
}

TEST_P(FailureAtEveryPointTest, AfterEachFailingPredicateFilterAndEventTheWalkGoesOnAsWritten) {
    int failures = 0;
    for (int call = 1;; ++call) {
        const Lines expected = run<PlainSide>(FailurePlan(call));
        ASSERT_EQ(run<EngineSide>(FailurePlan(call)), expected) << "failing at call " << call;
        bool failed = false;
        for (const std::string& line : expected) {
            failed = failed || line.starts_with("failed") || line.starts_with("no walk");
        }
        if (!failed) break;
        ++failures;
    }
    EXPECT_GT(failures, 30);
}

TEST_P(FailureAtEveryPointTest, AfterEachUnreadableValueTheWalkGoesOnAsWritten) {
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
    for (const char* element : {"A", "B", "C", "E", "H", "L", "M", "G"}) {
        for (const char* property : {"Node.x", "Node.y", "Node.boss"}) {
            for (int how = 0; how < 4; ++how) {
                const Property spoilt = m[property];
                const Kept kept(m, m(element), spoilt);
                spoil(element, spoilt, how);
                ASSERT_EQ(run<EngineSide>(FailurePlan()), run<PlainSide>(FailurePlan()))
                    << element << " " << property << " " << how;
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(KindsAndOrders, FailureAtEveryPointTest,
                         testing::Combine(testing::Values(Kind::Additive, Kind::Composition,
                                                          Kind::Subtractive),
                                          testing::ValuesIn(test::everyOrder())),
                         [](const auto& each) {
                             return nameOf(std::get<Kind>(each.param)) +
                                    test::nameOf(std::get<Algo>(each.param));
                         });

}  // namespace
}  // namespace nuv::zero::traversal
