#pragma once

#include <string>

#include "tests/support/Orders.h"

namespace host {

using nuv::zero::test::everyOrder;
using nuv::zero::test::nameOf;

/// The kinds, for suites that run in each.
enum class HostKind { Additive, Composition, Subtractive };

inline constexpr HostKind everyKind[] = {HostKind::Additive, HostKind::Composition,
                                         HostKind::Subtractive};

inline std::string nameOf(HostKind kind) {
    if (kind == HostKind::Additive) return "Additive";
    return kind == HostKind::Composition ? "Composition" : "Subtractive";
}

}  // namespace host
