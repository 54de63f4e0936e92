#include <iostream>

#include "Question.h"
#include "UsageError.h"

namespace model_walk {

using nuv::zero::ModelElement;
using nuv::zero::meta::Property;
using nuv::zero::traversal::Link;
using nuv::zero::traversal::LinkRange;
using nuv::zero::traversal::links;
using nuv::zero::traversal::MissedLink;
using nuv::zero::traversal::Obstacle;
using nuv::zero::traversal::ResultSetup;
using nuv::zero::traversal::WalkBoundaries;

namespace {

ModelElement onlyElement(const Asked& asked) {
    const std::vector<ModelElement> elements = asked.elements();
    if (elements.size() == 1) return elements.front();
    throw UsageError("one element is asked about; see model-walk help " +
                     std::string(asked.line.entry().name));
}

void goThrough(LinkRange& walk) {
    for (auto step = walk.begin(); step != walk.end();) ++step;
}

std::string reasonOf(const MissedLink& missed) {
    switch (missed.obstacle) {
        case Obstacle::Rules:
            return missed.decision ? missed.decision->text() : "not followed";
        case Obstacle::OutOfReach:
            return "its source is as far away as the walk goes";
        case Obstacle::Boundary:
        case Obstacle::Pruned:
        case Obstacle::NotYet:
        case Obstacle::NotTaken:
            break;
    }
    return "not taken";
}

bool isAffected(const Asked& asked, const Rules& rules, const LinkRange& walk) {
    const auto isGoneThrough = [&](const ModelElement& source, const Property& property) {
        return walk.hasEntered(source) && rules.isFollowed(source->getClass(), property);
    };
    return Losses(asked.line, asked.project).isLostFrom(isGoneThrough);
}

}  // namespace

Outcome why(const Asked& asked) {
    const ModelElement element = onlyElement(asked);
    const Rules rules(asked.line, asked.names);
    const bool hasIdleRule = tellIdleRules(asked, rules);
    const auto result = rules.run(startingElements(asked));
    ResultSetup(result).rememberPaths();
    LinkRange walk = links(result);
    goThrough(walk);
    if (!walk.hasEntered(element)) {
        std::cerr << "model-walk: the walk does not come to it; model-walk why-not tells more\n";
        return {isAffected(asked, rules, walk), hasIdleRule};
    }
    std::size_t depth = 0;
    for (const Link& link : walk.pathTo(element)) {
        asked.answers.tell(LinkAnswer{link, false, depth++});
    }
    return {};
}

Outcome whyNot(const Asked& asked) {
    const ModelElement element = onlyElement(asked);
    const Rules rules(asked.line, asked.names);
    const bool hasIdleRule = tellIdleRules(asked, rules);
    WalkBoundaries boundaries;
    const auto result = rules.run(startingElements(asked));
    ResultSetup(result).trace(&boundaries);
    LinkRange walk = links(result);
    goThrough(walk);
    const auto answer = nuv::zero::traversal::whyNot(walk, element, &boundaries);
    if (answer.isEntered) {
        std::cerr << "model-walk: the walk comes to it; model-walk why tells how\n";
        return {};
    }
    for (const MissedLink& missed : answer.links) {
        asked.answers.tell(LinkAnswer{missed.link, true, missed.distance, false, reasonOf(missed)});
    }
    if (answer.links.empty()) {
        std::cerr << "model-walk: none of the " << answer.enteredCount
                  << " elements of the walk refers to it\n";
    }
    return {isAffected(asked, rules, walk), hasIdleRule};
}

}  // namespace model_walk
