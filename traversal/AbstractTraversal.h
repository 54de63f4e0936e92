#pragma once

#include <concepts>
#include <initializer_list>
#include <memory>
#include <ranges>
#include <type_traits>
#include <unordered_map>
#include <utility>
#include <vector>

#include "CompositeMatcher.h"
#include "Export.h"
#include "PropertyMatcher.h"
#include "PropertyProvider.h"
#include "RuleCall.h"
#include "internal/TraversalResult.h"

namespace nuv::zero::traversal MODELING_NUV0_OVER {

/// A range of things that name elements, to run a traversal on.
template <class Range>
concept ElementRange = std::ranges::input_range<Range> &&
    std::convertible_to<std::ranges::range_reference_t<Range>, ModelElement> &&
    !std::same_as<std::remove_cvref_t<Range>, std::vector<ModelElement>>;

/// One thing that names an element. What is a list of elements as well is taken as the list.
template <class Element>
concept SingleElement = std::convertible_to<Element, ModelElement> && !ElementRange<Element> &&
                        !std::convertible_to<Element, std::vector<ModelElement>>;

/// What the three kinds of traversal builder share: rules that accumulate, and running.
///
///     auto result = Spec::subtractiveTraversal()
///                       ->prune(owner)
///                       ->includeInitialPseudoLink(ResultPolicy::WalkOnly)
///                       ->depthFirst({a, b});
///
/// Every fluent operation changes this builder and returns it. Running takes a snapshot: later
/// rules do not reach results made earlier, and a builder may be run any number of times.
///
/// A builder made by `Spec` lives in a shared pointer. A copy has the same rules and runs, but no
/// shared pointer owns it: its fluent operations throw `std::bad_weak_ptr` after their change.
/// Other failures (a predicate that throws, an allocation) pass through and leave the builder
/// usable. One thread at a time; the results are independent of it.
template <class Impl>
class AbstractTraversal : public std::enable_shared_from_this<Impl> {
  public:
    AbstractTraversal();
    AbstractTraversal(const AbstractTraversal& other);
    AbstractTraversal& operator=(const AbstractTraversal& other);
    virtual ~AbstractTraversal();

    /// Whether the inputs themselves are reported, each as a link without source and property;
    /// they are unless this is called with `WalkOnly`. The last call wins.
    std::shared_ptr<Impl> includeInitialPseudoLink(ResultPolicy policy);

    /// Gives the links of a property a policy, in the manner of the kind. A matcher without a
    /// property is ignored.
    std::shared_ptr<Impl> setResultPolicy(const PropertyMatcher& matcher, ResultPolicy policy);
    std::shared_ptr<Impl> setResultPolicy(const std::vector<PropertyMatcher>& matchers,
                                          ResultPolicy policy);
    /// For lists in braces, which may hold one property only.
    std::shared_ptr<Impl> setResultPolicy(std::initializer_list<PropertyMatcher> matchers,
                                          ResultPolicy policy) {
        return setResultPolicy(std::vector<PropertyMatcher>(matchers), policy);
    }

    /// The links reachable from the inputs, input by input in their order; see `TraversalResult`.
    /// Running changes nothing, so a builder that is handed out as constant runs too.
    std::shared_ptr<internal::TraversalResult> run(const std::vector<ModelElement>& inputs,
                                                   Algo algo) const {
        // The hook that kinds override is not constant, though all it does is take a snapshot.
        return const_cast<AbstractTraversal*>(this)->createResult(inputs, algo,
                                                                  initialPseudoLinkPolicy_);
    }
    std::shared_ptr<internal::TraversalResult> depthFirst(
        const std::vector<ModelElement>& inputs) const {
        return run(inputs, Algo::DepthFirstPreOrder);
    }
    std::shared_ptr<internal::TraversalResult> depthFirstPostOrder(
        const std::vector<ModelElement>& inputs) const {
        return run(inputs, Algo::DepthFirstPostOrder);
    }
    std::shared_ptr<internal::TraversalResult> breadthFirst(
        const std::vector<ModelElement>& inputs) const {
        return run(inputs, Algo::BreadthFirst);
    }

    /// The same for any range of elements.
    template <ElementRange Range>
    std::shared_ptr<internal::TraversalResult> run(Range&& inputs, Algo algo) const {
        std::vector<ModelElement> elements;
        for (auto&& element : inputs) {
            elements.push_back(static_cast<ModelElement>(std::forward<decltype(element)>(element)));
        }
        return run(elements, algo);
    }
    template <ElementRange Range>
    std::shared_ptr<internal::TraversalResult> depthFirst(Range&& inputs) const {
        return run(std::forward<Range>(inputs), Algo::DepthFirstPreOrder);
    }
    template <ElementRange Range>
    std::shared_ptr<internal::TraversalResult> depthFirstPostOrder(Range&& inputs) const {
        return run(std::forward<Range>(inputs), Algo::DepthFirstPostOrder);
    }
    template <ElementRange Range>
    std::shared_ptr<internal::TraversalResult> breadthFirst(Range&& inputs) const {
        return run(std::forward<Range>(inputs), Algo::BreadthFirst);
    }

    /// The same for one element, without braces. Templates, so that braces mean a list as before.
    template <SingleElement Element>
    std::shared_ptr<internal::TraversalResult> run(const Element& input, Algo algo) const {
        return run(std::vector<ModelElement>(1, static_cast<ModelElement>(input)), algo);
    }
    template <SingleElement Element>
    std::shared_ptr<internal::TraversalResult> depthFirst(const Element& input) const {
        return run(input, Algo::DepthFirstPreOrder);
    }
    template <SingleElement Element>
    std::shared_ptr<internal::TraversalResult> depthFirstPostOrder(const Element& input) const {
        return run(input, Algo::DepthFirstPostOrder);
    }
    template <SingleElement Element>
    std::shared_ptr<internal::TraversalResult> breadthFirst(const Element& input) const {
        return run(input, Algo::BreadthFirst);
    }

  private:
    friend class RuleCheck;
    // The slots of every kind come first: what is added later stands behind them.
    virtual void doSetResultPolicy(const PropertyMatcher& matcher, ResultPolicy policy) = 0;
    virtual std::shared_ptr<PropertyProvider> createPropertyProvider() = 0;

  protected:
    /// Only `Spec` can make one, so every builder that callers get lives in a shared pointer.
    class InstantiateToken {
      public:
        /// The compiler's own would let `std::bit_cast` make a token of any byte.
        // NOLINTNEXTLINE(modernize-use-equals-default): see above
        InstantiateToken(const InstantiateToken& /*other*/) noexcept {}
        InstantiateToken& operator=(const InstantiateToken&) = default;

      private:
        friend class Spec;
        explicit InstantiateToken() {}  // NOLINT(modernize-use-equals-default): not an aggregate
    };
    friend class Spec;

    const MatchersMap& matchersMap() const noexcept { return matchersMap_; }
    MatchersMap& matchersMap() noexcept { return matchersMap_; }

    /// Does what a call says, and remembers the call. Where that fails, neither has happened.
    void give(RuleCall call);
    /// Forgets all rules.
    virtual void forgetRules();
    /// What a call that gives a rule does. Kinds that know further calls than `setResultPolicy`
    /// override it.
    virtual void apply(const RuleCall& call);

  private:
    std::shared_ptr<internal::TraversalResult> createResult(
        const std::vector<ModelElement>& elements, Algo algo, ResultPolicy policy);

    MatchersMap matchersMap_;
    std::vector<RuleCall> calls_;
    ResultPolicy initialPseudoLinkPolicy_ = ResultPolicy::Report;
};

// Compiled once, inside the library.
extern template class MODELING_NUV0_TRAVERSAL_EXPORT AbstractTraversal<AdditiveTraversalImpl>;
extern template class MODELING_NUV0_TRAVERSAL_EXPORT AbstractTraversal<CompositionTraversalImpl>;
extern template class MODELING_NUV0_TRAVERSAL_EXPORT AbstractTraversal<SubtractiveTraversalImpl>;

}  // namespace nuv::zero::traversal
