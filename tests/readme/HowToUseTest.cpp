// The code of docs/how-to-use.md that no example shows.
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "examples/Station.h"
#include "traversal/Traversal.h"

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
    using Walk = TraversalResult::IterationContext;
    const auto result = Spec::compositionTraversal()->depthFirst({plant.tank});

    Lines lines;
    Walk walk = result->begin();
    walk.advance();
    Walk ahead = walk;
    ahead.advance();
    lines.push_back(dumpLink(walk.getCurrent()));
    lines.push_back(dumpLink(ahead.getCurrent()));
    for (; !(ahead == Walk()); ahead.advance()) {
    }
    lines.push_back(dumpLink(walk.getCurrent()));
    EXPECT_EQ(lines, (Lines{"Block'Tank'-[ports]-Port'inlet'", "Block'Tank'-[ports]-Port'drain'",
                            "Block'Tank'-[ports]-Port'inlet'"}));
}

TEST(HowToUse, AWalkGoesOnAfterAnException) {
    const Station plant;
    const auto result = Spec::compositionTraversal()->depthFirst({plant.tank});
    ResultSetup(result).filter([&plant](const Link& link) {
        if (link.getTarget() == plant.inlet) throw std::runtime_error("no inlets today");
        return ResultPolicy::Report;
    });

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
    EXPECT_EQ(lines, (Lines{"Not an element-[pseudo]-Block'Tank'", "no inlets today",
                            "Block'Tank'-[ports]-Port'drain'"}));
}

}  // namespace
