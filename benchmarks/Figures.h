#pragma once

#include <cstddef>
#include <iosfwd>
#include <string>
#include <vector>

namespace nuv::zero::benchmarks {

/// One measured number that is no row of another table.
struct Figure {
    std::string what;
    /// With its unit.
    std::string value;
    /// Empty where there is none.
    std::string target = {};
    bool isMet = true;
};

void writeTable(std::ostream& out, const std::vector<Figure>& figures);

}  // namespace nuv::zero::benchmarks
