// Decides at each link whether and how to go on from it.
#include <iostream>

#include "examples/Station.h"
#include "traversal/Traversal.h"

using namespace nuv::zero::traversal;

int main() {
    const Station plant;

    std::cout << "Machines stay closed:\n";
    auto walk = links(Spec::compositionTraversal()->depthFirst({plant.station}));
    for (const Link& link : walk) {
        std::cout << "  " << dumpLink(link) << '\n';
        if (plant.isMachine()(link.getTarget()->getClass())) walk.pruneAllChildren();
    }

    std::cout << "The pump shows no ports:\n";
    walk = links(Spec::compositionTraversal()->depthFirst({plant.station}));
    for (const Link& link : walk) {
        std::cout << "  " << dumpLink(link) << '\n';
        if (link.getTarget() == plant.pump) walk.pruneChildren(plant.ports);
    }

    std::cout << "Nothing beside the pump:\n";
    walk = links(Spec::compositionTraversal()->depthFirst({plant.station}));
    for (const Link& link : walk) {
        std::cout << "  " << dumpLink(link) << '\n';
        if (link.getTarget() == plant.pump) walk.pruneSiblings();
    }
}
