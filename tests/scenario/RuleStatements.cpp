#include "tests/scenario/Callbacks.h"
#include "tests/scenario/Statements.h"
#include "traversal/ClassHierarchyComparator.h"

namespace nuv::zero::scenario {

namespace {

const char* nameOf(bool answer) {
    return answer ? "true" : "false";
}

std::int32_t numberOf(ResultPolicy policy) {
    return static_cast<std::int32_t>(policy);
}

CompositeMatcher& nextComposite(Workspace& workspace, Arguments& arguments) {
    return workspace.composites.get(arguments.word());
}

void compareClasses(Workspace& workspace, Arguments& arguments) {
    const meta::Class one = workspace.nextClass(arguments);
    const meta::Class other = workspace.nextClass(arguments);
    const bool less = traversal::ClassHierarchyComparator()(one, other);
    workspace.output << "less " << nameOf(less) << '\n';
}

void applyMatcher(Workspace& workspace, Arguments& arguments) {
    const PropertyMatcher& matcher = workspace.matchers.get(arguments.word());
    const bool matches = matcher.matches(workspace.nextClass(arguments));
    workspace.output << "matches " << nameOf(matches) << '\n';
}

void showOwner(Workspace& workspace, Arguments& arguments) {
    const PropertyMatcher& matcher = workspace.matchers.get(arguments.word());
    workspace.output << "owner " << workspace.idOf(matcher.getOwner()) << '\n';
}

void declareComposite(Workspace& workspace, Arguments& arguments) {
    const std::string& id = arguments.word();
    const auto mode = arguments.number<CompositeMatcher::VisitMode>();
    workspace.composites.put(id, CompositeMatcher(mode));
}

void copyComposite(Workspace& workspace, Arguments& arguments) {
    const std::string& id = arguments.word();
    workspace.composites.put(id, CompositeMatcher(nextComposite(workspace, arguments)));
}

void compose(Workspace& workspace, Arguments& arguments) {
    CompositeMatcher& composite = nextComposite(workspace, arguments);
    const meta::Class owner = workspace.nextClass(arguments);
    const auto predicate = predicateOf(workspace, arguments.word());
    composite.composeMatcher(owner, predicate, arguments.number<ResultPolicy>());
}

void composePolicy(Workspace& workspace, Arguments& arguments) {
    CompositeMatcher& composite = nextComposite(workspace, arguments);
    const meta::Class owner = workspace.nextClass(arguments);
    composite.composePolicy(owner, arguments.number<ResultPolicy>());
}

void showMatch(Workspace& workspace, Arguments& arguments) {
    const CompositeMatcher& composite = nextComposite(workspace, arguments);
    const auto [matched, policy] = composite.anyMatches(workspace.nextClass(arguments));
    workspace.output << "match " << nameOf(matched) << ' ' << numberOf(policy) << '\n';
}

void showPolicy(Workspace& workspace, Arguments& arguments) {
    const CompositeMatcher& composite = nextComposite(workspace, arguments);
    const ResultPolicy policy = composite.getPolicy(workspace.nextClass(arguments));
    workspace.output << "policy " << numberOf(policy) << '\n';
}

void showMode(Workspace& workspace, Arguments& arguments) {
    const CompositeMatcher& composite = nextComposite(workspace, arguments);
    workspace.output << "pruning " << nameOf(composite.isPruning()) << '\n';
}

}  // namespace

void addRuleStatements(StatementTable& table) {
    table["less"] = {2, 2, compareClasses};
    table["matches"] = {2, 2, applyMatcher};
    table["owner"] = {1, 1, showOwner};
    table["composite"] = {2, 2, declareComposite};
    table["copycomposite"] = {2, 2, copyComposite};
    table["compose"] = {4, 4, compose};
    table["composePolicy"] = {3, 3, composePolicy};
    table["anyMatches"] = {2, 2, showMatch};
    table["getPolicy"] = {2, 2, showPolicy};
    table["isPruning"] = {1, 1, showMode};
}

}  // namespace nuv::zero::scenario
