#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "tests/oracle/PlainWorld.h"

/// Every model up to a size, with every list of inputs.
///
/// There is one class with two properties: `x`, a list and a containment, and `y`, a reference. So
/// the three kinds of traversal differ: the additive one is told to follow `x`, then `y`; the
/// subtractive one follows `y`, then `x`; the composition one follows `x` alone. Lists hold up to
/// two entries, every one of them any element or null; inputs are such lists too.
namespace nuv::zero::small_worlds {

inline constexpr int propertyX = 0;
inline constexpr int propertyY = 1;

/// A size of worlds that is gone through from end to end.
struct Family {
    const char* name;
    int mostElements;
    bool yIsList;
    bool withComposition;
};

/// Single-valued references let three elements be gone through in an hour, lists two.
inline constexpr Family families[] = {
    {"up to 3 elements, y single-valued", 3, false, true},
    {"up to 2 elements, y a list", 2, true, false},
};

/// A model and the inputs of walks over it.
struct Scene {
    oracle::PlainWorld world;
    std::vector<int> inputs;
};

/// What a scene is used with: the kinds of traversal that are run on it, and its maker, which takes
/// a number. Says whether to go on.
using UseScene = std::function<bool(const std::vector<oracle::Kind>& kinds,
                                    const std::function<Scene(std::uint64_t number)>& make)>;

/// Calls with every scene of a family, small ones first, as long as it is told to go on.
///
/// Left out is only what is the same walk as one that is gone through:
/// - A scene with an element that cannot be reached from the inputs: no walk is ever handed that
///   element, so it is the scene of one element less, which is gone through.
/// - Of the scenes that differ only in which element is called 0, 1 and 2, all but the one whose
///   elements are met in this order. The library compares and hashes handles and knows no order of
///   elements. What it does with addresses may depend on how they lie, so the elements of a scene
///   are made in an order that depends on the number.
/// - For compositions, the values of `y`, which is not followed: it leads from every element to
///   itself, so that following it would show at once.
void forEachScene(const Family& family, const UseScene& use);

std::string describe(const Scene& scene);

}  // namespace nuv::zero::small_worlds
