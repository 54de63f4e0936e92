#pragma once

#include <cstdio>
#include <string>

#include "benchmarks/Measure.h"

namespace nuv::zero::benchmarks {

/// A number with so many digits behind the point.
inline std::string fixed(double number, int digits) {
    char text[64];
    const int length = std::snprintf(text, sizeof text, "%.*f", digits, number);
    return {text, static_cast<std::size_t>(length)};
}

/// The same, in bold where it is above its target.
inline std::string judged(double number, double target, int digits) {
    const std::string text = fixed(number, digits);
    return number <= target ? text : "**" + text + "**";
}

/// The least and the greatest.
inline std::string rangeOf(const Spread& spread, int digits) {
    return fixed(spread.least, digits) + " to " + fixed(spread.greatest, digits);
}

}  // namespace nuv::zero::benchmarks
