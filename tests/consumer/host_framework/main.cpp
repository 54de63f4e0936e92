// Walks a host's own model through the shared library.
#include <iostream>
#include <string>

#include "WalkSupport.h"
#include "tests/host_framework/HostWorld.h"
#include "traversal/Traversal.h"

int main() {
    using namespace nuv::zero::traversal;

    host::World world;
    const auto part = world.addClass(u"Part");
    world.addName(part);
    const auto next = world.addSingle(part, u"next");
    const auto a = world.create(part, u"a");
    const auto b = world.create(part, u"b");
    host::World::link(a, next, b);
    host::World::link(b, next, a);

    if (!nuv_consumer::callWalkSupport(a, next)) {
        std::cerr << "unexpected: what stands in for the framework\n";
        return 1;
    }

    std::string walked;
    for (const Link& link : links(Spec::subtractiveTraversal()->depthFirst({a}))) {
        walked += dumpLink(link) + '\n';
    }
    const std::string expected =
        "Not an element-[pseudo]-Part'a'\n"
        "Part'a'-[next]-Part'b'\n"
        "Part'b'-[next]-Part'a'\n";
    if (walked == expected) return 0;
    std::cerr << "unexpected:\n" << walked;
    return 1;
}
