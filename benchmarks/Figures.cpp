#include "benchmarks/Figures.h"

#include <ostream>

namespace nuv::zero::benchmarks {

void writeTable(std::ostream& out, const std::vector<Figure>& figures) {
    out << "| what | measured | target |\n|---|---|---|\n";
    for (const Figure& figure : figures) {
        const std::string mark = figure.isMet ? "" : "**";
        out << "| " << figure.what << " | " << mark << figure.value << mark << " | "
            << figure.target << " |\n";
    }
}

}  // namespace nuv::zero::benchmarks
