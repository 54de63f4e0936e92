// Everything that an element contains, without the notes and without what machines consist of.
#include <iostream>

#include "examples/Station.h"
#include "traversal/Traversal.h"

using namespace nuv::zero::traversal;

int main() {
    const Station plant;
    const auto walk = Spec::compositionTraversal()
                          ->prune(plant.notes)
                          ->prune({plant.parts, plant.isMachine(), plant.machine});

    for (const Link& link : links(walk->depthFirst({plant.station}))) {
        std::cout << dumpLink(link) << '\n';
    }
}
