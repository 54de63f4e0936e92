#pragma once

#include <cstddef>
#include <functional>
#include <unordered_set>
#include <vector>

#include "Neighbours.h"

namespace model_walk {

/// A link, and the direction in which it is taken.
struct Step {
    nuv::zero::traversal::Link link;
    bool isBackwards = false;
    std::size_t distance = 0;
    /// The number of the step before it.
    std::size_t before = 0;

    const nuv::zero::ModelElement& end() const {
        return isBackwards ? link.getSource() : link.getTarget();
    }
};

/// What lies around elements when links are followed in both directions, nearest first.
class Surroundings {
  public:
    Surroundings(const Project& project, std::vector<nuv::zero::ModelElement> starts)
        : neighbours_(project), starts_(std::move(starts)) {}

    /// Calls for the step that leads to each element within a distance first, the starts' own links
    /// included. `gone` receives the elements that were gone on from.
    void forEachStep(std::size_t most, std::unordered_set<nuv::zero::ModelElement>& gone,
                     const std::function<void(const Step&)>& call) const;
    /// The steps of a shortest way; none where there is none.
    std::vector<Step> pathTo(const nuv::zero::ModelElement& element,
                             std::unordered_set<nuv::zero::ModelElement>& gone) const;

  private:
    std::vector<Step> stepsWithin(std::size_t most, const nuv::zero::ModelElement& last,
                                  std::unordered_set<nuv::zero::ModelElement>& gone) const;

    Neighbours neighbours_;
    std::vector<nuv::zero::ModelElement> starts_;
};

}  // namespace model_walk
