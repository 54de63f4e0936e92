#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/Orders.h"
#include "traversal/Traversal.h"

/// Walks written down as lines of text, so that a test compares a whole walk as one value.
namespace nuv::zero::test {

using Lines = std::vector<std::string>;

/// The name of an element, as in `A`.
inline std::string text(const ModelElement& element) {
    if (!element) return "null";
    const meta::Property name = access::propertyNamed(access::classOf(element), u"name");
    return name ? access::toUtf8(access::toString(access::read(element, name))) : "?";
}

/// A link as `A.kids>B`; `>B` is a pseudo-link, `A.kids>B!` does not cascade, `-` is the empty
/// link.
inline std::string text(const traversal::Link& link) {
    if (!link) return "-";
    std::string line;
    if (link.getSource() || link.getProperty()) line = text(link.getSource());
    if (link.getProperty()) line += "." + access::toUtf8(access::nameOf(link.getProperty()));
    line += ">" + text(link.getTarget());
    if (!link.shouldCascade()) line += "!";
    return line;
}

/// What is left of a walk, link by link.
inline Lines rest(traversal::TraversalResult::IterationContext& walk) {
    Lines lines;
    for (; !!walk.getCurrent(); walk.advance()) lines.push_back(text(walk.getCurrent()));
    return lines;
}

/// A whole walk, link by link.
inline Lines linesOf(const std::shared_ptr<traversal::TraversalResult>& result) {
    Lines lines;
    for (const traversal::Link& link : traversal::links(result)) lines.push_back(text(link));
    return lines;
}

/// Writes events down: `input A`, `enter A`, `enter A.kids`, `exit A.kids`, `exit A`, `done A`.
class EventLog : public traversal::TraversalProcessor {
  public:
    explicit EventLog(Lines& lines) : lines_(lines) {}

    void onEnterInputElement(const ModelElement& element) override {
        note("input " + text(element));
    }
    void onEnterElement(const ModelElement& element) override { note("enter " + text(element)); }
    void onEnterProperty(const ModelElement& element, const meta::Property& property) override {
        note("enter " + text(element) + "." + access::toUtf8(access::nameOf(property)));
    }
    void onExitProperty(const ModelElement& element, const meta::Property& property) override {
        note("exit " + text(element) + "." + access::toUtf8(access::nameOf(property)));
    }
    void onExitElement(const ModelElement& element) override { note("exit " + text(element)); }
    void onExitInputElement(const ModelElement& element) override { note("done " + text(element)); }

  protected:
    virtual void note(std::string line) { lines_.push_back(std::move(line)); }

  private:
    Lines& lines_;
};

/// A whole walk, links and events alike.
inline Lines transcript(const std::shared_ptr<traversal::TraversalResult>& result) {
    Lines lines;
    EventLog log(lines);
    traversal::ResultSetup(result).observe(&log);
    for (const traversal::Link& link : traversal::links(result)) lines.push_back(text(link));
    traversal::ResultSetup(result).observe(nullptr);
    return lines;
}

}  // namespace nuv::zero::test
