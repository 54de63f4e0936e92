#pragma once

#include <deque>
#include <functional>
#include <map>
#include <memory>
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

    /// REQUIRES: provider and observer outlive the walk.
    PlainWalk(traversal::PropertyProvider& provider, traversal::TraversalProcessor* observer,
              std::vector<ModelElement> inputs, std::vector<Filter> filters, traversal::Algo order)
        : provider_(provider),
          observer_(observer),
          inputs_(std::move(inputs)),
          filters_(std::move(filters)),
          order_(order) {}

    const Link& getCurrent() const { return current_; }
    bool atEnd() const { return ended_; }

    void advance() {
        for (;;) {
            if (frontier_.empty() && !startNextInput()) return;
            if (handleTop()) return;
        }
    }

  private:
    struct Cursor {
        ModelElement element;
        std::shared_ptr<std::vector<traversal::AssociationSetting>> settings;
        bool reportedSelf = false, started = false, finished = false, exitNotified = false;
        std::size_t propertyIndex = 0;
        std::vector<ModelElement> values;
        std::size_t valueIndex = beforeFirst;
    };
    static constexpr std::size_t beforeFirst = static_cast<std::size_t>(-1);

    bool isBreadthFirst() const { return order_ == traversal::Algo::BreadthFirst; }
    bool selfComesFirst() const { return order_ != traversal::Algo::DepthFirstPostOrder; }
    Link top() const { return isBreadthFirst() ? frontier_.front() : frontier_.back(); }
    void pop() { isBreadthFirst() ? frontier_.pop_front() : frontier_.pop_back(); }
    bool isEntered(const ModelElement& element) const { return cursors_.count(element.get()) != 0; }

    Cursor& enter(const Link& link) {
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
        if (selfComesFirst() && !cursor.reportedSelf) {
            cursor.reportedSelf = true;
            if (tryReport(link)) return true;
        }
        while (!processedAll(cursor)) {
            Link child = step(cursor);
            if (!child) continue;
            if (isEntered(child.getTarget())) {
                child.setNoCascade();
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
        for (const Filter& filter : filters_) {
            if (filter(link) == ResultPolicy::WalkOnly) return false;
        }
        current_ = link;
        return true;
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
            cursor.values = elementsIn(cursor.element, property);
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
    std::deque<Link> frontier_;
    std::map<const void*, Cursor> cursors_;
    std::size_t nextInput_ = 0;
    Link current_;
    ModelElement currentInput_;
    bool ended_ = false;
};

}  // namespace nuv::zero::test
