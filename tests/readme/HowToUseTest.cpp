// The code of docs/how-to-use.md that no example shows.
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <ranges>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "examples/Station.h"
#include "model/memory/Payload.h"
#include "tests/support/PrivateAccess.h"
#include "traversal/Traversal.h"

namespace nuv::zero::testing_support {

struct ObjectReferences {
    friend auto pointerTo(ObjectReferences);
};
template struct Expose<ObjectReferences, &memory::Object::references_>;

}  // namespace nuv::zero::testing_support

namespace {

using namespace nuv::zero;
using namespace nuv::zero::traversal;

using Lines = std::vector<std::string>;

Lines linesOf(const std::shared_ptr<TraversalResult>& result) {
    Lines lines;
    for (const Link& link : links(result)) lines.push_back(dumpLink(link));
    return lines;
}

TEST(HowToUse, TheRuleOfTheSubclassAnswersWhenItIsGivenFirst) {
    const Station plant;
    const auto walk =
        Spec::additiveTraversal()
            ->traverse({plant.parts, plant.isMachine(), plant.machine}, ResultPolicy::WalkOnly)
            ->traverse(plant.parts, ResultPolicy::Report)
            ->traverse(plant.notes, ResultPolicy::Report);
    // The motor, a part of a machine, is walked through but not reported.
    EXPECT_EQ(
        linesOf(walk->depthFirst({plant.station})),
        (Lines{"Not an element-[pseudo]-Block'Station'", "Block'Station'-[parts]-Machine'Pump'",
               "Machine'Motor'-[notes]-Note'Oil monthly'",
               "Machine'Pump'-[notes]-Note'Check seals'", "Block'Station'-[parts]-Block'Tank'"}));
}

TEST(HowToUse, ASuperclassRuleGivenFirstAnswersWhenItsNameSortsFirst) {
    const Station plant;
    const auto walk =
        Spec::additiveTraversal()
            ->traverse(plant.parts, ResultPolicy::Report)
            ->traverse({plant.parts, plant.isMachine(), plant.machine}, ResultPolicy::WalkOnly);
    EXPECT_EQ(
        linesOf(walk->depthFirst({plant.pump})),
        (Lines{"Not an element-[pseudo]-Machine'Pump'", "Machine'Pump'-[parts]-Machine'Motor'"}));
}

TEST(HowToUse, CallablesHearSingleEventsAndFiltersMayAnswerBool) {
    const Station plant;
    const auto result = Spec::subtractiveTraversal()->depthFirst(plant.out);
    Lines entered;
    ResultSetup(result)
        .onEnterElement(
            [&](const ModelElement& element) { entered.push_back(dumpElement(element)); })
        .filter([](const Link& link) { return link.shouldCascade(); });
    const std::size_t reported = linesOf(result).size();
    EXPECT_EQ(entered.size(), reported);
    EXPECT_EQ(entered.front(), "Port'out'");
}

TEST(HowToUse, WithoutContainerReferencesAWalkDoesNotClimb) {
    const Station plant;
    const auto builder = Spec::subtractiveTraversal();
    EXPECT_EQ(linesOf(builder->depthFirst(plant.inlet)).at(1), "Port'inlet'-[owner]-Block'Tank'");
    builder->prune(containerReferencesOf(plant.metamodel.classes()));
    EXPECT_EQ(linesOf(builder->depthFirst(plant.inlet)),
              Lines{"Not an element-[pseudo]-Port'inlet'"});
}

/// The owners in the order in which their rules are asked.
Lines askedInOrder(const std::vector<meta::Class>& given) {
    Lines asked;
    CompositeMatcher rules(CompositeMatcher::VisitMode::Visit);
    for (const meta::Class& owner : given) {
        const auto refuse = [&asked, name = access::toUtf8(owner->getName())](const meta::Class&) {
            asked.push_back(name);
            return false;
        };
        rules.composeMatcher(owner, refuse, ResultPolicy::Report);
    }
    rules.anyMatches(given.front());
    return asked;
}

TEST(HowToUse, ThreeRulesNeedNotBeAskedInTheOrderInWhichTheyWereGiven) {
    memory::Metamodel metamodel{u"m"};
    const meta::Class b = metamodel.addClass(u"B");
    const meta::Class c = metamodel.addClass(u"C", {b});
    const meta::Class d = metamodel.addClass(u"D", {b});
    EXPECT_EQ(askedInOrder({d, b, c}), (Lines{"C", "D", "B"}));
    EXPECT_EQ(askedInOrder({b, c, d}), (Lines{"B", "C", "D"}));
}

TEST(HowToUse, RulesOfALineOfSubclassesGivenFromBelowAreAskedFromBelow) {
    memory::Metamodel metamodel{u"m"};
    const meta::Class top = metamodel.addClass(u"A");
    const meta::Class middle = metamodel.addClass(u"M", {top});
    const meta::Class bottom = metamodel.addClass(u"Z", {middle});
    EXPECT_EQ(askedInOrder({bottom, middle, top}), (Lines{"Z", "M", "A"}));
}

TEST(HowToUse, RulesOfNamesThatSortSubclassesFirstAreAskedThatWayHoweverTheyAreGiven) {
    memory::Metamodel metamodel{u"m"};
    const meta::Class z = metamodel.addClass(u"Z");
    const meta::Class b = metamodel.addClass(u"B", {z});
    const meta::Class m = metamodel.addClass(u"M");
    for (const auto& given :
         {std::vector{z, b, m}, {z, m, b}, {b, z, m}, {b, m, z}, {m, z, b}, {m, b, z}}) {
        EXPECT_EQ(askedInOrder(given), (Lines{"B", "M", "Z"}));
    }
}

TEST(HowToUse, InputsComeFromAnyRangeOfElements) {
    const Station plant;
    const std::vector<ModelElement> chosen{plant.tank, plant.motor};
    const auto walk =
        Spec::compositionTraversal()->includeInitialPseudoLink(ResultPolicy::WalkOnly);
    EXPECT_EQ(linesOf(walk->breadthFirst(chosen)),
              (Lines{"Block'Tank'-[ports]-Port'inlet'", "Block'Tank'-[ports]-Port'drain'",
                     "Machine'Motor'-[notes]-Note'Oil monthly'"}));
}

TEST(HowToUse, AFilterAndAUniquenessModeAreSetUpBeforeTheWalk) {
    const Station plant;
    const auto result = Spec::subtractiveTraversal()->depthFirst({plant.tank});
    ResultSetup(result).unique(UniquenessMode::UniqueLinks).filter([&plant](const Link& link) {
        return link.getTarget() == plant.drain ? ResultPolicy::WalkOnly : ResultPolicy::Report;
    });
    EXPECT_EQ(linesOf(result),
              (Lines{"Not an element-[pseudo]-Block'Tank'", "Block'Tank'-[ports]-Port'inlet'"}));
}

TEST(HowToUse, ACopyOfAWalkGoesItsOwnWay) {
    const Station plant;
    const auto result = Spec::compositionTraversal()->depthFirst({plant.tank});

    Lines lines;
    IterationContext walk = result->begin();
    walk.advance();
    IterationContext ahead = walk;
    ahead.advance();
    lines.push_back(dumpLink(walk.getCurrent()));
    lines.push_back(dumpLink(ahead.getCurrent()));
    for (; !(ahead == IterationContext()); ahead.advance()) {
    }
    lines.push_back(dumpLink(walk.getCurrent()));
    EXPECT_EQ(lines, (Lines{"Block'Tank'-[ports]-Port'inlet'", "Block'Tank'-[ports]-Port'drain'",
                            "Block'Tank'-[ports]-Port'inlet'"}));
}

/// The links of a walk, and what its exceptions say.
Lines linesAndExceptionsOf(const std::shared_ptr<TraversalResult>& result) {
    Lines lines;
    auto walk = result->begin();
    while (!!walk.getCurrent()) {
        lines.push_back(dumpLink(walk.getCurrent()));
        try {
            walk.advance();
        } catch (const std::runtime_error& error) {
            lines.emplace_back(error.what());
            walk.advance();  // The link that failed is lost; its target stays entered.
        }
    }
    return lines;
}

TEST(HowToUse, AWalkGoesOnAfterAnException) {
    const Station plant;
    const auto result = Spec::compositionTraversal()->depthFirst({plant.tank});
    ResultSetup(result).filter([&plant](const Link& link) {
        if (link.getTarget() == plant.inlet) throw std::runtime_error("no inlets today");
        return ResultPolicy::Report;
    });

    EXPECT_EQ(linesAndExceptionsOf(result),
              (Lines{"Not an element-[pseudo]-Block'Tank'", "no inlets today",
                     "Block'Tank'-[ports]-Port'drain'"}));
}

/// Cuts off what machines contain, when they are entered.
class MachineCutter : public TraversalProcessor {
  public:
    MachineCutter(LinkRange& walk, std::function<bool(const meta::Class&)> isMachine)
        : walk_(walk), isMachine_(std::move(isMachine)) {}

    void onEnterElement(const ModelElement& element) override {
        if (isMachine_(element->getClass())) walk_.pruneAllChildren();
    }

  private:
    LinkRange& walk_;
    std::function<bool(const meta::Class&)> isMachine_;
};

TEST(HowToUse, AnObserverPrunesTheWalkThatTellsIt) {
    const Station plant;
    const auto result = Spec::compositionTraversal()->depthFirst({plant.station});
    LinkRange walk = links(result);
    MachineCutter cutter(walk, plant.isMachine());
    ResultSetup(result).observe(&cutter);
    Lines lines;
    for (const Link& link : walk) lines.push_back(dumpLink(link));
    EXPECT_EQ(lines,
              (Lines{"Not an element-[pseudo]-Block'Station'",
                     "Block'Station'-[parts]-Machine'Pump'", "Block'Station'-[parts]-Block'Tank'",
                     "Block'Tank'-[ports]-Port'inlet'", "Block'Tank'-[ports]-Port'drain'"}));
}

std::uint32_t referencesTo(const ModelElement& element) {
    return (*element.get()).*pointerTo(testing_support::ObjectReferences());
}

TEST(HowToUse, AFilterThatTakesItsLinkByReferenceGetsNoCopyAndOneByValueDoes) {
    const Station plant;
    const auto result = Spec::compositionTraversal()->depthFirst({plant.tank});
    std::vector<std::uint32_t> byReference;
    std::vector<std::uint32_t> byValue;
    ResultSetup(result)
        .filter([&](const Link& /*link*/) {
            byReference.push_back(referencesTo(plant.inlet));
            return ResultPolicy::Report;
        })
        .filter([&](Link link) {  // NOLINT(performance-unnecessary-value-param): to be counted
            if (link.getTarget() == plant.inlet) byValue.push_back(referencesTo(plant.inlet));
            return ResultPolicy::Report;
        });
    const std::uint32_t outside = referencesTo(plant.inlet);
    EXPECT_EQ(linesOf(result).size(), 3U);
    EXPECT_EQ(byReference, std::vector(3, outside));
    ASSERT_EQ(byValue.size(), 1U);
    EXPECT_GT(byValue.front(), outside);
}

// The views of this standard library do not compile with every compiler that compiles the rest.
#if !defined(__clang__) || __clang_major__ > 15 || defined(_LIBCPP_VERSION)
TEST(HowToUse, ANamedRangeIsPrunedWhileItsPipelineIsConsumed) {
    const Station plant;
    const auto leadsToABlock = [&plant](const Link& link) {
        return link.getTarget()->getClass()->conformsTo(plant.block);
    };
    Lines lines;
    auto walk = links(Spec::compositionTraversal()->depthFirst({plant.station}));
    for (const Link& link : walk | std::views::filter(leadsToABlock)) {
        lines.push_back(dumpLink(link));
        if (plant.isMachine()(link.getTarget()->getClass())) walk.pruneAllChildren();
    }
    EXPECT_EQ(lines, (Lines{"Not an element-[pseudo]-Block'Station'",
                            "Block'Station'-[parts]-Machine'Pump'",
                            "Block'Station'-[parts]-Block'Tank'"}));
}
#endif

constexpr Algo everyAlgo[] = {Algo::DepthFirstPreOrder, Algo::DepthFirstPostOrder,
                              Algo::BreadthFirst};

// The page said that an input's own link is never lost.
TEST(HowToUse, AnInputsOwnLinkIsLostWhenAFilterThrowsOnIt) {
    const Station plant;
    for (const Algo algo : everyAlgo) {
        const auto result = Spec::compositionTraversal()->run({plant.motor, plant.tank}, algo);
        ResultSetup(result).filter([&plant](const Link& link) {
            if (link.getTarget() == plant.tank) throw std::runtime_error("no tanks today");
            return ResultPolicy::Report;
        });
        const bool isPostOrder = algo == Algo::DepthFirstPostOrder;
        const Lines motor = isPostOrder ? Lines{"Machine'Motor'-[notes]-Note'Oil monthly'",
                                                "Not an element-[pseudo]-Machine'Motor'"}
                                        : Lines{"Not an element-[pseudo]-Machine'Motor'",
                                                "Machine'Motor'-[notes]-Note'Oil monthly'"};
        Lines tank{"Block'Tank'-[ports]-Port'inlet'", "Block'Tank'-[ports]-Port'drain'"};
        tank.insert(isPostOrder ? tank.end() : tank.begin(), "no tanks today");
        Lines expected = motor;
        expected.insert(expected.end(), tank.begin(), tank.end());
        EXPECT_EQ(linesAndExceptionsOf(result), expected);
    }
}

template <class Failure, class Action>
bool throws(const Action& action) {
    try {
        action();
    } catch (const Failure&) {
        return true;
    }
    return false;
}

TEST(HowToUse, AWalkIsNotAdvancedFromItsOwnCallbacks) {
    const Station plant;
    const auto result = Spec::compositionTraversal()->depthFirst({plant.tank});
    auto walk = result->begin();
    int refusals = 0;
    ResultSetup(result).filter([&](const Link& /*link*/) {
        refusals += throws<std::logic_error>([&] { walk.advance(); }) ? 1 : 0;
        const auto assign = [&] { walk = TraversalResult::IterationContext(); };
        refusals += throws<std::logic_error>(assign) ? 1 : 0;
        return ResultPolicy::Report;
    });
    walk.advance();
    EXPECT_EQ(refusals, 2);
    EXPECT_EQ(dumpLink(walk.getCurrent()), "Block'Tank'-[ports]-Port'inlet'");
}

TEST(HowToUse, AWalkOfNoResultIsRefused) {
    EXPECT_TRUE(
        throws<std::invalid_argument>([] { TraversalResult::IterationContext walk(nullptr); }));
}

TEST(HowToUse, MoreValuesThanFitInOnePlaceAreRefused) {
    if constexpr (sizeof(std::size_t) > 4) {
        constexpr auto tooMany = static_cast<std::size_t>(std::uint64_t{1} << 32U);
        EXPECT_TRUE(throws<std::length_error>(
            [] { memory::Payload::make(memory::Payload::Kind::Integers, tooMany); }));
    } else {
        GTEST_SKIP() << "2^32 values are more than the address space of this machine holds";
    }
}

}  // namespace
