#include "Question.h"

namespace model_walk {

using nuv::zero::ModelElement;
using nuv::zero::meta::Property;
using nuv::zero::traversal::Link;
using nuv::zero::traversal::links;
using nuv::zero::traversal::Spec;

Outcome contents(const Asked& asked) {
    const std::vector<ModelElement> starts =
        asked.hasElements() ? asked.elements() : asked.project.roots();
    auto walk = links(Spec::compositionTraversal()->depthFirst(starts));
    for (const Link& link : walk) {
        asked.answers.tell(LinkAnswer{link, false, walk.depth()});
    }
    const auto isGoneThrough = [&](const ModelElement& source, const Property& property) {
        return walk.hasEntered(source) && property && property->isComposite();
    };
    return {Losses(asked.line, asked.project).isLostFrom(isGoneThrough)};
}

}  // namespace model_walk
