#pragma once

#include <unordered_map>

#include "traversal/Spec.h"

namespace nuv::zero::test {

/// Lets a test see the rules that a builder has gathered.
template <class Impl>
class BuilderRules : public Impl {
  public:
    using Map = std::unordered_map<traversal::Property, traversal::CompositeMatcher>;

    static const Map& of(const Impl& builder) {
        using Getter = const Map& (Impl::*)() const noexcept;
        return (builder.*static_cast<Getter>(&BuilderRules::matchersMap))();
    }
    static Map& of(Impl& builder) {
        using Getter = Map& (Impl::*)() noexcept;
        return (builder.*static_cast<Getter>(&BuilderRules::matchersMap))();
    }
};

template <class Impl>
const typename BuilderRules<Impl>::Map& rulesOf(const Impl& builder) {
    return BuilderRules<Impl>::of(builder);
}

/// The same, to change what no operation of a builder changes.
template <class Impl>
typename BuilderRules<Impl>::Map& changeableRulesOf(Impl& builder) {
    return BuilderRules<Impl>::of(builder);
}

}  // namespace nuv::zero::test
