#include "Question.h"
#include "UsageError.h"
#include "model/memory/Text.h"

namespace model_walk {

using nuv::zero::meta::Class;
using nuv::zero::text::toUtf8;

Outcome explain(const Asked& asked) {
    const std::vector<std::string>& operands = asked.line.operands();
    if (operands.size() < 2) throw UsageError("a class is needed; see model-walk help explain");
    const Rules rules(asked.line, asked.names);
    const bool hasIdleRule = tellIdleRules(asked, rules);
    for (auto name = operands.begin() + 1; name != operands.end(); ++name) {
        const Class type = asked.names.classNamed(*name);
        for (const auto& each : rules.explain(type).properties) {
            const std::string property = toUtf8(each.property->getName());
            asked.answers.tell(FactAnswer{"property",
                                          asked.names.nameOf(type),
                                          {{"class", asked.names.nameOf(type)},
                                           {"property", property},
                                           {"followed", each.isFollowed ? "true" : "false", true},
                                           {"reason", each.text()}},
                                          "  " + property + ": " + each.text()});
        }
    }
    return {false, hasIdleRule};
}

Outcome check(const Asked& asked) {
    const Rules rules(asked.line, asked.names);
    Outcome outcome;
    for (const auto& finding : rules.check(asked.names.classes())) {
        const bool isIdle = canNeverMatch(finding);
        outcome.canNeverMatch = outcome.canNeverMatch || isIdle;
        asked.answers.tell(FactAnswer{"rule",
                                      "",
                                      {{"rule", std::to_string(finding.rule), true},
                                       {"neverMatches", isIdle ? "true" : "false", true},
                                       {"text", finding.text}},
                                      finding.text});
    }
    if (asked.answers.count() == 0) {
        asked.answers.tell(FactAnswer{"rules", "", {}, "every rule does what it says"});
    }
    return outcome;
}

}  // namespace model_walk
