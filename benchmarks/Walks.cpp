#include "benchmarks/Walks.h"

#include <benchmark/benchmark.h>

#include <vector>

namespace nuv::zero::benchmarks {
namespace {

using traversal::PropertyMatcher;
using traversal::ResultPolicy;
using traversal::Spec;

PropertyMatcher matcherOf(const Shape::Rule& rule) {
    const meta::Class scope = rule.scope;
    return {rule.property,
            [scope](const meta::Class& type) { return access::conformsTo(type, scope); }, scope};
}

/// Predicates reject the classes that have elements, or the property is empty, so the links stay
/// the same.
template <class Builder>
std::shared_ptr<traversal::TraversalResult> runCutting(const Walk& walk,
                                                       const std::shared_ptr<Builder>& builder) {
    if (walk.withRules) {
        for (const Shape::Rule& rule : walk.shape->idleRules) builder->prune(matcherOf(rule));
    }
    builder->includeInitialPseudoLink(walk.pseudoLinks);
    return builder->run(walk.shape->roots, walk.order);
}

/// Here rules select, so the idle ones go beside those that select all classes.
std::shared_ptr<traversal::TraversalResult> runAdditive(const Walk& walk) {
    const auto builder = Spec::additiveTraversal();
    for (const meta::Property& property : walk.shape->followed) {
        builder->traverse(property, ResultPolicy::Report);
    }
    if (walk.withRules) {
        for (const Shape::Rule& rule : walk.shape->idleRules) {
            builder->traverse(matcherOf(rule), ResultPolicy::Report);
        }
    }
    builder->includeInitialPseudoLink(walk.pseudoLinks);
    return builder->run(walk.shape->roots, walk.order);
}

std::shared_ptr<traversal::TraversalResult> run(const Walk& walk) {
    switch (walk.kind) {
        case Kind::Composition:
            return runCutting(walk, Spec::compositionTraversal());
        case Kind::Subtractive:
            return runCutting(walk, Spec::subtractiveTraversal());
        case Kind::Additive:
            break;
    }
    return runAdditive(walk);
}

void add(Checksum& checksum, const traversal::Link& link) {
    checksum.add(link.getSource().get(), link.getProperty().get(), link.getTarget().get(),
                 link.shouldCascade());
}

void addInSteps(Checksum& checksum, traversal::LinkRange& range) {
    constexpr std::size_t budget = 1000;
    for (std::size_t steps = budget;;) {
        switch (range.advanceWithin(steps)) {
            case traversal::Progress::OnLink:
                add(checksum, range.getCurrent());
                break;
            case traversal::Progress::Paused:
                steps = budget;
                break;
            case traversal::Progress::Ended:
                return;
        }
    }
}

}  // namespace

std::string_view nameOf(Kind kind) {
    switch (kind) {
        case Kind::Composition:
            return "composition";
        case Kind::Subtractive:
            return "subtractive";
        case Kind::Additive:
            break;
    }
    return "additive";
}

std::string_view nameOf(traversal::Algo order) {
    switch (order) {
        case traversal::Algo::DepthFirstPreOrder:
            return "pre-order";
        case traversal::Algo::DepthFirstPostOrder:
            return "post-order";
        case traversal::Algo::BreadthFirst:
            break;
    }
    return "breadth-first";
}

std::shared_ptr<traversal::TraversalResult> makeResult(const Walk& walk) {
    auto result = run(walk);
    traversal::ResultSetup setup(result);
    if (walk.setUp) walk.setUp(setup);
    setup.unique(walk.uniqueness);
    return result;
}

Checksum walkLibrary(const Walk& walk) {
    Checksum checksum;
    for (std::size_t i = 0; i < walk.shape->walks; ++i) {
        traversal::LinkRange range = traversal::links(makeResult(walk));
        switch (walk.loop) {
            case Loop::Plain:
                for (const traversal::Link& link : range) add(checksum, link);
                break;
            case Loop::Where:
                for (const traversal::Link& link : range) {
                    add(checksum, link);
                    benchmark::DoNotOptimize(range.depth());
                    benchmark::DoNotOptimize(range.meeting());
                }
                break;
            case Loop::InSteps:
                addInSteps(checksum, range);
                break;
        }
    }
    return checksum;
}

}  // namespace nuv::zero::benchmarks
