// Walks a host's own model, in place of the in-memory one: see HostModel.h and HostFramework.h.
#include <iostream>
#include <memory>

#include "examples/HostModel.h"
#include "traversal/Traversal.h"

using namespace nuv::zero;
using namespace nuv::zero::traversal;

int main() {
    using Holds = host::Slot::Holds;
    const auto entry = std::make_shared<host::Kind>(u"Entry");
    const auto folder = std::make_shared<host::Kind>(u"Folder", entry);
    const auto file = std::make_shared<host::Kind>(u"File", entry);
    entry->addSlot(u"name", Holds::Name);
    const auto entries = folder->addSlot(u"entries", Holds::Parts);
    const auto openedBy = file->addSlot(u"openedBy", Holds::One);

    const auto home = std::make_shared<host::Thing>(folder, u"home");
    const auto letters = std::make_shared<host::Thing>(folder, u"letters");
    const auto draft = std::make_shared<host::Thing>(file, u"draft.txt");
    const auto editor = std::make_shared<host::Thing>(file, u"editor");
    home->held[entries.get()] = {letters, editor};
    letters->held[entries.get()] = {draft};
    draft->held[openedBy.get()] = {editor};

    const auto everything = Spec::subtractiveTraversal();
    for (const Link& link : links(everything->depthFirst({ModelElement(home)}))) {
        std::cout << dumpLink(link) << (link.shouldCascade() ? "\n" : " (reached before)\n");
    }
}
