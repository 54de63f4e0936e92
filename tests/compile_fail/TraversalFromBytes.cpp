// A subclass, which can name the token, must not make it of the bytes of something else.
#include <bit>

#include "traversal/Traversal.h"

namespace traversal = nuv::zero::traversal;

struct Forger : traversal::KIND {
    using Token = traversal::KIND::InstantiateToken;

    static void make(const Token& given) {
#ifdef EXPECT_ERROR
        traversal::KIND another(std::bit_cast<Token>(char()));
#else
        traversal::KIND another(given);
#endif
        another.depthFirst({});
    }
};
