#pragma once

#include "traversal/ClassPredicate.h"

namespace nuv::zero::test {

/// Accepts every class.
inline bool always(const traversal::Class& /*type*/) {
    return true;
}

/// Accepts no class.
inline bool never(const traversal::Class& /*type*/) {
    return false;
}

}  // namespace nuv::zero::test
