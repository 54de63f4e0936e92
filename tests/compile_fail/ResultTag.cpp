// The tag that opens the constructor of a result can be named, but not made.
#include "traversal/Traversal.h"

using nuv::zero::traversal::TraversalResult;

void make(const TraversalResult::privateTag& given) {
#ifdef EXPECT_ERROR
    auto tag = TAG;
#else
    auto tag = given;
#endif
    static_cast<void>(tag);
}
