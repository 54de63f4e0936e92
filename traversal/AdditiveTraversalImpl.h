#pragma once

#include <functional>
#include <initializer_list>
#include <memory>
#include <vector>

#include "AbstractTraversal.h"
#include "Export.h"

namespace nuv::zero::traversal MODELING_NUV0_OVER {

/// The additive kind: follows nothing but what `traverse` names.
///
///     auto result = Spec::additiveTraversal()
///                       ->traverse(ports, ResultPolicy::Report)
///                       ->traverse(type, isTypedPort, ResultPolicy::WalkOnly)
///                       ->depthFirst({block});
///
/// From each element, the named properties are followed in the order in which they were first
/// named. A property is followed from elements of the classes that have it and that its rules
/// accept. `setResultPolicy` refines a rule given by `traverse` under the same owner class; for a
/// property that no `traverse` named it does nothing.
class MODELING_NUV0_TRAVERSAL_EXPORT AdditiveTraversalImpl
    : public AbstractTraversal<AdditiveTraversalImpl> {
  public:
    explicit AdditiveTraversalImpl(InstantiateToken token);
    AdditiveTraversalImpl(const AdditiveTraversalImpl& other);
    AdditiveTraversalImpl& operator=(const AdditiveTraversalImpl& other);
    ~AdditiveTraversalImpl() override;

    /// Follows the matcher's property from the classes that it accepts. Given again under the same
    /// owner class, the new rule replaces the old one.
    std::shared_ptr<AdditiveTraversalImpl> traverse(const PropertyMatcher& matcher,
                                                    ResultPolicy policy);
    /// The same with another predicate in place of the matcher's own.
    std::shared_ptr<AdditiveTraversalImpl> traverse(
        const PropertyMatcher& matcher, const std::function<bool(const Class&)>& classMatcher,
        ResultPolicy policy);
    template <PredicateOverElements F, class = typename RefusedPredicate<F>::Always>
    std::shared_ptr<AdditiveTraversalImpl> traverse(const PropertyMatcher& matcher,
                                                    const F& classMatcher,
                                                    ResultPolicy policy) = delete;
    std::shared_ptr<AdditiveTraversalImpl> traverse(const std::vector<PropertyMatcher>& matchers,
                                                    ResultPolicy policy);
    /// For lists in braces, which may hold one property only.
    std::shared_ptr<AdditiveTraversalImpl> traverse(std::initializer_list<PropertyMatcher> matchers,
                                                    ResultPolicy policy) {
        return traverse(std::vector<PropertyMatcher>(matchers), policy);
    }

  private:
    void apply(const RuleCall& call) override;
    void follow(const PropertyMatcher& matcher, ResultPolicy policy);
    void forgetRules() override;
    void doSetResultPolicy(const PropertyMatcher& matcher, ResultPolicy policy) override;
    std::shared_ptr<PropertyProvider> createPropertyProvider() override;

    std::vector<Property> traversedProperties_;
};

}  // namespace nuv::zero::traversal
