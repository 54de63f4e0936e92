#include <optional>
#include <utility>

#include "Question.h"
#include "UsageError.h"

namespace model_walk {

using nuv::zero::ModelElement;
using nuv::zero::meta::Property;
using nuv::zero::traversal::Link;
using nuv::zero::traversal::links;
using nuv::zero::traversal::ResultSetup;

Outcome walk(const Asked& asked) {
    if (asked.line.value(Option::Format) == "tree" && asked.line.value(Option::Order) == "post") {
        throw UsageError("--format tree needs another --order: post has what is below in front");
    }
    const Rules rules(asked.line, asked.names);
    const bool hasIdleRule = tellIdleRules(asked, rules);
    std::optional<std::vector<ModelElement>> named;
    if (asked.hasElements()) named = asked.elements();
    const auto result = rules.run(startingElements(asked, std::move(named)));
    ResultSetup(result).onEnterElement(
        [&](const ModelElement& element) { asked.answers.entered(element); });

    bool hasLink = false;
    auto walk = links(result);
    for (const Link& link : walk) {
        hasLink = hasLink || link.getProperty();
        asked.answers.tell(LinkAnswer{link, false, walk.depth()});
    }
    const auto isGoneThrough = [&](const ModelElement& source, const Property& property) {
        return walk.hasEntered(source) && rules.isFollowed(source->getClass(), property);
    };
    return {Losses(asked.line, asked.project).isLostFrom(isGoneThrough), hasIdleRule && !hasLink};
}

}  // namespace model_walk
