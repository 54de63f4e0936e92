#include "tests/scenario/Statements.h"
#include "tests/support/EngineAccess.h"

namespace nuv::zero::scenario {

namespace {

/// The cursor of that name; where there is none, a line of the transcript says so.
ElementProgress* nextCursor(Workspace& workspace, Arguments& arguments) {
    const std::string& name = arguments.word();
    ElementProgress* const cursor = workspace.cursors.find(name);
    if (cursor == nullptr) workspace.output << "nocursor " << name << '\n';
    return cursor;
}

void declareCursor(Workspace& workspace, Arguments& arguments) {
    const std::string& id = arguments.word();
    const Link link = workspace.nextLink(arguments);
    TraversalResult& result = *workspace.results.get(arguments.word());
    PrintingProcessor* const processor = workspace.nextProcessorOrNull(arguments);
    workspace.cursors.remove(id);
    auto settings = testing_support::providerOf(result).getPropertiesToTraverse(link.getTarget());
    workspace.cursors.put(id, ElementProgress(link, processor, settings));
}

void copyCursor(Workspace& workspace, Arguments& arguments) {
    const std::string& id = arguments.word();
    if (const ElementProgress* const original = nextCursor(workspace, arguments)) {
        workspace.cursors.put(id, ElementProgress(*original));
    }
}

void pruneAllOfCursor(Workspace& workspace, Arguments& arguments) {
    if (auto* const cursor = nextCursor(workspace, arguments)) cursor->pruneAllChildren();
}

void pruneCurrent(Workspace& workspace, Arguments& arguments) {
    if (auto* const cursor = nextCursor(workspace, arguments)) cursor->pruneCurrentProperty();
}

void pruneProperty(Workspace& workspace, Arguments& arguments) {
    ElementProgress* const cursor = nextCursor(workspace, arguments);
    const meta::Property property = workspace.nextPropertyOrNull(arguments);
    if (cursor != nullptr) cursor->pruneProperty(property);
}

void setReportedSelf(Workspace& workspace, Arguments& arguments) {
    if (auto* const cursor = nextCursor(workspace, arguments)) cursor->setReportedSelf();
}

void step(Workspace& workspace, Arguments& arguments) {
    ElementProgress* const cursor = nextCursor(workspace, arguments);
    if (cursor == nullptr) return;
    const Link link = cursor->advanceAndGetCurrent();
    if (!link) {
        workspace.output << "empty\n";
    } else {
        workspace.output << "step " << workspace.cascadingStepOf(link) << '\n';
    }
}

void showProcessedAll(Workspace& workspace, Arguments& arguments) {
    ElementProgress* const cursor = nextCursor(workspace, arguments);
    if (cursor == nullptr) return;
    const bool processed = cursor->processedAll();
    workspace.output << "processed " << (processed ? "true" : "false") << '\n';
}

void showReportedSelf(Workspace& workspace, Arguments& arguments) {
    if (const auto* const cursor = nextCursor(workspace, arguments)) {
        workspace.output << "reported " << (cursor->hasReportedSelf() ? "true" : "false") << '\n';
    }
}

}  // namespace

void addCursorStatements(StatementTable& table) {
    table["cursor"] = {4, 4, declareCursor};
    table["copycursor"] = {2, 2, copyCursor};
    table["cursorPruneAll"] = {1, 1, pruneAllOfCursor};
    table["cursorPruneCurrent"] = {1, 1, pruneCurrent};
    table["cursorPruneProperty"] = {2, 2, pruneProperty};
    table["setReportedSelf"] = {1, 1, setReportedSelf};
    table["step"] = {1, 1, step};
    table["processedAll"] = {1, 1, showProcessedAll};
    table["reportedSelf"] = {1, 1, showReportedSelf};
}

}  // namespace nuv::zero::scenario
