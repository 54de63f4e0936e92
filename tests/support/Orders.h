#pragma once

#include <ostream>
#include <vector>

#include "traversal/Spec.h"

/// The orders, for tests that run in each.
namespace nuv::zero::test {

inline std::vector<traversal::Algo> everyOrder() {
    using traversal::Algo;
    return {Algo::DepthFirstPreOrder, Algo::DepthFirstPostOrder, Algo::BreadthFirst};
}
inline const char* nameOf(traversal::Algo order) {
    switch (order) {
        case traversal::Algo::DepthFirstPreOrder:
            return "PreOrder";
        case traversal::Algo::DepthFirstPostOrder:
            return "PostOrder";
        case traversal::Algo::BreadthFirst:
            return "BreadthFirst";
    }
    return "OtherOrder";
}

}  // namespace nuv::zero::test

namespace nuv::zero::traversal {
/// For the names of parameterised tests.
inline void PrintTo(Algo order, std::ostream* out) {
    *out << test::nameOf(order);
}
}  // namespace nuv::zero::traversal
