#pragma once

#include <array>
#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <vector>

#include "tests/oracle/EngineModel.h"
#include "tests/oracle/NaiveWalk.h"
#include "tests/small_worlds/SmallWorlds.h"
#include "traversal/Traversal.h"

namespace nuv::zero::small_worlds {

enum class Operation {
    Advance,
    PruneAllChildren,
    PruneChildrenX,
    PruneChildrenY,
    PruneSiblings,
    /// The script goes on with the copy, or with the walk that was copied; the other one goes on
    /// behind the script.
    CopyAndDriveIt,
    CopyAndLeaveIt,
};

/// Three operations. A shorter script is one that goes on with advances, since every walk goes on
/// to its end behind the script.
///
/// No script ends with a copy that is left: which of both walks goes on makes no difference then.
using Script = std::array<Operation, 3>;
inline constexpr int scripts = 7 * 7 * 6;
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
/// whether it cascades, how its target was met, its depth and path, how much was entered and waits,
/// whether the walk has ended, and for each pair of walks whether they are equal.
class Lockstep {
  public:
    Lockstep(const Scene& scene, const oracle::EngineModel& model, oracle::Kind kind,
             traversal::Algo order);
    Lockstep(const Lockstep&) = delete;
    Lockstep& operator=(const Lockstep&) = delete;
    ~Lockstep();

    /// Whether both agree at every step.
    bool run(const Script& script);
    /// The same, with what each step shows, up to the first at which they do not agree.
    std::string runInWords(const Script& script);
    /// Steps compared so far.
    std::uint64_t steps() const { return steps_; }

  private:
    using EngineWalk = traversal::TraversalResult::IterationContext;
    class EngineObserver;
    class OracleObserver;
    /// One walk of each side.
    struct Pair {
        explicit Pair(Lockstep& lockstep);
        EngineWalk engine;
        oracle::NaiveWalk oracle;
    };

    bool begin();
    bool perform(Operation operation);
    bool advance(Pair& pair);
    /// To the end, and one step past it.
    bool finish(Pair& pair);
    /// Compares, and forgets the events that were compared.
    bool agrees();
    bool standsAlike(const Pair& pair) const;
    bool isAtSamePlace(const Pair& pair) const;
    std::string placeInWords(const Pair& pair, bool ofEngine) const;
    std::string inWords(bool ofEngine) const;
    oracle::IndexedLink stepOf(const traversal::Link& link) const;
    int indexOf(const ModelElement& element) const;
    const ModelElement& elementAt(int index) const {
        return elements_[static_cast<std::size_t>(index - oracle::none)];
    }
    int indexOf(const meta::Property& property) const;

    const oracle::PlainWorld& world_;
    /// Behind a null handle, which has the index before the first.
    std::vector<ModelElement> elements_;
    std::array<meta::Property, 2> properties_;
    Trace engineTrace_;
    Trace oracleTrace_;
    std::unique_ptr<EngineObserver> engineObserver_;
    std::unique_ptr<OracleObserver> oracleObserver_;
    std::shared_ptr<traversal::TraversalResult> engineResult_;
    std::shared_ptr<oracle::NaiveResult> oracleResult_;
    std::deque<Pair> walks_;
    /// The place of the one that is driven.
    std::size_t driven_ = 0;
    std::uint64_t steps_ = 0;
    /// What each step showed, where words are wanted.
    std::string* words_ = nullptr;
};

}  // namespace nuv::zero::small_worlds
