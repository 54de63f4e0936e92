#include <algorithm>

#include "Question.h"
#include "Surroundings.h"
#include "UsageError.h"

namespace model_walk {

using nuv::zero::ModelElement;
using nuv::zero::meta::Property;
using nuv::zero::traversal::Link;
using nuv::zero::traversal::links;
using nuv::zero::traversal::ResultSetup;
using nuv::zero::traversal::Spec;

namespace {

/// How near the two are, along references: the links of a shortest way, the first one being that of
/// the input; none where there is no way. `gone` is what the search has entered.
std::vector<Link> directedPath(const ModelElement& from, const ModelElement& to,
                               std::unordered_set<ModelElement>& gone) {
    const auto result = Spec::subtractiveTraversal()->breadthFirst(from);
    ResultSetup(result).rememberPaths().onEnterElement(
        [&](const ModelElement& element) { gone.insert(element); });
    auto walk = links(result);
    for (const Link& link : walk) {
        if (link.getTarget() == to) return walk.path();
    }
    return {};
}

}  // namespace

Outcome path(const Asked& asked) {
    const std::vector<ModelElement> ends = asked.elements();
    if (ends.size() != 2) throw UsageError("a path has two ends; see model-walk help path");

    std::unordered_set<ModelElement> gone;
    std::vector<Step> steps;
    if (asked.line.has(Option::Undirected)) {
        steps = Surroundings(asked.project, {ends[0]}).pathTo(ends[1], gone);
    } else {
        for (const Link& link : directedPath(ends[0], ends[1], gone))
            steps.push_back({link, false});
    }
    for (std::size_t i = 0; i < steps.size(); ++i) {
        asked.answers.tell(LinkAnswer{steps[i].link, steps[i].isBackwards, i});
    }
    const auto isGoneThrough = [&](const ModelElement& source, const Property& /*property*/) {
        return gone.contains(source);
    };
    return {Losses(asked.line, asked.project).isLostFrom(isGoneThrough)};
}

Outcome near(const Asked& asked) {
    const std::vector<ModelElement> starts = asked.someElements();
    const std::size_t most = asked.line.number(Option::Steps).value_or(1);
    std::unordered_set<ModelElement> gone;
    const auto tell = [&](const Link& link, bool isBackwards, std::size_t distance) {
        asked.answers.tell(LinkAnswer{link, isBackwards, distance, true});
    };
    if (asked.line.has(Option::Undirected)) {
        Surroundings(asked.project, starts).forEachStep(most, gone, [&](const Step& step) {
            tell(step.link, step.isBackwards, step.distance);
        });
    } else {
        const auto result = Spec::subtractiveTraversal()->breadthFirst(starts);
        // In a picture all links are wanted, not only those that lead to something new.
        const bool isPicture = asked.line.value(Option::Format) == "dot";
        ResultSetup(result).upTo(most);
        auto walk = links(result);
        for (const Link& link : walk) {
            if (walk.depth() < most) gone.insert(link.getTarget());
            if (link.shouldCascade() || isPicture) tell(link, false, walk.depth());
        }
    }
    const auto isGoneThrough = [&](const ModelElement& source, const Property& /*property*/) {
        return gone.contains(source);
    };
    return {Losses(asked.line, asked.project).isLostFrom(isGoneThrough)};
}

}  // namespace model_walk
