#include "Question.h"

#include <iostream>
#include <utility>

#include "JsonText.h"
#include "UsageError.h"
#include "xmi/ReadError.h"

namespace model_walk {

using nuv::zero::ModelElement;

namespace {

/// The element whose address a line holds: in front of the first tab, behind the last one (in a
/// tree), or in an object of JSON. Throws `UsageError` where there is none.
ModelElement elementIn(const Project& project, const std::string& line) {
    if (line.starts_with('{')) return project.element(stringBehind(line, "address"));
    const std::string front = line.substr(0, line.find('\t'));
    const ModelElement found = project.find(front);
    if (found || front.size() == line.size()) return found ? found : project.element(front);
    const ModelElement last = project.find(line.substr(line.rfind('\t') + 1));
    return last ? last : project.element(front);
}

void readElements(const Project& project, std::vector<ModelElement>& elements) {
    std::string line;
    while (std::getline(std::cin, line)) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (!line.empty()) elements.push_back(elementIn(project, line));
    }
}

}  // namespace

std::vector<ModelElement> Asked::elements() const {
    std::vector<ModelElement> elements;
    const std::vector<std::string>& operands = line.operands();
    for (auto each = operands.begin() + 1; each != operands.end(); ++each) {
        if (*each == "-") {
            readElements(project, elements);
        } else {
            elements.push_back(project.element(*each));
        }
    }
    return elements;
}

std::vector<ModelElement> Asked::someElements() const {
    if (line.operands().size() < 2) {
        throw UsageError("an element is needed; see model-walk help " +
                         std::string(line.entry().name));
    }
    return elements();
}

std::vector<ModelElement> startingElements(const Asked& asked,
                                           std::optional<std::vector<ModelElement>> elements) {
    if (!elements && !asked.line.has(Option::From)) return asked.project.roots();
    std::vector<ModelElement> all = std::move(elements).value_or(std::vector<ModelElement>());
    for (const std::string& each : asked.line.values(Option::From)) {
        all.push_back(asked.project.element(each));
    }
    return all;
}

bool tellIdleRules(const Asked& asked, const Rules& rules) {
    bool hasIdleRule = false;
    for (const auto& finding : rules.check(asked.names.classes())) {
        if (!canNeverMatch(finding)) continue;
        hasIdleRule = true;
        std::cerr << "model-walk: " << nuv::zero::xmi::onOneLine(finding.text) << '\n';
    }
    return hasIdleRule;
}

}  // namespace model_walk
