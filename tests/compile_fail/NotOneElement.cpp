// A walk starts from elements: neither a link nor a number nor two elements without braces are one.
#include "traversal/Traversal.h"

using namespace nuv::zero::traversal;
using nuv::zero::ModelElement;

void run(const std::shared_ptr<const CompositionTraversalImpl>& builder, const ModelElement& a,
         const ModelElement& b, const Link& link) {
    builder->depthFirst(a);
    builder->depthFirst({a, b});
    builder->depthFirst({});
    builder->depthFirst(link.getTarget());
#ifdef EXPECT_ERROR
    builder->INPUT;
#endif
    static_cast<void>(link);
}
