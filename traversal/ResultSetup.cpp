#include "traversal/ResultSetup.h"

#include <stdexcept>
#include <utility>

#include "traversal/internal/EventCallables.h"

namespace nuv::zero::traversal MODELING_NUV0_OVER {

using internal::EventCallables;

ResultSetup::ResultSetup(std::shared_ptr<internal::TraversalResult> result)
    : result_(std::move(result)) {
    if (!result_) throw std::invalid_argument("ResultSetup needs a result, not a null pointer.");
}

ResultSetup& ResultSetup::observe(internal::TraversalProcessor* processor) {
    result_->doAttach(processor);
    return *this;
}

ResultSetup& ResultSetup::onEnterInputElement(const OfElement& callable) {
    result_->listening_.to =
        result_->listening_.ownCallables().add(EventCallables::Event::EnterInputElement, callable);
    return *this;
}
ResultSetup& ResultSetup::onEnterElement(const OfElement& callable) {
    result_->listening_.to =
        result_->listening_.ownCallables().add(EventCallables::Event::EnterElement, callable);
    return *this;
}
ResultSetup& ResultSetup::onEnterProperty(const OfProperty& callable) {
    result_->listening_.to =
        result_->listening_.ownCallables().add(EventCallables::Event::EnterProperty, callable);
    return *this;
}
ResultSetup& ResultSetup::onExitProperty(const OfProperty& callable) {
    result_->listening_.to =
        result_->listening_.ownCallables().add(EventCallables::Event::ExitProperty, callable);
    return *this;
}
ResultSetup& ResultSetup::onExitElement(const OfElement& callable) {
    result_->listening_.to =
        result_->listening_.ownCallables().add(EventCallables::Event::ExitElement, callable);
    return *this;
}
ResultSetup& ResultSetup::onExitInputElement(const OfElement& callable) {
    result_->listening_.to =
        result_->listening_.ownCallables().add(EventCallables::Event::ExitInputElement, callable);
    return *this;
}

ResultSetup& ResultSetup::filter(const std::function<ResultPolicy(internal::Link)>& filter) {
    result_->addFilter(filter);
    return *this;
}

ResultSetup& ResultSetup::filterByReference(
    const std::function<ResultPolicy(const internal::Link&)>& filter) {
    result_->filters_.push_back(filter);
    result_->isAsking_ = true;
    return *this;
}

ResultSetup& ResultSetup::filterByAnswer(
    const std::function<bool(const internal::Link&)>& isWanted) {
    return filterByReference([isWanted](const internal::Link& link) {
        return isWanted(link) ? ResultPolicy::Report : ResultPolicy::WalkOnly;
    });
}

ResultSetup& ResultSetup::descend(const std::function<bool(const internal::Link&)>& predicate) {
    result_->boundaries_.push_back(predicate);
    result_->hasBoundaries_ = true;
    return *this;
}

ResultSetup& ResultSetup::upTo(std::size_t distance) {
    result_->upTo_ = distance;
    return *this;
}

ResultSetup& ResultSetup::rememberPaths() {
    result_->remembersPaths_ = true;
    return *this;
}

ResultSetup& ResultSetup::trace(WalkListener* listener) {
    if (listener == nullptr) throw std::invalid_argument("trace() needs a listener.");
    result_->listeners_.push_back(listener);
    result_->isAsking_ = true;
    return *this;
}

ResultSetup& ResultSetup::unique(UniquenessMode mode) {
    result_->uniqueness_ = mode;
    return *this;
}

}  // namespace nuv::zero::traversal
