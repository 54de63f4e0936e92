#include "tests/scenario/Callbacks.h"
#include "tests/scenario/Statements.h"
#include "tests/support/EngineAccess.h"

namespace nuv::zero::scenario {

namespace {

using traversal::Algo;
using traversal::UniquenessMode;

TraversalResult& nextResult(Workspace& workspace, Arguments& arguments) {
    return *workspace.results.get(arguments.word());
}

void declareResult(Workspace& workspace, Arguments& arguments) {
    const std::string& id = arguments.word();
    Builder& builder = workspace.builders.get(arguments.word());
    const auto algo = arguments.number<Algo>();
    const std::vector<ModelElement> inputs = workspace.remainingElements(arguments);
    auto result = std::visit([&](auto& held) { return held->run(inputs, algo); }, builder);
    workspace.results.put(id, {std::move(result), nullptr});
}

void declareRawResult(Workspace& workspace, Arguments& arguments) {
    const std::string& id = arguments.word();
    Builder& builder = workspace.builders.get(arguments.word());
    const auto algo = arguments.number<Algo>();
    const auto policy = arguments.number<ResultPolicy>();
    const std::vector<ModelElement> inputs = workspace.remainingElements(arguments);
    auto result = std::visit(
        [&](auto& held) { return testing_support::createResult(*held, inputs, algo, policy); },
        builder);
    workspace.results.put(id, {std::move(result), nullptr});
}

void copyResult(Workspace& workspace, Arguments& arguments) {
    const std::string& id = arguments.word();
    const TraversalResult& original = nextResult(workspace, arguments);
    const std::string& ownership = arguments.word();
    Held<TraversalResult> copy;
    if (ownership == "shared") {
        copy.shared = std::make_shared<TraversalResult>(original);
    } else if (ownership == "unowned") {
        copy.unowned = std::make_unique<TraversalResult>(original);
    } else {
        throw Malformed("shared or unowned is expected in place of " + ownership);
    }
    workspace.results.put(id, std::move(copy));
}

void setUniqueness(Workspace& workspace, Arguments& arguments) {
    TraversalResult& result = nextResult(workspace, arguments);
    testing_support::setUniqueness(result, arguments.number<UniquenessMode>());
}

void addFilter(Workspace& workspace, Arguments& arguments) {
    TraversalResult& result = nextResult(workspace, arguments);
    testing_support::addFilter(result, filterOf(workspace, arguments.word()));
}

void declareProcessor(Workspace& workspace, Arguments& arguments) {
    const std::string& id = arguments.word();
    if (id == "null") throw Malformed("null stands for no processor and cannot be declared");
    std::optional<PrintingProcessor::Failure> failure;
    if (!arguments.empty()) {
        if (arguments.word() != "throw") throw Malformed("throw, an event and a number expected");
        const PrintedEvent event = eventNamed(arguments.word());
        failure = PrintingProcessor::Failure{event, arguments.integer()};
    }
    workspace.processors.put(id, &workspace.allProcessors.emplace_back(workspace, id, failure));
}

void attachProcessor(Workspace& workspace, Arguments& arguments) {
    TraversalResult& result = nextResult(workspace, arguments);
    testing_support::attach(result, workspace.nextProcessorOrNull(arguments));
}

void showSettings(Workspace& workspace, Arguments& arguments) {
    TraversalResult& result = nextResult(workspace, arguments);
    const ModelElement element = workspace.nextElementOrNull(arguments);
    const auto settings = testing_support::providerOf(result).getPropertiesToTraverse(element);
    workspace.output << "settings";
    for (traversal::AssociationSetting& setting : *settings) {
        workspace.output << ' ' << workspace.idOf(setting.getProperty()) << '='
                         << static_cast<std::int32_t>(setting.getPolicy());
    }
    workspace.output << '\n';
}

void compareSettings(Workspace& workspace, Arguments& arguments) {
    auto& provider = testing_support::providerOf(nextResult(workspace, arguments));
    const ModelElement one = workspace.nextElementOrNull(arguments);
    const ModelElement other = workspace.nextElementOrNull(arguments);
    // One after the other: each may ask predicates, which print.
    const auto settings = provider.getPropertiesToTraverse(one);
    const bool same = settings == provider.getPropertiesToTraverse(other);
    workspace.output << "same " << (same ? "true" : "false") << '\n';
}

void showResultPolicy(Workspace& workspace, Arguments& arguments) {
    auto& provider = testing_support::providerOf(nextResult(workspace, arguments));
    const meta::Class type = workspace.nextClass(arguments);
    const meta::Property property = workspace.nextPropertyOrNull(arguments);
    const ResultPolicy policy = provider.getResultPolicy(type, property);
    workspace.output << "policy " << static_cast<std::int32_t>(policy) << '\n';
}

}  // namespace

void addResultStatements(StatementTable& table) {
    table["result"] = {3, anyNumber, declareResult};
    table["rawresult"] = {4, anyNumber, declareRawResult};
    table["copyresult"] = {3, 3, copyResult};
    table["uniqueness"] = {2, 2, setUniqueness};
    table["filter"] = {2, 2, addFilter};
    table["processor"] = {1, 4, declareProcessor};
    table["attach"] = {2, 2, attachProcessor};
    table["settings"] = {2, 2, showSettings};
    table["sameSettings"] = {3, 3, compareSettings};
    table["resultPolicy"] = {3, 3, showResultPolicy};
}

}  // namespace nuv::zero::scenario
