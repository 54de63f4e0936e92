// The annotated walk of docs/how-it-works.md, and its odd cases.
#include <gtest/gtest.h>

#include <ostream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "model/memory/Model.h"
#include "traversal/Traversal.h"

namespace {

using namespace nuv::zero;
using namespace nuv::zero::traversal;

using Lines = std::vector<std::string>;

std::string nameOf(const ModelElement& element) {
    if (!element) return "null";
    const meta::Property name = access::propertyNamed(access::classOf(element), u"name");
    return access::toUtf8(access::toString(access::read(element, name)));
}
std::string nameOf(const meta::Property& property) {
    return access::toUtf8(access::nameOf(property));
}

/// Writes down what happens, and throws once where it is told to.
class TranscriptRecorder : public TraversalProcessor {
  public:
    explicit TranscriptRecorder(std::string throwAt = {}) : throwAt_(std::move(throwAt)) {}

    void onEnterInputElement(const ModelElement& element) override {
        write("onEnterInputElement(" + nameOf(element) + ")");
    }
    void onEnterElement(const ModelElement& element) override {
        write("onEnterElement(" + nameOf(element) + ")");
    }
    void onEnterProperty(const ModelElement& element, const meta::Property& property) override {
        write("onEnterProperty(" + nameOf(element) + ", " + nameOf(property) + ")");
    }
    void onExitProperty(const ModelElement& element, const meta::Property& property) override {
        write("onExitProperty(" + nameOf(element) + ", " + nameOf(property) + ")");
    }
    void onExitElement(const ModelElement& element) override {
        write("onExitElement(" + nameOf(element) + ")");
    }
    void onExitInputElement(const ModelElement& element) override {
        write("onExitInputElement(" + nameOf(element) + ")");
    }

    /// Steps on, over exceptions, and writes down the links.
    Lines record(const std::shared_ptr<TraversalResult>& result) {
        ResultSetup(result).observe(this);
        auto walk = links(result);
        auto position = walk.begin();
        while (position != walk.end()) {
            writeLink(*position);
            step(position);
        }
        return lines_;
    }
    void writeLink(const Link& link) {
        lines_.push_back(link.getProperty()
                             ? "report " + nameOf(link.getSource()) + "->" +
                                   nameOf(link.getTarget())
                             : "report the pseudo-link of " + nameOf(link.getTarget()));
    }
    const Lines& lines() const { return lines_; }

  private:
    void write(const std::string& event) {
        lines_.push_back(event);
        if (event == throwAt_) {
            throwAt_.clear();
            throw std::runtime_error(event);
        }
    }
    void step(LinkRange::iterator& position) {
        while (true) {
            try {
                ++position;
                return;
            } catch (const std::runtime_error&) {
                lines_.emplace_back("exception");
            }
        }
    }

    std::string throwAt_;
    Lines lines_;
};

/// A -> B, A -> C, B -> D, all by way of p.
struct HowItWorks : testing::Test {
    memory::Metamodel metamodel{u"m"};
    meta::Class node = metamodel.addClass(u"Node");
    meta::Property name = metamodel.addProperty(node, u"name", meta::StandardTypes::stringMeta());
    meta::Property p = metamodel.addProperty(node, u"p", node, memory::unbounded,
                                             memory::PropertyFlags::Association);
    memory::Model model;
    ModelElement a = model.create(node, u"A");
    ModelElement b = model.create(node, u"B");
    ModelElement c = model.create(node, u"C");
    ModelElement d = model.create(node, u"D");
    HowItWorks() {
        model.set(a, p, {b, c});
        model.add(b, p, d);
    }
};

TEST_F(HowItWorks, DepthFirstBracketsNest) {
    EXPECT_EQ(TranscriptRecorder().record(Spec::subtractiveTraversal()->depthFirst({a})),
              (Lines{"onEnterInputElement(A)",
                     "report the pseudo-link of A",
                     "onEnterElement(A)",
                     "onEnterProperty(A, p)",
                     "report A->B",
                     "onEnterElement(B)",
                     "onEnterProperty(B, p)",
                     "report B->D",
                     "onEnterElement(D)",
                     "onEnterProperty(D, p)",
                     "onExitProperty(D, p)",
                     "onExitElement(D)",
                     "onExitProperty(B, p)",
                     "onExitElement(B)",
                     "report A->C",
                     "onEnterElement(C)",
                     "onEnterProperty(C, p)",
                     "onExitProperty(C, p)",
                     "onExitElement(C)",
                     "onExitProperty(A, p)",
                     "onExitElement(A)",
                     "onExitInputElement(A)"}));
}

TEST_F(HowItWorks, BreadthFirstBracketsFollowOneAnother) {
    EXPECT_EQ(TranscriptRecorder().record(Spec::subtractiveTraversal()->breadthFirst({a})),
              (Lines{"onEnterInputElement(A)",
                     "report the pseudo-link of A",
                     "onEnterElement(A)",
                     "onEnterProperty(A, p)",
                     "report A->B",
                     "report A->C",
                     "onExitProperty(A, p)",
                     "onExitElement(A)",
                     "onEnterElement(B)",
                     "onEnterProperty(B, p)",
                     "report B->D",
                     "onExitProperty(B, p)",
                     "onExitElement(B)",
                     "onEnterElement(C)",
                     "onEnterProperty(C, p)",
                     "onExitProperty(C, p)",
                     "onExitElement(C)",
                     "onEnterElement(D)",
                     "onEnterProperty(D, p)",
                     "onExitProperty(D, p)",
                     "onExitElement(D)",
                     "onExitInputElement(A)"}));
}

TEST_F(HowItWorks, TheLastInputIsLeftAgainByEachStepPastTheEnd) {
    const auto result = Spec::additiveTraversal()->depthFirst({a});
    TranscriptRecorder recorder;
    ResultSetup(result).observe(&recorder);
    auto walk = result->begin();
    for (int step = 0; step < 3; ++step) walk.advance();
    EXPECT_EQ(recorder.lines(),
              (Lines{"onEnterInputElement(A)", "onEnterElement(A)", "onExitElement(A)",
                     "onExitInputElement(A)", "onExitInputElement(A)", "onExitInputElement(A)"}));
}

TEST_F(HowItWorks, AnInputEnteredBeforeHasInputEventsOnly) {
    EXPECT_EQ(TranscriptRecorder().record(Spec::additiveTraversal()->depthFirst({a, a})),
              (Lines{"onEnterInputElement(A)", "report the pseudo-link of A", "onEnterElement(A)",
                     "onExitElement(A)", "onExitInputElement(A)", "onEnterInputElement(A)",
                     "onExitInputElement(A)"}));
}

TEST_F(HowItWorks, ANullInputIsEnteredButNeitherReportedNorLeft) {
    EXPECT_EQ(
        TranscriptRecorder().record(Spec::subtractiveTraversal()->depthFirst({ModelElement(), d})),
        (Lines{"onEnterInputElement(null)", "onEnterElement(null)", "onExitElement(null)",
               "onEnterInputElement(D)", "report the pseudo-link of D", "onEnterElement(D)",
               "onEnterProperty(D, p)", "onExitProperty(D, p)", "onExitElement(D)",
               "onExitInputElement(D)"}));
}

TEST_F(HowItWorks, AnElementPrunedBeforeItsTurnHasNoEvents) {
    const auto result = Spec::subtractiveTraversal()->depthFirst({b});
    TranscriptRecorder recorder;
    ResultSetup(result).observe(&recorder);
    auto walk = links(result);
    for (const Link& link : walk) {
        recorder.writeLink(link);
        if (link.getTarget() == d) walk.pruneAllChildren();
    }
    EXPECT_EQ(recorder.lines(),
              (Lines{"onEnterInputElement(B)", "report the pseudo-link of B", "onEnterElement(B)",
                     "onEnterProperty(B, p)", "report B->D", "onExitProperty(B, p)",
                     "onExitElement(B)", "onExitInputElement(B)"}));
}

TEST_F(HowItWorks, APruneOnABackEdgeEndsTheAncestorInMidProperty) {
    model.set(d, p, {b, c});
    const auto result = Spec::subtractiveTraversal()->depthFirst({b});
    TranscriptRecorder recorder;
    ResultSetup(result).observe(&recorder);
    auto walk = links(result);
    for (const Link& link : walk) {
        recorder.writeLink(link);
        if (!link.shouldCascade()) walk.pruneAllChildren();
    }
    EXPECT_EQ(
        recorder.lines(),
        (Lines{"onEnterInputElement(B)", "report the pseudo-link of B", "onEnterElement(B)",
               "onEnterProperty(B, p)", "report B->D", "onEnterElement(D)", "onEnterProperty(D, p)",
               "report D->B", "report D->C", "onEnterElement(C)", "onEnterProperty(C, p)",
               "onExitProperty(C, p)", "onExitElement(C)", "onExitProperty(D, p)",
               "onExitElement(D)", "onExitElement(B)", "onExitInputElement(B)"}));
}

TEST_F(HowItWorks, AnObserverAttachedInMidWalkHearsOfElementsEnteredLater) {
    const auto result = Spec::subtractiveTraversal()->depthFirst({a});
    TranscriptRecorder recorder;
    auto walk = links(result);
    for (const Link& link : walk) {
        if (link.getTarget() == b) ResultSetup(result).observe(&recorder);
    }
    EXPECT_EQ(recorder.lines(),
              (Lines{"onEnterElement(D)", "onEnterProperty(D, p)", "onExitProperty(D, p)",
                     "onExitElement(D)", "onEnterElement(C)", "onEnterProperty(C, p)",
                     "onExitProperty(C, p)", "onExitElement(C)", "onExitInputElement(A)"}));
}

/// An observer that throws at one event, and the events of the steps that follow.
struct ObserverFailure {
    std::string event;
    Lines whatFollows;

    friend void PrintTo(const ObserverFailure& failure, std::ostream* out) {
        *out << failure.event;
    }
};
class HowItWorksAfterAFailingEvent : public HowItWorks,
                                     public testing::WithParamInterface<ObserverFailure> {};

TEST_P(HowItWorksAfterAFailingEvent, TheWalkGoesOn) {
    Lines lines = TranscriptRecorder(GetParam().event)
                      .record(Spec::subtractiveTraversal()->depthFirst({c, d}));
    while (!lines.empty() && lines.front() != "exception") lines.erase(lines.begin());
    EXPECT_EQ(lines, GetParam().whatFollows);
}

INSTANTIATE_TEST_SUITE_P(
    Events, HowItWorksAfterAFailingEvent,
    testing::Values(
        ObserverFailure{"onEnterInputElement(D)", {"exception", "onExitInputElement(D)"}},
        ObserverFailure{"onEnterElement(D)",
                        {"exception", "onEnterElement(D)", "onEnterProperty(D, p)",
                         "onExitProperty(D, p)", "onExitElement(D)", "onExitInputElement(D)"}},
        ObserverFailure{
            "onEnterProperty(D, p)",
            {"exception", "onExitProperty(D, p)", "onExitElement(D)", "onExitInputElement(D)"}},
        ObserverFailure{
            "onExitProperty(D, p)",
            {"exception", "onExitProperty(D, p)", "onExitElement(D)", "onExitInputElement(D)"}},
        ObserverFailure{"onExitElement(D)", {"exception", "onExitInputElement(D)"}},
        ObserverFailure{"onExitInputElement(D)", {"exception", "onExitInputElement(D)"}}),
    [](const auto& failure) {
        return failure.param.event.substr(0, failure.param.event.find('('));
    });

}  // namespace
