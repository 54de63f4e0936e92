#include "tests/scenario/Statements.h"
#include "traversal/internal/Dumps.h"

namespace nuv::zero::scenario {

namespace {

using traversal::internal::LinkHasher;

/// A link from its three handles, written source, property, target.
Link nextNewLink(Workspace& workspace, Arguments& arguments) {
    const ModelElement source = workspace.nextElementOrNull(arguments);
    const meta::Property property = workspace.nextPropertyOrNull(arguments);
    return Link(source, workspace.nextElementOrNull(arguments), property);
}

void printText(Workspace& workspace, const std::string& text) {
    workspace.output << "text " << quoted(text) << '\n';
}

void printAnswer(Workspace& workspace, const char* question, bool answer) {
    workspace.output << question << (answer ? " true" : " false") << '\n';
}

void showElement(Workspace& workspace, Arguments& arguments) {
    printText(workspace, traversal::internal::dumpElement(workspace.nextElementOrNull(arguments)));
}

void showNewLink(Workspace& workspace, Arguments& arguments) {
    printText(workspace, traversal::internal::dumpLink(nextNewLink(workspace, arguments)));
}

void declareLink(Workspace& workspace, Arguments& arguments) {
    const std::string& id = arguments.word();
    workspace.links.put(id, nextNewLink(workspace, arguments));
}

void copyLink(Workspace& workspace, Arguments& arguments) {
    const std::string& id = arguments.word();
    workspace.links.put(id, workspace.nextLink(arguments));
}

void setNoCascade(Workspace& workspace, Arguments& arguments) {
    workspace.links.get(arguments.word()).setNoCascade();
}

void showLink(Workspace& workspace, Arguments& arguments) {
    workspace.output << "is " << workspace.cascadingStepOf(workspace.nextLink(arguments)) << '\n';
}

void compareLinks(Workspace& workspace, Arguments& arguments) {
    const Link one = workspace.nextLink(arguments);
    const Link other = workspace.nextLink(arguments);
    const bool equal = one == other;
    if (equal == (one != other)) throw Malformed("== and != of links agree");
    printAnswer(workspace, "eq", equal);
}

void compareLinkHashes(Workspace& workspace, Arguments& arguments) {
    const Link one = workspace.nextLink(arguments);
    const Link other = workspace.nextLink(arguments);
    printAnswer(workspace, "eq", LinkHasher()(one) == LinkHasher()(other));
}

void showLinkEmptiness(Workspace& workspace, Arguments& arguments) {
    printAnswer(workspace, "empty", !workspace.nextLink(arguments));
}

void showOpposite(Workspace& workspace, Arguments& arguments) {
    const std::optional<Link> opposite = workspace.nextLink(arguments).getOpposite();
    workspace.output << "opposite "
                     << (opposite ? workspace.cascadingStepOf(*opposite) : std::string("none"))
                     << '\n';
}

}  // namespace

void addLinkStatements(StatementTable& table) {
    table["dumpElement"] = {1, 1, showElement};
    table["dumpLink"] = {3, 3, showNewLink};
    table["linkdef"] = {4, 4, declareLink};
    table["copylink"] = {2, 2, copyLink};
    table["noCascade"] = {1, 1, setNoCascade};
    table["showLink"] = {1, 1, showLink};
    table["linkEq"] = {2, 2, compareLinks};
    table["linkHashEq"] = {2, 2, compareLinkHashes};
    table["linkEmpty"] = {1, 1, showLinkEmptiness};
    table["linkOpposite"] = {1, 1, showOpposite};
}

}  // namespace nuv::zero::scenario
