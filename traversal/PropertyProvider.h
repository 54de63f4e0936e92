#pragma once

#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

#include "AssociationSetting.h"
#include "CompositeMatcher.h"
#include "Export.h"
#include "PropertyDecision.h"
#include "support/FlatMap.h"
#include "support/Lent.h"

namespace nuv::zero::traversal MODELING_NUV0_OVER {

/// Says which properties a walk follows from an element, in which order and with which policy.
///
/// A builder makes one per run from a copy of its rules. The answer for a class is computed once,
/// on first demand, and shared by all elements of that class; answers are never removed, so what
/// `getPropertiesToTraverse` returned stays valid as long as the provider or the pointer lives.
///
/// A copy shares the rules and the answers computed so far. A predicate or a framework
/// operation that throws passes through and leaves nothing behind: the next element of the class
/// tries again. One thread at a time.
class MODELING_NUV0_TRAVERSAL_EXPORT PropertyProvider {
  public:
    using Settings = std::shared_ptr<std::vector<AssociationSetting>>;

    explicit PropertyProvider(std::unordered_map<Property, CompositeMatcher> matchers);
    PropertyProvider(const PropertyProvider& other);
    PropertyProvider& operator=(const PropertyProvider& other);
    virtual ~PropertyProvider();

    /// The properties to follow from elements of a class, in order.
    virtual std::vector<AssociationSetting> computeSettings(const Class& type) = 0;
    /// The policy of one property for the elements of one class. Asked for every link that may be
    /// reported, unless no predicate has a say in it.
    virtual ResultPolicy getResultPolicy(const Class& type, const Property& property) = 0;

    /// The settings of the element's class: the same vector for every element of the class.
    std::shared_ptr<std::vector<AssociationSetting>> getPropertiesToTraverse(
        const ModelElement& element);

  protected:
    /// For a provider whose `getResultPolicy` is `policyOf`: walks then ask the rules themselves.
    void letWalksAskRules() noexcept { isAskedItself_ = false; }
    /// Why a property is never followed; nothing where it links to other elements and holds its
    /// values itself.
    static std::optional<Reason> obstacleOf(const Property& property) {
        if (!property || !access::isAssociation(property)) return Reason::NotAnAssociation;
        if (access::isDerived(property)) return Reason::Derived;
        return std::nullopt;
    }
    /// What the rules decide about each property that they might follow from elements of a class:
    /// those that are followed, in the order in which they come before `arrange`, and such as are
    /// not. By default all that `computeSettings` gives.
    virtual std::vector<PropertyDecision> decide(const Class& type);
    /// Brings properties into the order in which they are followed.
    virtual void arrange(std::vector<PropertyDecision>& decisions);
    /// The settings that decisions come to.
    std::vector<AssociationSetting> settingsBy(std::vector<PropertyDecision> decisions);

    const MatchersMap& matchers() const noexcept { return rules_->matchers; }
    /// The policy that the rules of a property give a class; `Report` without rules.
    ResultPolicy policyOf(const Class& type, const Property& property) const {
        const CompositeMatcher* rules = rulesOf(property);
        return rules == nullptr ? ResultPolicy::Report : rules->getPolicy(type);
    }

  private:
    friend class internal::Walk;
    friend class ClassExplainer;
    friend class RuleCheck;
    /// Finds the rules of a property faster than the map that holds them: links ask.
    using RuleIndex = internal::FlatMap<Property, internal::Lent<Property>, const CompositeMatcher*,
                                        internal::WalkSupport::Hash<Property>>;

    struct IndexedRules {
        MODELING_NUV0_TRAVERSAL_LOCAL explicit IndexedRules(MatchersMap given);

        const MatchersMap matchers;
        RuleIndex index;
    };

    /// The settings without a pointer; the reference lasts as long as the provider.
    const std::vector<AssociationSetting>& settingsOf(const Class& type) {
        // Elements of one class come in rows.
        if (latest_ != nullptr && latestClass_.get() == type) return *latest_;
        const Settings* known = settingsCache_.find(type);
        latest_ = (known != nullptr ? *known : compute(type)).get();
        latestClass_ = internal::Lent<Class>(type);
        return *latest_;
    }
    MODELING_NUV0_TRAVERSAL_LOCAL const Settings& compute(const Class& type);
    /// The settings of a class that elements were met of; null for any other. Asks nobody.
    const std::vector<AssociationSetting>* knownSettingsOf(const Class& type) const noexcept {
        const Settings* known = settingsCache_.find(type);
        return known == nullptr ? nullptr : known->get();
    }
    /// Whether a property is among the settings of a class that elements were met of.
    MODELING_NUV0_TRAVERSAL_LOCAL bool isFollowed(const Class& type, const Property& property);
    /// The policy of a link whose property has rules with predicates.
    ResultPolicy policyBy(const CompositeMatcher& rules, const Class& type,
                          const Property& property) {
        return isAskedItself_ ? getResultPolicy(type, property) : rules.getPolicy(type);
    }
    const CompositeMatcher* rulesOf(const Property& property) const {
        const CompositeMatcher* const* rules = property ? rules_->index.find(property) : nullptr;
        return rules == nullptr ? nullptr : *rules;
    }

    /// Shared with copies, because the answers refer to them.
    std::shared_ptr<const IndexedRules> rules_;
    bool isAskedItself_ = true;
    internal::FlatMap<Class, Class, Settings, internal::WalkSupport::Hash<Class>> settingsCache_;
    /// The answer that was given last.
    internal::Lent<Class> latestClass_;
    const std::vector<AssociationSetting>* latest_ = nullptr;
};

}  // namespace nuv::zero::traversal
