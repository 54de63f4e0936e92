// Walks two elements, with headers that are written out in full.
#include <iostream>

#include <modeling_nuv0_traversal/model/memory/Model.h>
#include <modeling_nuv0_traversal/traversal/Traversal.h>

int main() {
    using namespace nuv::zero;
    using namespace nuv::zero::traversal;

    memory::Metamodel metamodel(u"plant");
    const auto block = metamodel.addClass(u"Block");
    const auto parts = metamodel.addProperty(
        block, u"parts", block, memory::unbounded,
        memory::PropertyFlags::Association | memory::PropertyFlags::Composite);
    memory::Model model;
    const auto whole = model.create(block);
    const auto part = model.create(block);
    model.add(whole, parts, part);

    std::size_t count = 0;
    for (const Link& link : links(Spec::compositionTraversal()->depthFirst({whole}))) {
        count += link.getTarget() ? 1 : 0;
    }
    if (count == 2) return 0;
    std::cerr << "unexpected: " << count << " links\n";
    return 1;
}
