#include "traversal/internal/Reach.h"

#include <algorithm>

#include "traversal/internal/Walk.h"

namespace nuv::zero::traversal MODELING_NUV0_OVER::internal {

bool Reach::explore(Walk& walk, const std::vector<ModelElement>& inputs) {
    for (; limit_ != 0 && inputsTaken_ != inputs.size(); ++inputsTaken_) {
        if (!walk.mayGoOn()) return false;
        add(walk, inputs[inputsTaken_]);
        distanceEnd_ = found_.size();
    }
    while (hasTurn_ || startTurn(walk)) {
        if (!walk.mayGoOn()) return false;
        const Cursor::Step step = turn_.step(walk.budget());
        if (step == Cursor::Step::Paused) return false;
        if (step == Cursor::Step::Over) hasTurn_ = false;
        if (step != Cursor::Step::Link) continue;
        const Lent<ModelElement> target = turn_.target();
        // Nothing leaves a null element.
        const bool isKnown = !target.get() || within_.contains(target.get());
        if (!isKnown && walk.mayDescend(turn_, target.get())) add(walk, target.get());
    }
    std::vector<Lent<ModelElement>>().swap(found_);
    turn_ = Cursor();
    isExplored_ = true;
    return true;
}

/// Gives the next element its turn; false when what would be found is out of reach.
bool Reach::startTurn(Walk& walk) {
    if (next_ == found_.size()) return false;
    if (next_ == distanceEnd_) {
        ++distance_;
        distanceEnd_ = found_.size();
    }
    if (distance_ + 1 >= limit_) return false;
    // Moved on before a predicate is asked: one that always throws does not stop the pass.
    lookAhead(walk);
    const ModelElement& element = found_[next_++].get();
    turn_.restart(element, nullptr, walk.settingsOf(element));
    hasTurn_ = true;
    return true;
}

/// Announces the elements whose turns come soon, and then their lists: both lie anywhere in memory.
void Reach::lookAhead(Walk& walk) const {
    constexpr std::size_t toElements = 6;
    constexpr std::size_t toLists = 3;
    if (next_ + toElements >= found_.size()) return;
    WalkSupport::prefetch(found_[next_ + toElements].get());
    const ModelElement& sooner = found_[next_ + toLists].get();
    // Nobody is asked about a class that was not met yet.
    const Cursor::Settings* settings = walk.knownSettingsOf(access::classOf(sooner));
    if (settings == nullptr) return;
    for (const AssociationSetting& setting : *settings) setting.prefetch(sooner);
}

void Reach::add(Walk& walk, const ModelElement& element) {
    // Nothing leaves a null element.
    if (!element || within_.contains(element)) return;
    if (found_.size() == found_.capacity()) found_.reserve(2 * found_.size() + 16);
    walk.pin(element);
    within_.insert(element);
    found_.emplace_back(element);
}

}  // namespace nuv::zero::traversal::internal
