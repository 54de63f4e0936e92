#include <unordered_map>
#include <utility>
#include <vector>

#include "Consumer.h"
#include "traversal/ClassHierarchyComparator.h"
#include "traversal/ClassPredicates.h"
#include "traversal/ContainerReferences.h"
#include "traversal/PruneRules.h"
#include "traversal/Traversal.h"

namespace nuv_consumer {

namespace {

using namespace nuv::zero::traversal;
using Rules = std::unordered_map<Property, CompositeMatcher>;

bool accept(const Class& /*type*/) {
    return true;
}

/// Follows one property from every class.
class Follow : public PropertyProvider {
  public:
    Follow(Rules rules, const Property& property)
        : PropertyProvider(std::move(rules)), property_(property) {}
    std::vector<AssociationSetting> computeSettings(const Class& /*type*/) override {
        return {AssociationSetting(property_, ResultPolicy::Report)};
    }
    ResultPolicy getResultPolicy(const Class& type, const Property& property) override {
        return policyOf(type, property);
    }

  private:
    Property property_;
};

void callPropertyMatcher(const Station& station) {
    PropertyMatcher simple(station.next);
    const PropertyMatcher full(station.parts, accept, station.block);
    PropertyMatcher copy(full);
    PropertyMatcher moved(std::move(copy));
    copy = moved;
    simple = std::move(moved);
    expect(simple.getProperty() == station.parts && simple.getOwner() == station.block &&
               simple.getMatcher()(station.block) && simple.matches(station.block),
           "a rule keeps what it was made of");
}

void callReadyMadeRules(const Station& station) {
    const ClassPredicate kind = isKindOf(station.block);
    expect(internal::combinable(kind)(station.block) &&
               anyOf(kind, isExactly(station.block))(station.block) &&
               allOf(kind, accept)(station.block) && !noneOf(kind)(station.block),
           "predicates are made and combined");
    expect(containerReferencesOf(station.block).empty() &&
               containerReferencesOf(std::vector<Class>{station.block}).empty(),
           "nothing refers to its container");
}

void callCompositeMatcher(const Station& station) {
    CompositeMatcher rules(CompositeMatcher::VisitMode::Visit);
    rules.composeMatcher(station.block, accept, ResultPolicy::Report);
    rules.composePolicy(station.block, ResultPolicy::Extended);
    CompositeMatcher copy(rules);
    CompositeMatcher moved(std::move(copy));
    copy = moved;
    rules = std::move(moved);
    expect(rules.anyMatches(station.block) == std::pair(true, ResultPolicy::Extended) &&
               rules.getPolicy(station.block) == ResultPolicy::Extended && !rules.isPruning(),
           "rules are asked");
    expect(!rules.answersAlike(), "a predicate has a say");
    expect(EveryClass()(station.block), "every class is accepted");
    expect(!ClassHierarchyComparator()(station.block, station.block), "no class precedes itself");
}

void callRuleTree(const Station& station) {
    internal::RuleTree tree;
    tree.file(station.block, accept, ResultPolicy::Report);
    tree.setPolicy(station.block, ResultPolicy::Extended);
    internal::RuleTree copy(tree);
    internal::RuleTree moved(std::move(copy));
    copy = moved;
    tree = std::move(moved);
    expect(tree.firstAccepting(station.block)->accepts(station.block) && !tree.answersAlike(),
           "a tree keeps its rules");
}

void callPruneRules(const Station& station) {
    Rules rules;
    doSetResultPolicyForMatchersMap(rules, station.next, ResultPolicy::Extended);
    internal::pruneInMatchersMap(rules, station.parts);
    expect(rules.at(station.parts).isPruning() && !rules.at(station.next).isPruning(),
           "rules are filed");
}

void callAssociationSetting(const Station& station) {
    AssociationSetting none;
    AssociationSetting setting(station.parts, ResultPolicy::Extended);
    AssociationSetting copy(setting);
    AssociationSetting moved(std::move(copy));
    none = moved;
    copy = std::move(moved);
    none.prepareFor(station.block, nullptr);
    none.prefetch(station.one);
    expect(none.getProperty() == station.parts && none.property() == station.parts &&
               none.getPolicy() == none.policy() && none.rules() == nullptr &&
               none.read(station.one).size() == 2,
           "a setting keeps what it was made of");
}

void callPropertyProvider(const Station& station) {
    Follow provider({}, station.parts);
    PropertyProvider& base = provider;
    const Follow copy(provider);
    provider = copy;
    expect(base.computeSettings(station.block).size() == 1 &&
               base.getResultPolicy(station.block, station.parts) == ResultPolicy::Report,
           "a provider is asked");
    expect(base.getPropertiesToTraverse(station.one)->front().property() == station.parts,
           "a provider knows its settings");
}

}  // namespace

void callRules(Station& station) {
    callPropertyMatcher(station);
    callReadyMadeRules(station);
    callCompositeMatcher(station);
    callRuleTree(station);
    callPruneRules(station);
    callAssociationSetting(station);
    callPropertyProvider(station);
}

}  // namespace nuv_consumer
