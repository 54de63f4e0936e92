#include <vector>

#include "Consumer.h"
#include "traversal/Traversal.h"

namespace nuv_consumer {

namespace {

using namespace nuv::zero::traversal;

std::shared_ptr<TraversalResult> composition(const Station& station) {
    const auto result = Spec::compositionTraversal()->depthFirst(station.one);
    ResultSetup(result).rememberPaths().upTo(9).descend(
        [&station](const Link& link) { return link.getTarget() != station.three; });
    return result;
}

/// A walk and a range tell the same of where they stand.
template <class Walk>
void callPlace(const Station& station, Walk& walk) {
    expect(walk.depth() == 1 && walk.meeting() == Meeting::First, "a walk knows how it came here");
    expect(walk.path().size() == 2 && walk.pathTo(station.two).size() == 2 && walk.cycle().empty(),
           "a walk knows its way");
    expect(walk.hasEntered(station.two) && walk.enteredCount() == 2 && walk.waitingCount() > 0,
           "a walk knows what it has entered");
    std::size_t steps = 100;
    while (walk.advanceWithin(steps) != Progress::Ended) {
        expect(walk.meeting() == Meeting::Boundary, "a boundary is met");
    }
    expect(steps < 100, "steps are counted");
}

}  // namespace

void callPositions(Station& station) {
    IterationContext walk = composition(station)->prepare();
    expect(!walk.hasEnded() && !walk.getCurrent(), "a walk is made without a step");
    walk.advance();
    walk.advance();
    callPlace(station, walk);

    LinkRange range = links(composition(station));
    ++range.begin();
    expect(range.getCurrent().getTarget() == station.two, "a range has a current link");
    callPlace(station, range);
}

}  // namespace nuv_consumer
