#include "tests/oracle/OracleSide.h"

#include <map>
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
    void attach(int result, int observer) override { at(result)->observer = observer; }
    void addFilter(int result, int filter) override { at(result)->filters.push_back(filter); }
    void setUniqueness(int result, int mode) override { at(result)->uniqueness = mode; }

    void begin(int place, int result) override {
        drop(place);
        try {
            walks_.emplace(place, NaiveWalk(world_, recorder, at(result)));
        } catch (...) {
            recorder.writeCurrentException();
        }
    }

    void makeSentinel(int place) override {
        walks_.insert_or_assign(place, NaiveWalk(world_, recorder));
    }
    void drop(int place) override { walks_.erase(place); }

    void advance(int place) override {
        try {
            walks_.at(place).advance();
        } catch (...) {
            recorder.writeCurrentException();
        }
    }

    void copy(int to, int from) override {
        const NaiveWalk copy = walks_.at(from);
        walks_.insert_or_assign(to, copy);
    }
    void assign(int to, int from) override { copy(to, from); }
    void pruneAllChildren(int place) override { walks_.at(place).pruneAllChildren(); }
    void pruneChildren(int place, int property) override {
        walks_.at(place).pruneChildren(property);
    }
    void pruneSiblings(int place) override { walks_.at(place).pruneSiblings(); }

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
    bool isAtEnd(int place) const override { return walks_.at(place).current().isEmpty(); }
    IndexedLink current(int place) const override { return walks_.at(place).current(); }
    bool equal(int one, int other) const override {
        return walks_.at(one).equals(walks_.at(other));
    }

  private:
    const std::shared_ptr<NaiveResult>& at(int result) const {
        return results_.at(static_cast<std::size_t>(result));
    }

    const PlainWorld& world_;
    Rules rules_;
    std::vector<std::shared_ptr<NaiveResult>> results_;
    std::map<int, NaiveWalk> walks_;
    std::vector<IndexedLink> held_;
};

}  // namespace

std::unique_ptr<Side> makeOracleSide(const PlainWorld& world, Kind kind) {
    return std::make_unique<OracleSide>(world, kind);
}

}  // namespace nuv::zero::oracle
