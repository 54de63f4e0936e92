#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <set>
#include <string>
#include <tuple>
#include <vector>

#include "tests/oracle/CallRecorder.h"
#include "tests/oracle/Rules.h"

namespace nuv::zero::oracle {

/// What becomes of each link of a whole walk in which nothing fails, told the plain way: by
/// recursion, from the rules and the world alone.
class NaiveTrace {
  public:
    struct Setup {
        std::vector<int> inputs;
        /// 1 is post-order, 2 breadth-first, any other number pre-order.
        int algo = 0;
        /// 0 is unique links, 1 unique elements, any other number no uniqueness.
        int uniqueness = 2;
        std::vector<int> filters;
        std::function<bool(const IndexedLink&)> descend;
    };
    using Fate = LinkFate;
    struct ToldFate {
        IndexedLink link;
        Fate fate;
        /// Which one left the link out.
        std::size_t filter;
        std::size_t depth;
        /// What the listener is told, as a line.
        std::string text() const;
    };

    NaiveTrace(const PlainWorld& world, const Rules& rules, Setup setup)
        : world_(world), rules_(rules), provider_(world, rules), calls_(world), setup_(setup) {
        run();
    }
    const std::vector<ToldFate>& all() const { return told_; }

  private:
    struct Waiting {
        IndexedLink link;
        std::size_t depth;
    };

    void run();
    void walkDepthFirst(const IndexedLink& link, std::size_t depth);
    void walkBreadthFirst(int input);
    std::vector<IndexedLink> linksFrom(int element);
    bool enters(const IndexedLink& link, std::size_t depth);
    void tell(const IndexedLink& link, std::size_t depth);
    bool isRepeated(const IndexedLink& link);

    const PlainWorld& world_;
    const Rules& rules_;
    NaiveProvider provider_;
    CallRecorder calls_;
    Setup setup_;
    std::set<int> entered_;
    std::set<std::tuple<int, int, int>> seenLinks_;
    std::set<int> seenElements_;
    std::vector<ToldFate> told_;
};

}  // namespace nuv::zero::oracle
