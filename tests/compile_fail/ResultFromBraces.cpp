// Braces must not stand in for the tag that only builders can make.
#include "traversal/Traversal.h"

using namespace nuv::zero::traversal;

void make(const TraversalResult::privateTag& given) {
#ifdef EXPECT_ERROR
    const TraversalResult result({}, {}, nullptr, Algo::BreadthFirst, ResultPolicy::Report);
#else
    const TraversalResult result(given, {}, nullptr, Algo::BreadthFirst, ResultPolicy::Report);
#endif
    static_cast<void>(result);
}
