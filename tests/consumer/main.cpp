// Walks a small model through the shared libraries, and catches on this side what is thrown on
// theirs.
#include <iostream>
#include <string>
#include <vector>

#include "model/memory/Model.h"
#include "traversal/Traversal.h"

namespace {

namespace memory = nuv::zero::memory;
using namespace nuv::zero::traversal;
using Lines = std::vector<std::string>;

Lines dump(const std::shared_ptr<TraversalResult>& result) {
    Lines lines;
    for (const Link& link : links(result)) lines.push_back(dumpLink(link));
    return lines;
}

int fail(const std::string& what) {
    std::cerr << "unexpected: " << what << '\n';
    return 1;
}

}  // namespace

int main() {
    memory::Metamodel metamodel(u"consumer");
    const auto block = metamodel.addClass(u"Block");
    metamodel.addProperty(block, u"name", nuv::zero::meta::StandardTypes::stringMeta());
    const auto parts = metamodel.addProperty(
        block, u"parts", block, memory::unbounded,
        memory::PropertyFlags::Association | memory::PropertyFlags::Composite);

    memory::Model model;
    const auto outer = model.create(block, u"outer");
    const auto inner = model.create(block, u"inner");
    model.add(outer, parts, inner);

    const Lines expected{"Not an element-[pseudo]-Block'outer'",
                         "Block'outer'-[parts]-Block'inner'"};
    const Lines walked = dump(Spec::compositionTraversal()->depthFirst({outer}));
    if (walked != expected) {
        for (const std::string& line : walked) std::cerr << line << '\n';
        return fail("the links above");
    }

    model.plant(inner, parts,
                {nuv::zero::meta::StandardTypes::stringMeta(), false, std::u16string(u"no block")});
    try {
        dump(Spec::compositionTraversal()->depthFirst({outer}));
        return fail("an ill-typed value was walked");
    } catch (const nuv::zero::CannotCastIncompatibleTypes& refused) {
        if (refused.id() != "CannotCastIncompatibleTypes") return fail(refused.id());
        std::cout << refused.what() << '\n';
    } catch (const std::exception& other) {
        return fail(other.what());
    }
    return 0;
}
