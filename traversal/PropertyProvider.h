#pragma once

#include <memory>
#include <unordered_map>
#include <vector>

#include "traversal/AssociationSetting.h"
#include "traversal/CompositeMatcher.h"
#include "traversal/support/FlatMap.h"
#include "traversal/support/Lent.h"

namespace nuv::zero::traversal {

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
    /// Whether a property is ever followed: it links to other elements and holds its values itself.
    static bool isEligible(const Property& property) {
        return property && access::isAssociation(property) && !access::isDerived(property);
    }
    const MatchersMap& matchers() const noexcept { return rules_->matchers; }
    /// The policy that the rules of a property give a class; `Report` without rules.
    ResultPolicy policyOf(const Class& type, const Property& property) const {
        const CompositeMatcher* rules = rulesOf(property);
        return rules == nullptr ? ResultPolicy::Report : rules->getPolicy(type);
    }

  private:
    friend class internal::Walk;
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
        const Settings* known = settingsCache_.find(type);
        return known != nullptr ? **known : *compute(type);
    }
    MODELING_NUV0_TRAVERSAL_LOCAL const Settings& compute(const Class& type);
    /// Whether a property is among the settings of a class that elements were met of.
    MODELING_NUV0_TRAVERSAL_LOCAL bool isFollowed(const Class& type, const Property& property);
    const CompositeMatcher* rulesOf(const Property& property) const {
        const CompositeMatcher* const* rules = property ? rules_->index.find(property) : nullptr;
        return rules == nullptr ? nullptr : *rules;
    }

    /// Shared with copies, because the answers refer to them.
    std::shared_ptr<const IndexedRules> rules_;
    internal::FlatMap<Class, Class, Settings, internal::WalkSupport::Hash<Class>> settingsCache_;
};

}  // namespace nuv::zero::traversal
