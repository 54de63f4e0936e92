#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <tuple>
#include <vector>

#include "tests/oracle/EngineModel.h"
#include "traversal/Traversal.h"

/// How far walks over random models go, beside its definition: not a walk at all, but distances
/// that are put right until nothing changes.
namespace nuv::zero::oracle {
namespace {

using traversal::Algo;
using traversal::Link;
using traversal::ResultSetup;
using traversal::Spec;

/// Source, property and target.
using Step = std::tuple<int, int, int>;
using Distances = std::map<int, std::size_t>;

constexpr std::size_t withoutLimit = 1000;

/// A random world in which every value can be read.
PlainWorld makeReadableWorld(Choices& choices) {
    PlainWorld world = makeWorld(choices);
    for (PropertyDefinition& property : world.properties) {
        if (property.type < 0) property.association = false;
    }
    std::erase_if(world.values, [&](const auto& entry) {
        const auto& [place, value] = entry;
        const bool isMany =
            world.properties[static_cast<std::size_t>(place.second)].upperBound != 1;
        return value.payload != ValueDefinition::Payload::Elements || value.many != isMany ||
               value.type < 0;
    });
    return world;
}

/// The definition.
class Reach {
  public:
    Reach(const PlainWorld& world, bool isComposition, int salt)
        : world_(world), isComposition_(isComposition), salt_(salt) {}

    /// A boundary that looks at the link alone.
    bool passes(const Step& step) const {
        const auto [source, property, target] = step;
        return salt_ == 0 || (source * 7 + property * 3 + target * 5 + salt_) % 4 != 0;
    }
    std::vector<Step> linksOf(int element) const {
        std::vector<Step> links;
        for (const auto& [place, value] : world_.values) {
            if (place.first != element || !isFollowed(place.second)) continue;
            for (const int target : value.elements) {
                if (value.many || target != none) links.emplace_back(element, place.second, target);
            }
        }
        return links;
    }
    Distances distancesFrom(const std::vector<int>& inputs) const {
        Distances distances;
        for (const int input : inputs) {
            if (input != none) distances[input] = 0;
        }
        for (bool changes = true; changes;) {
            changes = false;
            for (const auto& [element, distance] : Distances(distances)) {
                for (const Step& link : linksOf(element)) {
                    const int target = std::get<2>(link);
                    if (target == none || !passes(link)) continue;
                    const auto known = distances.find(target);
                    if (known != distances.end() && known->second <= distance + 1) continue;
                    distances[target] = distance + 1;
                    changes = true;
                }
            }
        }
        return distances;
    }

  private:
    bool isFollowed(int property) const {
        const auto& definition = world_.properties[static_cast<std::size_t>(property)];
        return definition.association && !definition.derived &&
               (definition.composite || !isComposition_);
    }

    const PlainWorld& world_;
    bool isComposition_;
    int salt_;
};

TEST(ReachTest, EveryOrderReportsTheLinksThatLeaveElementsBelowTheDistanceAndEntersTheSame) {
    std::size_t limited = 0;
    std::size_t refused = 0;
    for (std::uint32_t seed = 1; seed <= 300; ++seed) {
        RandomChoices choices(seed);
        const PlainWorld world = makeReadableWorld(choices);
        if (world.elements.empty()) continue;
        const EngineModel model(world);
        const bool isComposition = choices.percent(30);
        const Reach reach(world, isComposition, choices.upTo(4));
        std::vector<int> inputs;
        for (int count = choices.between(1, 3); count > 0; --count) {
            inputs.push_back(choices.percent(5) ? none : choices.index(world.elements.size()));
        }
        const Distances distances = reach.distancesFrom(inputs);
        for (const std::size_t limit :
             {std::size_t{0}, std::size_t{1}, std::size_t{2}, std::size_t{3}, withoutLimit}) {
            std::multiset<Step> expected;
            std::set<int> entered(inputs.begin(), inputs.end());
            for (const auto& [element, distance] : distances) {
                if (distance >= limit) {
                    ++limited;
                    continue;
                }
                for (const Step& link : reach.linksOf(element)) {
                    expected.insert(link);
                    if (reach.passes(link)) {
                        entered.insert(std::get<2>(link));
                    } else {
                        ++refused;
                    }
                }
            }
            std::vector<ModelElement> elements;
            for (const int input : inputs) elements.push_back(model.elementAt(input));
            for (const Algo order :
                 {Algo::DepthFirstPreOrder, Algo::DepthFirstPostOrder, Algo::BreadthFirst}) {
                const auto result = isComposition
                                        ? Spec::compositionTraversal()->run(elements, order)
                                        : Spec::subtractiveTraversal()->run(elements, order);
                ResultSetup setup(result);
                if (limit != withoutLimit) setup.upTo(limit);
                setup.descend([&](const Link& link) {
                    const IndexedLink step = model.stepOf(link);
                    return reach.passes({step.source, step.property, step.target});
                });
                std::multiset<Step> reported;
                auto walk = result->begin();
                for (; !walk.hasEnded(); walk.advance()) {
                    const IndexedLink step = model.stepOf(walk.getCurrent());
                    if (step.property == none) continue;
                    reported.emplace(step.source, step.property, step.target);
                }
                ASSERT_EQ(reported, expected)
                    << "seed " << seed << ", order " << static_cast<int>(order) << ", up to "
                    << limit << '\n'
                    << describe(world);
                ASSERT_EQ(walk.enteredCount(), entered.size()) << "seed " << seed;
                for (const int element : entered) {
                    ASSERT_TRUE(walk.hasEntered(model.elementAt(element))) << "seed " << seed;
                }
            }
        }
    }
    EXPECT_GT(limited, 1000U);
    EXPECT_GT(refused, 500U);
}

}  // namespace
}  // namespace nuv::zero::oracle
