#include "tests/oracle/NaiveWalk.h"

#include <algorithm>
#include <utility>

namespace nuv::zero::oracle {

NaiveWalk::NaiveWalk(const PlainWorld& world, Callbacks& callbacks,
                     std::shared_ptr<NaiveResult> result)
    : world_(&world),
      callbacks_(&callbacks),
      result_(std::move(result)),
      uniqueness_(result_->uniqueness) {
    advance();
}

void NaiveWalk::advance() {
    if (!result_) return;
    if (frontier_.empty()) return startNextInput();
    const IndexedLink link = top();
    if (!link.cascade) {
        pop();
        if (tryReport(link)) return;
        return advance();
    }

    if (!hasEntered(link.target)) enter(link);
    NaiveCursor& cursor = cursors_.at(link.target);
    if (!cursor.started) callbacks_->remember();
    if (result_->algo != 1 && !cursor.reportedSelf) {
        cursor.reportedSelf = true;
        if (tryReport(link)) return;
    }

    while (!processedAll(cursor)) {
        IndexedLink child = next(cursor);
        if (child.isEmpty()) continue;
        if (hasEntered(child.target)) {
            child.cascade = false;
            callbacks_->remember();
            push(child);
            if (isDepthFirst()) return advance();
            continue;
        }
        NaiveCursor& entered = enter(child);
        push(child);
        if (isDepthFirst()) return advance();
        entered.reportedSelf = true;
        if (tryReport(child)) return;
    }

    if (!cursor.reportedSelf) {
        cursor.reportedSelf = true;
        if (tryReport(link)) return;
    }
    pop();
    advance();
}

void NaiveWalk::startNextInput() {
    if (currentInput_ != none) notify(result_->observer, Event::ExitInput, currentInput_);
    if (nextInput_ == result_->inputs.size()) {
        current_ = IndexedLink();
        return;
    }
    currentInput_ = result_->inputs[nextInput_];
    ++nextInput_;
    notify(result_->observer, Event::EnterInput, currentInput_);
    callbacks_->remember();
    push(IndexedLink{none, none, currentInput_, true});
    advance();
}

NaiveCursor& NaiveWalk::enter(const IndexedLink& link) {
    callbacks_->remember();
    const Settings settings = result_->provider->settingsOf(classOf(link.target), *callbacks_);
    NaiveCursor cursor;
    cursor.element = link.target;
    cursor.observer = result_->observer;
    cursor.settings = settings;
    return cursors_.emplace(link.target, cursor).first->second;
}

bool NaiveWalk::tryReport(const IndexedLink& link) {
    if (link.isEmpty()) return false;
    if (link.property != none &&
        result_->provider->resultPolicy(classOf(link.source), link.property, *callbacks_) == 0) {
        return false;
    }
    if (!isUnseen(link) || !passesFilters(link)) return false;
    current_ = link;
    return true;
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

bool NaiveWalk::passesFilters(const IndexedLink& link) {
    if (result_->dropsPseudoLinks && link.property == none) return false;
    return std::all_of(result_->filters.begin(), result_->filters.end(),
                       [&](int filter) { return callbacks_->filter(filter, link) != 0; });
}

bool NaiveWalk::equals(const NaiveWalk& other) const {
    if (!result_ && !other.result_) return true;
    if (!result_) return other.current_.isEmpty();
    if (!other.result_) return current_.isEmpty();
    const bool sameFrontier = std::equal(
        frontier_.begin(), frontier_.end(), other.frontier_.begin(), other.frontier_.end(),
        [](const IndexedLink& a, const IndexedLink& b) { return a.isSameStep(b); });
    return result_ == other.result_ && nextInput_ == other.nextInput_ && sameFrontier &&
           current_.isSameStep(other.current_) && currentInput_ == other.currentInput_;
}

void NaiveWalk::pruneAllChildren() {
    callbacks_->remember();
    const auto entry = cursors_.find(current_.target);
    if (entry == cursors_.end() || entry->second.finished) return;
    entry->second.finished = true;
    entry->second.propertyIndex = entry->second.settings->size();
}

void NaiveWalk::pruneChildren(int property) {
    callbacks_->remember();
    const auto entry = cursors_.find(current_.target);
    if (entry == cursors_.end() || entry->second.finished) return;
    NaiveCursor& cursor = entry->second;
    if (isAtProperty(cursor) && propertyOf(cursor) == property) {
        pruneCurrentProperty(cursor);
    } else {
        cursor.prunedProperties.insert(property);
    }
}

void NaiveWalk::pruneSiblings() {
    callbacks_->remember();
    const auto entry = cursors_.find(current_.source);
    if (entry != cursors_.end()) pruneCurrentProperty(entry->second);
}

void NaiveWalk::pruneCurrentProperty(NaiveCursor& cursor) {
    if (cursor.finished) return;
    if (cursor.started) {
        cursor.valueIndex = cursor.values.size();
    } else {
        ++cursor.propertyIndex;
    }
}

IndexedLink NaiveWalk::next(NaiveCursor& cursor) {
    if (!cursor.started && !cursor.finished) {
        notify(cursor.observer, Event::EnterElement, cursor.element);
        cursor.started = true;
        loadProperty(cursor);
    }
    moveOn(cursor);
    if (cursor.finished) return IndexedLink();
    return IndexedLink{cursor.element, propertyOf(cursor), cursor.values.at(cursor.valueIndex),
                       true};
}

void NaiveWalk::moveOn(NaiveCursor& cursor) {
    if (cursor.finished) return;
    ++cursor.valueIndex;
    if (cursor.valueIndex < cursor.values.size()) return;
    notify(cursor.observer, Event::ExitProperty, cursor.element, propertyOf(cursor));
    ++cursor.propertyIndex;
    loadProperty(cursor);
    ++cursor.valueIndex;
}

void NaiveWalk::loadProperty(NaiveCursor& cursor) {
    for (;; ++cursor.propertyIndex) {
        cursor.values.clear();
        if (!isAtProperty(cursor)) {
            cursor.finished = true;
            return;
        }
        const int property = propertyOf(cursor);
        notify(cursor.observer, Event::EnterProperty, cursor.element, property);
        if (cursor.prunedProperties.count(property) == 0) {
            callbacks_->remember();
            cursor.values = read(cursor.element, property);
        }
        if (!cursor.values.empty()) {
            cursor.valueIndex = static_cast<std::size_t>(-1);
            return;
        }
        notify(cursor.observer, Event::ExitProperty, cursor.element, property);
    }
}

std::vector<int> NaiveWalk::read(int element, int property) const {
    using Payload = ValueDefinition::Payload;
    const bool single = world_->properties[static_cast<std::size_t>(property)].upperBound == 1;
    const auto stored = world_->values.find({element, property});
    if (stored == world_->values.end()) {
        const int type = world_->properties[static_cast<std::size_t>(property)].type;
        // Never set: unset, or an empty collection of the declared type.
        if (single || type >= 0) return {};
        throw ReadFailure{type};
    }
    const ValueDefinition& value = stored->second;
    if (!single) {
        if (!value.many || value.type < 0 || value.payload == Payload::Nothing) {
            throw ReadFailure{value.type};
        }
        return value.elements;
    }
    if (value.payload == Payload::Nothing) return {};
    if (value.many || value.type < 0) throw ReadFailure{value.type};
    if (value.elements.front() == none) return {};
    return value.elements;
}

bool NaiveWalk::processedAll(NaiveCursor& cursor) {
    if (!cursor.finished) return false;
    if (cursor.started && !cursor.exitNotified) {
        cursor.exitNotified = true;
        notify(cursor.observer, Event::ExitElement, cursor.element);
    }
    return true;
}

void NaiveWalk::notify(int observer, Event event, int element, int property) {
    if (observer != none) callbacks_->event(observer, event, element, property);
}

int NaiveWalk::classOf(int element) const {
    return element == none ? none : world_->elements[static_cast<std::size_t>(element)];
}

}  // namespace nuv::zero::oracle
