// Explains how a walk came to an element: the links that led there, input first.
#include <iostream>
#include <unordered_map>
#include <vector>

#include "examples/Station.h"
#include "traversal/Traversal.h"

using namespace nuv::zero;
using namespace nuv::zero::traversal;

/// Remembers, for every element that a walk enters, the link that led there.
class Origins {
  public:
    void record(const Link& link) {
        // A link that does not cascade leads to an element that had been reached before. Where a
        // walk is breadth-first, the links that do cascade make shortest paths.
        if (link.shouldCascade()) ledTo_.emplace(link.getTarget(), link);
    }
    std::vector<Link> pathTo(ModelElement element) const {
        std::vector<Link> path;
        for (auto last = ledTo_.find(element); last != ledTo_.end(); last = ledTo_.find(element)) {
            path.insert(path.begin(), last->second);
            element = last->second.getSource();
        }
        return path;
    }

  private:
    std::unordered_map<ModelElement, Link> ledTo_;
};

int main() {
    const Station plant;

    Origins origins;
    for (const Link& link : links(Spec::subtractiveTraversal()->breadthFirst({plant.motor}))) {
        origins.record(link);
    }
    std::cout << "Why was " << dumpElement(plant.drain) << " reached?\n";
    for (const Link& link : origins.pathTo(plant.drain)) {
        std::cout << "  " << dumpLink(link) << '\n';
    }
}
