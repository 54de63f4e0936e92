#include "Rules.h"

#include <vector>

namespace model_walk {
namespace {

using nuv::zero::ModelElement;
using nuv::zero::meta::Class;
using nuv::zero::meta::Property;
using nuv::zero::traversal::PropertyMatcher;
using nuv::zero::traversal::ResultPolicy;
using nuv::zero::traversal::ResultSetup;
using nuv::zero::traversal::Spec;
using nuv::zero::traversal::TraversalResult;

PropertyMatcher matcherOf(const Rule& rule, const Names& names) {
    const Class type = names.classNamed(rule.className);
    const Property property = names.propertyNamed(type, rule.propertyName);
    if (!property->isAssociation()) {
        throw UsageError("the property in '" + rule.text + "' holds values, no links to follow");
    }
    const auto isOfType = [type](const Class& other) {
        return nuv::zero::access::conformsTo(other, type);
    };
    return {property, isOfType, type};
}

void addRules(nuv::zero::traversal::AdditiveTraversalImpl& builder, const Options& options,
              const Names& names) {
    for (const Rule& rule : options.traverse) builder.traverse(matcherOf(rule, names), rule.policy);
}

template <class Builder>
void addRules(Builder& builder, const Options& options, const Names& names) {
    for (const Rule& rule : options.prune) builder.prune(matcherOf(rule, names));
}

template <class Builder>
std::shared_ptr<TraversalResult> run(const std::shared_ptr<Builder>& builder,
                                     const Options& options, const Names& names,
                                     const std::vector<ModelElement>& inputs) {
    addRules(*builder, options, names);
    for (const Rule& rule : options.policies) {
        builder->setResultPolicy(matcherOf(rule, names), rule.policy);
    }
    builder->includeInitialPseudoLink(options.pseudoLinks ? ResultPolicy::Report
                                                          : ResultPolicy::WalkOnly);
    return builder->run(inputs, options.order);
}

std::shared_ptr<TraversalResult> runKind(const Options& options, const Names& names,
                                         const std::vector<ModelElement>& inputs) {
    switch (options.kind) {
        case Kind::Additive:
            return run(Spec::additiveTraversal(), options, names, inputs);
        case Kind::Subtractive:
            return run(Spec::subtractiveTraversal(), options, names, inputs);
        case Kind::Composition:
            break;
    }
    return run(Spec::compositionTraversal(), options, names, inputs);
}

}  // namespace

std::shared_ptr<TraversalResult> prepare(const Options& options, const Names& names,
                                         const nuv::zero::xmi::LoadedModel& model) {
    std::vector<ModelElement> inputs;
    for (const std::string& each : options.from) inputs.push_back(names.elementNamed(each));
    if (options.from.empty()) inputs = model.roots();
    std::shared_ptr<TraversalResult> result = runKind(options, names, inputs);
    ResultSetup(result).unique(options.uniqueness);
    return result;
}

}  // namespace model_walk
