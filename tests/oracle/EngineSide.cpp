#include "tests/oracle/EngineSide.h"

#include <deque>
#include <map>
#include <optional>
#include <utility>
#include <variant>

#include "tests/oracle/EngineModel.h"
#include "tests/support/PrivateAccess.h"
#include "traversal/ResultSetup.h"
#include "traversal/Spec.h"
#include "traversal/internal/Walk.h"

namespace nuv::zero::testing_support {

struct WalkOfContext {
    friend auto pointerTo(WalkOfContext);
};
template struct Expose<WalkOfContext,
                       &traversal::internal::TraversalResult::IterationContext::walk_>;

}  // namespace nuv::zero::testing_support

namespace nuv::zero::oracle {

namespace {

using traversal::AdditiveTraversalImpl;
using traversal::CompositionTraversalImpl;
using traversal::PropertyMatcher;
using traversal::ResultPolicy;
using traversal::ResultSetup;
using traversal::Spec;
using traversal::SubtractiveTraversalImpl;
using traversal::internal::Link;
using traversal::internal::TraversalProcessor;
using traversal::internal::TraversalResult;
using IterationContext = TraversalResult::IterationContext;
using ClassPredicate = std::function<bool(const meta::Class&)>;

/// Hands every event to the recorder.
class Observer : public TraversalProcessor {
  public:
    Observer(int index, const EngineModel& model, CallRecorder& recorder)
        : index_(index), model_(model), recorder_(recorder) {}

    void onEnterInputElement(const ModelElement& element) override {
        recorder_.event(index_, Event::EnterInput, model_.indexOf(element));
    }
    void onEnterElement(const ModelElement& element) override {
        recorder_.event(index_, Event::EnterElement, model_.indexOf(element));
    }
    void onEnterProperty(const ModelElement& element, const meta::Property& property) override {
        recorder_.event(index_, Event::EnterProperty, model_.indexOf(element),
                        model_.indexOf(property));
    }
    void onExitProperty(const ModelElement& element, const meta::Property& property) override {
        recorder_.event(index_, Event::ExitProperty, model_.indexOf(element),
                        model_.indexOf(property));
    }
    void onExitElement(const ModelElement& element) override {
        recorder_.event(index_, Event::ExitElement, model_.indexOf(element));
    }
    void onExitInputElement(const ModelElement& element) override {
        recorder_.event(index_, Event::ExitInput, model_.indexOf(element));
    }

  private:
    int index_;
    const EngineModel& model_;
    CallRecorder& recorder_;
};

/// Hands what becomes of links and of calls that prune to the recorder.
class RecordingListener : public traversal::WalkListener {
  public:
    RecordingListener(int index, const EngineModel& model, CallRecorder& recorder)
        : index_(index), model_(model), recorder_(recorder) {}

    void onLink(const traversal::WalkView& /*walk*/, const Link& link, traversal::Fate fate,
                std::size_t filter) override {
        recorder_.link(index_, model_.stepOf(link), static_cast<LinkFate>(fate), filter);
    }
    void onPrune(const traversal::WalkView& /*walk*/, const Link& link, traversal::Pruning pruning,
                 const meta::Property& property, traversal::Pruned outcome) override {
        recorder_.prune(index_, model_.stepOf(link),
                        {static_cast<int>(pruning), property ? model_.indexOf(property) : none,
                         static_cast<int>(outcome)});
    }

  private:
    int index_;
    const EngineModel& model_;
    CallRecorder& recorder_;
};

using Builder =
    std::variant<std::shared_ptr<AdditiveTraversalImpl>, std::shared_ptr<CompositionTraversalImpl>,
                 std::shared_ptr<SubtractiveTraversalImpl>>;

Builder makeBuilder(Kind kind) {
    if (kind == Kind::Additive) return Spec::additiveTraversal();
    if (kind == Kind::Composition) return Spec::compositionTraversal();
    return Spec::subtractiveTraversal();
}

class EngineSide : public Side {
  public:
    EngineSide(const PlainWorld& world, Kind kind)
        : Side(world), world_(world), model_(world), builder_(makeBuilder(kind)) {
        for (int index = 0; index < 2; ++index) {
            observers_.emplace_back(index, model_, recorder);
            listeners_.emplace_back(index, model_, recorder);
        }
    }

    void rule(const RuleOperation& rule) override {
        try {
            std::visit([&](auto& builder) { apply(*builder, rule); }, builder_);
        } catch (...) {
            recorder.writeCurrentException();
        }
    }

    void run(const std::vector<int>& inputs, int algo, bool onCopy) override {
        std::vector<ModelElement> elements;
        for (const int input : inputs) elements.push_back(model_.elementAt(input));
        std::visit(
            [&](auto& builder) {
                auto copy = *builder;
                auto& used = onCopy ? copy : *builder;
                results_.push_back(used.run(elements, static_cast<traversal::Algo>(algo)));
            },
            builder_);
    }

    void copyResult(int result) override {
        results_.push_back(std::make_shared<TraversalResult>(*at(result)));
    }
    void attach(int result, int observer) override {
        ResultSetup(at(result))
            .observe(observer == none ? nullptr
                                      : &observers_.at(static_cast<std::size_t>(observer)));
    }
    void listen(int result, Event event, int hearer) override {
        const auto ofElement = [this, event, hearer](const ModelElement& element) {
            recorder.event(hearer, event, model_.indexOf(element));
        };
        const auto ofProperty = [this, event, hearer](const ModelElement& element,
                                                      const meta::Property& property) {
            recorder.event(hearer, event, model_.indexOf(element), model_.indexOf(property));
        };
        ResultSetup setup(at(result));
        switch (event) {
            case Event::EnterInput:
                setup.onEnterInputElement(ofElement);
                break;
            case Event::EnterElement:
                setup.onEnterElement(ofElement);
                break;
            case Event::EnterProperty:
                setup.onEnterProperty(ofProperty);
                break;
            case Event::ExitProperty:
                setup.onExitProperty(ofProperty);
                break;
            case Event::ExitElement:
                setup.onExitElement(ofElement);
                break;
            case Event::ExitInput:
                setup.onExitInputElement(ofElement);
                break;
        }
    }
    void trace(int result, int listener) override {
        ResultSetup(at(result)).trace(&listeners_.at(static_cast<std::size_t>(listener)));
    }
    void addFilter(int result, int filter) override {
        std::function<ResultPolicy(Link)> function;
        if (world_.filters[static_cast<std::size_t>(filter)].kind !=
            FilterDefinition::Kind::Empty) {
            function = [this, filter](const Link& link) {
                return static_cast<ResultPolicy>(recorder.filter(filter, model_.stepOf(link)));
            };
        }
        ResultSetup(at(result)).filter(function);
    }
    void setUniqueness(int result, int mode) override {
        ResultSetup(at(result)).unique(static_cast<traversal::UniquenessMode>(mode));
    }

    void addBoundary(int result, int boundary) override {
        std::function<bool(const Link&)> function;
        const auto index = static_cast<std::size_t>(boundary);
        if (index == world_.filters.size() ||
            world_.filters[index].kind != FilterDefinition::Kind::Empty) {
            function = [this, boundary](const Link& link) {
                return recorder.boundary(boundary, model_.stepOf(link));
            };
        }
        ResultSetup(at(result)).descend(function);
    }
    void setUpTo(int result, std::size_t distance) override {
        ResultSetup(at(result)).upTo(distance);
    }
    void rememberPaths(int result) override { ResultSetup(at(result)).rememberPaths(); }

    void prepare(int place, int result) override {
        walks_[place] = std::make_unique<IterationContext>(at(result)->prepare());
    }
    void begin(int place, int result) override {
        drop(place);
        try {
            walks_[place] = std::make_unique<IterationContext>(at(result)->begin());
        } catch (...) {
            drop(place);
            recorder.writeCurrentException();
        }
    }
    void makeSentinel(int place) override { walks_[place] = std::make_unique<IterationContext>(); }
    void drop(int place) override { walks_.erase(place); }
    void advance(int place) override {
        goOn(place, [&] { walks_.at(place)->advance(); });
    }
    void advanceWithin(int place, std::size_t steps) override {
        int ending = 0;
        goOn(place, [&] { ending = static_cast<int>(walks_.at(place)->advanceWithin(steps)); });
        writeBudget(ending, steps);
    }
    void copy(int to, int from) override {
        auto copy = std::make_unique<IterationContext>(*walks_.at(from));
        walks_[to] = std::move(copy);
    }
    void assign(int to, int from) override { *walks_.at(to) = *walks_.at(from); }
    void pruneAllChildren(int place) override {
        prune(place, [](Walk& walk) { return walk.pruneAllChildren(); });
    }
    void pruneChildren(int place, int property) override {
        prune(place, [&](Walk& walk) { return walk.pruneChildren(model_.propertyAt(property)); });
    }
    void pruneSiblings(int place) override {
        prune(place, [](Walk& walk) { return walk.pruneSiblings(); });
    }

    void hold(int place) override { held_.push_back(walks_.at(place)->getCurrent()); }
    void writeHeld() override {
        for (const Link& link : held_) {
            const std::optional<Link> opposite = link.getOpposite();
            recorder.write(describe(model_.stepOf(link)) + ", opposite " +
                           (opposite ? describe(model_.stepOf(*opposite)) : "none"));
        }
    }
    void releaseResults() override {
        std::visit([](auto& builder) { builder.reset(); }, builder_);
        results_.clear();
    }

    bool exists(int place) const override { return walks_.count(place) != 0; }
    bool isAtEnd(int place) const override { return *walks_.at(place) == IterationContext(); }
    IndexedLink current(int place) const override {
        return model_.stepOf(walks_.at(place)->getCurrent());
    }
    bool equal(int one, int other) const override { return *walks_.at(one) == *walks_.at(other); }

    bool hasEnded(int place) const override { return walks_.at(place)->hasEnded(); }
    std::size_t depth(int place) const override { return walks_.at(place)->depth(); }
    int meeting(int place) const override { return static_cast<int>(walks_.at(place)->meeting()); }
    bool hasEntered(int place, int element) const override {
        return walks_.at(place)->hasEntered(model_.elementAt(element));
    }
    std::size_t enteredCount(int place) const override { return walks_.at(place)->enteredCount(); }
    std::size_t waitingCount(int place) const override { return walks_.at(place)->waitingCount(); }
    std::vector<IndexedLink> path(int place) const override {
        return stepsOf(walks_.at(place)->path());
    }
    std::vector<IndexedLink> pathTo(int place, int element) const override {
        return stepsOf(walks_.at(place)->pathTo(model_.elementAt(element)));
    }
    std::vector<IndexedLink> cycle(int place) const override {
        return stepsOf(walks_.at(place)->cycle());
    }

  private:
    using Walk = traversal::internal::Walk;

    /// Walks that can be copied keep the answer to themselves; the end of every walk has no
    /// answer to give.
    template <class Prune>
    void prune(int place, Prune prune) {
        const auto& walk = (*walks_.at(place)).*pointerTo(testing_support::WalkOfContext());
        goOn(place, [&] { writePruned(walk ? static_cast<int>(prune(*walk)) : 0); });
    }
    std::vector<IndexedLink> stepsOf(const std::vector<Link>& links) const {
        std::vector<IndexedLink> steps;
        for (const Link& link : links) steps.push_back(model_.stepOf(link));
        return steps;
    }

    const std::shared_ptr<TraversalResult>& at(int result) const {
        return results_.at(static_cast<std::size_t>(result));
    }

    ClassPredicate predicate(int index) {
        const PredicateDefinition& definition = world_.predicates[static_cast<std::size_t>(index)];
        if (definition.kind == PredicateDefinition::Kind::Empty) return {};
        return [this, index](const meta::Class& type) {
            return recorder.predicate(index, model_.indexOf(type));
        };
    }

    PropertyMatcher matcher(const RuleOperation& rule) {
        const meta::Property property = model_.propertyAt(rule.property);
        if (rule.predicate == none) return PropertyMatcher(property);
        return PropertyMatcher(property, predicate(rule.predicate), model_.classAt(rule.owner));
    }

    template <class Impl>
    void apply(Impl& builder, const RuleOperation& rule) {
        const auto policy = static_cast<ResultPolicy>(rule.policy);
        switch (rule.kind) {
            case RuleOperation::Kind::Pseudo:
                builder.includeInitialPseudoLink(policy);
                break;
            case RuleOperation::Kind::SetPolicy:
                builder.setResultPolicy(matcher(rule), policy);
                break;
            case RuleOperation::Kind::Add:
                if constexpr (std::is_same_v<Impl, AdditiveTraversalImpl>) {
                    builder.traverse(matcher(rule), policy);
                } else {
                    builder.prune(matcher(rule));
                }
                break;
            case RuleOperation::Kind::AddWith:
                if constexpr (std::is_same_v<Impl, AdditiveTraversalImpl>) {
                    builder.traverse(matcher(rule), predicate(rule.otherPredicate), policy);
                } else {
                    builder.prune(matcher(rule), predicate(rule.otherPredicate));
                }
                break;
        }
    }

    const PlainWorld& world_;
    EngineModel model_;
    Builder builder_;
    std::deque<Observer> observers_;
    std::deque<RecordingListener> listeners_;
    std::vector<std::shared_ptr<TraversalResult>> results_;
    std::map<int, std::unique_ptr<IterationContext>> walks_;
    std::vector<Link> held_;
};

}  // namespace

std::unique_ptr<Side> makeEngineSide(const PlainWorld& world, Kind kind) {
    return std::make_unique<EngineSide>(world, kind);
}

}  // namespace nuv::zero::oracle
