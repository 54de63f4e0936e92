#include "tests/oracle/NaiveTrace.h"

namespace nuv::zero::oracle {

std::string NaiveTrace::ToldFate::text() const {
    std::string line = describe(link) + " fate " + std::to_string(static_cast<int>(fate));
    if (fate == Fate::Filtered) line += " filter " + std::to_string(filter);
    return line + " depth " + std::to_string(depth);
}

void NaiveTrace::run() {
    for (const int input : setup_.inputs) {
        if (!entered_.insert(input).second) continue;
        if (setup_.algo == 2) {
            walkBreadthFirst(input);
        } else {
            walkDepthFirst({none, none, input, true}, 0);
        }
    }
}

/// REQUIRES: the target of the link was entered.
void NaiveTrace::walkDepthFirst(const IndexedLink& link, std::size_t depth) {
    if (setup_.algo != 1) tell(link, depth);
    for (IndexedLink next : linksFrom(link.target)) {
        next.cascade = enters(next, depth + 1);
        if (next.cascade) {
            walkDepthFirst(next, depth + 1);
        } else {
            tell(next, depth + 1);
        }
    }
    if (setup_.algo == 1) tell(link, depth);
}

void NaiveTrace::walkBreadthFirst(int input) {
    std::deque<Waiting> waiting{{{none, none, input, true}, 0}};
    tell(waiting.front().link, 0);
    for (; !waiting.empty(); waiting.pop_front()) {
        const auto [link, depth] = waiting.front();
        if (!link.cascade) {
            tell(link, depth);
            continue;
        }
        for (IndexedLink next : linksFrom(link.target)) {
            next.cascade = enters(next, depth + 1);
            waiting.push_back({next, depth + 1});
            if (next.cascade) tell(next, depth + 1);
        }
    }
}

std::vector<IndexedLink> NaiveTrace::linksFrom(int element) {
    std::vector<IndexedLink> links;
    if (element == none) return links;
    const int type = world_.elements[static_cast<std::size_t>(element)];
    for (const Setting& setting : *provider_.settingsOf(type, calls_)) {
        const auto value = world_.values.find({element, setting.property});
        if (value == world_.values.end()) continue;
        const bool isSingle =
            world_.properties[static_cast<std::size_t>(setting.property)].upperBound == 1;
        for (const int target : value->second.elements) {
            if (isSingle && target == none) continue;
            links.push_back({element, setting.property, target, true});
        }
    }
    return links;
}

/// Whether a link enters its target; tells of one that is not let in.
bool NaiveTrace::enters(const IndexedLink& link, std::size_t depth) {
    if (entered_.count(link.target) != 0) return false;
    if (setup_.descend && !setup_.descend(link)) {
        IndexedLink refused = link;
        refused.cascade = false;
        told_.push_back({refused, Fate::NotDescended, 0, depth});
        return false;
    }
    entered_.insert(link.target);
    return true;
}

void NaiveTrace::tell(const IndexedLink& link, std::size_t depth) {
    // A null input has no link.
    if (link.isEmpty()) return;
    ToldFate told{link, Fate::Reported, 0, depth};
    const int type =
        link.source == none ? none : world_.elements[static_cast<std::size_t>(link.source)];
    if (link.property != none && provider_.resultPolicy(type, link.property, calls_) == 0) {
        told.fate = Fate::Silent;
    } else if (isRepeated(link)) {
        told.fate = Fate::Repeated;
    } else if (link.property == none && rules_.pseudoLinkPolicy == 0) {
        told.fate = Fate::PseudoLinkLeftOut;
    } else {
        while (told.filter < setup_.filters.size() &&
               calls_.filter(setup_.filters[told.filter], link) != 0) {
            ++told.filter;
        }
        if (told.filter < setup_.filters.size()) told.fate = Fate::Filtered;
    }
    told_.push_back(told);
}

/// Also remembers the link.
bool NaiveTrace::isRepeated(const IndexedLink& link) {
    if (setup_.uniqueness == 1) return !seenElements_.insert(link.target).second;
    if (setup_.uniqueness != 0) return false;
    if (!seenLinks_.emplace(link.source, link.property, link.target).second) return true;
    if (link.property == none) return false;
    const int opposite = world_.properties[static_cast<std::size_t>(link.property)].opposite;
    return opposite != none && !seenLinks_.emplace(link.target, opposite, link.source).second;
}

}  // namespace nuv::zero::oracle
