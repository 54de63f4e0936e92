#pragma once

#include <array>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tests/oracle/EngineModel.h"
#include "tests/oracle/Walk.h"
#include "tests/small_worlds/SmallWorlds.h"
#include "traversal/Traversal.h"

namespace nuv::zero::small_worlds {

enum class Operation {
    Advance,
    PruneAllChildren,
    PruneChildrenX,
    PruneChildrenY,
    PruneSiblings,
    /// The script goes on with the copy; the walk that was copied goes on behind the script.
    Copy,
};

/// Three operations. A shorter script is one that goes on with advances, since every walk goes on
/// to its end behind the script.
using Script = std::array<Operation, 3>;
inline constexpr int scripts = 6 * 6 * 6;
Script scriptAt(int number);
std::string describe(const Script& script);

/// An event that an observer was told of.
struct Told {
    oracle::Event event;
    int element;
    int property;
    bool operator==(const Told& other) const = default;
};
using Trace = std::vector<Told>;

/// Runs scripts on the engine and on the oracle at once, over one scene, kind and order.
///
/// Compared after every step: the events since the step before, the link that each walk stands on,
/// whether it cascades, whether the walk has ended, and for each pair of walks whether they are
/// equal.
class Lockstep {
  public:
    Lockstep(const Scene& scene, const oracle::EngineModel& model, oracle::Kind kind,
             traversal::Algo order);
    Lockstep(const Lockstep&) = delete;
    Lockstep& operator=(const Lockstep&) = delete;
    ~Lockstep();

    /// Empty when both agree; otherwise what happened at the step at which they do not.
    std::string run(const Script& script);
    /// The same, with a line for each step before.
    std::string runInWords(const Script& script);
    /// Steps compared so far.
    std::uint64_t steps() const { return steps_; }

  private:
    using EngineWalk = traversal::TraversalResult::IterationContext;
    class Observer;
    class OracleObserver;
    /// One walk of each side.
    struct Pair {
        EngineWalk engine;
        oracle::Walk oracle;
    };

    bool begin();
    bool perform(Operation operation);
    bool advance(Pair& pair);
    bool finish(Pair& pair);
    bool agree();
    bool stand(const Pair& pair) const;
    std::string difference() const;
    std::string inWords(const Pair& pair, bool ofEngine) const;
    oracle::Step stepOf(const traversal::Link& link) const;
    int indexOf(const ModelElement& element) const;

    const oracle::World& world_;
    std::vector<ModelElement> elements_;
    std::array<meta::Property, 2> properties_;
    Trace engineTrace_;
    Trace oracleTrace_;
    std::unique_ptr<Observer> observer_;
    std::unique_ptr<OracleObserver> oracleObserver_;
    std::shared_ptr<traversal::TraversalResult> engineResult_;
    std::shared_ptr<oracle::Result> oracleResult_;
    /// As many as a script may make, so that they stay where they are; the last is driven.
    std::vector<Pair> walks_;
    std::uint64_t steps_ = 0;
    /// What each step showed, when words are wanted.
    std::string* words_ = nullptr;
};

}  // namespace nuv::zero::small_worlds
