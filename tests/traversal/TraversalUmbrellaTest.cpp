#include "traversal/Traversal.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "model/memory/Model.h"

namespace nuv::zero {
namespace {

TEST(TraversalUmbrellaTest, OneIncludeServesAWholeProgram) {
    using namespace traversal;
    memory::Metamodel metamodel(u"m");
    const meta::Class node = metamodel.addClass(u"Node");
    const meta::Property next =
        metamodel.addProperty(node, u"next", node, 1, memory::PropertyFlags::Association);
    metamodel.addProperty(node, u"name", meta::StandardTypes::stringMeta());
    memory::Model model;
    const ModelElement a = model.create(node, u"a");
    model.set(a, next, model.create(node, u"b"));

    TraversalProcessor observer;
    const std::shared_ptr<TraversalResult> result =
        Spec::additiveTraversal()->traverse(next, ResultPolicy::Report)->breadthFirst({a});
    ResultSetup(result).observe(&observer);
    std::string text = dumpElement(a);
    for (const Link& link : links(result)) text += "; " + dumpLink(link);
    for (IterationContext walk = result->begin(); walk.getCurrent(); walk.advance()) {
        text += "; " + std::to_string(LinkHasher()(walk.getCurrent()) != 0 ? walk.depth() : 99);
    }
    EXPECT_TRUE(isKindOf(node)(node) && containerReferencesOf({node}).empty());
    EXPECT_EQ(text, "Node'a'; Not an element-[pseudo]-Node'a'; Node'a'-[next]-Node'b'; 0; 1");
}

}  // namespace
}  // namespace nuv::zero
