#pragma once

#include <optional>
#include <vector>

#include "Answers.h"
#include "CommandLine.h"
#include "Labels.h"
#include "Losses.h"
#include "Neighbours.h"
#include "Project.h"
#include "Rules.h"

namespace model_walk {

/// What a question is asked of, and whom it tells its answers.
struct Asked {
    const CommandLine& line;
    const Project& project;
    const Names& names;
    const Labels& labels;
    Answers& answers;

    bool hasElements() const { return line.operands().size() > 1; }
    /// The elements behind the model on the command line; a `-` stands for those on standard input.
    /// Throws `UsageError` for what is no element.
    std::vector<nuv::zero::ModelElement> elements() const;
    /// The same; throws `UsageError` when there are none.
    std::vector<nuv::zero::ModelElement> someElements() const;
};

/// From where a walk starts: from these elements and those that `--from` names, or all roots where
/// nothing names any.
std::vector<nuv::zero::ModelElement> startingElements(
    const Asked& asked,
    std::optional<std::vector<nuv::zero::ModelElement>> elements = std::nullopt);
/// Says on standard error which rules can never match, and whether there are any.
bool tellIdleRules(const Asked& asked, const Rules& rules);

/// What is to be said of an answer besides.
struct Outcome {
    /// Something unresolved may belong to the answer.
    bool isAffected = false;
    /// The rules can never match.
    bool canNeverMatch = false;
    /// What was looked for is not there, though something was told.
    bool isNothing = false;
};

Outcome info(const Asked& asked);
Outcome find(const Asked& asked);
Outcome contents(const Asked& asked);
Outcome depends(const Asked& asked);
Outcome incoming(const Asked& asked);
Outcome path(const Asked& asked);
Outcome near(const Asked& asked);
Outcome impact(const Asked& asked);
Outcome walk(const Asked& asked);
Outcome why(const Asked& asked);
Outcome whyNot(const Asked& asked);
Outcome explain(const Asked& asked);
Outcome check(const Asked& asked);
Outcome resolve(const Asked& asked);
Outcome findings(const Asked& asked);

}  // namespace model_walk
