#include <algorithm>

#include "Question.h"

namespace model_walk {

using nuv::zero::ModelElement;
using nuv::zero::traversal::Link;

Outcome incoming(const Asked& asked) {
    const std::vector<ModelElement> elements = asked.someElements();
    const std::unordered_set<ModelElement> meant =
        asked.line.has(Option::Inside)
            ? insideOf(elements)
            : std::unordered_set<ModelElement>(elements.begin(), elements.end());
    const std::vector<std::string>& properties = asked.line.values(Option::Property);
    // What contains an element does not refer to it, unless that is what was asked for; and what
    // lies inside of the elements belongs to them.
    const auto isWanted = [&](const Link& link) {
        if (asked.line.has(Option::Inside) && meant.contains(link.getSource())) return false;
        if (properties.empty()) return !link.getProperty()->isComposite();
        return std::find(properties.begin(), properties.end(), Labels::property(link)) !=
               properties.end();
    };
    forEachLinkTo(asked.project, meant, [&](const Link& link) {
        if (isWanted(link)) asked.answers.tell(LinkAnswer{link, true});
    });
    return {Losses(asked.line, asked.project).mayLeadTo(meant)};
}

Outcome impact(const Asked& asked) {
    const std::unordered_set<ModelElement> deleted = insideOf(asked.someElements());
    forEachLinkTo(asked.project, deleted, [&](const Link& link) {
        const bool isBroken =
            !link.getProperty()->isComposite() && !deleted.contains(link.getSource());
        if (isBroken) asked.answers.tell(LinkAnswer{link, true});
    });
    return {Losses(asked.line, asked.project).mayLeadTo(deleted)};
}

}  // namespace model_walk
