// A tag must not be made of the bytes of something else.
#include <bit>

#include "traversal/Traversal.h"

using Tag = nuv::zero::traversal::TraversalResult::privateTag;

void make(const Tag& given) {
#ifdef EXPECT_ERROR
    auto tag = std::bit_cast<Tag>(char());
#else
    auto tag = given;
#endif
    static_cast<void>(tag);
}
