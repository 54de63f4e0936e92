#pragma once

#include <functional>

#include "model/Framework.h"

namespace nuv::zero::traversal {

using meta::Class;
using meta::Property;

/// The condition of a rule: whether it applies to elements of a class.
using ClassPredicate = std::function<bool(const Class&)>;

/// The predicate of a rule for all classes; a type of its own, so that it is known without asking.
struct EveryClass {
    bool operator()(const Class& /*type*/) const noexcept { return true; }
};

}  // namespace nuv::zero::traversal
