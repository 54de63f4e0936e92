#pragma once

#include <map>
#include <memory>
#include <utility>
#include <vector>

#include "tests/oracle/Callbacks.h"

/// Selection rules, evaluated the plain way.
namespace nuv::zero::oracle {

/// Whether rules filed under one class come before those filed under the other.
bool comesBefore(const PlainWorld& world, int type, int other);

/// The predicate of a rule: one of the world's, or one that answers the same for every class.
struct RulePredicate {
    int predicate = none;
    bool otherwise = true;

    bool accepts(int type, Callbacks& callbacks) const {
        return predicate == none ? otherwise : callbacks.predicate(predicate, type);
    }
};

/// All rules of one property, in the order in which they are asked.
class RuleSet {
  public:
    explicit RuleSet(bool prunes) : prunes_(prunes) {}
    RuleSet(const RuleSet& other) : prunes_(other.prunes_), root_(copyOf(other.root_)) {}
    RuleSet& operator=(const RuleSet&) = delete;

    void compose(const PlainWorld& world, int owner, const RulePredicate& predicate, int policy);
    void composePolicy(const PlainWorld& world, int owner, int policy);
    std::pair<bool, int> anyMatches(int type, Callbacks& callbacks) const;
    bool prunes() const { return prunes_; }

  private:
    /// A rule, and the trees of those that were filed to its left and right.
    struct FiledRule {
        int owner;
        RulePredicate predicate;
        int policy;
        std::shared_ptr<FiledRule> left;
        std::shared_ptr<FiledRule> right;
    };
    using Tree = std::shared_ptr<FiledRule>;
    static Tree copyOf(const Tree& tree);
    FiledRule* find(const PlainWorld& world, int owner) const;
    static const FiledRule* firstAccepting(const Tree& tree, int type, Callbacks& callbacks);

    bool prunes_;
    Tree root_;
};

struct Setting {
    int property;
    int policy;
};
using Settings = std::shared_ptr<const std::vector<Setting>>;

/// What a builder has been told.
struct Rules {
    Kind kind;
    std::map<int, RuleSet> sets;
    std::vector<int> traversed;
    int pseudoLinkPolicy = 1;

    void apply(const PlainWorld& world, const RuleOperation& rule, Callbacks& callbacks);

  private:
    void traverse(const PlainWorld& world, int property, const RulePredicate& predicate, int owner,
                  int policy);
    void prune(const PlainWorld& world, int property, const RulePredicate& predicate, int owner);
    void setPolicy(const PlainWorld& world, int property, const RulePredicate& predicate, int owner,
                   int policy, Callbacks& callbacks);
};

/// Answers a walk's questions from a snapshot of the rules.
class NaiveProvider {
  public:
    NaiveProvider(const PlainWorld& world, Rules rules)
        : world_(&world), rules_(std::move(rules)) {}

    Settings settingsOf(int type, Callbacks& callbacks);
    int resultPolicy(int type, int property, Callbacks& callbacks) const;
    /// Whether a property is among the settings of a class for which they were asked.
    bool isFollowed(int type, int property) const;

  private:
    std::vector<Setting> additiveSettings(int type, Callbacks& callbacks) const;
    std::vector<Setting> subtractiveSettings(int type, Callbacks& callbacks) const;

    const PlainWorld* world_;
    Rules rules_;
    std::map<int, Settings> cache_;
};

}  // namespace nuv::zero::oracle
