#include "tests/scenario/Callbacks.h"

#include <utility>

#include "tests/scenario/Thrown.h"

namespace nuv::zero::scenario {

namespace {

using Predicate = std::function<bool(const meta::Class&)>;
using Filter = std::function<ResultPolicy(Link)>;

constexpr ResultPolicy veto = ResultPolicy::WalkOnly;
constexpr ResultPolicy pass = ResultPolicy::Report;

ResultPolicy passIf(bool condition) {
    return condition ? pass : veto;
}

/// Splits `head:tail`; without a colon everything is head.
std::pair<std::string, std::string> split(const std::string& word) {
    const std::size_t colon = word.find(':');
    if (colon == std::string::npos) return {word, ""};
    return {word.substr(0, colon), word.substr(colon + 1)};
}

bool isKindOf(const meta::Class& type, const meta::Class& expected) {
    return type && type->isKindOf(*expected.get());
}

Predicate loggingPredicate(Workspace& workspace, const std::string& description) {
    const auto [tag, rest] = split(description);
    return [&workspace, tag = tag, answer = predicateOf(workspace, rest)](const meta::Class& type) {
        workspace.output << "predicate " << tag << ' ' << workspace.idOf(type) << '\n';
        return answer(type);
    };
}

Filter loggingFilter(Workspace& workspace, const std::string& description) {
    const auto [tag, rest] = split(description);
    return [&workspace, tag = tag, answer = filterOf(workspace, rest)](const Link& link) {
        workspace.output << "filter " << tag << ' ' << workspace.stepOf(link) << '\n';
        return answer(link);
    };
}

}  // namespace

Predicate predicateOf(Workspace& workspace, const std::string& word) {
    const auto [kind, operand] = split(word);
    if (kind == "log") return loggingPredicate(workspace, operand);
    if (kind == "isKindOf") {
        return [expected = workspace.classNamed(operand)](const meta::Class& type) {
            return isKindOf(type, expected);
        };
    }
    if (kind == "exactly") {
        return [expected = workspace.classNamed(operand)](const meta::Class& type) {
            return type == expected;
        };
    }
    if (word == "all") return [](const meta::Class&) { return true; };
    if (word == "none") return [](const meta::Class&) { return false; };
    if (word == "throws") return [](const meta::Class&) -> bool { throw PredicateThrown(); };
    if (word == "empty") return {};
    throw Malformed("there is no predicate called " + word);
}

Filter filterOf(Workspace& workspace, const std::string& word) {
    const auto [kind, operand] = split(word);
    if (kind == "log") return loggingFilter(workspace, operand);
    if (kind == "onlyProp") {
        return [property = workspace.propertyNamedOrNull(operand)](const Link& link) {
            return passIf(link.getProperty() == property);
        };
    }
    if (kind == "notProp") {
        return [property = workspace.propertyNamedOrNull(operand)](const Link& link) {
            return passIf(!(link.getProperty() == property));
        };
    }
    if (kind == "onlyTarget") {
        return [expected = workspace.classNamed(operand)](const Link& link) {
            return passIf(link.getTarget() && isKindOf(link.getTarget()->getClass(), expected));
        };
    }
    if (kind == "notElem") {
        return [element = workspace.elementNamedOrNull(operand)](const Link& link) {
            return passIf(!(link.getTarget() == element));
        };
    }
    if (kind == "throwsOn") {
        return [element = workspace.elementNamedOrNull(operand)](const Link& link) {
            if (link.getTarget() == element) throw FilterThrown();
            return pass;
        };
    }
    if (word == "pass") return [](const Link&) { return pass; };
    if (word == "veto") return [](const Link&) { return veto; };
    if (word == "three") return [](const Link&) { return static_cast<ResultPolicy>(3); };
    if (word == "noPseudo") {
        return [](const Link& link) { return passIf(static_cast<bool>(link.getProperty())); };
    }
    if (word == "throws") return [](const Link&) -> ResultPolicy { throw FilterThrown(); };
    if (word == "empty") return {};
    throw Malformed("there is no filter called " + word);
}

}  // namespace nuv::zero::scenario
