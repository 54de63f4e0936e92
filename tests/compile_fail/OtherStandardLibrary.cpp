// A source whose containers or strings are other types than those of the libraries.
#ifdef EXPECT_ERROR
#if defined(OTHER_DEBUG_CONTAINERS)
#define _GLIBCXX_DEBUG
#elif defined(OTHER_OLD_STRINGS)
#define _GLIBCXX_USE_CXX11_ABI 0
#endif
#endif
#include "traversal/Traversal.h"

void make() {
    static_cast<void>(nuv::zero::traversal::Spec::subtractiveTraversal());
}
