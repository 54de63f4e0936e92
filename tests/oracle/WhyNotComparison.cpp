#include "tests/oracle/WhyNotComparison.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <deque>
#include <map>
#include <string>
#include <vector>

#include "traversal/ResultSetup.h"

namespace nuv::zero::oracle {
namespace {

using traversal::MissedLink;
using traversal::Obstacle;
using traversal::ResultSetup;
using traversal::WalkBoundaries;
using traversal::WhyNot;
using Walk = traversal::internal::TraversalResult::IterationContext;
using Lines = std::vector<std::string>;

bool isRefused(const IndexedLink& link) {
    return (link.source * 7 + link.property * 3 + link.target * 5) % 3 == 0;
}

/// What is known of a walk that has ended, without asking why.
class EndedWalk {
  public:
    EndedWalk(const CalmCase& calm, const std::vector<int>& inputs, const Walk& walk)
        : calm_(calm), provider_(calm.world(), calm.rules()), recorder_(calm.world()) {
        for (std::size_t index = 0; index < calm.world().elements.size(); ++index) {
            const int element = static_cast<int>(index);
            if (walk.hasEntered(calm.model().elementAt(element))) entered_.push_back(element);
        }
        std::deque<int> waiting;
        const auto reach = [&](int element, int distance) {
            if (element == none || !hasEntered(element)) return;
            if (distances_.emplace(element, distance).second) waiting.push_back(element);
        };
        for (const int input : inputs) reach(input, 0);
        for (; !waiting.empty(); waiting.pop_front()) {
            const int source = waiting.front();
            for (const auto& [place, value] : calm.world().values) {
                if (place.first != source || !isFollowed(source, place.second)) continue;
                for (const int target : value.elements) reach(target, distances_.at(source) + 1);
            }
        }
    }

    bool hasEntered(int element) const {
        return std::count(entered_.begin(), entered_.end(), element) != 0;
    }
    const std::vector<int>& entered() const { return entered_; }
    bool isFollowed(int source, int property) {
        const int type = calm_.world().elements[static_cast<std::size_t>(source)];
        const Settings settings = provider_.settingsOf(type, recorder_);
        return std::any_of(settings->begin(), settings->end(),
                           [&](const Setting& setting) { return setting.property == property; });
    }
    /// All links to an element from what was entered.
    Lines linksTo(int element, bool isBounded) {
        Lines lines;
        for (const auto& [place, value] : calm_.world().values) {
            const auto& [source, property] = place;
            const auto& definition = calm_.world().properties[static_cast<std::size_t>(property)];
            const auto& targets = value.elements;
            if (!definition.association || !hasEntered(source)) continue;
            if (std::count(targets.begin(), targets.end(), element) == 0) continue;
            const bool isBoundary = isBounded && isFollowed(source, property);
            lines.push_back(lineFor({source, property, element, true}, distances_.at(source),
                                    isBoundary ? Obstacle::Boundary : Obstacle::Rules));
        }
        return lines;
    }
    static std::string lineFor(const IndexedLink& link, int distance, Obstacle obstacle) {
        return describe(link) + " " + std::to_string(distance) + " " +
               std::to_string(static_cast<int>(obstacle));
    }

  private:
    const CalmCase& calm_;
    NaiveProvider provider_;
    CallRecorder recorder_;
    std::vector<int> entered_;
    std::map<int, int> distances_;
};

}  // namespace

void compareWhyNot(Choices& choices, WhyNotCounts& counts) {
    CalmCase calm(choices);
    const std::size_t elements = calm.world().elements.size();
    if (elements == 0) return;
    std::vector<int> inputs;
    for (int count = choices.upTo(2); count >= 0; --count) {
        inputs.push_back(choices.index(elements));
    }
    const auto result = calm.run(inputs, choices.upTo(2));
    const bool isBounded = choices.percent(70);
    WalkBoundaries boundaries;
    ResultSetup(result).trace(&boundaries);
    if (isBounded) {
        ResultSetup(result).descend([&](const traversal::internal::Link& link) {
            return !isRefused(calm.model().stepOf(link));
        });
    }
    Walk walk = result->begin();
    while (!walk.hasEnded()) walk.advance();
    EndedWalk ended(calm, inputs, walk);
    for (int element = 0; element < static_cast<int>(elements); ++element) {
        const WhyNot answer = whyNot(walk, calm.model().elementAt(element), &boundaries);
        ASSERT_EQ(answer.isEntered, ended.hasEntered(element));
        if (answer.isEntered) {
            ASSERT_TRUE(answer.links.empty());
            continue;
        }
        Lines actual;
        for (const MissedLink& missed : answer.links) {
            actual.push_back(EndedWalk::lineFor(calm.model().stepOf(missed.link),
                                                static_cast<int>(missed.distance),
                                                missed.obstacle));
            ASSERT_EQ(missed.decision.has_value(), missed.obstacle == Obstacle::Rules);
            if (missed.decision) {
                ASSERT_FALSE(missed.decision->isFollowed);
            }
            ++counts.met[missed.obstacle];
        }
        ASSERT_TRUE(std::is_sorted(
            answer.links.begin(), answer.links.end(),
            [](const MissedLink& a, const MissedLink& b) { return a.distance < b.distance; }));
        Lines expected = ended.linksTo(element, isBounded);
        std::sort(actual.begin(), actual.end());
        std::sort(expected.begin(), expected.end());
        ASSERT_EQ(actual, expected);
        counts.unreferred += expected.empty() ? 1 : 0;
    }
}

}  // namespace nuv::zero::oracle
