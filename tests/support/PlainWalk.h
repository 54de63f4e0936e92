#pragma once

#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <tuple>
#include <utility>
#include <vector>

#include "tests/support/Handles.h"
#include "traversal/Traversal.h"

namespace nuv::zero::test {

/// The walk written down plainly, step by step, with a cursor kept for every element entered and a
/// frontier of counted links: what the engine has to look like from outside, failures included.
///
/// Slow on purpose and free of the engine's parts. Tests run it and the engine side by side.
class PlainWalk {
  public:
    using Link = traversal::Link;
    using Filter = std::function<traversal::ResultPolicy(Link)>;
    using Mode = traversal::UniquenessMode;

    /// `mayFail` is called wherever a walk has to remember something, which is where memory may
    /// run out. REQUIRES: provider and observer outlive the walk.
    PlainWalk(
        traversal::PropertyProvider& provider, traversal::TraversalProcessor* observer,
        std::vector<ModelElement> inputs, std::vector<Filter> filters, traversal::Algo order,
        Mode uniqueness = Mode::NoUniqueness, std::function<void()> mayFail = [] {})
        : provider_(provider),
          observer_(observer),
          inputs_(std::move(inputs)),
          filters_(std::move(filters)),
          order_(order),
          uniqueness_(uniqueness),
          mayFail_(std::move(mayFail)) {}

    const Link& getCurrent() const { return current_; }
    bool atEnd() const { return ended_; }

    void advance() {
        for (;;) {
            if (frontier_.empty() && !startNextInput()) return;
            if (handleTop()) return;
        }
    }

    void pruneAllChildren() {
        mayFail_();
        if (Cursor* cursor = unfinished(current_.getTarget())) {
            cursor->finished = true;
            cursor->propertyIndex = cursor->settings->size();
        }
    }
    void pruneChildren(const meta::Property& property) {
        mayFail_();
        Cursor* cursor = unfinished(current_.getTarget());
        if (cursor == nullptr) return;
        if (cursor->propertyIndex < cursor->settings->size() && propertyOf(*cursor) == property) {
            pruneCurrentProperty(*cursor);
        } else {
            cursor->pruned.insert(property.get());
        }
    }
    void pruneSiblings() {
        mayFail_();
        if (Cursor* cursor = unfinished(current_.getSource())) pruneCurrentProperty(*cursor);
    }

  private:
    struct Cursor {
        ModelElement element;
        std::shared_ptr<std::vector<traversal::AssociationSetting>> settings;
        bool reportedSelf = false, started = false, finished = false, exitNotified = false;
        std::size_t propertyIndex = 0;
        std::vector<ModelElement> values;
        std::size_t valueIndex = beforeFirst;
        std::set<const void*> pruned;
    };
    using LinkKey = std::tuple<const void*, const void*, const void*>;
    static constexpr std::size_t beforeFirst = static_cast<std::size_t>(-1);

    bool isBreadthFirst() const { return order_ == traversal::Algo::BreadthFirst; }
    bool selfComesFirst() const { return order_ != traversal::Algo::DepthFirstPostOrder; }
    Link top() const { return isBreadthFirst() ? frontier_.front() : frontier_.back(); }
    void pop() { isBreadthFirst() ? frontier_.pop_front() : frontier_.pop_back(); }
    bool isEntered(const ModelElement& element) const { return cursors_.count(element.get()) != 0; }

    Cursor* unfinished(const ModelElement& element) {
        const auto found = cursors_.find(element.get());
        return found == cursors_.end() || found->second.finished ? nullptr : &found->second;
    }
    static void pruneCurrentProperty(Cursor& cursor) {
        if (cursor.started) {
            cursor.valueIndex = cursor.values.size();
        } else if (cursor.propertyIndex < cursor.settings->size()) {
            ++cursor.propertyIndex;
        }
    }

    Cursor& enter(const Link& link) {
        mayFail_();
        Cursor cursor;
        cursor.element = link.getTarget();
        cursor.settings = provider_.getPropertiesToTraverse(link.getTarget());
        return cursors_.emplace(link.getTarget().get(), std::move(cursor)).first->second;
    }

    bool startNextInput() {
        if (observer_ != nullptr && currentInput_) observer_->onExitInputElement(currentInput_);
        if (nextInput_ == inputs_.size()) {
            current_ = Link::empty();
            ended_ = true;
            return false;
        }
        currentInput_ = inputs_[nextInput_];
        ++nextInput_;
        if (observer_ != nullptr) observer_->onEnterInputElement(currentInput_);
        mayFail_();
        frontier_.emplace_back(ModelElement(), currentInput_, meta::Property());
        return true;
    }

    /// True when a link was reported.
    bool handleTop() {
        const Link link = top();
        if (!link.shouldCascade()) {
            pop();
            return tryReport(link);
        }
        if (!isEntered(link.getTarget())) enter(link);
        Cursor& cursor = cursors_.at(link.getTarget().get());
        if (!cursor.started) mayFail_();
        if (selfComesFirst() && !cursor.reportedSelf) {
            cursor.reportedSelf = true;
            if (tryReport(link)) return true;
        }
        while (!processedAll(cursor)) {
            Link child = step(cursor);
            if (!child) continue;
            if (isEntered(child.getTarget())) {
                child.setNoCascade();
                mayFail_();
                frontier_.push_back(child);
                if (!isBreadthFirst()) return false;
                continue;
            }
            Cursor& entered = enter(child);
            frontier_.push_back(child);
            if (!isBreadthFirst()) return false;
            entered.reportedSelf = true;
            if (tryReport(child)) return true;
        }
        if (!cursor.reportedSelf) {
            cursor.reportedSelf = true;
            if (tryReport(link)) return true;
        }
        pop();
        return false;
    }

    bool tryReport(const Link& link) {
        using traversal::ResultPolicy;
        if (!link) return false;
        if (link.getProperty() &&
            provider_.getResultPolicy(access::classOf(link.getSource()), link.getProperty()) ==
                ResultPolicy::WalkOnly) {
            return false;
        }
        if (isRepeat(link)) return false;
        for (const Filter& filter : filters_) {
            if (filter(link) == ResultPolicy::WalkOnly) return false;
        }
        current_ = link;
        return true;
    }

    /// Remembers the link by the way.
    bool isRepeat(const Link& link) {
        switch (uniqueness_) {
            case Mode::UniqueElements:
                mayFail_();
                return !seenElements_.insert(link.getTarget().get()).second;
            case Mode::UniqueLinks: {
                mayFail_();
                if (!seenLinks_.insert(keyOf(link)).second) return true;
                const std::optional<Link> opposite = link.getOpposite();
                if (!opposite) return false;
                mayFail_();
                return !seenLinks_.insert(keyOf(*opposite)).second;
            }
            case Mode::NoUniqueness:
                break;
        }
        return false;
    }
    static LinkKey keyOf(const Link& link) {
        return {link.getSource().get(), link.getTarget().get(), link.getProperty().get()};
    }

    static meta::Property propertyOf(Cursor& cursor) {
        return (*cursor.settings)[cursor.propertyIndex].getProperty();
    }

    Link step(Cursor& cursor) {
        if (!cursor.started && !cursor.finished) {
            if (observer_ != nullptr) observer_->onEnterElement(cursor.element);
            cursor.started = true;
            load(cursor);
        }
        if (!cursor.finished && ++cursor.valueIndex >= cursor.values.size()) {
            if (observer_ != nullptr) observer_->onExitProperty(cursor.element, propertyOf(cursor));
            ++cursor.propertyIndex;
            load(cursor);
            ++cursor.valueIndex;
        }
        if (cursor.finished) return Link::empty();
        return {cursor.element, cursor.values[cursor.valueIndex], propertyOf(cursor)};
    }

    void load(Cursor& cursor) {
        for (;; ++cursor.propertyIndex) {
            cursor.values.clear();
            if (cursor.propertyIndex >= cursor.settings->size()) {
                cursor.finished = true;
                return;
            }
            const meta::Property property = propertyOf(cursor);
            if (observer_ != nullptr) observer_->onEnterProperty(cursor.element, property);
            if (cursor.pruned.count(property.get()) == 0) {
                mayFail_();
                cursor.values = elementsIn(cursor.element, property);
            }
            if (!cursor.values.empty()) {
                cursor.valueIndex = beforeFirst;
                return;
            }
            if (observer_ != nullptr) observer_->onExitProperty(cursor.element, property);
        }
    }

    bool processedAll(Cursor& cursor) {
        if (!cursor.finished) return false;
        if (cursor.started && !cursor.exitNotified) {
            cursor.exitNotified = true;
            if (observer_ != nullptr) observer_->onExitElement(cursor.element);
        }
        return true;
    }

    traversal::PropertyProvider& provider_;
    traversal::TraversalProcessor* observer_;
    std::vector<ModelElement> inputs_;
    std::vector<Filter> filters_;
    traversal::Algo order_;
    Mode uniqueness_;
    std::function<void()> mayFail_;
    std::deque<Link> frontier_;
    std::map<const void*, Cursor> cursors_;
    std::set<const void*> seenElements_;
    std::set<LinkKey> seenLinks_;
    std::size_t nextInput_ = 0;
    Link current_;
    ModelElement currentInput_;
    bool ended_ = false;
};

}  // namespace nuv::zero::test
