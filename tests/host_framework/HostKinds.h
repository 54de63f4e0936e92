#pragma once

#include <string>

#include "traversal/Spec.h"

namespace host {

/// The kinds and orders, for suites that run in each.
enum class Kind { Additive, Composition, Subtractive };

inline constexpr Kind everyKind[] = {Kind::Additive, Kind::Composition, Kind::Subtractive};
inline constexpr nuv::zero::traversal::Algo everyOrder[] = {
    nuv::zero::traversal::Algo::DepthFirstPreOrder, nuv::zero::traversal::Algo::DepthFirstPostOrder,
    nuv::zero::traversal::Algo::BreadthFirst};

inline std::string nameOf(Kind kind) {
    if (kind == Kind::Additive) return "Additive";
    return kind == Kind::Composition ? "Composition" : "Subtractive";
}
inline std::string nameOf(nuv::zero::traversal::Algo order) {
    using nuv::zero::traversal::Algo;
    if (order == Algo::DepthFirstPreOrder) return "PreOrder";
    return order == Algo::DepthFirstPostOrder ? "PostOrder" : "BreadthFirst";
}

}  // namespace host
