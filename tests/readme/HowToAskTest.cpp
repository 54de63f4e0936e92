// The code of docs/how-to-use.md on where a walk stands, how far it goes, and why.
#include <gtest/gtest.h>

#include <cstddef>
#include <stdexcept>
#include <string>
#include <vector>

#include "examples/Station.h"
#include "traversal/Traversal.h"

namespace {

using namespace nuv::zero;
using namespace nuv::zero::traversal;

using Lines = std::vector<std::string>;

TEST(HowToAsk, AWalkSaysWhyItHasNotEnteredAnElement) {
    const Station plant;
    WalkBoundaries boundaries;
    const auto result = Spec::compositionTraversal()
                            ->prune(plant.notes, named("no notes"))
                            ->depthFirst({plant.station});
    ResultSetup(result).trace(&boundaries);
    auto walk = links(result);
    for (const Link& link : walk) {
        if (link.getTarget() == plant.tank) walk.pruneAllChildren();
    }
    const std::string why = whyNot(walk, plant.inlet, &boundaries).text();
    EXPECT_EQ(why,
              "Port'inlet' was not entered. 2 links might have led to it:\n"
              "  Block'Tank'-[ports]-Port'inlet', 1 link from an input: all children of its source "
              "were pruned\n"
              "  Port'out'-[feeds]-Port'inlet', 2 links from an input: not followed; it is no "
              "containment\n");
}

TEST(HowToAsk, AWalkSaysWhereItStandsAndWhichCycleALinkCloses) {
    const Station plant;
    Lines lines;
    auto walk = links(Spec::subtractiveTraversal()->depthFirst(plant.motor));
    for (const Link& link : walk) {
        if (walk.meeting() != Meeting::Open) continue;
        lines.push_back(std::to_string(walk.depth()) + " links away: " + dumpLink(link));
        for (const Link& step : walk.cycle()) lines.push_back("  " + dumpLink(step));
    }
    ASSERT_GE(lines.size(), 3U);
    EXPECT_EQ(lines[0], "2 links away: Machine'Pump'-[parts]-Machine'Motor'");
    EXPECT_EQ(lines[1], "  Machine'Motor'-[controls]-Machine'Pump'");
    EXPECT_EQ(lines[2], "  Machine'Pump'-[parts]-Machine'Motor'");
}

TEST(HowToAsk, ABoundaryAndALimitSayHowFarAWalkGoes) {
    const Station plant;
    const auto result = Spec::subtractiveTraversal()->depthFirst(plant.pump);
    ResultSetup(result)
        .descend([&](const Link& link) { return link.getTarget() != plant.tank; })
        .upTo(3);
    auto walk = links(result);
    bool isTankReported = false;
    for (const Link& link : walk) isTankReported |= link.getTarget() == plant.tank;
    EXPECT_TRUE(isTankReported);
    EXPECT_FALSE(walk.hasEntered(plant.tank));
    EXPECT_TRUE(walk.hasEntered(plant.inlet));
}

TEST(HowToAsk, AWalkPausesWhenItsBudgetIsUsedUp) {
    const Station plant;
    bool wasCancelled = false;
    const auto isCancelled = [&] { return wasCancelled = true; };
    IterationContext walk = Spec::subtractiveTraversal()->depthFirst(plant.station)->prepare();
    EXPECT_FALSE(walk.getCurrent());
    EXPECT_FALSE(walk.hasEnded());
    for (std::size_t steps = 1000; walk.advanceWithin(steps) != Progress::Ended;) {
        if (steps > 0) continue;  // It stands on a link; otherwise it has paused.
        if (isCancelled()) break;
        steps = 1000;
    }
    EXPECT_TRUE(walk.hasEnded());
    EXPECT_FALSE(wasCancelled) << "the station takes fewer steps";
}

TEST(HowToAsk, RulesAreCheckedBeforeAnyWalk) {
    const Station plant;
    Lines lines;
    const auto builder = Spec::compositionTraversal();
    builder->prune(plant.feeds);
    for (const RuleFinding& finding : check(*builder, plant.metamodel.classes())) {
        lines.push_back(finding.text);
    }
    EXPECT_EQ(
        lines,
        Lines{"Rule 1 (prune plant::Port.feeds, owner plant::Port) is on a property that is no "
              "containment, which a composition traversal does not follow."});
}

TEST(HowToAsk, APruneOfARangeSaysWhatBecameOfIt) {
    const Station plant;
    auto walk = links(Spec::compositionTraversal()->depthFirst(plant.station));
    EXPECT_EQ(walk.pruneAllChildren(), Pruned::Nothing);
    for (const Link& link : walk) {
        if (link.getTarget() == plant.motor) break;
    }
    EXPECT_EQ(walk.pruneChildren(plant.feeds), Pruned::Nothing);
    EXPECT_EQ(walk.pruneAllChildren(), Pruned::Cut);
    EXPECT_EQ(walk.pruneAllChildren(), Pruned::TooLate);
}

TEST(HowToAsk, PathsAreRememberedOnRequest) {
    const Station plant;
    const auto result = Spec::compositionTraversal()->depthFirst(plant.station);
    auto forgetful = links(result);
    for (auto step = forgetful.begin(); step != forgetful.end();) ++step;
    EXPECT_THROW(forgetful.pathTo(plant.drain), std::logic_error);
    ResultSetup(result).rememberPaths();
    auto walk = links(result);
    for (auto step = walk.begin(); step != walk.end();) ++step;
    EXPECT_EQ(walk.pathTo(plant.drain).size(), 3U);
}

}  // namespace
