#include "model/memory/Text.h"
#include "tests/scenario/Failures.h"
#include "tests/scenario/Statements.h"
#include "traversal/internal/Dumps.h"

namespace nuv::zero::scenario {

namespace {

bool isAtEnd(const IterationContext& iterator) {
    return iterator == IterationContext();
}

std::string dumpOf(const Link& link) {
    try {
        return quoted(traversal::internal::dumpLink(link));
    } catch (const CannotCastIncompatibleTypes& failure) {
        return "!CannotCastIncompatibleTypes " + quoted(text::toUtf8(failure.arguments().at(0)));
    }
}

void report(Workspace& workspace, const std::string& name, const IterationContext& iterator) {
    if (isAtEnd(iterator)) {
        workspace.output << "end " << name << '\n';
        return;
    }
    const Link& link = iterator.getCurrent();
    workspace.output << "link " << name << ' ' << workspace.cascadingStepOf(link) << ' '
                     << dumpOf(link) << '\n';
}

/// The iterator of that name; where there is none, a line of the transcript says so.
IterationContext* existing(Workspace& workspace, const std::string& name) {
    if (auto* const iterator = workspace.iterators.find(name)) return iterator->get();
    workspace.output << "noiter " << name << '\n';
    return nullptr;
}

void begin(Workspace& workspace, Arguments& arguments) {
    const std::string& name = arguments.word();
    TraversalResult& result = *workspace.results.get(arguments.word());
    workspace.iterators.remove(name);
    std::unique_ptr<IterationContext> iterator(new IterationContext(result.begin()));
    report(workspace, name, *workspace.iterators.put(name, std::move(iterator)));
}

void makeSentinel(Workspace& workspace, Arguments& arguments) {
    workspace.iterators.put(arguments.word(), std::make_unique<IterationContext>());
}

void advance(Workspace& workspace, Arguments& arguments) {
    const std::string& name = arguments.word();
    IterationContext* const iterator = existing(workspace, name);
    if (iterator == nullptr) return;
    iterator->advance();
    report(workspace, name, *iterator);
}

void run(Workspace& workspace, Arguments& arguments) {
    const std::string& name = arguments.word();
    const std::int64_t most = arguments.integer();
    IterationContext* const iterator = existing(workspace, name);
    if (iterator == nullptr) return;
    for (std::int64_t step = 0; step < most && !isAtEnd(*iterator); ++step) {
        printingFailures(workspace.output, [&] {
            iterator->advance();
            report(workspace, name, *iterator);
        });
    }
}

void showCurrent(Workspace& workspace, Arguments& arguments) {
    const std::string& name = arguments.word();
    if (const IterationContext* const iterator = existing(workspace, name)) {
        report(workspace, name, *iterator);
    }
}

void copy(Workspace& workspace, Arguments& arguments) {
    const std::string& name = arguments.word();
    if (const IterationContext* const iterator = existing(workspace, arguments.word())) {
        workspace.iterators.put(name, std::make_unique<IterationContext>(*iterator));
    }
}

void assign(Workspace& workspace, Arguments& arguments) {
    IterationContext* const destination = existing(workspace, arguments.word());
    if (destination == nullptr) return;
    if (const IterationContext* const source = existing(workspace, arguments.word())) {
        *destination = *source;
    }
}

void compare(Workspace& workspace, Arguments& arguments) {
    const IterationContext* const one = existing(workspace, arguments.word());
    if (one == nullptr) return;
    if (const IterationContext* const other = existing(workspace, arguments.word())) {
        workspace.output << "eq " << (*one == *other ? "true" : "false") << '\n';
    }
}

void pruneAllChildren(Workspace& workspace, Arguments& arguments) {
    if (auto* const iterator = existing(workspace, arguments.word())) iterator->pruneAllChildren();
}

void pruneChildren(Workspace& workspace, Arguments& arguments) {
    const std::string& name = arguments.word();
    const meta::Property property = workspace.nextPropertyOrNull(arguments);
    if (auto* const iterator = existing(workspace, name)) iterator->pruneChildren(property);
}

void pruneSiblings(Workspace& workspace, Arguments& arguments) {
    if (auto* const iterator = existing(workspace, arguments.word())) iterator->pruneSiblings();
}

}  // namespace

void addIteratorStatements(StatementTable& table) {
    table["begin"] = {2, 2, begin};
    table["sentinel"] = {1, 1, makeSentinel};
    table["advance"] = {1, 1, advance};
    table["run"] = {2, 2, run};
    table["current"] = {1, 1, showCurrent};
    table["copy"] = {2, 2, copy};
    table["assign"] = {2, 2, assign};
    table["eq"] = {2, 2, compare};
    table["pruneAllChildren"] = {1, 1, pruneAllChildren};
    table["pruneChildren"] = {2, 2, pruneChildren};
    table["pruneSiblings"] = {1, 1, pruneSiblings};
}

}  // namespace nuv::zero::scenario
