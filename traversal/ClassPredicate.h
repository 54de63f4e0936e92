#pragma once

#include <functional>

#include "model/Framework.h"

namespace nuv::zero::traversal {

using meta::Class;
using meta::Property;

/// The condition of a rule: whether it applies to elements of a class.
using ClassPredicate = std::function<bool(const Class&)>;

}  // namespace nuv::zero::traversal
