// Explains how a walk came to an element: the links that led there, input first.
#include <iostream>

#include "examples/Station.h"
#include "traversal/Traversal.h"

using namespace nuv::zero;
using namespace nuv::zero::traversal;

int main() {
    const Station plant;

    // Breadth-first, an element is entered on one of the shortest ways to it.
    const auto result = Spec::subtractiveTraversal()->breadthFirst(plant.motor);
    ResultSetup(result).rememberPaths();
    auto walk = links(result);
    for (const Link& link : walk) {
        if (link.getTarget() == plant.drain) break;
    }
    // Of any element that the walk has entered by now, not of the last one alone.
    for (const ModelElement& element : {plant.drain, plant.tank}) {
        std::cout << "Why was " << dumpElement(element) << " reached?\n";
        for (const Link& link : walk.pathTo(element)) std::cout << "  " << dumpLink(link) << '\n';
    }
}
