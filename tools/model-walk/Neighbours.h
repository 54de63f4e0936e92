#pragma once

#include <functional>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "Project.h"
#include "traversal/Traversal.h"

namespace model_walk {

/// The elements, and all that they contain.
std::unordered_set<nuv::zero::ModelElement> insideOf(
    const std::vector<nuv::zero::ModelElement>& elements);

/// Calls for every link of the project that leads to one of the elements, in the order of their
/// sources in the files. One pass over all elements.
void forEachLinkTo(const Project& project,
                   const std::unordered_set<nuv::zero::ModelElement>& targets,
                   const std::function<void(const nuv::zero::traversal::Link&)>& call);

/// The links at an element, whichever way they lead. Made by one pass over all elements; takes
/// memory for each link.
class Neighbours {
  public:
    explicit Neighbours(const Project& project);

    const std::vector<nuv::zero::traversal::Link>& linksAt(
        const nuv::zero::ModelElement& element) const;

  private:
    std::unordered_map<nuv::zero::ModelElement, std::vector<nuv::zero::traversal::Link>> links_;
};

}  // namespace model_walk
