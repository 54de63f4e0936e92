#pragma once

#include <functional>
#include <memory>
#include <unordered_map>
#include <utility>
#include <vector>

#include "tests/oracle/NaiveWalk.h"
#include "tests/support/ModelBuilder.h"
#include "traversal/Traversal.h"

namespace nuv::zero::test {

/// A test's model and callbacks as the oracle wants them: the model as plain data, as it is when
/// this is made, and every callback called with the library's handles.
///
///     OracleGround ground(m);
///     ground.observer = &observer;
///     ground.filters = {filter};
///     OracleWalk walk(ground, ground.result(rules, {m("A")}, Algo::BreadthFirst));
class OracleGround final : public oracle::Callbacks {
  public:
    explicit OracleGround(const ModelBuilder& m);

    /// Results are walked with the observer and the filters that stand here when they are made.
    traversal::TraversalProcessor* observer = nullptr;
    std::vector<std::function<traversal::ResultPolicy(traversal::Link)>> filters;
    /// Rules name predicates by their place here.
    std::vector<std::function<bool(const meta::Class&)>> predicates;
    /// Called wherever a walk has to remember something.
    std::function<void()> onRemember;

    std::shared_ptr<oracle::NaiveResult> result(const oracle::Rules& rules,
                                                const std::vector<ModelElement>& inputs,
                                                traversal::Algo order) const;

    const oracle::PlainWorld& world() const { return world_; }
    int indexOf(const ModelElement& object) const {
        return object ? indices_.at(object) : oracle::none;
    }
    traversal::Link linkOf(const oracle::IndexedLink& step) const;

    bool predicate(int predicate, int type) override;
    int filter(int filter, const oracle::IndexedLink& link) override;
    void event(int observer, oracle::Event event, int element, int property) override;
    void remember() override {
        if (onRemember) onRemember();
    }

  private:
    template <class Handle>
    int add(std::vector<Handle>& handles, const Handle& handle);
    void addClass(const meta::Class& type);
    void addProperties(const meta::Class& type);
    void addValues(const ModelElement& element);
    int typeIndexOf(const meta::Type& type) const;
    ModelElement elementAt(int index) const;

    oracle::PlainWorld world_;
    std::vector<meta::Class> classes_;
    std::vector<meta::Property> properties_;
    std::vector<ModelElement> elements_;
    std::unordered_map<ModelElement, int> indices_;
};

/// The oracle's walk, used as the library's is. Its ground has to outlive it.
class OracleWalk {
  public:
    OracleWalk(OracleGround& ground, std::shared_ptr<oracle::NaiveResult> result)
        : OracleWalk(prepared(ground, std::move(result))) {
        walk_.advance();
    }
    /// A walk before its first step.
    static OracleWalk prepared(OracleGround& ground, std::shared_ptr<oracle::NaiveResult> result) {
        return OracleWalk(ground, oracle::NaiveWalk(ground.world(), ground, std::move(result)));
    }

    std::vector<traversal::Link> path() const {
        std::vector<traversal::Link> links;
        for (const oracle::IndexedLink& link : walk_.path()) links.push_back(ground_->linkOf(link));
        return links;
    }
    traversal::Link getCurrent() const { return ground_->linkOf(walk_.current()); }
    void advance() { walk_.advance(); }
    void pruneAllChildren() { walk_.pruneAllChildren(); }
    void pruneChildren(const meta::Property& property) {
        walk_.pruneChildren(ground_->indexOf(property));
    }
    void pruneSiblings() { walk_.pruneSiblings(); }

  private:
    OracleWalk(OracleGround& ground, oracle::NaiveWalk walk)
        : ground_(&ground), walk_(std::move(walk)) {}

    OracleGround* ground_;
    oracle::NaiveWalk walk_;
};

}  // namespace nuv::zero::test
