// The token can be neither named nor made by anybody but `Spec`.
#include "traversal/Traversal.h"

namespace traversal = nuv::zero::traversal;

void make(const std::shared_ptr<traversal::KIND>& made) {
#ifdef EXPECT_ERROR
    traversal::KIND another(traversal::KIND::InstantiateToken{});
#else
    traversal::KIND another(*made);
#endif
    another.depthFirst({});
}
