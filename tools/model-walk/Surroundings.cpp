#include "Surroundings.h"

#include <algorithm>
#include <limits>

namespace model_walk {

using nuv::zero::ModelElement;
using nuv::zero::meta::Property;
using nuv::zero::traversal::Link;

std::vector<Step> Surroundings::stepsWithin(std::size_t most, const ModelElement& last,
                                            std::unordered_set<ModelElement>& gone) const {
    std::vector<Step> steps;
    std::unordered_set<ModelElement> known;
    for (const ModelElement& each : starts_) {
        if (known.insert(each).second) {
            steps.push_back({Link(ModelElement(), each, Property()), false, 0, 0});
        }
    }
    for (std::size_t next = 0; next < steps.size() && !known.contains(last); ++next) {
        const ModelElement element = steps[next].end();
        const std::size_t distance = steps[next].distance;
        if (distance >= most) break;
        gone.insert(element);
        for (const Link& link : neighbours_.linksAt(element)) {
            const bool isBackwards = link.getTarget() == element;
            const ModelElement& other = isBackwards ? link.getSource() : link.getTarget();
            if (known.insert(other).second) {
                steps.push_back({link, isBackwards, distance + 1, next});
            }
        }
    }
    return steps;
}

void Surroundings::forEachStep(std::size_t most, std::unordered_set<ModelElement>& gone,
                               const std::function<void(const Step&)>& call) const {
    for (const Step& step : stepsWithin(most, ModelElement(), gone)) call(step);
}

std::vector<Step> Surroundings::pathTo(const ModelElement& element,
                                       std::unordered_set<ModelElement>& gone) const {
    const std::vector<Step> steps =
        stepsWithin(std::numeric_limits<std::size_t>::max(), element, gone);
    const auto found = std::find_if(steps.begin(), steps.end(),
                                    [&](const Step& step) { return step.end() == element; });
    std::vector<Step> path;
    if (found == steps.end()) return path;
    auto number = static_cast<std::size_t>(found - steps.begin());
    while (steps[number].distance > 0) {
        path.push_back(steps[number]);
        number = steps[number].before;
    }
    path.push_back(steps[number]);
    std::reverse(path.begin(), path.end());
    return path;
}

}  // namespace model_walk
