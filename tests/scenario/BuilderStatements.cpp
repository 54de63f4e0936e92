#include "tests/scenario/Callbacks.h"
#include "tests/scenario/Statements.h"

namespace nuv::zero::scenario {

namespace {

/// Runs a fluent operation of a builder and prints whether it returned that builder.
template <class Impl, class Operation>
void runFluent(Workspace& workspace, Impl& builder, Operation operation) {
    const std::shared_ptr<Impl> returned = operation(builder);
    workspace.output << (returned.get() == &builder ? "ok" : "WRONG-BUILDER") << '\n';
}

/// The same for an operation that builders of every kind have.
template <class Operation>
void runOnAnyKind(Workspace& workspace, Builder& builder, Operation operation) {
    std::visit([&](auto& held) { runFluent(workspace, *held, operation); }, builder);
}

template <class Operation>
void runOnAdditive(Workspace& workspace, Builder& builder, Operation operation) {
    auto* const held = std::get_if<Held<AdditiveTraversalImpl>>(&builder);
    if (held == nullptr) throw Malformed("only additive builders traverse");
    runFluent(workspace, **held, operation);
}

template <class Operation>
void runOnPruning(Workspace& workspace, Builder& builder, Operation operation) {
    if (auto* const composition = std::get_if<Held<CompositionTraversalImpl>>(&builder)) {
        runFluent(workspace, **composition, operation);
    } else if (auto* const subtractive = std::get_if<Held<SubtractiveTraversalImpl>>(&builder)) {
        runFluent(workspace, **subtractive, operation);
    } else {
        throw Malformed("additive builders do not prune");
    }
}

Builder& nextBuilder(Workspace& workspace, Arguments& arguments) {
    return workspace.builders.get(arguments.word());
}

PropertyMatcher nextMatcher(Workspace& workspace, Arguments& arguments) {
    return workspace.matchers.get(arguments.word());
}

void declareMatcher(Workspace& workspace, Arguments& arguments) {
    const std::string& id = arguments.word();
    const meta::Property property = workspace.nextPropertyOrNull(arguments);
    if (arguments.empty()) {
        workspace.matchers.put(id, PropertyMatcher(property));
        return;
    }
    const auto predicate = predicateOf(workspace, arguments.word());
    workspace.matchers.put(id,
                           PropertyMatcher(property, predicate, workspace.nextClass(arguments)));
}

void declareBuilder(Workspace& workspace, Arguments& arguments) {
    const std::string& id = arguments.word();
    const std::string& kind = arguments.word();
    Builder builder;
    if (kind == "additive") {
        builder = Held<AdditiveTraversalImpl>{traversal::Spec::additiveTraversal(), nullptr};
    } else if (kind == "composition") {
        builder = Held<CompositionTraversalImpl>{traversal::Spec::compositionTraversal(), nullptr};
    } else if (kind == "subtractive") {
        builder = Held<SubtractiveTraversalImpl>{traversal::Spec::subtractiveTraversal(), nullptr};
    } else {
        throw Malformed("there is no kind of builder called " + kind);
    }
    workspace.builders.put(id, std::move(builder));
}

template <class Impl>
Builder unownedCopy(const Held<Impl>& original) {
    return Held<Impl>{nullptr, std::make_unique<Impl>(*original)};
}

void copyBuilder(Workspace& workspace, Arguments& arguments) {
    const std::string& id = arguments.word();
    workspace.builders.put(id, std::visit([](auto& held) { return unownedCopy(held); },
                                          nextBuilder(workspace, arguments)));
}

void assignBuilder(Workspace& workspace, Arguments& arguments) {
    Builder& destination = nextBuilder(workspace, arguments);
    const Builder& source = nextBuilder(workspace, arguments);
    if (destination.index() != source.index()) {
        throw Malformed("a builder can be assigned only to one of its kind");
    }
    std::visit(
        [&source](auto& held) {
            *held = *std::get<std::remove_reference_t<decltype(held)>>(source);
        },
        destination);
}

void traverse(Workspace& workspace, Arguments& arguments) {
    Builder& builder = nextBuilder(workspace, arguments);
    const PropertyMatcher matcher = nextMatcher(workspace, arguments);
    const auto policy = arguments.number<ResultPolicy>();
    runOnAdditive(workspace, builder, [&](auto& impl) { return impl.traverse(matcher, policy); });
}

void traverseWith(Workspace& workspace, Arguments& arguments) {
    Builder& builder = nextBuilder(workspace, arguments);
    const PropertyMatcher matcher = nextMatcher(workspace, arguments);
    const auto predicate = predicateOf(workspace, arguments.word());
    const auto policy = arguments.number<ResultPolicy>();
    runOnAdditive(workspace, builder,
                  [&](auto& impl) { return impl.traverse(matcher, predicate, policy); });
}

void traverseAll(Workspace& workspace, Arguments& arguments) {
    Builder& builder = nextBuilder(workspace, arguments);
    const auto policy = arguments.number<ResultPolicy>();
    const std::vector<PropertyMatcher> matchers = workspace.remainingMatchers(arguments);
    runOnAdditive(workspace, builder, [&](auto& impl) { return impl.traverse(matchers, policy); });
}

void prune(Workspace& workspace, Arguments& arguments) {
    Builder& builder = nextBuilder(workspace, arguments);
    const PropertyMatcher matcher = nextMatcher(workspace, arguments);
    runOnPruning(workspace, builder, [&](auto& impl) { return impl.prune(matcher); });
}

void pruneWith(Workspace& workspace, Arguments& arguments) {
    Builder& builder = nextBuilder(workspace, arguments);
    const PropertyMatcher matcher = nextMatcher(workspace, arguments);
    const auto predicate = predicateOf(workspace, arguments.word());
    runOnPruning(workspace, builder, [&](auto& impl) { return impl.prune(matcher, predicate); });
}

void pruneAll(Workspace& workspace, Arguments& arguments) {
    Builder& builder = nextBuilder(workspace, arguments);
    const std::vector<PropertyMatcher> matchers = workspace.remainingMatchers(arguments);
    runOnPruning(workspace, builder, [&](auto& impl) { return impl.prune(matchers); });
}

void setPolicy(Workspace& workspace, Arguments& arguments) {
    Builder& builder = nextBuilder(workspace, arguments);
    const PropertyMatcher matcher = nextMatcher(workspace, arguments);
    const auto policy = arguments.number<ResultPolicy>();
    runOnAnyKind(workspace, builder,
                 [&](auto& impl) { return impl.setResultPolicy(matcher, policy); });
}

void setPolicyAll(Workspace& workspace, Arguments& arguments) {
    Builder& builder = nextBuilder(workspace, arguments);
    const auto policy = arguments.number<ResultPolicy>();
    const std::vector<PropertyMatcher> matchers = workspace.remainingMatchers(arguments);
    runOnAnyKind(workspace, builder,
                 [&](auto& impl) { return impl.setResultPolicy(matchers, policy); });
}

void setPseudoLinkPolicy(Workspace& workspace, Arguments& arguments) {
    Builder& builder = nextBuilder(workspace, arguments);
    const auto policy = arguments.number<ResultPolicy>();
    runOnAnyKind(workspace, builder,
                 [&](auto& impl) { return impl.includeInitialPseudoLink(policy); });
}

}  // namespace

void addBuilderStatements(StatementTable& table) {
    table["matcher"] = {2, 4, declareMatcher};
    table["builder"] = {2, 2, declareBuilder};
    table["copybuilder"] = {2, 2, copyBuilder};
    table["assignbuilder"] = {2, 2, assignBuilder};
    table["traverse"] = {3, 3, traverse};
    table["traverseWith"] = {4, 4, traverseWith};
    table["traverseAll"] = {2, anyNumber, traverseAll};
    table["prune"] = {2, 2, prune};
    table["pruneWith"] = {3, 3, pruneWith};
    table["pruneAll"] = {1, anyNumber, pruneAll};
    table["setPolicy"] = {3, 3, setPolicy};
    table["setPolicyAll"] = {2, anyNumber, setPolicyAll};
    table["pseudo"] = {2, 2, setPseudoLinkPolicy};
}

}  // namespace nuv::zero::scenario
