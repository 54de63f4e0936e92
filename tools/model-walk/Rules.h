#pragma once

#include <memory>
#include <string>
#include <variant>
#include <vector>

#include "CommandLine.h"
#include "Names.h"
#include "traversal/Traversal.h"

namespace model_walk {

/// The traversal that the options of the group "rules" describe.
class Rules {
  public:
    /// Throws `UsageError` for a name that means nothing and for rules that the kind does not have.
    Rules(const CommandLine& line, const Names& names);

    /// Ready to be walked from these elements.
    std::shared_ptr<nuv::zero::traversal::TraversalResult> run(
        const std::vector<nuv::zero::ModelElement>& inputs) const;
    nuv::zero::traversal::Explanation explain(const nuv::zero::meta::Class& type) const;
    std::vector<nuv::zero::traversal::RuleFinding> check(
        const std::vector<nuv::zero::meta::Class>& classes) const;
    bool isFollowed(const nuv::zero::meta::Class& type,
                    const nuv::zero::meta::Property& property) const;

  private:
    template <class Builder>
    using Pointer = std::shared_ptr<Builder>;
    using Builders = std::variant<Pointer<nuv::zero::traversal::AdditiveTraversalImpl>,
                                  Pointer<nuv::zero::traversal::CompositionTraversalImpl>,
                                  Pointer<nuv::zero::traversal::SubtractiveTraversalImpl>>;
    static Builders builderOf(const CommandLine& line, const Names& names);

    Builders builder_;
    nuv::zero::traversal::Algo order_;
    nuv::zero::traversal::UniquenessMode uniqueness_;
    std::optional<std::size_t> upTo_;
};

/// Whether the rule that the finding is about can never do anything, whatever the model holds.
bool canNeverMatch(const nuv::zero::traversal::RuleFinding& finding);

}  // namespace model_walk
