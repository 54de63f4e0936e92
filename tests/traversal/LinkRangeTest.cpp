#include "traversal/LinkRange.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <ranges>
#include <stdexcept>
#include <type_traits>
#include <utility>

#include "tests/support/Failures.h"
#include "tests/support/ModelBuilder.h"
#include "tests/support/WalkLog.h"

namespace nuv::zero::traversal {
namespace {

using test::Lines;
using test::text;

// What a walk claims to be, and no more.
static_assert(std::ranges::input_range<LinkRange>);
static_assert(!std::ranges::forward_range<LinkRange>);
static_assert(!std::ranges::common_range<LinkRange>);
static_assert(!std::ranges::sized_range<LinkRange>);
// A pipeline refers to a range that is named, and takes a temporary in.
static_assert(!std::ranges::view<LinkRange>);
static_assert(std::ranges::viewable_range<LinkRange&>);
static_assert(std::movable<LinkRange> && !std::copyable<LinkRange>);
static_assert(!std::is_copy_constructible_v<LinkRange> && !std::is_copy_assignable_v<LinkRange>);
static_assert(std::is_nothrow_move_constructible_v<LinkRange>);
static_assert(std::input_iterator<LinkRange::iterator>);
static_assert(!std::forward_iterator<LinkRange::iterator>);
static_assert(std::sentinel_for<std::default_sentinel_t, LinkRange::iterator>);
static_assert(std::is_same_v<std::ranges::range_reference_t<LinkRange>, const Link&>);
static_assert(std::is_same_v<std::ranges::range_value_t<LinkRange>, Link>);
static_assert(std::is_same_v<std::ranges::sentinel_t<LinkRange>, std::default_sentinel_t>);
static_assert(!std::is_convertible_v<std::shared_ptr<TraversalResult>, LinkRange>);

class LinkRangeTest : public testing::Test {
  protected:
    std::shared_ptr<TraversalResult> run() const {
        return Spec::subtractiveTraversal()
            ->includeInitialPseudoLink(ResultPolicy::WalkOnly)
            ->depthFirst({m("A")});
    }

    test::ModelBuilder m{"Node; Node.x -> Node *; Node.y -> Node *",
                         "A.x = B C; A.y = D; B.x = E; B.y = F"};
    const Lines whole{"A.x>B", "B.x>E", "B.y>F", "A.x>C", "A.y>D"};
};

TEST_F(LinkRangeTest, LoopOverATemporaryIsSafe) {
    Lines lines;
    for (const Link& link : links(run())) lines.push_back(text(link));
    EXPECT_EQ(lines, whole);
}

/// In the callbacks of its first step a range answered as if it had no walk.
TEST_F(LinkRangeTest, StandsOnALinkInTheCallbacksOfItsFirstStep) {
    const auto result = Spec::subtractiveTraversal()->depthFirstPostOrder({m("A")});
    LinkRange walk = links(result);
    std::size_t deepest = 0;
    bool sawA = false;
    ResultSetup(result).onEnterElement([&](const ModelElement& element) {
        deepest = std::max(deepest, walk.depth());
        sawA = sawA || (element == m("B") && walk.hasEntered(m("A")) && walk.path().size() == 2);
    });
    EXPECT_EQ(text(*walk.begin()), "B.x>E");
    EXPECT_EQ(deepest, 2U);
    EXPECT_TRUE(sawA);
}

/// A range that was begun from the callbacks of its first step made a second walk in the first one.
TEST_F(LinkRangeTest, RefusesToBeginFromTheCallbacksOfItsFirstStep) {
    const auto result = run();
    LinkRange walk = links(result);
    std::size_t events = 0;
    ResultSetup(result).onEnterInputElement([&](const ModelElement&) {
        ++events;
        EXPECT_THROW(walk.begin(), std::logic_error);
        std::size_t steps = 5;
        EXPECT_THROW(walk.advanceWithin(steps), std::logic_error);
    });
    Lines lines;
    for (const Link& link : walk) lines.push_back(text(link));
    EXPECT_EQ(lines, whole);
    EXPECT_EQ(events, 1U);
}

TEST_F(LinkRangeTest, LoopOverATemporaryBuilderAndModelHandleIsSafe) {
    Lines lines;
    for (const Link& link : links(Spec::subtractiveTraversal()
                                      ->prune(m["Node.y"])
                                      ->breadthFirst(std::vector<ModelElement>{m("A")}))) {
        lines.push_back(text(link));
    }
    EXPECT_EQ(lines, (Lines{">A", "A.x>B", "A.x>C", "B.x>E"}));
}

// The views of this standard library do not compile with every compiler that compiles the rest.
#if !defined(__clang__) || __clang_major__ > 15 || defined(_LIBCPP_VERSION)
/// A range that was given a name could not stand at the head of a pipeline.
TEST_F(LinkRangeTest, PipelineOverANamedRangeTakesItsLinksAndCanBePruned) {
    Lines lines;
    LinkRange walk = links(run());
    const auto isNoLinkToC = [this](const Link& link) { return !(link.getTarget() == m("C")); };
    for (const Link& link : walk | std::views::filter(isNoLinkToC)) {
        lines.push_back(text(link));
        if (link.getTarget() == m("B")) walk.pruneAllChildren();
    }
    EXPECT_EQ(lines, (Lines{"A.x>B", "A.y>D"}));
}

TEST_F(LinkRangeTest, PipelineOverATemporaryKeepsItsWalk) {
    Lines lines;
    auto first = links(run()) | std::views::take(2);
    for (const Link& link : first) lines.push_back(text(link));
    EXPECT_EQ(lines, (Lines{"A.x>B", "B.x>E"}));
}
#endif

TEST_F(LinkRangeTest, MovedFromRangeIsEmptyAndCanBeAssigned) {
    LinkRange range = links(run());
    LinkRange moved(std::move(range));
    // NOLINTNEXTLINE(bugprone-use-after-move): that is what this is about
    EXPECT_TRUE(range.begin() == range.end());
    range.pruneAllChildren();
    range = std::move(moved);
    Lines lines;
    for (const Link& link : range) lines.push_back(text(link));
    EXPECT_EQ(lines, whole);
}

TEST_F(LinkRangeTest, NullResultIsRefused) {
    EXPECT_THROW(links(nullptr), std::invalid_argument);
}

TEST_F(LinkRangeTest, NothingIsVisitedBeforeTheFirstBegin) {
    const auto result = run();
    bool visited = false;
    ResultSetup(result).filter([&visited](const Link&) {
        visited = true;
        return ResultPolicy::Report;
    });
    LinkRange range = links(result);
    EXPECT_FALSE(visited);
    range.begin();
    EXPECT_TRUE(visited);
}

TEST_F(LinkRangeTest, LaterBeginGoesOnWhereTheWalkStands) {
    LinkRange range = links(run());
    auto place = range.begin();
    ++place;
    EXPECT_EQ(text(*range.begin()), "B.x>E");
    Lines lines;
    for (const Link& link : range) lines.push_back(text(link));
    EXPECT_EQ(lines, Lines(whole.begin() + 1, whole.end()));
    EXPECT_TRUE(range.begin() == range.end());
}

TEST_F(LinkRangeTest, IteratorOperations) {
    LinkRange range = links(run());
    auto place = range.begin();
    EXPECT_EQ(text(*place), "A.x>B");
    EXPECT_EQ(place->getTarget(), m("B"));
    static_assert(std::is_void_v<decltype(place++)>);
    place++;
    EXPECT_EQ(text(*place), "B.x>E");
    EXPECT_FALSE(place == range.end());
    EXPECT_TRUE(place != std::default_sentinel);
    EXPECT_TRUE(LinkRange::iterator() == std::default_sentinel);
}

TEST_F(LinkRangeTest, PruningStandsOnTheRange) {
    const auto walkPruning = [this](const char* at, const std::function<void(LinkRange&)>& prune) {
        LinkRange range = links(run());
        Lines lines;
        for (const Link& link : range) {
            lines.push_back(text(link));
            if (lines.back() == at) prune(range);
        }
        return lines;
    };
    EXPECT_EQ(walkPruning("A.x>B", [](LinkRange& range) { range.pruneAllChildren(); }),
              (Lines{"A.x>B", "A.x>C", "A.y>D"}));
    EXPECT_EQ(walkPruning("A.x>B", [this](LinkRange& range) { range.pruneChildren(m["Node.x"]); }),
              (Lines{"A.x>B", "B.y>F", "A.x>C", "A.y>D"}));
    EXPECT_EQ(walkPruning("A.x>B", [](LinkRange& range) { range.pruneSiblings(); }),
              (Lines{"A.x>B", "B.x>E", "B.y>F", "A.y>D"}));
}

TEST_F(LinkRangeTest, PruningBeforeTheFirstBeginDoesNothing) {
    LinkRange range = links(run());
    range.pruneAllChildren();
    range.pruneChildren(m["Node.x"]);
    range.pruneSiblings();
    Lines lines;
    for (const Link& link : range) lines.push_back(text(link));
    EXPECT_EQ(lines, whole);
}

TEST_F(LinkRangeTest, MovedRangeGoesOnWithTheWalk) {
    LinkRange first = links(run());
    ++first.begin();
    LinkRange second(std::move(first));
    EXPECT_EQ(text(*second.begin()), "B.x>E");
    LinkRange third = links(run());
    third = std::move(second);
    EXPECT_EQ(text(*third.begin()), "B.x>E");
}

// Older clangs do not compile the adaptors of libstdc++, and their own library has none.
#if !defined(__clang__) || __clang_major__ >= 16
TEST_F(LinkRangeTest, AdaptorsOfTheStandardLibraryTakeIt) {
    Lines lines;
    for (const Link& link : links(run()) | std::views::filter([](const Link& each) {
                                return each.shouldCascade();
                            }) | std::views::take(3)) {
        lines.push_back(text(link));
    }
    EXPECT_EQ(lines, (Lines{"A.x>B", "B.x>E", "B.y>F"}));
}
#endif

TEST_F(LinkRangeTest, ExceptionPassesThroughAndTheRangeGoesOn) {
    const auto result = run();
    bool fails = true;
    ResultSetup(result).filter([&](const Link& link) {
        if (link.getTarget() == m("E") && std::exchange(fails, false)) {
            throw test::PlannedFailure("filter");
        }
        return ResultPolicy::Report;
    });
    LinkRange range = links(result);
    auto place = range.begin();
    EXPECT_THROW(++place, test::PlannedFailure);
    EXPECT_EQ(text(*place), "A.x>B");
    ++place;
    EXPECT_EQ(text(*place), "B.y>F");
}

TEST_F(LinkRangeTest, BeginThatThrowsStartsAfreshNextTime) {
    const auto result = run();
    bool fails = true;
    ResultSetup(result).filter([&](const Link&) {
        if (std::exchange(fails, false)) throw test::PlannedFailure("filter");
        return ResultPolicy::Report;
    });
    LinkRange range = links(result);
    EXPECT_THROW(range.begin(), test::PlannedFailure);
    Lines lines;
    for (const Link& link : range) lines.push_back(text(link));
    EXPECT_EQ(lines, whole);
}

TEST_F(LinkRangeTest, EmptyWalkIsAnEmptyRange) {
    for (const Link& link : links(Spec::subtractiveTraversal()->depthFirst({}))) {
        FAIL() << text(link);
    }
}

/// The range says what became of a prune; every call has the effect that it has always had.
class PruneAnswerTest : public testing::TestWithParam<Algo> {
  protected:
    LinkRange walk(const std::vector<const char*>& names = {"A"}) const {
        std::vector<ModelElement> inputs;
        for (const char* name : names) inputs.push_back(m(name));
        return links(Spec::subtractiveTraversal()->run(inputs, GetParam()));
    }
    bool isPostOrder() const { return GetParam() == Algo::DepthFirstPostOrder; }
    /// Steps to the link, and says what became of the prune there.
    template <class Prune>
    Pruned at(const char* line, Prune prune) const {
        LinkRange range = walk();
        for (const Link& link : range) {
            if (text(link) == line) return prune(range);
        }
        throw std::out_of_range(line);
    }
    static Pruned allChildren(LinkRange& range) { return range.pruneAllChildren(); }
    static Pruned siblings(LinkRange& range) { return range.pruneSiblings(); }
    auto children(const char* property) const {
        return [=, this](LinkRange& range) { return range.pruneChildren(m[property]); };
    }

    test::ModelBuilder m{
        "Node; Leaf < Node; Node.x -> Node *; Node.y -> Node *; Node.text -- String; "
        "Leaf.z -> Node",
        "A.x = B C; A.y = D; B.x = E; B.y = F; C.x = B"};
};

TEST_P(PruneAnswerTest, WhereThereIsNoLinkThereIsNothingToPrune) {
    LinkRange range = walk();
    const auto expectNothing = [&] {
        EXPECT_EQ(range.pruneAllChildren(), Pruned::Nothing);
        EXPECT_EQ(range.pruneChildren(m["Node.x"]), Pruned::Nothing);
        EXPECT_EQ(range.pruneSiblings(), Pruned::Nothing);
    };
    expectNothing();
    std::size_t none = 0;
    range.advanceWithin(none);
    expectNothing();
    for (const Link& link : range) (void)link;
    expectNothing();
}

TEST_P(PruneAnswerTest, WhatIsStillToComeIsCut) {
    const Pruned expected = isPostOrder() ? Pruned::TooLate : Pruned::Cut;
    EXPECT_EQ(at("A.x>B", allChildren), expected);
    EXPECT_EQ(at("A.x>B", children("Node.x")), expected);
    EXPECT_EQ(at("A.x>B", siblings), Pruned::Cut);
    EXPECT_EQ(at(">A", allChildren), expected);
}

TEST_P(PruneAnswerTest, WhatHasBeenWalkedIsPrunedTooLate) {
    EXPECT_EQ(at("C.x>B!", allChildren), Pruned::TooLate);
    EXPECT_EQ(at("C.x>B!", children("Node.x")), Pruned::TooLate);
    EXPECT_EQ(at("C.x>B!", siblings), Pruned::TooLate);
    EXPECT_EQ(at("A.y>D", siblings), Pruned::TooLate) << "it has no more values";
}

TEST_P(PruneAnswerTest, PropertyThatIsNotFollowedFromTheTargetIsNothingToPrune) {
    for (const char* property : {"Leaf.z", "Node.text"}) {
        EXPECT_EQ(at("A.x>B", children(property)), Pruned::Nothing) << property;
    }
    EXPECT_EQ(at("A.x>B", [](LinkRange& range) { return range.pruneChildren(Property()); }),
              Pruned::Nothing);
}

TEST_P(PruneAnswerTest, OwnLinkOfAnInputHasNoSiblings) {
    EXPECT_EQ(at(">A", siblings), Pruned::Nothing);
}

/// The second of two equal prunes said again that it had cut something away.
TEST_P(PruneAnswerTest, PruningAgainComesTooLate) {
    const auto twice = [this](const char* line, auto prune) {
        return at(line, [&](LinkRange& range) {
            (void)prune(range);
            return prune(range);
        });
    };
    EXPECT_EQ(twice("A.x>B", allChildren), Pruned::TooLate);
    EXPECT_EQ(twice("A.x>B", siblings), Pruned::TooLate);
    EXPECT_EQ(twice("A.x>B", children("Node.x")), Pruned::TooLate);
    EXPECT_EQ(twice("A.x>B", children("Node.y")), Pruned::TooLate);
}

TEST_P(PruneAnswerTest, TargetThatABoundaryKeptOutHasNothingToPrune) {
    auto result = Spec::subtractiveTraversal()->run({m("A")}, GetParam());
    ResultSetup(result).descend([this](const Link& link) { return link.getTarget() != m("B"); });
    LinkRange range = links(result);
    std::size_t boundaries = 0;
    for (const Link& link : range) {
        if (link.getTarget() != m("B")) continue;
        ++boundaries;
        EXPECT_EQ(range.pruneAllChildren(), Pruned::Nothing);
        EXPECT_EQ(range.pruneChildren(m["Node.x"]), Pruned::Nothing);
    }
    EXPECT_EQ(boundaries, 2U);
}

INSTANTIATE_TEST_SUITE_P(Orders, PruneAnswerTest, testing::ValuesIn(test::everyOrder()),
                         [](const auto& each) { return test::nameOf(each.param); });

}  // namespace
}  // namespace nuv::zero::traversal
