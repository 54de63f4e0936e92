#include "tests/oracle/OracleSide.h"

#include <map>
#include <stdexcept>
#include <utility>

#include "tests/oracle/NaiveWalk.h"

namespace nuv::zero::oracle {

namespace {

class OracleSide : public Side {
  public:
    OracleSide(const PlainWorld& world, Kind kind)
        : Side(world), world_(world), rules_{kind, {}, {}, 1} {}

    void rule(const RuleOperation& rule) override {
        try {
            rules_.apply(world_, rule, recorder);
        } catch (...) {
            recorder.writeCurrentException();
        }
    }

    void run(const std::vector<int>& inputs, int algo, bool /*onCopy*/) override {
        auto result = std::make_shared<NaiveResult>();
        result->provider = std::make_shared<NaiveProvider>(world_, rules_);
        result->inputs = inputs;
        result->dropsPseudoLinks = rules_.pseudoLinkPolicy == 0;
        result->algo = algo;
        results_.push_back(std::move(result));
    }

    void copyResult(int result) override {
        results_.push_back(std::make_shared<NaiveResult>(*at(result)));
    }
    void attach(int result, int observer) override {
        Hearers& hearers = at(result)->hearers;
        std::erase_if(hearers, [](const Hearer& hearer) { return !hearer.only; });
        if (observer != none) hearers.push_back({observer, {}});
    }
    void listen(int result, Event event, int hearer) override {
        at(result)->hearers.push_back({hearer, event});
    }
    void trace(int result, int listener) override { at(result)->listeners.push_back(listener); }
    void addFilter(int result, int filter) override { at(result)->filters.push_back(filter); }
    void setUniqueness(int result, int mode) override { at(result)->uniqueness = mode; }
    void addBoundary(int result, int boundary) override {
        at(result)->boundaries.push_back(boundary);
    }
    void setUpTo(int result, std::size_t distance) override { at(result)->upTo = distance; }
    void rememberPaths(int result) override { at(result)->remembersPaths = true; }

    void begin(int place, int result) override {
        drop(place);
        try {
            NaiveWalk walk(world_, recorder, at(result));
            walk.advance();
            put(place, walk, at(result)->remembersPaths);
        } catch (...) {
            recorder.writeCurrentException();
        }
    }
    void prepare(int place, int result) override {
        put(place, NaiveWalk(world_, recorder, at(result)), at(result)->remembersPaths);
    }

    void makeSentinel(int place) override { put(place, NaiveWalk(world_, recorder), false); }
    void drop(int place) override { walks_.erase(place); }

    void advance(int place) override {
        goOn(place, [&] { walkAt(place).advance(); });
    }
    void advanceWithin(int place, std::size_t steps) override {
        int ending = 0;
        goOn(place, [&] { ending = static_cast<int>(walkAt(place).advanceWithin(steps)); });
        writeBudget(ending, steps);
    }

    void copy(int to, int from) override {
        const Walk copy = walks_.at(from);
        walks_.insert_or_assign(to, copy);
    }
    void assign(int to, int from) override { copy(to, from); }
    void pruneAllChildren(int place) override {
        goOn(place, [&] { writePruned(static_cast<int>(walkAt(place).pruneAllChildren())); });
    }
    void pruneChildren(int place, int property) override {
        goOn(place, [&] { writePruned(static_cast<int>(walkAt(place).pruneChildren(property))); });
    }
    void pruneSiblings(int place) override {
        goOn(place, [&] { writePruned(static_cast<int>(walkAt(place).pruneSiblings())); });
    }

    void hold(int place) override { held_.push_back(current(place)); }
    void writeHeld() override {
        for (const IndexedLink& link : held_) {
            const int opposite =
                link.property == none
                    ? none
                    : world_.properties[static_cast<std::size_t>(link.property)].opposite;
            recorder.write(describe(link) + ", opposite " +
                           (opposite == none
                                ? "none"
                                : describe(IndexedLink{link.target, opposite, link.source, true})));
        }
    }
    void releaseResults() override { results_.clear(); }

    bool exists(int place) const override { return walks_.count(place) != 0; }
    bool isAtEnd(int place) const override { return hasEnded(place); }
    IndexedLink current(int place) const override { return walkAt(place).current(); }
    bool equal(int one, int other) const override { return walkAt(one).equals(walkAt(other)); }

    bool hasEnded(int place) const override { return walkAt(place).hasEnded(); }
    std::size_t depth(int place) const override { return walkAt(place).depth(); }
    int meeting(int place) const override { return static_cast<int>(walkAt(place).meeting()); }
    bool hasEntered(int place, int element) const override {
        return walkAt(place).hasEntered(element);
    }
    std::size_t enteredCount(int place) const override { return walkAt(place).enteredCount(); }
    std::size_t waitingCount(int place) const override { return walkAt(place).waitingCount(); }
    std::vector<IndexedLink> path(int place) const override {
        const NaiveWalk& walk = walkAt(place);
        std::vector<IndexedLink> links = walk.path();
        if (!links.empty() && !walk.isDepthFirst()) requireMemory(place);
        return links;
    }
    std::vector<IndexedLink> pathTo(int place, int element) const override {
        const NaiveWalk& walk = walkAt(place);
        if (!walk.hasEntered(element)) return {};
        if (!walk.isDepthFirst() || !walk.isOnPath(element)) requireMemory(place);
        return walk.pathTo(element);
    }
    std::vector<IndexedLink> cycle(int place) const override { return walkAt(place).cycle(); }

  private:
    /// A walk, and whether it was asked to remember paths: the plain one always does.
    struct Walk {
        NaiveWalk walk;
        bool remembersPaths;
    };
    void put(int place, const NaiveWalk& walk, bool remembersPaths) {
        walks_.insert_or_assign(place, Walk{walk, remembersPaths});
    }
    NaiveWalk& walkAt(int place) { return walks_.at(place).walk; }
    const NaiveWalk& walkAt(int place) const { return walks_.at(place).walk; }
    void requireMemory(int place) const {
        if (!walks_.at(place).remembersPaths) throw std::logic_error("does not remember paths");
    }

    const std::shared_ptr<NaiveResult>& at(int result) const {
        return results_.at(static_cast<std::size_t>(result));
    }

    const PlainWorld& world_;
    Rules rules_;
    std::vector<std::shared_ptr<NaiveResult>> results_;
    std::map<int, Walk> walks_;
    std::vector<IndexedLink> held_;
};

}  // namespace

std::unique_ptr<Side> makeOracleSide(const PlainWorld& world, Kind kind) {
    return std::make_unique<OracleSide>(world, kind);
}

}  // namespace nuv::zero::oracle
