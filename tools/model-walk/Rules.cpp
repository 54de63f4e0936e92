#include "Rules.h"

#include "UsageError.h"

namespace model_walk {
namespace {

using nuv::zero::ModelElement;
using nuv::zero::meta::Class;
using nuv::zero::meta::Property;
using nuv::zero::traversal::AdditiveTraversalImpl;
using nuv::zero::traversal::Algo;
using nuv::zero::traversal::isKindOf;
using nuv::zero::traversal::PropertyMatcher;
using nuv::zero::traversal::ResultPolicy;
using nuv::zero::traversal::ResultSetup;
using nuv::zero::traversal::RuleFinding;
using nuv::zero::traversal::RuleProblem;
using nuv::zero::traversal::Spec;
using nuv::zero::traversal::TraversalResult;
using nuv::zero::traversal::UniquenessMode;

/// `Class.property` or `Class.property=N`, and what it means.
struct Rule {
    PropertyMatcher matcher;
    ResultPolicy policy = ResultPolicy::Report;
};

ResultPolicy policyOf(const std::string& text, std::string_view number) {
    if (number == "0") return ResultPolicy::WalkOnly;
    if (number == "1") return ResultPolicy::Report;
    if (number == "2") return ResultPolicy::Extended;
    throw UsageError("the policy in '" + text + "' is none of 0, 1, 2");
}

PropertyMatcher matcherOf(const std::string& text, const std::string& className,
                          const std::string& propertyName, const Names& names) {
    const Class type = names.classNamed(className);
    const Property property = names.propertyNamed(type, propertyName);
    if (!property->isAssociation()) {
        throw UsageError("the property in '" + text + "' holds values, no links to follow");
    }
    return {property, isKindOf(type), type};
}

enum class PolicyPart { None, Optional, Required };

Rule ruleOf(const std::string& text, PolicyPart policy, const Names& names) {
    const std::size_t equals = text.find('=');
    const bool hasPolicy = equals != std::string::npos;
    const std::string path = text.substr(0, equals);
    const std::size_t dot = path.rfind('.');
    const bool isWellFormed = dot != std::string::npos && dot > 0 && dot + 1 < path.size();
    const bool isAllowed = hasPolicy ? policy != PolicyPart::None : policy != PolicyPart::Required;
    if (!isWellFormed || !isAllowed) {
        throw UsageError("'" + text + "' is not of the form Class.property" +
                         (policy == PolicyPart::None       ? ""
                          : policy == PolicyPart::Required ? "=N"
                                                           : "[=N]"));
    }
    Rule rule{matcherOf(text, path.substr(0, dot), path.substr(dot + 1), names)};
    if (hasPolicy) rule.policy = policyOf(text, text.substr(equals + 1));
    return rule;
}

void addRules(AdditiveTraversalImpl& builder, const CommandLine& line, const Names& names) {
    if (line.has(Option::Prune)) {
        throw UsageError(
            "--prune needs --kind composition or subtractive; additive takes --traverse");
    }
    for (const std::string& each : line.values(Option::Traverse)) {
        const Rule rule = ruleOf(each, PolicyPart::Optional, names);
        builder.traverse(rule.matcher, rule.policy);
    }
}

template <class Builder>
void addRules(Builder& builder, const CommandLine& line, const Names& names) {
    if (line.has(Option::Traverse)) {
        throw UsageError("--traverse needs --kind additive; the other kinds take --prune");
    }
    for (const std::string& each : line.values(Option::Prune)) {
        builder.prune(ruleOf(each, PolicyPart::None, names).matcher);
    }
}

template <class Builder>
std::shared_ptr<Builder> withRules(std::shared_ptr<Builder> builder, const CommandLine& line,
                                   const Names& names) {
    addRules(*builder, line, names);
    for (const std::string& each : line.values(Option::Policy)) {
        const Rule rule = ruleOf(each, PolicyPart::Required, names);
        builder->setResultPolicy(rule.matcher, rule.policy);
    }
    builder->includeInitialPseudoLink(
        line.value(Option::PseudoLinks) == "on" ? ResultPolicy::Report : ResultPolicy::WalkOnly);
    return builder;
}

}  // namespace

Rules::Builders Rules::builderOf(const CommandLine& line, const Names& names) {
    const std::string kind = line.value(Option::Kind);
    if (kind == "additive") return withRules(Spec::additiveTraversal(), line, names);
    if (kind == "subtractive") return withRules(Spec::subtractiveTraversal(), line, names);
    return withRules(Spec::compositionTraversal(), line, names);
}

Rules::Rules(const CommandLine& line, const Names& names)
    : builder_(builderOf(line, names)),
      order_(line.choice<Algo>(Option::Order, {{"pre", Algo::DepthFirstPreOrder},
                                               {"post", Algo::DepthFirstPostOrder},
                                               {"breadth", Algo::BreadthFirst}})),
      uniqueness_(UniquenessMode::NoUniqueness),
      upTo_(line.number(Option::UpTo)) {
    if (line.has(Option::Unique)) {
        uniqueness_ = line.value(Option::Unique) == "links" ? UniquenessMode::UniqueLinks
                                                            : UniquenessMode::UniqueElements;
    }
}

std::shared_ptr<TraversalResult> Rules::run(const std::vector<ModelElement>& inputs) const {
    auto result =
        std::visit([&](const auto& builder) { return builder->run(inputs, order_); }, builder_);
    ResultSetup setup(result);
    setup.unique(uniqueness_);
    if (upTo_) setup.upTo(*upTo_);
    return result;
}

nuv::zero::traversal::Explanation Rules::explain(const Class& type) const {
    return std::visit(
        [&](const auto& builder) { return nuv::zero::traversal::explain(*builder, type); },
        builder_);
}

std::vector<RuleFinding> Rules::check(const std::vector<Class>& classes) const {
    return std::visit(
        [&](const auto& builder) { return nuv::zero::traversal::check(*builder, classes); },
        builder_);
}

bool Rules::isFollowed(const Class& type, const Property& property) const {
    const nuv::zero::traversal::Explanation explanation = explain(type);
    const auto* const found = explanation.find(property);
    return found != nullptr && found->isFollowed;
}

bool canNeverMatch(const RuleFinding& finding) {
    return finding.problem == RuleProblem::NoProperty ||
           finding.problem == RuleProblem::NoClassHasProperty ||
           finding.problem == RuleProblem::NeverFollowed ||
           finding.problem == RuleProblem::AcceptsNoClass;
}

}  // namespace model_walk
