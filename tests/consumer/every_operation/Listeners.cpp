#include <string>
#include <utility>
#include <vector>

#include "Consumer.h"
#include "traversal/Traversal.h"

namespace nuv_consumer {

namespace {

using namespace nuv::zero::traversal;

/// Asks everything that a walk tells a listener, and does what the class that it derives from does.
class AskingListener : public WalkListener {
  public:
    void onLink(const WalkView& walk, const Link& link, Fate fate, std::size_t filter) override {
        ++links;
        const ModelElement& target = link.getTarget();
        expect(walk.number() == 1 && walk.result() == result &&
                   walk.depth() + 1 == walk.path().size() &&
                   walk.pathTo(target).size() == walk.path().size() && walk.cycle().empty() &&
                   walk.hasEntered(target) && walk.enteredCount() > 0 && walk.waitingCount() > 0 &&
                   walk.meeting() != Meeting::None && walk.bytesHeld() > 0 &&
                   walk.order() == Algo::DepthFirstPreOrder,
               "a walk tells listeners where it stands");
        expect(boundaries.neverEntered(walk).empty(), "nothing was cut yet");
        WalkListener::onLink(walk, link, fate, filter);
    }
    void onPrune(const WalkView& walk, const Link& link, Pruning pruning, const Property& property,
                 Pruned outcome) override {
        ++prunes;
        WalkListener::onPrune(walk, link, pruning, property, outcome);
    }

    std::shared_ptr<TraversalResult> result;
    WalkBoundaries boundaries;
    int links = 0;
    int prunes = 0;
};

std::shared_ptr<TraversalResult> contained(const Station& station) {
    return Spec::compositionTraversal()->depthFirst(station.one);
}

void callListener(const Station& station) {
    AskingListener asking;
    AskingListener copy(asking);
    copy = asking;
    const auto result = contained(station);
    asking.result = result;
    ResultSetup(result).rememberPaths().trace(&asking);
    LinkRange walk = links(result);
    for (const Link& link : walk) walk.pruneChildren(link.getProperty());
    expect(asking.links == 3 && asking.prunes == 3 && copy.links == 0, "links and prunes are told");
}

void callBoundaries(const Station& station) {
    WalkBoundaries boundaries;
    const auto result = contained(station);
    ResultSetup(result).trace(&boundaries).descend([&station](const Link& link) {
        return link.getTarget() != station.two;
    });
    IterationContext walk = result->begin();
    while (walk.meeting() != Meeting::Boundary) walk.advance();
    walk.pruneSiblings();
    LinkRange range = links(result);
    for (const Link& link : range) expect(link.getTarget() != station.one || !link.getSource(), "");
    WalkBoundaries copy(boundaries);
    copy = boundaries;
    expect(copy.refusals() == boundaries.refusals() && copy.cuts() == boundaries.cuts() &&
               copy.cuts().at(0).element() == station.one,
           "boundaries are remembered");
    const WalkBoundaries::Refusal& refusal = copy.refusals().at(0);
    expect(refusal == copy.refusals().at(0) && copy.cuts().at(0) == *boundaries.cuts().data() &&
               copy.findRefusal(refusal.link) == &refusal &&
               copy.findCut(station.one, station.parts) != nullptr,
           "boundaries are found");
    expect(copy.neverEntered(walk).size() == 2 && copy.neverEntered(range).size() == 1,
           "what lies behind boundaries is found");
    const WhyNot answer = whyNot(walk, station.two, &copy);
    expect(answer.count(Obstacle::Boundary) == 1 && answer == answer &&
               answer.links.at(0) == answer.links.at(0) && !answer.text().empty(),
           "a walk says why it has not entered an element");
    expect(whyNot(range, station.three).isEntered, "a range knows what it has entered");
    copy.clear();
    expect(copy.cuts().empty(), "boundaries are forgotten");
}

void callPictureAndStatistics(const Station& station) {
    WalkPicture picture;
    WalkStatistics statistics;
    const auto result = contained(station);
    ResultSetup(result).trace(&picture).trace(&statistics);
    LinkRange walk = links(result);
    for (const Link& link : walk) {
        if (link.getTarget() == station.two) walk.pruneAllChildren();
    }
    WalkPicture drawn(picture);
    picture.clear();
    picture = drawn;
    expect(picture.text().find("Block'two'") != std::string::npos, "a walk is drawn");
    WalkStatistics counted(statistics);
    statistics.clear();
    statistics = counted;
    expect(statistics.linkCount(Fate::Reported) == 3 && statistics.elementCount() == 3 &&
               statistics.elementCount(station.block) == 3 && statistics.mostBytesHeld() > 0 &&
               !statistics.text().empty(),
           "a walk is counted");
    expect(statistics.linkRows().at(0) == counted.linkRows().at(0) &&
               statistics.elementRows().at(0) == counted.elementRows().at(0),
           "counts are copied");
    if (never()) {
        const WalkView* view = nullptr;
        picture.onLink(*view, Link(), Fate::Silent, 0);
        picture.onPrune(*view, Link(), Pruning::Siblings, {}, Pruned::Cut);
        statistics.onLink(*view, Link(), Fate::Silent, 0);
        WalkBoundaries().onLink(*view, Link(), Fate::Silent, 0);
        WalkBoundaries().onPrune(*view, Link(), Pruning::Siblings, {}, Pruned::Cut);
    }
}

void callExplanation(const Station& station) {
    const auto predicate = [](const Class& /*type*/) { return true; };
    expect(named("mine", predicate)(station.block) && named("all")(station.block),
           "a named predicate answers as the predicate does");
    const ClassPredicate mine = named("mine", predicate);
    expect(namedIn(mine) != nullptr && namedIn(mine)->name == "mine", "the name of a predicate");
    const auto builder = Spec::compositionTraversal()->prune(station.parts, named("no parts"));
    const Explanation ofBuilder = explain(*builder, station.block);
    const Explanation ofResult = explain(builder->depthFirst(station.one), station.block);
    const ExplainedProperty* parts = ofBuilder.find(station.parts);
    expect(ofBuilder == ofResult && *parts == *ofResult.find(station.parts) &&
               parts->rule.value() == ofResult.find(station.parts)->rule.value(),
           "builders and results are explained alike");
    expect(
        parts->reason == Reason::CutByRule && !parts->text().empty() && !ofBuilder.text().empty(),
        "rules are explained");
    CompositeMatcher rules(CompositeMatcher::VisitMode::Prune);
    rules.composeMatcher(station.block, predicate, ResultPolicy::WalkOnly);
    std::size_t number = 0;
    rules.rules().forEach([&](const internal::RuleTree::Rule& rule) { number = rule.number; });
    expect(number == 1 && rules.answer(station.block).rule != nullptr, "rules are numbered");
}

void callCheck(const Station& station) {
    const auto builder = Spec::compositionTraversal()->prune(station.next);
    const std::vector<RuleFinding> findings = check(*builder, {station.block});
    expect(findings.size() == 1 && findings == RuleCheck::run(*builder, {station.block}) &&
               findings.front() == findings.back(),
           "a rule that does nothing is found");
}

}  // namespace

void callListeners(Station& station) {
    callListener(station);
    callBoundaries(station);
    callPictureAndStatistics(station);
    callExplanation(station);
    callCheck(station);
}

}  // namespace nuv_consumer
