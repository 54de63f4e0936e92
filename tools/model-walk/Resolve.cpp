#include <algorithm>

#include "Question.h"
#include "UsageError.h"
#include "xmi/EscapedText.h"

namespace model_walk {

using nuv::zero::xmi::escaped;

Outcome resolve(const Asked& asked) {
    if (asked.line.operands().size() != 2) {
        throw UsageError("one reference is asked about; see model-walk help resolve");
    }
    const Resolution found =
        asked.project.resolve(asked.line.value(Option::FromFile), asked.line.operands()[1]);
    const auto tell = [&](std::string_view kind, const std::string& text) {
        asked.answers.tell(
            FactAnswer{kind, "", {{"value", text}}, std::string(kind) + "\t" + escaped(text)});
    };
    tell("lookedUpBy", found.rule);
    for (const std::string& place : found.tried) tell("tried", place);
    if (!found.place.empty()) tell("file", found.place);
    if (!found.element) {
        tell("notFound", found.reason);
        return {false, false, true};
    }
    const std::string address = asked.labels.address(found.element);
    asked.answers.tell(
        FactAnswer{"element",
                   "",
                   {{"address", address},
                    {"class", asked.labels.className(found.element)},
                    {"name", asked.labels.name(found.element)}},
                   "element\t" + escaped(asked.labels.element(found.element)) + "\t" + address});
    return {};
}

Outcome findings(const Asked& asked) {
    const std::vector<std::string>& reasons = asked.line.values(Option::Reason);
    for (const auto& each : asked.project.findings()) {
        const std::string reason(nameOf(each.reason));
        const bool isWanted =
            reasons.empty() || std::find(reasons.begin(), reasons.end(), reason) != reasons.end();
        if (!isWanted) continue;
        std::string tried;
        for (const std::string& place : each.tried) tried += (tried.empty() ? "" : ", ") + place;
        asked.answers.tell(
            FactAnswer{"finding",
                       "",
                       {{"reason", reason},
                        {"weight", std::string(nameOf(each.weight))},
                        {"file", each.file},
                        {"line", std::to_string(each.position.line), true},
                        {"column", std::to_string(each.position.column), true},
                        {"element", each.element},
                        {"property", each.property},
                        {"reference", each.reference},
                        {"lookedUpBy", each.lookedUpBy},
                        {"tried", tried},
                        {"other", each.other},
                        {"lost", std::to_string(each.lost), true},
                        {"message", each.message}},
                       escaped(each.text() + (tried.empty() ? "" : "; tried " + tried))});
    }
    return {};
}

}  // namespace model_walk
