#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "Consumer.h"
#include "traversal/Traversal.h"

namespace nuv_consumer {

namespace {

using namespace nuv::zero::traversal;
using Walk = TraversalResult::IterationContext;

/// Hears every event, and does with each what the class that it derives from does.
class Listener : public TraversalProcessor {
  public:
    void onEnterInputElement(const ModelElement& element) override {
        ++events;
        TraversalProcessor::onEnterInputElement(element);
    }
    void onEnterElement(const ModelElement& element) override {
        ++events;
        TraversalProcessor::onEnterElement(element);
    }
    void onEnterProperty(const ModelElement& element, const Property& property) override {
        ++events;
        TraversalProcessor::onEnterProperty(element, property);
    }
    void onExitProperty(const ModelElement& element, const Property& property) override {
        ++events;
        TraversalProcessor::onExitProperty(element, property);
    }
    void onExitElement(const ModelElement& element) override {
        ++events;
        TraversalProcessor::onExitElement(element);
    }
    void onExitInputElement(const ModelElement& element) override {
        ++events;
        TraversalProcessor::onExitInputElement(element);
    }

    int events = 0;
};

std::shared_ptr<TraversalResult> subtractive(const Station& station) {
    return Spec::subtractiveTraversal()->depthFirst({station.one});
}

void callSetup(const Station& station) {
    Listener listener;
    Listener copy(listener);
    copy = listener;
    const auto result = subtractive(station);
    ResultSetup(result)
        .observe(&listener)
        .unique(UniquenessMode::UniqueElements)
        .filter([](const Link& link) {
            return link.getProperty() ? ResultPolicy::Report : ResultPolicy::WalkOnly;
        })
        .filter(std::function<ResultPolicy(Link)>(
            [](const Link& /*link*/) { return ResultPolicy::Report; }));
    int heard = 0;
    const auto hearElement = [&heard](const ModelElement& /*element*/) { ++heard; };
    const auto hearProperty = [&heard](const ModelElement& /*element*/,
                                       const Property& /*property*/) { ++heard; };
    ResultSetup(result)
        .onEnterInputElement(hearElement)
        .onEnterElement(hearElement)
        .onEnterProperty(hearProperty)
        .onExitProperty(hearProperty)
        .onExitElement(hearElement)
        .onExitInputElement(hearElement)
        .filter(&Link::shouldCascade);
    Walk walk(result);
    for (; !(walk == Walk()); walk.advance()) listener.events += 100;
    expect(heard > 0, "callables hear events");
    expect(listener.events >= 200 && listener.events % 100 > 0, "events are heard");
}

void callWalk(const Station& station) {
    const auto result = subtractive(station);
    Walk walk = result->begin();
    expect(walk.getCurrent().getTarget() == station.one, "a walk begins with its input");
    Walk copy(walk);
    copy.advance();
    walk = copy;
    Walk moved(std::move(copy));
    copy = std::move(moved);
    walk.pruneSiblings();
    walk.pruneChildren(station.next);
    walk.pruneAllChildren();
    walk.advance();
    copy.advance();
    expect(walk.getCurrent() == copy.getCurrent(), "walks go on on their own");
    const TraversalResult copied(*result);
    TraversalResult::privateTag* tag = nullptr;
    // Only builders make the tag.
    if (never()) {
        *tag = TraversalResult::privateTag(*tag);
        const TraversalResult made(*tag, {}, nullptr, Algo::BreadthFirst, ResultPolicy::Report);
    }
}

void callRange(const Station& station) {
    LinkRange range(subtractive(station));
    LinkRange moved(std::move(range));
    range = std::move(moved);
    LinkRange::iterator place;
    expect(place == range.end(), "no place is the end");
    place = range.begin();
    expect(place->getTarget() == station.one && *place == place.operator*(), "a range has a place");
    ++place;
    place++;
    range.pruneSiblings();
    range.pruneChildren(station.parts);
    range.pruneAllChildren();
    std::size_t rest = 0;
    for (const Link& link : links(subtractive(station))) rest += link.shouldCascade() ? 1 : 0;
    expect(rest == 3, "each element is entered once");
}

}  // namespace

void callWalks(Station& station) {
    callSetup(station);
    callWalk(station);
    callRange(station);
}

}  // namespace nuv_consumer
