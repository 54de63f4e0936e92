#include "tests/small_worlds/Lockstep.h"

#include <algorithm>

namespace nuv::zero::small_worlds {

using oracle::EngineModel;
using oracle::Event;
using oracle::IndexedLink;
using oracle::Kind;
using oracle::none;
using traversal::Algo;
using traversal::Link;
using traversal::ResultPolicy;
using traversal::Spec;
using traversal::TraversalResult;

Script scriptAt(int number) {
    return {static_cast<Operation>(number / 6 / 7), static_cast<Operation>(number / 6 % 7),
            static_cast<Operation>(number % 6)};
}

namespace {

const char* nameOf(Operation operation) {
    constexpr const char* names[] = {"advance",
                                     "prune all children",
                                     "prune children x",
                                     "prune children y",
                                     "prune siblings",
                                     "copy and go on with the copy",
                                     "copy and leave the copy"};
    return names[static_cast<std::size_t>(operation)];
}

const char* nameOf(Event event) {
    constexpr const char* names[] = {"enters input", "enters", "enters",
                                     "exits",        "exits",  "exits input"};
    return names[static_cast<std::size_t>(event)];
}

std::string wordsOf(const Told& told) {
    std::string words = std::string(nameOf(told.event)) + ' ' + oracle::elementName(told.element);
    if (told.property != none) words += ' ' + oracle::propertyName(told.property);
    return words;
}

std::shared_ptr<TraversalResult> runOn(const EngineModel& model, Kind kind,
                                       const std::vector<ModelElement>& inputs, Algo order) {
    switch (kind) {
        case Kind::Additive:
            return Spec::additiveTraversal()
                ->traverse(model.propertyAt(propertyX), ResultPolicy::Report)
                ->traverse(model.propertyAt(propertyY), ResultPolicy::Report)
                ->run(inputs, order);
        case Kind::Composition:
            return Spec::compositionTraversal()->run(inputs, order);
        case Kind::Subtractive:
            break;
    }
    return Spec::subtractiveTraversal()->run(inputs, order);
}

}  // namespace

std::string describe(const Script& script) {
    std::string text = "script";
    for (const Operation& operation : script) {
        text += std::string(&operation == script.data() ? " " : ", ") + nameOf(operation);
    }
    return text;
}

class Lockstep::EngineObserver final : public traversal::TraversalProcessor {
  public:
    explicit EngineObserver(Lockstep& lockstep) : lockstep_(lockstep) {}

    void onEnterInputElement(const ModelElement& element) override {
        tell(Event::EnterInput, element);
    }
    void onEnterElement(const ModelElement& element) override {
        tell(Event::EnterElement, element);
    }
    void onEnterProperty(const ModelElement& element, const meta::Property& property) override {
        tell(Event::EnterProperty, element, lockstep_.indexOf(property));
    }
    void onExitProperty(const ModelElement& element, const meta::Property& property) override {
        tell(Event::ExitProperty, element, lockstep_.indexOf(property));
    }
    void onExitElement(const ModelElement& element) override { tell(Event::ExitElement, element); }
    void onExitInputElement(const ModelElement& element) override {
        tell(Event::ExitInput, element);
    }

  private:
    void tell(Event event, const ModelElement& element, int property = none) {
        lockstep_.engineTrace_.push_back({event, lockstep_.indexOf(element), property});
    }

    Lockstep& lockstep_;
};

class Lockstep::OracleObserver final : public oracle::Callbacks {
  public:
    explicit OracleObserver(Trace& trace) : trace_(trace) {}

    bool predicate(int /*predicate*/, int /*type*/) override { return true; }
    int filter(int /*filter*/, const IndexedLink& /*link*/) override { return 1; }
    void event(int /*observer*/, Event event, int element, int property) override {
        trace_.push_back({event, element, property});
    }

  private:
    Trace& trace_;
};

Lockstep::Lockstep(const Scene& scene, const EngineModel& model, Kind kind, Algo order)
    : world_(scene.world),
      properties_{model.propertyAt(propertyX), model.propertyAt(propertyY)},
      engineObserver_(std::make_unique<EngineObserver>(*this)),
      oracleObserver_(std::make_unique<OracleObserver>(oracleTrace_)) {
    for (int index = none; index < static_cast<int>(world_.elements.size()); ++index) {
        elements_.push_back(model.elementAt(index));
    }
    std::vector<ModelElement> inputs;
    for (const int input : scene.inputs) inputs.push_back(model.elementAt(input));
    engineResult_ = runOn(model, kind, inputs, order);
    traversal::ResultSetup(engineResult_).observe(engineObserver_.get()).rememberPaths();

    oracle::Rules rules{kind, {}, {}, 1};
    if (kind == Kind::Additive) {
        oracle::RuleOperation rule;
        rule.owner = 0;
        for (rule.property = propertyX; rule.property <= propertyY; ++rule.property) {
            rules.apply(world_, rule, *oracleObserver_);
        }
    }
    oracleResult_ = std::make_shared<oracle::NaiveResult>();
    oracleResult_->provider = std::make_shared<oracle::NaiveProvider>(world_, std::move(rules));
    oracleResult_->hearers.push_back({0, {}});
    oracleResult_->inputs = scene.inputs;
    oracleResult_->algo = static_cast<int>(order);
}

Lockstep::~Lockstep() = default;

Lockstep::Pair::Pair(Lockstep& lockstep)
    : engine(lockstep.engineResult_),
      oracle(lockstep.world_, *lockstep.oracleObserver_, lockstep.oracleResult_) {
    oracle.advance();
}

bool Lockstep::run(const Script& script) {
    walks_.clear();
    driven_ = 0;
    if (!begin()) return false;
    for (const Operation operation : script) {
        if (!perform(operation)) return false;
    }
    return finish(walks_[driven_]) && std::all_of(walks_.begin(), walks_.end(), [this](Pair& pair) {
               return &pair == &walks_[driven_] || finish(pair);
           });
}

std::string Lockstep::runInWords(const Script& script) {
    std::string words;
    words_ = &words;
    run(script);
    words_ = nullptr;
    return words;
}

bool Lockstep::begin() {
    if (words_ != nullptr) *words_ += "> begin\n";
    engineTrace_.clear();
    oracleTrace_.clear();
    walks_.emplace_back(*this);
    return agrees();
}

bool Lockstep::perform(Operation operation) {
    Pair& driven = walks_[driven_];
    if (operation == Operation::Advance) return advance(driven);
    if (words_ != nullptr) *words_ += std::string("> ") + nameOf(operation) + '\n';
    switch (operation) {
        case Operation::PruneAllChildren:
            driven.engine.pruneAllChildren();
            driven.oracle.pruneAllChildren();
            break;
        case Operation::PruneChildrenX:
            driven.engine.pruneChildren(properties_[propertyX]);
            driven.oracle.pruneChildren(propertyX);
            break;
        case Operation::PruneChildrenY:
            driven.engine.pruneChildren(properties_[propertyY]);
            driven.oracle.pruneChildren(propertyY);
            break;
        case Operation::PruneSiblings:
            driven.engine.pruneSiblings();
            driven.oracle.pruneSiblings();
            break;
        case Operation::CopyAndDriveIt:
            driven_ = walks_.size();
            [[fallthrough]];
        default:
            walks_.push_back(driven);
            break;
    }
    return agrees();
}

bool Lockstep::advance(Pair& pair) {
    if (words_ != nullptr) *words_ += "> advance\n";
    pair.engine.advance();
    pair.oracle.advance();
    return agrees();
}

bool Lockstep::finish(Pair& pair) {
    if (words_ != nullptr) *words_ += "> to the end\n";
    while (!pair.oracle.current().isEmpty()) {
        if (!advance(pair)) return false;
    }
    return advance(pair);
}

bool Lockstep::agrees() {
    ++steps_;
    if (words_ != nullptr) {
        const std::string engine = inWords(true);
        const std::string oracle = inWords(false);
        *words_ +=
            engine == oracle ? oracle : "  the oracle:\n" + oracle + "  the engine:\n" + engine;
    }
    bool agrees = engineTrace_ == oracleTrace_;
    engineTrace_.clear();
    oracleTrace_.clear();
    for (auto pair = walks_.begin(); pair != walks_.end() && agrees; ++pair) {
        agrees = standsAlike(*pair) && std::all_of(walks_.begin(), pair, [pair](const Pair& other) {
                     return (pair->engine == other.engine) == pair->oracle.equals(other.oracle);
                 });
    }
    return agrees;
}

bool Lockstep::standsAlike(const Pair& pair) const {
    static const EngineWalk end;
    const IndexedLink& expected = pair.oracle.current();
    const Link& actual = pair.engine.getCurrent();
    return actual.getSource() == elementAt(expected.source) &&
           actual.getTarget() == elementAt(expected.target) &&
           indexOf(actual.getProperty()) == expected.property &&
           actual.shouldCascade() == expected.cascade &&
           (pair.engine == end) == expected.isEmpty() && isAtSamePlace(pair);
}

bool Lockstep::isAtSamePlace(const Pair& pair) const {
    const auto isSame = [this](const Link& actual, const IndexedLink& expected) {
        return stepOf(actual).isSameStep(expected) && actual.shouldCascade() == expected.cascade;
    };
    const std::vector<Link> path = pair.engine.path();
    const std::vector<IndexedLink> expected = pair.oracle.path();
    return pair.engine.depth() == pair.oracle.depth() &&
           static_cast<int>(pair.engine.meeting()) == static_cast<int>(pair.oracle.meeting()) &&
           pair.engine.enteredCount() == pair.oracle.enteredCount() &&
           pair.engine.waitingCount() == pair.oracle.waitingCount() &&
           std::equal(path.begin(), path.end(), expected.begin(), expected.end(), isSame);
}

std::string Lockstep::inWords(bool ofEngine) const {
    static const EngineWalk end;
    std::string words;
    for (const Told& told : ofEngine ? engineTrace_ : oracleTrace_) {
        words += "    " + wordsOf(told) + '\n';
    }
    for (std::size_t index = 0; index < walks_.size(); ++index) {
        const Pair& pair = walks_[index];
        const IndexedLink current =
            ofEngine ? stepOf(pair.engine.getCurrent()) : pair.oracle.current();
        const bool atEnd = ofEngine ? pair.engine == end : current.isEmpty();
        words += "    walk " + std::to_string(index) + (atEnd ? " at the end, " : " on ") +
                 oracle::describe(current);
        for (std::size_t other = 0; other < walks_.size(); ++other) {
            if (other == index) continue;
            const bool equal = ofEngine ? pair.engine == walks_[other].engine
                                        : pair.oracle.equals(walks_[other].oracle);
            if (equal) words += ", equals walk " + std::to_string(other);
        }
        words += '\n' + placeInWords(pair, ofEngine);
    }
    return words;
}

std::string Lockstep::placeInWords(const Pair& pair, bool ofEngine) const {
    const auto inWords = [](const auto& walk) {
        return "      depth " + std::to_string(walk.depth()) + ", meeting " +
               std::to_string(static_cast<int>(walk.meeting())) + ", " +
               std::to_string(walk.enteredCount()) + " entered, " +
               std::to_string(walk.waitingCount()) + " waiting, path";
    };
    std::string words = ofEngine ? inWords(pair.engine) : inWords(pair.oracle);
    if (ofEngine) {
        for (const Link& link : pair.engine.path()) words += ' ' + oracle::describe(stepOf(link));
    } else {
        for (const IndexedLink& link : pair.oracle.path()) words += ' ' + oracle::describe(link);
    }
    return words + '\n';
}

IndexedLink Lockstep::stepOf(const Link& link) const {
    return {indexOf(link.getSource()), indexOf(link.getProperty()), indexOf(link.getTarget()),
            link.shouldCascade()};
}

int Lockstep::indexOf(const ModelElement& element) const {
    return none + static_cast<int>(std::find(elements_.begin(), elements_.end(), element) -
                                   elements_.begin());
}

int Lockstep::indexOf(const meta::Property& property) const {
    if (!property) return none;
    return property == properties_[propertyX] ? propertyX : propertyY;
}

}  // namespace nuv::zero::small_worlds
