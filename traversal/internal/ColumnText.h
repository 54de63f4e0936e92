#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "../Export.h"

namespace nuv::zero::traversal MODELING_NUV0_OVER::internal {

/// Lines of cells under a head, in columns as wide as they need: texts to the left, then numbers to
/// the right. Cells are measured in characters of UTF-8.
class ColumnText {
  public:
    ColumnText(std::vector<std::string> head, std::size_t textColumns);

    /// REQUIRES: as many cells as the head has.
    void add(std::vector<std::string> cells);
    /// A line for the head and each line of cells.
    std::string text() const;

  private:
    std::vector<std::vector<std::string>> lines_;
    std::vector<std::size_t> widths_;
    std::size_t textColumns_;
};

}  // namespace nuv::zero::traversal::internal
