#include "tests/oracle/Rules.h"

#include <algorithm>

namespace nuv::zero::oracle {

namespace {

const PropertyDefinition& definitionOf(const PlainWorld& world, int property) {
    return world.properties[static_cast<std::size_t>(property)];
}

bool isFollowable(const PlainWorld& world, int property) {
    if (property == none) return false;
    const PropertyDefinition& definition = definitionOf(world, property);
    return definition.association && !definition.derived;
}

}  // namespace

bool comesBefore(const PlainWorld& world, int type, int other) {
    if (type == other) return false;
    if (type == none || other == none) return type == none;
    if (world.isKindOf(type, other)) return true;
    const std::u16string& name = world.classes[static_cast<std::size_t>(type)].qualifiedName;
    const std::u16string& otherName = world.classes[static_cast<std::size_t>(other)].qualifiedName;
    return std::lexicographical_compare(
        name.begin(), name.end(), otherName.begin(), otherName.end(),
        [](char16_t a, char16_t b) { return static_cast<unsigned>(a) < static_cast<unsigned>(b); });
}

RuleSet::Tree RuleSet::copyOf(const Tree& tree) {
    if (!tree) return nullptr;
    auto copy = std::make_shared<FiledRule>(*tree);
    copy->left = copyOf(tree->left);
    copy->right = copyOf(tree->right);
    return copy;
}

RuleSet::FiledRule* RuleSet::find(const PlainWorld& world, int owner) const {
    FiledRule* bound = nullptr;
    for (FiledRule* node = root_.get(); node != nullptr;) {
        if (comesBefore(world, node->owner, owner)) {
            node = node->right.get();
        } else {
            bound = node;
            node = node->left.get();
        }
    }
    return bound != nullptr && !comesBefore(world, owner, bound->owner) ? bound : nullptr;
}

void RuleSet::compose(const PlainWorld& world, int owner, const RulePredicate& predicate,
                      int policy) {
    if (FiledRule* const present = find(world, owner)) {
        present->predicate = predicate;
        present->policy = policy;
        return;
    }
    Tree* place = &root_;
    while (*place) {
        FiledRule& node = **place;
        place = comesBefore(world, node.owner, owner) ? &node.right : &node.left;
    }
    *place = std::make_shared<FiledRule>(FiledRule{owner, predicate, policy, nullptr, nullptr});
}

void RuleSet::composePolicy(const PlainWorld& world, int owner, int policy) {
    if (FiledRule* const present = find(world, owner)) present->policy = policy;
}

const RuleSet::FiledRule* RuleSet::firstAccepting(const Tree& tree, int type,
                                                  Callbacks& callbacks) {
    if (!tree) return nullptr;
    if (const FiledRule* const node = firstAccepting(tree->left, type, callbacks)) return node;
    if (tree->predicate.accepts(type, callbacks)) return tree.get();
    return firstAccepting(tree->right, type, callbacks);
}

std::pair<bool, int> RuleSet::anyMatches(int type, Callbacks& callbacks) const {
    if (const FiledRule* const node = firstAccepting(root_, type, callbacks))
        return {true, node->policy};
    return {false, prunes_ ? 1 : 0};
}

void Rules::apply(const PlainWorld& world, const RuleOperation& rule, Callbacks& callbacks) {
    using Operation = RuleOperation::Kind;
    RulePredicate predicate{rule.predicate};
    switch (rule.kind) {
        case Operation::Pseudo:
            pseudoLinkPolicy = rule.policy;
            return;
        case Operation::SetPolicy:
            if (rule.property == none) return;
            setPolicy(world, rule.property, predicate, rule.owner, rule.policy, callbacks);
            return;
        case Operation::AddWith:
            predicate = RulePredicate{rule.otherPredicate};
            break;
        case Operation::Add:
            break;
    }
    if (kind == Kind::Additive) {
        traverse(world, rule.property, predicate, rule.owner, rule.policy);
    } else {
        prune(world, rule.property, predicate, rule.owner);
    }
}

void Rules::traverse(const PlainWorld& world, int property, const RulePredicate& predicate,
                     int owner, int policy) {
    if (sets.count(property) == 0) {
        traversed.push_back(property);
        sets.emplace(property, RuleSet(false));
    }
    sets.at(property).compose(world, owner, predicate, policy);
}

void Rules::prune(const PlainWorld& world, int property, const RulePredicate& predicate,
                  int owner) {
    if (sets.count(property) == 0) sets.emplace(property, RuleSet(true));
    sets.at(property).compose(world, owner, predicate, 0);
}

void Rules::setPolicy(const PlainWorld& world, int property, const RulePredicate& predicate,
                      int owner, int policy, Callbacks& callbacks) {
    const auto entry = sets.find(property);
    if (kind == Kind::Additive) {
        if (entry != sets.end()) entry->second.composePolicy(world, owner, policy);
        return;
    }
    if (entry == sets.end()) {
        sets.emplace(property, RuleSet(false))
            .first->second.compose(world, owner, predicate, policy);
        return;
    }
    RuleSet& set = entry->second;
    const auto [matched, found] = set.anyMatches(owner, callbacks);
    if (set.prunes() && !matched) set.compose(world, owner, RulePredicate{none, false}, found);
}

Settings NaiveProvider::settingsOf(int type, Callbacks& callbacks) {
    if (cache_.count(type) == 0) {
        std::vector<Setting> settings = rules_.kind == Kind::Additive
                                            ? additiveSettings(type, callbacks)
                                            : subtractiveSettings(type, callbacks);
        cache_[type] = std::make_shared<const std::vector<Setting>>(std::move(settings));
    }
    return cache_.at(type);
}

bool NaiveProvider::isFollowed(int type, int property) const {
    const auto known = cache_.find(type);
    return known != cache_.end() &&
           std::any_of(known->second->begin(), known->second->end(),
                       [&](const Setting& setting) { return setting.property == property; });
}

std::vector<Setting> NaiveProvider::additiveSettings(int type, Callbacks& callbacks) const {
    std::vector<Setting> settings;
    for (const int property : rules_.traversed) {
        if (!isFollowable(*world_, property)) continue;
        if (!world_->hasProperty(type, property)) continue;
        const auto [matched, policy] = rules_.sets.at(property).anyMatches(type, callbacks);
        if (matched) settings.push_back({property, policy});
    }
    return settings;
}

std::vector<Setting> NaiveProvider::subtractiveSettings(int type, Callbacks& callbacks) const {
    std::vector<Setting> settings;
    for (const int property : world_->propertiesOf(type)) {
        if (!isFollowable(*world_, property)) continue;
        if (rules_.kind == Kind::Composition && !definitionOf(*world_, property).composite)
            continue;
        const auto entry = rules_.sets.find(property);
        if (entry == rules_.sets.end()) {
            settings.push_back({property, 1});
            continue;
        }
        const auto [matched, policy] = entry->second.anyMatches(type, callbacks);
        if (!(entry->second.prunes() && matched)) settings.push_back({property, policy});
    }
    std::sort(settings.begin(), settings.end(), [this](const Setting& a, const Setting& b) {
        const PropertyDefinition& one = definitionOf(*world_, a.property);
        const PropertyDefinition& other = definitionOf(*world_, b.property);
        if (one.composite != other.composite) return other.composite;
        return one.name < other.name;
    });
    return settings;
}

int NaiveProvider::resultPolicy(int type, int property, Callbacks& callbacks) const {
    if (property == none) return 1;
    const auto entry = rules_.sets.find(property);
    if (entry == rules_.sets.end()) return 1;
    return entry->second.anyMatches(type, callbacks).second;
}

}  // namespace nuv::zero::oracle
