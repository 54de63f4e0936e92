#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <vector>

#include "tests/support/ModelBuilder.h"
#include "tests/support/WalkLog.h"

namespace nuv::zero::traversal::internal {

inline test::Lines sorted(test::Lines lines) {
    std::sort(lines.begin(), lines.end());
    return lines;
}

/// Walks over one model in each order, to be limited by boundaries or by a distance.
class LimitedWalks : public testing::TestWithParam<Algo> {
  protected:
    std::shared_ptr<TraversalResult> run(const test::ModelBuilder& model,
                                         const std::vector<const char*>& names) const {
        std::vector<ModelElement> inputs;
        for (const char* name : names) inputs.push_back(model(name));
        return Spec::subtractiveTraversal()->run(inputs, GetParam());
    }
    std::shared_ptr<TraversalResult> run(const std::vector<const char*>& names = {"A"}) const {
        return run(m, names);
    }
    /// Does not go into an element by way of one property.
    std::function<bool(const Link&)> notBy(const char* property, const char* target) const {
        return [=, this](const Link& link) {
            return !(link.getProperty() == m[property] && link.getTarget() == m(target));
        };
    }
    test::ModelBuilder m{"Node; Node.x -> Node *; Node.y -> Node *",
                         "A.x = B C; A.y = D; B.x = E; C.y = B; D.x = F; E.y = A"};
};

}  // namespace nuv::zero::traversal::internal
