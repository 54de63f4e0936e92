#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "tests/oracle/Callbacks.h"

namespace nuv::zero::oracle {

/// What a callback throws when it is told to fail.
struct CallbackFailure {};

/// Acts as the predicates, filters, boundaries, observers and listeners of a case, and writes down
/// what happens, in order. The oracle and the engine have one each; the two records have to be
/// equal.
class CallRecorder final : public Callbacks {
  public:
    explicit CallRecorder(const PlainWorld& world)
        : world_(&world), calls_(world.predicates.size(), 0) {}

    /// Each throws `CallbackFailure` when its call is to fail, and `std::bad_function_call` when it
    /// stands for an empty function.
    bool predicate(int predicate, int type) override;
    int filter(int filter, const IndexedLink& link) override;
    /// A boundary lets pass what the filter of its number reports. The one behind the last filter
    /// refuses every other link into an element, so that a later one may enter it.
    bool boundary(int boundary, const IndexedLink& link) override;
    void event(int observer, Event event, int element, int property = none) override;

    void link(int listener, const IndexedLink& link, LinkFate fate, std::size_t filter) override;
    void prune(int listener, const IndexedLink& current, const ToldPrune& prune) override;

    /// Says where the walk under way stands while it calls; none where nobody can know.
    std::function<std::string()> whereabouts;

    void write(const std::string& line) { lines_.push_back(line); }
    /// Writes down the exception that is being handled. Throws it again when it is of no known
    /// kind.
    void writeCurrentException();
    /// What was written since the last time.
    std::vector<std::string> take() { return std::exchange(lines_, {}); }

  private:
    void called(const std::string& line);
    int answer(const FilterDefinition& definition, const IndexedLink& link) const;

    const PlainWorld* world_;
    std::vector<std::string> lines_;
    /// Per predicate.
    std::vector<int> calls_;
    int allCalls_ = 0;
};

}  // namespace nuv::zero::oracle
