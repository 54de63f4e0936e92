#include "traversal/internal/EventCallables.h"

#include <utility>

namespace nuv::zero::traversal MODELING_NUV0_OVER::internal {

EventCallables::EventCallables(TraversalProcessor* observer) {
    install(observer, 0);
}

EventCallables::EventCallables(const EventCallables& other) : callables_(other.callables_) {
    install(other.standIn_->observer(), other.standIn_->place());
}

EventCallables::~EventCallables() = default;

TraversalProcessor* EventCallables::add(Event event, std::variant<OfElement, OfProperty> callable) {
    callables_.push_back({event, std::move(callable)});
    try {
        install(standIn_->observer(), standIn_->place());
    } catch (...) {
        callables_.pop_back();
        throw;
    }
    return standIn_;
}

TraversalProcessor* EventCallables::observe(TraversalProcessor* observer) {
    install(observer, callables_.size());
    return standIn_;
}

/// Listens with all callables. An observer that comes and goes needs no stand-in for each time.
void EventCallables::install(TraversalProcessor* observer, std::size_t place) {
    const std::size_t count = callables_.size();
    if (observer == nullptr) place = 0;
    for (StandIn& made : standIns_) {
        if (!made.tells(count, observer, place)) continue;
        standIn_ = &made;
        return;
    }
    standIn_ = &standIns_.emplace_back(callables_, count, observer, place);
}

template <class Function, class... Handles>
void EventCallables::StandIn::tell(Event event,
                                   void (TraversalProcessor::*ofObserver)(const Handles&...),
                                   const Handles&... handles) {
    for (std::size_t index = 0; index < count_; ++index) {
        if (observer_ != nullptr && index == place_) (observer_->*ofObserver)(handles...);
        const Callable& each = (*callables_)[index];
        if (each.event == event) std::get<Function>(each.call)(handles...);
    }
    if (observer_ != nullptr && place_ == count_) (observer_->*ofObserver)(handles...);
}

void EventCallables::StandIn::onEnterInputElement(const ModelElement& element) {
    tell<OfElement>(Event::EnterInputElement, &TraversalProcessor::onEnterInputElement, element);
}
void EventCallables::StandIn::onEnterElement(const ModelElement& element) {
    tell<OfElement>(Event::EnterElement, &TraversalProcessor::onEnterElement, element);
}
void EventCallables::StandIn::onEnterProperty(const ModelElement& element,
                                              const meta::Property& property) {
    tell<OfProperty>(Event::EnterProperty, &TraversalProcessor::onEnterProperty, element, property);
}
void EventCallables::StandIn::onExitProperty(const ModelElement& element,
                                             const meta::Property& property) {
    tell<OfProperty>(Event::ExitProperty, &TraversalProcessor::onExitProperty, element, property);
}
void EventCallables::StandIn::onExitElement(const ModelElement& element) {
    tell<OfElement>(Event::ExitElement, &TraversalProcessor::onExitElement, element);
}
void EventCallables::StandIn::onExitInputElement(const ModelElement& element) {
    tell<OfElement>(Event::ExitInputElement, &TraversalProcessor::onExitInputElement, element);
}

}  // namespace nuv::zero::traversal::internal
