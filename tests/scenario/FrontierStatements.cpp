#include "tests/scenario/Statements.h"
#include "tests/support/EngineAccess.h"

namespace nuv::zero::scenario {

namespace {

AbstractStore& nextStore(Workspace& workspace, Arguments& arguments) {
    return *workspace.stores.get(arguments.word());
}

AbstractStore& nextFilledStore(Workspace& workspace, Arguments& arguments) {
    AbstractStore& store = nextStore(workspace, arguments);
    if (store.empty()) throw Malformed("the store is empty");
    return store;
}

void declareMaintainer(Workspace& workspace, Arguments& arguments) {
    const std::string& id = arguments.word();
    const TraversalResult& result = *workspace.results.get(arguments.word());
    workspace.maintainers.put(id, testing_support::createUniquenessMaintainer(result));
}

void cloneMaintainer(Workspace& workspace, Arguments& arguments) {
    const std::string& id = arguments.word();
    workspace.maintainers.put(id, workspace.maintainers.get(arguments.word())->clone());
}

void askMaintainer(Workspace& workspace, Arguments& arguments) {
    UniquenessMaintainer& maintainer = *workspace.maintainers.get(arguments.word());
    const bool answer = maintainer.shouldReport(workspace.nextLink(arguments));
    workspace.output << "report " << (answer ? "true" : "false") << '\n';
}

void declareStore(Workspace& workspace, Arguments& arguments) {
    const std::string& id = arguments.word();
    const std::string& discipline = arguments.word();
    if (discipline == "bfs") {
        workspace.stores.put(id, traversal::internal::makeBfsStore());
    } else if (discipline == "dfs") {
        workspace.stores.put(id, traversal::internal::makeDfsStore());
    } else {
        throw Malformed("bfs or dfs is expected in place of " + discipline);
    }
}

void cloneStore(Workspace& workspace, Arguments& arguments) {
    const std::string& id = arguments.word();
    workspace.stores.put(id, nextStore(workspace, arguments).clone());
}

void push(Workspace& workspace, Arguments& arguments) {
    AbstractStore& store = nextStore(workspace, arguments);
    store.push(workspace.nextLink(arguments));
}

void pop(Workspace& workspace, Arguments& arguments) {
    nextFilledStore(workspace, arguments).pop();
}

void showTop(Workspace& workspace, Arguments& arguments) {
    const AbstractStore& store = nextFilledStore(workspace, arguments);
    workspace.output << "top " << workspace.cascadingStepOf(store.top()) << '\n';
}

void showEmptiness(Workspace& workspace, Arguments& arguments) {
    const bool empty = nextStore(workspace, arguments).empty();
    workspace.output << "empty " << (empty ? "true" : "false") << '\n';
}

void compareStores(Workspace& workspace, Arguments& arguments) {
    const AbstractStore& one = nextStore(workspace, arguments);
    const AbstractStore& other = nextStore(workspace, arguments);
    workspace.output << "eq " << (one.equals(other) ? "true" : "false") << '\n';
}

}  // namespace

void addFrontierStatements(StatementTable& table) {
    table["maintainer"] = {2, 2, declareMaintainer};
    table["cloneMaintainer"] = {2, 2, cloneMaintainer};
    table["shouldReport"] = {2, 2, askMaintainer};
    table["store"] = {2, 2, declareStore};
    table["cloneStore"] = {2, 2, cloneStore};
    table["push"] = {2, 2, push};
    table["pop"] = {1, 1, pop};
    table["top"] = {1, 1, showTop};
    table["storeEmpty"] = {1, 1, showEmptiness};
    table["storeEq"] = {2, 2, compareStores};
}

}  // namespace nuv::zero::scenario
