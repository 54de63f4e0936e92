#pragma once

#include <string>

#include "traversal/Spec.h"

namespace host {

/// The kinds and orders, for suites that run in each.
enum class HostKind { Additive, Composition, Subtractive };

inline constexpr HostKind everyKind[] = {HostKind::Additive, HostKind::Composition,
                                         HostKind::Subtractive};
inline constexpr nuv::zero::traversal::Algo everyOrder[] = {
    nuv::zero::traversal::Algo::DepthFirstPreOrder, nuv::zero::traversal::Algo::DepthFirstPostOrder,
    nuv::zero::traversal::Algo::BreadthFirst};

inline std::string nameOf(HostKind kind) {
    if (kind == HostKind::Additive) return "Additive";
    return kind == HostKind::Composition ? "Composition" : "Subtractive";
}
inline std::string nameOf(nuv::zero::traversal::Algo order) {
    using nuv::zero::traversal::Algo;
    if (order == Algo::DepthFirstPreOrder) return "PreOrder";
    return order == Algo::DepthFirstPostOrder ? "PostOrder" : "BreadthFirst";
}

}  // namespace host
