#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "tests/oracle/CalmCase.h"
#include "tests/oracle/NaiveTrace.h"
#include "traversal/ResultSetup.h"
#include "traversal/WalkListener.h"

/// What listeners are told of random walks, compared with what the oracle tells.
namespace nuv::zero::oracle {
namespace {

using traversal::Fate;
using traversal::ResultSetup;
using traversal::WalkListener;
using traversal::WalkView;
using Walk = traversal::internal::TraversalResult::IterationContext;
using Lines = std::vector<std::string>;

/// Writes down what each walk is told.
class TraceLog : public WalkListener {
  public:
    explicit TraceLog(const EngineModel& model) : model_(model) {}

    void onLink(const WalkView& walk, const traversal::internal::Link& link, Fate fate,
                std::size_t filter) override {
        const NaiveTrace::ToldFate told{model_.stepOf(link), static_cast<NaiveTrace::Fate>(fate),
                                        filter, walk.depth()};
        lines[walk.number()].push_back(told.text());
        ++fates[fate];
    }

    std::map<std::size_t, Lines> lines;
    std::map<Fate, int> fates;

  private:
    const EngineModel& model_;
};

/// A walk of a random case, told by both sides.
class TracedCase {
  public:
    explicit TracedCase(Choices& choices) : calm_(choices), log(calm_.model()) {
        const std::size_t elements = calm_.world().elements.size();
        for (int count = choices.upTo(3); count > 0; --count) {
            const bool isNull = elements == 0 || choices.percent(5);
            setup_.inputs.push_back(isNull ? none : choices.index(elements));
        }
        setup_.algo = choices.upTo(2);
        setup_.uniqueness = choices.upTo(2);
        for (int count = choices.upTo(3); count > 0; --count) {
            setup_.filters.push_back(choices.index(calm_.world().filters.size()));
        }
        if (choices.percent(60)) {
            setup_.descend = [salt = choices.upTo(99)](const IndexedLink& link) {
                return (link.source * 7 + link.property * 3 + link.target * 5 + salt) % 4 != 0;
            };
        }
        result = calm_.run(setup_.inputs, setup_.algo);
        ResultSetup setup(result);
        for (const int filter : setup_.filters) setup.filter(calm_.filter(filter));
        setup.unique(static_cast<traversal::UniquenessMode>(setup_.uniqueness));
        if (setup_.descend) {
            setup.descend([this](const traversal::internal::Link& link) {
                return setup_.descend(calm_.model().stepOf(link));
            });
        }
    }

    Lines expected() const {
        Lines lines;
        const NaiveTrace trace(calm_.world(), calm_.rules(), setup_);
        for (const auto& told : trace.all()) {
            lines.push_back(told.text());
        }
        return lines;
    }
    Lines expectedLinks() const {
        Lines lines;
        const NaiveTrace trace(calm_.world(), calm_.rules(), setup_);
        for (const auto& told : trace.all()) {
            if (told.fate == NaiveTrace::Fate::Reported) lines.push_back(describe(told.link));
        }
        return lines;
    }
    Lines rest(Walk& walk) const {
        Lines lines;
        for (; !walk.hasEnded(); walk.advance()) {
            lines.push_back(describe(calm_.model().stepOf(walk.getCurrent())));
        }
        return lines;
    }

  private:
    CalmCase calm_;
    NaiveTrace::Setup setup_;

  public:
    TraceLog log;
    std::shared_ptr<traversal::internal::TraversalResult> result;
};

TEST(TraceOracleTest, EachLinkIsToldOnceInOrderWithItsFate) {
    std::map<Fate, int> fates;
    for (std::uint32_t seed = 1; seed <= 3000; ++seed) {
        RandomChoices choices(seed);
        TracedCase traced(choices);
        ResultSetup(traced.result).trace(&traced.log);
        Walk walk = traced.result->begin();
        ASSERT_EQ(traced.rest(walk), traced.expectedLinks()) << "seed " << seed;
        ASSERT_EQ(traced.log.lines[1], traced.expected()) << "seed " << seed;
        for (const auto& [fate, count] : traced.log.fates) fates[fate] += count;
    }
    for (int fate = 0; fate <= static_cast<int>(Fate::NotDescended); ++fate) {
        EXPECT_GE(fates[static_cast<Fate>(fate)], 200) << fate;
    }
}

TEST(TraceOracleTest, CopyIsToldWhatIsLeftUnderItsOwnNumber) {
    for (std::uint32_t seed = 1; seed <= 600; ++seed) {
        RandomChoices choices(seed);
        TracedCase traced(choices);
        ResultSetup(traced.result).trace(&traced.log);
        Walk walk = traced.result->begin();
        for (int steps = choices.upTo(10); steps > 0 && !walk.hasEnded(); --steps) walk.advance();
        const std::size_t told = traced.log.lines[1].size();
        Walk copy(walk);
        const Lines links = traced.rest(walk);
        ASSERT_EQ(traced.rest(copy), links) << "seed " << seed;
        const Lines all = traced.expected();
        ASSERT_EQ(traced.log.lines[1], all) << "seed " << seed;
        ASSERT_EQ(traced.log.lines[2],
                  Lines(all.begin() + static_cast<std::ptrdiff_t>(told), all.end()))
            << "seed " << seed;
    }
}

TEST(TraceOracleTest, ListenerThatIsAttachedInMidWalkIsToldTheRest) {
    for (std::uint32_t seed = 1; seed <= 300; ++seed) {
        RandomChoices choices(seed);
        TracedCase traced(choices);
        TraceLog first(traced.log);
        ResultSetup(traced.result).trace(&first);
        Walk walk = traced.result->begin();
        for (int steps = choices.upTo(6); steps > 0 && !walk.hasEnded(); --steps) walk.advance();
        const std::size_t told = first.lines[1].size();
        ResultSetup(traced.result).trace(&traced.log);
        traced.rest(walk);
        const Lines all = traced.expected();
        ASSERT_EQ(first.lines[1], all) << "seed " << seed;
        ASSERT_EQ(traced.log.lines[1],
                  Lines(all.begin() + static_cast<std::ptrdiff_t>(told), all.end()))
            << "seed " << seed;
    }
}

}  // namespace
}  // namespace nuv::zero::oracle
