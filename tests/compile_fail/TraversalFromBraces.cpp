// Braces must not stand in for the token that only `Spec` can make.
#include "traversal/Traversal.h"

namespace traversal = nuv::zero::traversal;

void make(const std::shared_ptr<traversal::KIND>& made) {
#ifdef EXPECT_ERROR
    traversal::KIND another({});
#else
    traversal::KIND another(*made);
#endif
    another.depthFirst({});
}
