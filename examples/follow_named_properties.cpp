// Follows the properties that are named and no others: where does what leaves the machines go?
#include <iostream>

#include "examples/Station.h"
#include "traversal/Traversal.h"

using namespace nuv::zero::traversal;

int main() {
    const Station plant;
    const auto walk = Spec::additiveTraversal()
                          ->includeInitialPseudoLink(ResultPolicy::WalkOnly)
                          ->traverse(plant.parts, ResultPolicy::WalkOnly)
                          ->traverse(plant.ports, plant.isMachine(), ResultPolicy::Report)
                          ->traverse(plant.feeds, ResultPolicy::Report);

    for (const Link& link : links(walk->depthFirst({plant.station}))) {
        std::cout << dumpLink(link) << '\n';
    }
}
