#pragma once

#include <deque>
#include <memory>
#include <ostream>
#include <string>
#include <unordered_map>
#include <variant>
#include <vector>

#include "model/memory/Model.h"
#include "tests/scenario/Arguments.h"
#include "tests/scenario/Names.h"
#include "tests/scenario/PrintingProcessor.h"
#include "traversal/Spec.h"
#include "traversal/internal/AbstractStore.h"
#include "traversal/internal/ElementProgress.h"
#include "traversal/internal/UniquenessMaintainer.h"

namespace nuv::zero::scenario {

using traversal::AdditiveTraversalImpl;
using traversal::CompositeMatcher;
using traversal::CompositionTraversalImpl;
using traversal::PropertyMatcher;
using traversal::ResultPolicy;
using traversal::SubtractiveTraversalImpl;
using traversal::internal::AbstractStore;
using traversal::internal::ElementProgress;
using traversal::internal::Link;
using traversal::internal::TraversalResult;
using traversal::internal::UniquenessMaintainer;
using IterationContext = TraversalResult::IterationContext;

/// An object in a shared pointer or out of one, which makes a difference to builders and results.
template <class Object>
struct Held {
    std::shared_ptr<Object> shared;
    std::unique_ptr<Object> unowned;

    Object& operator*() const { return shared ? *shared : *unowned; }
    Object* operator->() const { return &**this; }
};

using Builder = std::variant<Held<AdditiveTraversalImpl>, Held<CompositionTraversalImpl>,
                             Held<SubtractiveTraversalImpl>>;

/// Everything that a scenario has declared, and where its transcript goes.
class Workspace {
  public:
    explicit Workspace(std::ostream& output);

    /// The identifiers that transcripts show; `null` for null handles.
    std::string idOf(const ModelElement& object) const;
    /// A link as transcripts show it: source, property and target.
    std::string stepOf(const Link& link) const;
    /// The same behind `cascade` or `nocascade`.
    std::string cascadingStepOf(const Link& link) const;

    /// The next argument as what it names, or a null handle for `null` where that is allowed.
    meta::StructuredType nextType(Arguments& arguments);
    meta::Class nextClass(Arguments& arguments);
    meta::Property nextProperty(Arguments& arguments);
    meta::Property nextPropertyOrNull(Arguments& arguments);
    ModelElement nextElement(Arguments& arguments);
    ModelElement nextElementOrNull(Arguments& arguments);
    PrintingProcessor* nextProcessorOrNull(Arguments& arguments);
    Link nextLink(Arguments& arguments) { return links.get(arguments.word()); }
    /// The class of that identifier.
    meta::Class classNamed(const std::string& name);
    meta::Property propertyNamedOrNull(const std::string& name);
    ModelElement elementNamedOrNull(const std::string& name);
    /// All arguments that are left.
    std::vector<ModelElement> remainingElements(Arguments& arguments);
    std::vector<PropertyMatcher> remainingMatchers(Arguments& arguments);

    void declareType(const std::string& name, const meta::StructuredType& type);
    void declareProperty(const std::string& name, const meta::Property& property);
    void declareElement(const std::string& name, const ModelElement& element);

    std::ostream& output;
    memory::Metamodel metamodel;
    memory::Model model;
    Names<PropertyMatcher> matchers{"matcher"};
    Names<Builder> builders{"builder"};
    Names<Held<TraversalResult>> results{"result"};
    Names<CompositeMatcher> composites{"composite"};
    Names<Link> links{"link"};
    Names<std::unique_ptr<UniquenessMaintainer>> maintainers{"maintainer"};
    Names<std::unique_ptr<AbstractStore>> stores{"store"};
    Names<PrintingProcessor*> processors{"processor"};
    /// A replaced processor stays: walks under way still tell it.
    std::deque<PrintingProcessor> allProcessors;
    Names<ElementProgress> cursors{"cursor"};
    Names<std::unique_ptr<IterationContext>> iterators{"iterator"};

  private:
    Names<meta::StructuredType> types_{"type"};
    Names<meta::Property> properties_{"property"};
    Names<ModelElement> elements_{"element"};
    std::unordered_map<ModelElement, std::string> ids_;
};

}  // namespace nuv::zero::scenario
