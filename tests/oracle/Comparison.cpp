#include "tests/oracle/Comparison.h"

#include <array>
#include <memory>
#include <vector>

#include "tests/oracle/EngineSide.h"
#include "tests/oracle/OracleSide.h"

namespace nuv::zero::oracle {

namespace {

/// How many walks there may be at a time, and how many observers.
constexpr int places = 4;
constexpr int observers = 2;

std::string placeName(int place) {
    return "walk " + std::to_string(place);
}

/// Both sides, driven in step.
class Comparison {
  public:
    Comparison(Choices& world, Choices& script)
        : choices_(script), world_(makeWorld(world)), kind_(static_cast<Kind>(script.upTo(2))) {
        engine_ = makeEngineSide(world_, kind_);
        oracle_ = makeOracleSide(world_, kind_);
    }

    Outcome run() {
        // An additive traversal without rules follows nothing, so it mostly gets more of them.
        const int rules = choices_.upTo(kind_ == Kind::Additive ? 9 : 4);
        for (int count = 0; count < rules; ++count) addRule();
        addResult();
        setUp(0);
        begin(0, 0);
        // Every prune makes a walk shorter, so long scripts have fewer of them.
        const bool isLong = choices_.percent(25);
        const int steps = isLong ? choices_.between(60, 200) : choices_.between(5, 60);
        pruneChance_ = isLong ? 8 : 30;
        for (int step = 0; step < steps && agrees() && !choices_.exhausted(); ++step) act();
        if (choices_.percent(50)) {
            both("builder and results are given up", [](Side& side) { side.releaseResults(); });
        }
        for (int place = 0; place < places; ++place) finish(place);
        for (int place = 0; place < places; ++place) drop(place);
        both("held links", [](Side& side) { side.writeHeld(); });
        return {agrees() ? "" : failure(), log_};
    }

  private:
    bool agrees() const { return difference_.empty(); }

    std::string failure() const {
        std::string text = describe(world_);
        text += std::string(nameOf(kind_)) + " traversal\n";
        for (const std::string& line : log_) text += line + '\n';
        return text + difference_;
    }

    /// Does the same on both sides and compares what they recorded.
    template <class Action>
    void both(const std::string& what, Action action) {
        if (!agrees()) return;
        log_.push_back("> " + what);
        action(*engine_);
        action(*oracle_);
        const std::vector<std::string> actual = engine_->recorder.take();
        const std::vector<std::string> expected = oracle_->recorder.take();
        if (actual == expected) {
            for (const std::string& line : expected) log_.push_back("    " + line);
            return;
        }
        difference_ += "the oracle:\n";
        for (const std::string& line : expected) difference_ += "    " + line + '\n';
        difference_ += "the engine:\n";
        for (const std::string& line : actual) difference_ += "    " + line + '\n';
    }

    /// The same, and then compares where the walk stands.
    template <class Action>
    void onWalk(int place, const std::string& what, Action action) {
        both(placeName(place) + ": " + what, [&](Side& side) {
            action(side);
            writePosition(side, place);
        });
    }

    static void writePosition(Side& side, int place) {
        if (!side.exists(place)) return side.recorder.write("no walk");
        std::string line =
            (side.isAtEnd(place) ? "at the end, " : "on ") + describe(side.current(place));
        for (int other = 0; other < places; ++other) {
            if (other == place || !side.exists(other)) continue;
            if (side.equal(place, other)) line += ", equals " + placeName(other);
            if (side.equal(other, place)) line += ", " + placeName(other) + " equals it";
        }
        side.recorder.write(line);
        writeStanding(side, place);
    }

    /// What the walk says of the place itself.
    static void writeStanding(Side& side, int place) {
        constexpr std::array meetings = {"nothing", "an input", "first",
                                         "open",    "done",     "boundary"};
        side.recorder.write("at depth " + std::to_string(side.depth(place)) + ", meets " +
                            meetings.at(static_cast<std::size_t>(side.meeting(place))) + ", " +
                            std::to_string(side.enteredCount(place)) + " entered, " +
                            std::to_string(side.waitingCount(place)) + " waiting" +
                            (side.hasEnded(place) ? ", ended" : ""));
        writeLinks(side, "path", [&] { return side.path(place); });
        writeLinks(side, "cycle", [&] { return side.cycle(place); });
    }

    template <class Links>
    static void writeLinks(Side& side, const std::string& what, Links links) {
        try {
            std::string line = what + ':';
            for (const IndexedLink& link : links()) line += ' ' + describe(link) + ',';
            side.recorder.write(line);
        } catch (...) {
            side.recorder.writeCurrentException();
        }
    }

    void addRule() {
        const RuleOperation rule = makeRule(world_, choices_);
        both("rule: " + describe(rule), [&](Side& side) { side.rule(rule); });
    }

    void addResult() {
        std::vector<int> inputs;
        const int count = choices_.percent(5) ? 0 : choices_.between(1, 3);
        for (int input = 0; input < count; ++input) {
            const bool isNull = world_.elements.empty() || choices_.percent(4);
            inputs.push_back(isNull ? none : choices_.index(world_.elements.size()));
        }
        // Three stands for the orders that have no name.
        const int algo = choices_.percent(95) ? choices_.upTo(2) : 3;
        const bool onCopy = choices_.percent(20);
        std::string what = "result " + std::to_string(results_++) + ": order " +
                           std::to_string(algo) + (onCopy ? " from a copy, inputs" : ", inputs");
        for (const int input : inputs) what += ' ' + elementName(input);
        both(what, [&](Side& side) { side.run(inputs, algo, onCopy); });
    }

    void setUp(int result) {
        if (choices_.percent(60)) attach(result);
        for (int most = choices_.upTo(2); most > 0; --most) {
            if (choices_.percent(40)) addFilter(result);
        }
        if (choices_.percent(40)) setUniqueness(result);
        if (choices_.percent(15)) listen(result);
        if (choices_.percent(20)) trace(result);
        if (choices_.percent(35)) addBoundary(result);
        if (choices_.percent(15)) setUpTo(result);
        if (choices_.percent(40)) rememberPaths(result);
    }

    void attach(int result) {
        const int observer = choices_.upTo(observers) - 1;
        both("result " + std::to_string(result) + ": observer " + std::to_string(observer),
             [&](Side& side) { side.attach(result, observer); });
    }

    void listen(int result) {
        const auto event = static_cast<Event>(choices_.upTo(5));
        // Numbered apart from the observers.
        const int hearer = observers + choices_.upTo(2);
        both("result " + std::to_string(result) + ": " + std::to_string(hearer) + " for event " +
                 std::to_string(static_cast<int>(event)),
             [&](Side& side) { side.listen(result, event, hearer); });
    }

    void trace(int result) {
        const int listener = choices_.upTo(observers - 1);
        both("result " + std::to_string(result) + ": listener " + std::to_string(listener),
             [&](Side& side) { side.trace(result, listener); });
    }

    void addFilter(int result) {
        const int filter = choices_.index(world_.filters.size());
        both("result " + std::to_string(result) + ": filter " + std::to_string(filter),
             [&](Side& side) { side.addFilter(result, filter); });
    }

    void setUniqueness(int result) {
        const int mode = choices_.upTo(3);
        both("result " + std::to_string(result) + ": uniqueness " + std::to_string(mode),
             [&](Side& side) { side.setUniqueness(result, mode); });
    }

    void addBoundary(int result) {
        // The one behind the last filter refuses every other link.
        const int last = static_cast<int>(world_.filters.size());
        const int boundary = choices_.percent(50) ? last : choices_.upTo(last);
        both("result " + std::to_string(result) + ": boundary " + std::to_string(boundary),
             [&](Side& side) { side.addBoundary(result, boundary); });
    }

    void setUpTo(int result) {
        const auto distance = static_cast<std::size_t>(choices_.upTo(4));
        both("result " + std::to_string(result) + ": up to " + std::to_string(distance),
             [&](Side& side) { side.setUpTo(result, distance); });
    }

    void rememberPaths(int result) {
        both("result " + std::to_string(result) + ": remembers paths",
             [&](Side& side) { side.rememberPaths(result); });
    }

    void begin(int place, int result) {
        if (choices_.percent(25)) {
            onWalk(place, "prepared on result " + std::to_string(result),
                   [&](Side& side) { side.prepare(place, result); });
            return;
        }
        onWalk(place, "begin on result " + std::to_string(result),
               [&](Side& side) { side.begin(place, result); });
    }

    void advance(int place) {
        onWalk(place, "advance", [&](Side& side) { side.advance(place); });
    }

    void advanceWithin(int place, std::size_t steps) {
        onWalk(place, "advance within " + std::to_string(steps) + " steps",
               [&](Side& side) { side.advanceWithin(place, steps); });
    }

    /// Which elements a walk has entered, and how it came to them.
    void askAboutElements(int place) {
        both(placeName(place) + ": elements", [&](Side& side) {
            for (int element = none; element < static_cast<int>(world_.elements.size());
                 ++element) {
                const bool entered = side.hasEntered(place, element);
                side.recorder.write(elementName(element) + (entered ? " entered" : " not entered"));
                writeLinks(side, "path", [&] { return side.pathTo(place, element); });
            }
        });
    }

    void drop(int place) {
        if (!exists(place)) return;
        onWalk(place, "dropped", [&](Side& side) { side.drop(place); });
    }

    bool exists(int place) const { return oracle_->exists(place); }

    /// One random step of the script.
    void act() {
        const int place = choices_.percent(60) ? 0 : choices_.index(places);
        if (!exists(place)) return choices_.percent(80) ? fill(place) : change();
        const int action = choices_.upTo(99);
        if (action < pruneChance_) {
            prune(place);
        } else if (action < 75) {
            advance(place);
        } else if (action < 89) {
            advanceWithin(place, static_cast<std::size_t>(choices_.upTo(6)));
        } else if (action < 91) {
            askAboutElements(place);
        } else if (action < 96) {
            relate(place);
        } else if (action < 98) {
            fill(place);
        } else {
            change();
        }
    }

    void prune(int place) {
        const int property = choices_.percent(3) ? none : choices_.index(world_.properties.size());
        switch (choices_.upTo(2)) {
            case 0:
                onWalk(place, "prune all children",
                       [&](Side& side) { side.pruneAllChildren(place); });
                break;
            case 1:
                onWalk(place, "prune children " + propertyName(property),
                       [&](Side& side) { side.pruneChildren(place, property); });
                break;
            default:
                onWalk(place, "prune siblings", [&](Side& side) { side.pruneSiblings(place); });
                break;
        }
    }

    /// Compares, copies or assigns between walks, drops one, or keeps its link.
    void relate(int place) {
        const int other = choices_.index(places);
        const int relation = choices_.upTo(6);
        if (relation == 0) {
            onWalk(other, "copy of " + placeName(place),
                   [&](Side& side) { side.copy(other, place); });
        } else if (relation == 1 && exists(other)) {
            onWalk(other, "assigned from " + placeName(place),
                   [&](Side& side) { side.assign(other, place); });
        } else if (relation == 2) {
            drop(place);
        } else if (relation == 3 || relation == 4) {
            onWalk(place, "link held", [&](Side& side) { side.hold(place); });
        } else if (exists(other)) {
            both(placeName(place) + " == " + placeName(other), [&](Side& side) {
                side.recorder.write(side.equal(place, other) ? "equal" : "unequal");
            });
        }
    }

    void fill(int place) {
        if (choices_.percent(10)) {
            onWalk(place, "sentinel", [&](Side& side) { side.makeSentinel(place); });
        } else {
            begin(place, choices_.index(static_cast<std::size_t>(results_)));
        }
    }

    /// Changes what walks under way may or may not see.
    void change() {
        const int result = choices_.index(static_cast<std::size_t>(results_));
        switch (choices_.upTo(10)) {
            case 0:
                addFilter(result);
                break;
            case 4:
                addBoundary(result);
                break;
            case 5:
                setUpTo(result);
                break;
            case 6:
                rememberPaths(result);
                break;
            case 7:
                listen(result);
                break;
            case 8:
                trace(result);
                break;
            case 1:
                setUniqueness(result);
                break;
            case 2:
                addRule();
                addResult();
                setUp(results_ - 1);
                break;
            case 3:
                both("result " + std::to_string(results_++) + ": copy of result " +
                         std::to_string(result),
                     [&](Side& side) { side.copyResult(result); });
                break;
            default:
                attach(result);
                break;
        }
    }

    /// Goes to the end, in whole steps or by one at a time, and on.
    void finish(int place) {
        if (!exists(place)) return;
        const bool isSlow = choices_.percent(15);
        const int most = isSlow ? 1000 : 300;
        for (int step = 0; step < most && agrees() && exists(place); ++step) {
            const bool isAtEnd = oracle_->isAtEnd(place);
            if (isSlow) {
                advanceWithin(place, 1);
            } else {
                advance(place);
            }
            if (isAtEnd) break;
        }
        if (agrees() && exists(place) && choices_.percent(30)) askAboutElements(place);
    }

    Choices& choices_;
    PlainWorld world_;
    Kind kind_;
    std::unique_ptr<Side> engine_;
    std::unique_ptr<Side> oracle_;
    int results_ = 0;
    int pruneChance_ = 0;
    std::vector<std::string> log_;
    std::string difference_;
};

}  // namespace

Outcome compareOnce(Choices& choices) {
    return compareOnce(choices, choices);
}

Outcome compareOnce(Choices& world, Choices& script) {
    return Comparison(world, script).run();
}

}  // namespace nuv::zero::oracle
