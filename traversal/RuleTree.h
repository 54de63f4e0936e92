#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "ClassPredicate.h"
#include "Export.h"
#include "fwd.h"

namespace nuv::zero::traversal MODELING_NUV0_OVER::internal {

/// The rules of one property, one entry per class they are filed under, in the order of
/// `ClassHierarchyComparator`.
///
/// The comparator may call two classes less than each other, so where an entry stands depends on
/// the order of filing. That is well defined here: a new class descends right of every entry that
/// is less than it and left of every other, and stays where the descent ends. Nothing is ever
/// compared again or moved, so filing a class twice takes the same way and finds its entry.
class MODELING_NUV0_TRAVERSAL_EXPORT RuleTree {
  public:
    struct Rule {
        Class owner;
        ClassPredicate predicate;
        ResultPolicy policy;
        /// Whether the predicate accepts every class, so that it need not be asked.
        bool acceptsAll;
        /// Its number in the order of filing, from 1.
        std::size_t number;

        bool accepts(const Class& type) const { return acceptsAll || predicate(type); }
    };

    RuleTree() = default;
    RuleTree(const RuleTree& other);
    /// Leaves no rules behind.
    RuleTree(RuleTree&& other) noexcept;
    RuleTree& operator=(const RuleTree& other);
    RuleTree& operator=(RuleTree&& other) noexcept;
    ~RuleTree() = default;

    /// Files a rule, or replaces predicate and policy of the one filed under the same class before.
    /// A failure changes nothing.
    void file(const Class& owner, ClassPredicate predicate, ResultPolicy policy);
    /// Changes the policy of the rule filed under the class, if there is one.
    void setPolicy(const Class& owner, ResultPolicy policy);

    /// The first rule in order whose predicate accepts the class; null where none does.
    const Rule* firstAccepting(const Class& type) const {
        for (Index index = first_; index != none;) {
            const Node& node = *nodes_[index];
            if (node.rule.accepts(type)) return &node.rule;
            index = node.next;
        }
        return nullptr;
    }

    /// Shows all rules to `visit`, in order.
    template <class Visit>
    void forEach(const Visit& visit) const {
        for (Index index = first_; index != none; index = nodes_[index]->next) {
            visit(nodes_[index]->rule);
        }
    }

    /// Whether the rule asked first accepts every class, or there is none.
    bool answersAlike() const noexcept { return first_ == none || nodes_[first_]->rule.acceptsAll; }

  private:
    using Index = std::uint32_t;
    static constexpr Index none = 0xFFFFFFFFU;

    struct Node {
        Rule rule;
        Index left = none;
        Index right = none;
        Index next = none;
    };
    /// Where a descent ended: at the entry that answers for the class, or below `parent`.
    struct Place {
        Index found = none;
        Index parent = none;
        Index before = none;
        bool toTheRight = false;
    };
    Place descend(const Class& owner) const;

    /// Behind pointers, because a predicate that is being asked may file further rules.
    std::vector<std::unique_ptr<Node>> nodes_;
    Index first_ = none;
    std::size_t filed_ = 0;
};

}  // namespace nuv::zero::traversal::internal
