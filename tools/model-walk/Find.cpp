#include "Conditions.h"
#include "Question.h"

namespace model_walk {

Outcome find(const Asked& asked) {
    const Conditions conditions(asked.line, asked.labels);
    const auto tell = [&](const std::vector<nuv::zero::ModelElement>& candidates) {
        for (const auto& each : candidates) {
            if (conditions.hold(each)) asked.answers.tell(ElementAnswer{each});
        }
    };
    if (asked.hasElements()) {
        tell(asked.elements());
        return {};
    }
    tell(asked.project.elements());
    return {Losses(asked.line, asked.project).hasLostContents()};
}

}  // namespace model_walk
