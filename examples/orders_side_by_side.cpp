// One traversal in the three orders. The rules, and so the links, are the same each time.
#include <array>
#include <iomanip>
#include <iostream>
#include <string>
#include <vector>

#include "examples/Station.h"
#include "traversal/Traversal.h"

using namespace nuv::zero::traversal;

int main() {
    const Station plant;
    const auto traversal = Spec::compositionTraversal();

    std::array<std::vector<std::string>, 3> columns;
    constexpr std::array orders{Algo::DepthFirstPreOrder, Algo::DepthFirstPostOrder,
                                Algo::BreadthFirst};
    for (std::size_t order = 0; order < orders.size(); ++order) {
        for (const Link& link : links(traversal->run({plant.station}, orders[order]))) {
            columns[order].push_back(dumpElement(link.getTarget()));
        }
    }

    std::cout << std::left << std::setw(22) << "pre-order" << std::setw(22) << "post-order"
              << "breadth-first\n";
    for (std::size_t row = 0; row < columns[0].size(); ++row) {
        std::cout << std::setw(22) << columns[0][row] << std::setw(22) << columns[1][row]
                  << columns[2][row] << '\n';
    }
}
