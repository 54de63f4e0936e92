// A subclass can name the token, but not make it either.
#include "traversal/Traversal.h"

namespace traversal = nuv::zero::traversal;

struct Derived : traversal::KIND {
    using Token = traversal::KIND::InstantiateToken;

    static void make(const Token& given) {
#ifdef EXPECT_ERROR
        traversal::KIND another(Token{});
#else
        traversal::KIND another(given);
#endif
        another.depthFirst({});
    }
};
