#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <variant>
#include <vector>

#include "tests/oracle/CallRecorder.h"
#include "tests/oracle/EngineModel.h"
#include "tests/oracle/Rules.h"
#include "traversal/Spec.h"

namespace nuv::zero::oracle {

/// A random world in which nothing fails and no predicate changes its mind, and random rules of a
/// random kind, given to a builder of the library and to the oracle alike.
///
/// Every rule has a predicate of its own in the world, and the name `r` and the index of that
/// predicate: who is asked tells which rule it was.
class CalmCase {
  public:
    explicit CalmCase(Choices& choices);

    const PlainWorld& world() const { return world_; }
    const EngineModel& model() const { return model_; }
    Kind kind() const { return kind_; }
    const Rules& rules() const { return rules_; }
    /// The number of the rule with a predicate among those given for its property, from 1.
    int numberOf(int predicate) const { return numbers_.at(predicate); }
    /// What the library has asked since the last time.
    std::vector<std::string> takeAsked() { return asked_.take(); }

    std::shared_ptr<traversal::internal::TraversalResult> run(const std::vector<int>& inputs,
                                                              int algo);
    /// A filter of the world, for the library.
    std::function<traversal::ResultPolicy(const traversal::internal::Link&)> filter(int index);

  private:
    using Builder = std::variant<std::shared_ptr<traversal::AdditiveTraversalImpl>,
                                 std::shared_ptr<traversal::CompositionTraversalImpl>,
                                 std::shared_ptr<traversal::SubtractiveTraversalImpl>>;

    static PlainWorld makeCalmWorld(Choices& choices);
    void give(RuleOperation rule);
    void count(const RuleOperation& rule);
    template <class Impl>
    void apply(Impl& builder, const RuleOperation& rule);

    PlainWorld world_;
    Kind kind_;
    EngineModel model_;
    Rules rules_;
    Builder builder_;
    CallRecorder asked_;
    std::map<int, int> numbers_;
    /// How many rules each property was given.
    std::map<int, int> given_;
};

}  // namespace nuv::zero::oracle
