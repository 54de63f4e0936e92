#include <map>

#include "Question.h"
#include "xmi/EscapedText.h"

namespace model_walk {

using nuv::zero::xmi::escaped;

using nuv::zero::ModelElement;

namespace {

/// A number in a column, and what it counts.
std::string row(std::size_t count, const std::string& what) {
    constexpr std::size_t width = 9;
    const std::string number = std::to_string(count);
    return std::string(number.size() < width ? width - number.size() : 0, ' ') + number + "  " +
           escaped(what);
}

void tellCounts(const Asked& asked, std::string_view kind, std::string_view title,
                const std::vector<ModelElement>& elements) {
    std::map<std::string, std::size_t> counts;
    for (const ModelElement& each : elements) ++counts[asked.labels.className(each)];
    for (const auto& [name, count] : counts) {
        asked.answers.tell(FactAnswer{kind,
                                      std::string(title),
                                      {{"class", name}, {"elements", std::to_string(count), true}},
                                      row(count, name)});
    }
}

void tellRoots(const Asked& asked) {
    constexpr std::size_t few = 10;
    const std::vector<ModelElement>& roots = asked.project.roots();
    if (roots.size() > few) return tellCounts(asked, "rootClass", "roots per class", roots);
    for (const ModelElement& each : roots) {
        const std::string address = asked.labels.address(each);
        asked.answers.tell(FactAnswer{"root",
                                      "roots",
                                      {{"address", address},
                                       {"class", asked.labels.className(each)},
                                       {"name", asked.labels.name(each)}},
                                      "  " + escaped(asked.labels.element(each)) + "\t" + address});
    }
}

void tellFindings(const Asked& asked) {
    for (const auto& [where, count] : asked.project.findings().counts()) {
        const std::string reason(nameOf(where.first));
        asked.answers.tell(FactAnswer{
            "findings",
            "findings per reason and file",
            {{"reason", reason}, {"file", where.second}, {"findings", std::to_string(count), true}},
            row(count, reason + "  " + where.second)});
    }
}

}  // namespace

Outcome info(const Asked& asked) {
    for (const Project::File& each : asked.project.files()) {
        asked.answers.tell(
            FactAnswer{"file",
                       "elements per file",
                       {{"file", each.place}, {"elements", std::to_string(each.elements), true}},
                       row(each.elements, each.place)});
    }
    tellRoots(asked);
    tellCounts(asked, "class", "elements per class", asked.project.elements());
    tellFindings(asked);
    return {};
}

}  // namespace model_walk
