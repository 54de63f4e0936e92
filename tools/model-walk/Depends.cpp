#include <unordered_set>

#include "Question.h"
#include "UsageError.h"

namespace model_walk {

using nuv::zero::ModelElement;
using nuv::zero::meta::Property;
using nuv::zero::traversal::containerReferencesOf;
using nuv::zero::traversal::Link;
using nuv::zero::traversal::LinkRange;
using nuv::zero::traversal::links;
using nuv::zero::traversal::Meeting;
using nuv::zero::traversal::ResultPolicy;
using nuv::zero::traversal::ResultSetup;
using nuv::zero::traversal::Spec;
using nuv::zero::traversal::WalkBoundaries;

Outcome depends(const Asked& asked) {
    if (asked.line.has(Option::Outside) && !asked.line.has(Option::Within)) {
        throw UsageError("--outside needs --within: without, only what leaves is told anyway");
    }
    const auto result = Spec::subtractiveTraversal()
                            ->includeInitialPseudoLink(ResultPolicy::WalkOnly)
                            ->prune(containerReferencesOf(asked.names.classes()))
                            ->depthFirst(asked.someElements());
    std::unordered_set<ModelElement> inside;
    if (asked.line.has(Option::Within)) {
        inside = insideOf({asked.project.element(asked.line.value(Option::Within))});
    }
    WalkBoundaries boundaries;
    ResultSetup(result).trace(&boundaries).descend([&](const Link& link) {
        return asked.line.has(Option::Within) ? inside.contains(link.getTarget())
                                              : link.getProperty()->isComposite();
    });

    const bool showsInner = asked.line.has(Option::Within) && !asked.line.has(Option::Outside);
    LinkRange walk = links(result);
    for (const Link& link : walk) {
        if (showsInner && walk.meeting() != Meeting::Boundary) {
            asked.answers.tell(LinkAnswer{link, false, walk.depth()});
        }
    }
    for (const Link& link : boundaries.neverEntered(walk)) {
        asked.answers.tell(LinkAnswer{link, false, 1, false, showsInner ? "leaves" : ""});
    }
    const auto isGoneThrough = [&](const ModelElement& source, const Property& /*property*/) {
        return walk.hasEntered(source);
    };
    return {Losses(asked.line, asked.project).isLostFrom(isGoneThrough)};
}

}  // namespace model_walk
