#include "traversal/RuleTree.h"

#include <stdexcept>
#include <utility>

#include "traversal/ClassHierarchyComparator.h"
#include "traversal/NamedPredicate.h"

namespace nuv::zero::traversal MODELING_NUV0_OVER::internal {

RuleTree::RuleTree(const RuleTree& other) : first_(other.first_), filed_(other.filed_) {
    nodes_.reserve(other.nodes_.size());
    for (const auto& node : other.nodes_) nodes_.push_back(std::make_unique<Node>(*node));
}

RuleTree::RuleTree(RuleTree&& other) noexcept
    : nodes_(std::exchange(other.nodes_, {})),
      first_(std::exchange(other.first_, none)),
      filed_(std::exchange(other.filed_, 0)) {}

RuleTree& RuleTree::operator=(const RuleTree& other) {
    return *this = RuleTree(other);
}

RuleTree& RuleTree::operator=(RuleTree&& other) noexcept {
    RuleTree taken(std::move(other));
    nodes_.swap(taken.nodes_);
    std::swap(first_, taken.first_);
    std::swap(filed_, taken.filed_);
    return *this;
}

RuleTree::Place RuleTree::descend(const Class& owner) const {
    const ClassHierarchyComparator less;
    Place place;
    // The entry that would follow the class in order: the last one passed on its left side.
    Index after = none;
    for (Index index = nodes_.empty() ? none : 0; index != none;) {
        const Node& node = *nodes_[index];
        if (node.rule.owner == owner) {
            place.found = index;
            return place;
        }
        place.parent = index;
        place.toTheRight = less(node.rule.owner, owner);
        if (place.toTheRight) {
            place.before = index;
            index = node.right;
        } else {
            after = index;
            index = node.left;
        }
    }
    if (after != none && !less(owner, nodes_[after]->rule.owner)) place.found = after;
    return place;
}

void RuleTree::file(const Class& owner, ClassPredicate predicate, ResultPolicy policy) {
    const NamedPredicate* named = namedIn(predicate);
    const ClassPredicate& asked = named == nullptr ? predicate : named->predicate;
    const bool acceptsAll = asked.target<EveryClass>() != nullptr;
    const Place place = descend(owner);
    if (place.found != none) {
        Rule& rule = nodes_[place.found]->rule;
        rule.predicate = std::move(predicate);
        rule.policy = policy;
        rule.acceptsAll = acceptsAll;
        rule.number = ++filed_;
        return;
    }
    if (nodes_.size() >= none) throw std::length_error("Too many rules for one property.");
    const auto index = static_cast<Index>(nodes_.size());
    nodes_.push_back(std::make_unique<Node>(
        Node{{owner, std::move(predicate), policy, acceptsAll, filed_ + 1}, none, none, none}));
    ++filed_;
    if (place.parent != none) {
        Node& parent = *nodes_[place.parent];
        (place.toTheRight ? parent.right : parent.left) = index;
    }
    Index& link = place.before == none ? first_ : nodes_[place.before]->next;
    nodes_[index]->next = link;
    link = index;
}

void RuleTree::setPolicy(const Class& owner, ResultPolicy policy) {
    const Place place = descend(owner);
    if (place.found != none) nodes_[place.found]->rule.policy = policy;
}

}  // namespace nuv::zero::traversal::internal
