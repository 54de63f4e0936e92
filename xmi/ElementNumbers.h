#pragma once

#include <cstdint>
#include <vector>

#include "model/memory/ModelElement.h"

namespace nuv::zero::xmi {

/// Finds the numbers of elements, which were numbered as they were made.
///
/// Elements that are made one after another lie one behind another in long runs, so it is enough to
/// know the runs: finding a number is a search among them and one in the run. Where addresses come
/// in any order, runs are short, and the table takes the memory of any other.
class ElementNumbers {
  public:
    using Number = std::uint32_t;
    static constexpr Number none = 0xFFFFFFFFU;

    /// The next element. REQUIRES: the number is one more than that of the last one, or 0.
    void add(const ModelElement& element, Number number);
    /// To be called when all elements were added. REQUIRES: the list holds the elements by number,
    /// here and below.
    void sort(const std::vector<ModelElement>& elements);

    /// `none` for an element that was not added. REQUIRES: `sort` was called.
    Number find(const std::vector<ModelElement>& elements,
                const ModelElement& element) const noexcept;

  private:
    /// Elements with rising numbers and addresses.
    struct Run {
        const memory::Object* first;
        const memory::Object* last;
        Number begin;
        Number end;
    };
    /// In the end by address, and none reaches into another.
    std::vector<Run> runs_;
};

}  // namespace nuv::zero::xmi
