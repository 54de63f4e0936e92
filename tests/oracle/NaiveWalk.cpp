#include "tests/oracle/NaiveWalk.h"

#include <algorithm>
#include <utility>

namespace nuv::zero::oracle {

NaiveWalk::NaiveWalk(const PlainWorld& world, Callbacks& callbacks,
                     std::shared_ptr<NaiveResult> result)
    : world_(&world),
      callbacks_(&callbacks),
      result_(std::move(result)),
      uniqueness_(result_->uniqueness),
      upTo_(result_->upTo) {}

void NaiveWalk::advance() {
    if (!result_) return;
    std::size_t enough = static_cast<std::size_t>(-1);
    steps_ = &enough;
    goOn();
}

Ending NaiveWalk::advanceWithin(std::size_t& steps) {
    if (ended_) return Ending::Ended;
    steps_ = &steps;
    return goOn();
}

bool NaiveWalk::spend() {
    if (*steps_ == 0) return false;
    --*steps_;
    return true;
}

Ending NaiveWalk::goOn() {
    if (!findDistances()) return Ending::Paused;
    if (frontier_.empty()) {
        place_ = IndexedLink();
        return spend() ? startNextInput() : Ending::Paused;
    }
    const IndexedLink link = top();
    if (!isDepthFirst() && !hasTurn_ && !spend()) return Ending::Paused;
    if (!link.cascade) {
        place_ = link;
        pop();
        return tryReport(link) ? Ending::OnLink : goOn();
    }
    if (inputWaits_) {
        if (hasEntered(link.target)) {
            inputWaits_ = false;
            pop();
            return goOn();
        }
        enter(link);
        inputWaits_ = false;
    }
    if (!isDepthFirst() && !hasTurn_) {
        place_ = link;
        hasTurn_ = true;
    }
    return takeLinks(link);
}

Ending NaiveWalk::takeLinks(const IndexedLink& link) {
    NaiveCursor& cursor = cursors_.at(link.target);
    if (!cursor.started) callbacks_->remember();
    if (result_->algo != 1 && !cursor.reportedSelf) {
        cursor.reportedSelf = true;
        if (tryReport(link)) return Ending::OnLink;
    }

    while (spend()) {
        const bool isOverOrBetween =
            cursor.finished || !cursor.inProperty || cursor.valueIndex + 1 >= cursor.values.size();
        if (isOverOrBetween) place_ = link;
        const NaiveCursor::Step found = cursor.step(*world_, *callbacks_);
        if (found == NaiveCursor::Step::NoValues) continue;
        if (found == NaiveCursor::Step::Over) {
            cursor.processedAll(*callbacks_);
            if (!cursor.reportedSelf) {
                cursor.reportedSelf = true;
                if (tryReport(link)) return Ending::OnLink;
            }
            pop();
            hasTurn_ = false;
            left_.insert(link.target);
            // It does not lead on any more.
            if (link.property != none) place_.cascade = false;
            return goOn();
        }
        IndexedLink child = cursor.link();
        child.cascade = false;
        place_ = child;
        const bool isNew = !hasEntered(child.target);
        const bool isRefused = isNew && !leadsOn(child);
        if (isRefused) tell(child, LinkFate::NotDescended);
        if (!isNew || isRefused) {
            child.refused = !hasEntered(child.target);
            place_ = child;
            callbacks_->remember();
            push(child);
            if (isDepthFirst()) return goOn();
            continue;
        }
        child.cascade = true;
        NaiveCursor& entered = enter(child);
        place_ = child;
        push(child);
        if (isDepthFirst()) return goOn();
        entered.reportedSelf = true;
        if (tryReport(child)) return Ending::OnLink;
    }
    return Ending::Paused;
}

Ending NaiveWalk::startNextInput() {
    if (currentInput_ != none) notify(Event::ExitInput, currentInput_);
    if (nextInput_ == result_->inputs.size()) {
        current_ = IndexedLink();
        ended_ = true;
        return Ending::Ended;
    }
    currentInput_ = result_->inputs[nextInput_];
    ++nextInput_;
    notify(Event::EnterInput, currentInput_);
    callbacks_->remember();
    push(IndexedLink{none, none, currentInput_, true});
    inputWaits_ = true;
    place_ = top();
    return goOn();
}

bool NaiveWalk::leadsOn(const IndexedLink& link) {
    IndexedLink asked = link;
    asked.cascade = true;
    return std::all_of(result_->boundaries.begin(), result_->boundaries.end(),
                       [&](int boundary) { return callbacks_->boundary(boundary, asked); });
}

NaiveCursor& NaiveWalk::enter(const IndexedLink& link) {
    callbacks_->remember();
    NaiveCursor cursor;
    cursor.settings = std::make_shared<const std::vector<Setting>>();
    if (goesOnFrom(link)) {
        cursor.settings = result_->provider->settingsOf(classOf(link.target), *callbacks_);
    }
    cursor.element = link.target;
    cursor.hearers = result_->hearers;
    enteredBy_[link.target] = link;
    return cursors_.emplace(link.target, cursor).first->second;
}

bool NaiveWalk::tryReport(const IndexedLink& link) {
    if (link.isEmpty()) return false;
    if (link.property != none &&
        result_->provider->resultPolicy(classOf(link.source), link.property, *callbacks_) == 0) {
        tell(link, LinkFate::Silent);
        return false;
    }
    std::size_t filter = 0;
    const LinkFate fate = fateOf(link, filter);
    tell(link, fate, filter);
    if (fate != LinkFate::Reported) return false;
    current_ = link;
    return true;
}

LinkFate NaiveWalk::fateOf(const IndexedLink& link, std::size_t& filter) {
    if (!isUnseen(link)) return LinkFate::Repeated;
    if (result_->dropsPseudoLinks && link.property == none) return LinkFate::PseudoLinkLeftOut;
    for (filter = 0; filter < result_->filters.size(); ++filter) {
        if (callbacks_->filter(result_->filters[filter], link) == 0) return LinkFate::Filtered;
    }
    return LinkFate::Reported;
}

void NaiveWalk::tell(const IndexedLink& link, LinkFate fate, std::size_t filter) {
    for (std::size_t index = 0; index < result_->listeners.size(); ++index) {
        callbacks_->link(result_->listeners[index], link, fate, filter);
    }
}

bool NaiveWalk::isUnseen(const IndexedLink& link) {
    if (uniqueness_ == 0) return isUnseenWithOpposite(link);
    if (uniqueness_ != 1) return true;
    callbacks_->remember();
    return seenElements_.insert(link.target).second;
}

bool NaiveWalk::isUnseenWithOpposite(const IndexedLink& link) {
    callbacks_->remember();
    if (!seenLinks_.emplace(link.source, link.property, link.target).second) return false;
    if (link.property == none) return true;
    const int opposite = world_->properties[static_cast<std::size_t>(link.property)].opposite;
    if (opposite == none) return true;
    callbacks_->remember();
    return seenLinks_.emplace(link.target, opposite, link.source).second;
}

bool NaiveWalk::equals(const NaiveWalk& other) const {
    if (!result_ && !other.result_) return true;
    if (!result_) return other.ended_;
    if (!other.result_) return ended_;
    const bool sameFrontier = std::equal(
        frontier_.begin(), frontier_.end(), other.frontier_.begin(), other.frontier_.end(),
        [](const IndexedLink& a, const IndexedLink& b) { return a.isSameStep(b); });
    return result_ == other.result_ && nextInput_ == other.nextInput_ && sameFrontier &&
           current_.isSameStep(other.current_) && currentInput_ == other.currentInput_ &&
           ended_ == other.ended_;
}

Met NaiveWalk::meeting() const {
    if (place_.isEmpty()) return Met::None;
    if (place_.property == none) return Met::Input;
    if (place_.refused || !hasEntered(place_.target)) return Met::Boundary;
    if (place_.cascade) return Met::First;
    return left_.count(place_.target) == 0 ? Met::Open : Met::Done;
}

std::size_t NaiveWalk::depthOf(int element) const {
    const IndexedLink& link = enteredBy_.at(element);
    return link.property == none ? 0 : depthOf(link.source) + 1;
}

std::vector<IndexedLink> NaiveWalk::pathTo(int element) const {
    if (!hasEntered(element)) return {};
    const IndexedLink& link = enteredBy_.at(element);
    std::vector<IndexedLink> links;
    if (link.property != none) links = pathTo(link.source);
    links.push_back(link);
    return links;
}

std::vector<IndexedLink> NaiveWalk::path() const {
    if (place_.isEmpty()) return {};
    std::vector<IndexedLink> links;
    if (place_.property != none) links = pathTo(place_.source);
    links.push_back(place_);
    return links;
}

std::vector<IndexedLink> NaiveWalk::cycle() const {
    if (!result_ || !isDepthFirst() || meeting() != Met::Open) return {};
    std::vector<IndexedLink> links = {place_};
    while (links.front().source != place_.target) {
        links.insert(links.begin(), enteredBy_.at(links.front().source));
    }
    return links;
}

bool NaiveWalk::goesOnFrom(const IndexedLink& link) {
    if (!upTo_) return true;
    const std::size_t depth = link.property == none ? 0 : depthOf(link.source) + 1;
    if (depth < *upTo_ || distances_.count(link.target) != 0) near_.insert(link.target);
    return near_.count(link.target) != 0;
}

/// False when the budget is used up before all distances are known.
bool NaiveWalk::findDistances() {
    if (!needsDistances() || knowsDistances_) return true;
    while (*upTo_ != 0 && inputsTaken_ != result_->inputs.size()) {
        if (!spend()) return false;
        addAt(0, result_->inputs[inputsTaken_]);
        ++inputsTaken_;
    }
    for (; silent_ || nextFound_ != found_.size(); silent_.reset()) {
        if (!silent_) {
            const int element = found_[nextFound_];
            if (distances_.at(element) + 1 >= *upTo_) break;
            callbacks_->remember();
            NaiveCursor cursor;
            cursor.element = element;
            ++nextFound_;
            cursor.settings = result_->provider->settingsOf(classOf(element), *callbacks_);
            silent_ = cursor;
        }
        for (auto found = NaiveCursor::Step::Link; found != NaiveCursor::Step::Over;) {
            if (!spend()) return false;
            found = silent_->step(*world_, *callbacks_);
            if (found != NaiveCursor::Step::Link) continue;
            const IndexedLink link = silent_->link();
            const bool isKnown = link.target == none || distances_.count(link.target) != 0;
            if (!isKnown && leadsOn(link)) addAt(distances_.at(link.source) + 1, link.target);
        }
    }
    knowsDistances_ = true;
    return true;
}

void NaiveWalk::addAt(std::size_t distance, int element) {
    // Nothing leaves a null element.
    if (element == none || distances_.count(element) != 0) return;
    callbacks_->remember();
    distances_[element] = distance;
    found_.push_back(element);
}

/// Cut only where something was left to be looked at: further values, or properties to come,
/// whether they have values or not.
Cutting NaiveWalk::cutAllChildren() {
    callbacks_->remember();
    if (!hasEntered(current_.target)) return Cutting::Nothing;
    NaiveCursor& cursor = cursors_.at(current_.target);
    // Of a null element, nothing but its events is left out.
    const Cutting otherwise = current_.target == none ? Cutting::Nothing : Cutting::TooLate;
    if (cursor.finished) return otherwise;
    const bool isReading = cursor.inProperty && !cursor.values.empty();
    const std::size_t toCome = cursor.propertyIndex + (isReading ? 1 : 0);
    const bool hasMore = toCome < cursor.settings->size() ||
                         (isReading && cursor.valueIndex + 1 < cursor.values.size());
    cursor.finished = true;
    return hasMore ? Cutting::Cut : otherwise;
}

Cutting NaiveWalk::cutChildren(int property) {
    callbacks_->remember();
    if (!hasEntered(current_.target)) return Cutting::Nothing;
    NaiveCursor& cursor = cursors_.at(current_.target);
    const bool isFollowed = result_->provider->isFollowed(classOf(current_.target), property);
    const Cutting otherwise = isFollowed ? Cutting::TooLate : Cutting::Nothing;
    if (cursor.finished) return otherwise;
    const bool isOnProperty = cursor.inProperty || !cursor.started;
    if (isOnProperty && cursor.isAtProperty() && cursor.property() == property) {
        return cursor.pruneCurrentProperty();
    }
    const bool isNew = cursor.prunedProperties.insert(property).second;
    for (std::size_t index = cursor.propertyIndex; index < cursor.settings->size(); ++index) {
        if (isNew && cursor.settings->at(index).property == property) {
            return Cutting::Cut;
        }
    }
    return otherwise;
}

Cutting NaiveWalk::pruneSiblings() {
    callbacks_->remember();
    if (current_.source == none) return tell(2, none, Cutting::Nothing);
    NaiveCursor& cursor = cursors_.at(current_.source);
    const bool isAtProperty = left_.count(current_.source) == 0 && cursor.isAtProperty();
    const int property = isAtProperty ? cursor.property() : none;
    return tell(2, property, cursor.pruneCurrentProperty());
}

Cutting NaiveWalk::pruneAllChildren() {
    return tell(0, none, cutAllChildren());
}

Cutting NaiveWalk::pruneChildren(int property) {
    return tell(1, property, cutChildren(property));
}

Cutting NaiveWalk::tell(int pruning, int property, Cutting cutting) {
    wasCut_ = wasCut_ || cutting == Cutting::Cut;
    if (!result_) return cutting;
    const ToldPrune prune{pruning, property, static_cast<int>(cutting)};
    for (std::size_t index = 0; index < result_->listeners.size(); ++index) {
        callbacks_->prune(result_->listeners[index], current_, prune);
    }
    return cutting;
}

void NaiveWalk::notify(Event event, int element) {
    for (const Hearer& hearer : result_->hearers) {
        if (!hearer.only || *hearer.only == event)
            callbacks_->event(hearer.index, event, element, none);
    }
}

int NaiveWalk::classOf(int element) const {
    return element == none ? none : world_->elements[static_cast<std::size_t>(element)];
}

}  // namespace nuv::zero::oracle
