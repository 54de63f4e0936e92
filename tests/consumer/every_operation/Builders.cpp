#include <array>
#include <memory>
#include <vector>

#include "Consumer.h"
#include "traversal/Traversal.h"

namespace nuv_consumer {

namespace {

using namespace nuv::zero::traversal;

std::size_t count(const std::shared_ptr<TraversalResult>& result) {
    std::size_t links = 0;
    for (auto walk = result->begin(); !!walk.getCurrent(); walk.advance()) ++links;
    return links;
}

/// What the kinds share; each has it exported for itself.
template <class Kind>
void callShared(const Station& station, Kind& builder) {
    const PropertyMatcher next(station.next);
    builder.includeInitialPseudoLink(ResultPolicy::WalkOnly);
    builder.setResultPolicy(next, ResultPolicy::Extended);
    builder.setResultPolicy(std::vector<PropertyMatcher>{next}, ResultPolicy::Extended);
    builder.setResultPolicy({station.next, station.parts}, ResultPolicy::Extended);

    const std::vector<ModelElement> inputs{station.one};
    const std::size_t links = count(builder.run(inputs, Algo::BreadthFirst));
    expect(count(builder.depthFirst(inputs)) == links &&
               count(builder.depthFirstPostOrder(inputs)) == links &&
               count(builder.breadthFirst(inputs)) == links,
           "every order gives the same links");
    const std::array<ModelElement, 1> range{station.one};
    expect(count(builder.run(range, Algo::BreadthFirst)) == links &&
               count(builder.depthFirst(range)) == links &&
               count(builder.depthFirstPostOrder(range)) == links &&
               count(builder.breadthFirst(range)) == links,
           "any range of elements is an input");
    const Kind& constant = builder;
    expect(count(constant.run(station.one, Algo::BreadthFirst)) == links &&
               count(constant.depthFirst(station.one)) == links &&
               count(constant.depthFirstPostOrder(station.one)) == links &&
               count(constant.breadthFirst(station.one)) == links,
           "one element is an input");
    Kind copy(builder);
    copy = builder;
    expect(count(copy.run(inputs, Algo::DepthFirstPreOrder)) == links, "a copy has the same rules");
}

/// Kinds of the consumer's own, on top of what the kinds share.
template <class Kind>
class Own : public AbstractTraversal<Kind> {
    void doSetResultPolicy(const PropertyMatcher& /*matcher*/, ResultPolicy /*policy*/) override {}
    std::shared_ptr<PropertyProvider> createPropertyProvider() override { return nullptr; }
};
template <class Kind>
class OwnPruning : public PruningTraversal<Kind> {
    std::shared_ptr<PropertyProvider> createPropertyProvider() override { return nullptr; }
};

template <class Derived>
void callBase() {
    Derived own;
    const Derived copy(own);
    own = copy;
    expect(own.run(std::vector<ModelElement>(), Algo::BreadthFirst) != nullptr,
           "a kind is derived");
}

/// Only `Spec` makes the token, so this never runs.
template <class Kind>
struct FromToken : Kind {
    static void make(const typename Kind::InstantiateToken* token) {
        if (token != nullptr) Kind(*token).depthFirst({});
    }
};

}  // namespace

void callBuilders(Station& station) {
    const PropertyMatcher next(station.next);
    const auto accept = [](const Class& /*type*/) { return true; };

    const auto additive = Spec::additiveTraversal();
    additive->traverse(next, ResultPolicy::Report);
    additive->traverse(next, accept, ResultPolicy::Report);
    additive->traverse(std::vector<PropertyMatcher>{next}, ResultPolicy::Report);
    additive->traverse({station.next, station.parts}, ResultPolicy::Report);
    callShared(station, *additive);

    const auto composition = Spec::compositionTraversal();
    composition->prune(next);
    composition->prune(next, accept);
    composition->prune(std::vector<PropertyMatcher>{next});
    composition->prune({station.next, station.previous});
    callShared(station, *composition);

    const auto subtractive = Spec::subtractiveTraversal();
    subtractive->prune(next);
    subtractive->prune(next, accept);
    subtractive->prune(std::vector<PropertyMatcher>{next});
    subtractive->prune({station.next, station.previous});
    callShared(station, *subtractive);

    callBase<Own<AdditiveTraversalImpl>>();
    callBase<Own<CompositionTraversalImpl>>();
    callBase<Own<SubtractiveTraversalImpl>>();
    callBase<OwnPruning<CompositionTraversalImpl>>();
    callBase<OwnPruning<SubtractiveTraversalImpl>>();
    FromToken<AdditiveTraversalImpl>::make(nullptr);
    FromToken<CompositionTraversalImpl>::make(nullptr);
    FromToken<SubtractiveTraversalImpl>::make(nullptr);
}

}  // namespace nuv_consumer
