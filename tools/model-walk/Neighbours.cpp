#include "Neighbours.h"

namespace model_walk {

using nuv::zero::ModelElement;
using nuv::zero::traversal::Link;
using nuv::zero::traversal::LinkRange;
using nuv::zero::traversal::links;
using nuv::zero::traversal::ResultPolicy;
using nuv::zero::traversal::ResultSetup;
using nuv::zero::traversal::Spec;

namespace {

/// All links, element by element: every element is an input, and nothing else is entered.
LinkRange allLinks(const Project& project, const std::function<bool(const Link&)>& isWanted) {
    const auto result = Spec::subtractiveTraversal()
                            ->includeInitialPseudoLink(ResultPolicy::WalkOnly)
                            ->depthFirst(project.elements());
    ResultSetup(result)
        .descend([](const Link& /*link*/) { return false; })
        .filter([isWanted](const Link& link) { return isWanted(link); });
    return links(result);
}

}  // namespace

std::unordered_set<ModelElement> insideOf(const std::vector<ModelElement>& elements) {
    std::unordered_set<ModelElement> inside;
    for (const Link& link : links(Spec::compositionTraversal()->depthFirst(elements))) {
        inside.insert(link.getTarget());
    }
    return inside;
}

void forEachLinkTo(const Project& project, const std::unordered_set<ModelElement>& targets,
                   const std::function<void(const Link&)>& call) {
    const auto leadsThere = [&](const Link& link) { return targets.contains(link.getTarget()); };
    for (const Link& link : allLinks(project, leadsThere)) call(link);
}

Neighbours::Neighbours(const Project& project) {
    for (const Link& link : allLinks(project, [](const Link& /*link*/) { return true; })) {
        links_[link.getSource()].push_back(link);
        links_[link.getTarget()].push_back(link);
    }
}

const std::vector<Link>& Neighbours::linksAt(const ModelElement& element) const {
    static const std::vector<Link> none;
    const auto found = links_.find(element);
    return found == links_.end() ? none : found->second;
}

}  // namespace model_walk
