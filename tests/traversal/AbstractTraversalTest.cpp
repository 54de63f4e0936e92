#include "traversal/AbstractTraversal.h"

#include <gtest/gtest.h>

#include <array>
#include <list>
#include <ranges>
#include <sstream>
#include <vector>

#include "tests/support/BuilderRules.h"
#include "tests/support/ModelBuilder.h"
#include "tests/support/WalkLog.h"

/// What the three kinds of builder share.
namespace nuv::zero::traversal {
namespace {

using test::changeableRulesOf;
using test::Lines;
using test::linesOf;
using test::ModelBuilder;
using test::rulesOf;

/// Each kind, set up so that all follow x from every node.
struct Additive {
    using Impl = AdditiveTraversalImpl;
    static std::shared_ptr<Impl> make(const ModelBuilder& m) {
        return Spec::additiveTraversal()->traverse(m["Node.x"], ResultPolicy::Report);
    }
};
struct Composition {
    using Impl = CompositionTraversalImpl;
    static std::shared_ptr<Impl> make(const ModelBuilder& /*m*/) {
        return Spec::compositionTraversal();
    }
};
struct Subtractive {
    using Impl = SubtractiveTraversalImpl;
    static std::shared_ptr<Impl> make(const ModelBuilder& m) {
        return Spec::subtractiveTraversal()->prune(m["Node.y"]);
    }
};

template <class Kind>
class AbstractTraversalTest : public testing::Test {
  protected:
    std::shared_ptr<typename Kind::Impl> make() const { return Kind::make(m); }

    ModelBuilder m{"Node; Node.x => Node *; Node.y -> Node", "A.x = B C; B.x = D; E.x = A"};
    const Lines preOrder{">A", "A.x>B", "B.x>D", "A.x>C"};
    const Lines postOrder{"B.x>D", "A.x>B", "A.x>C", ">A"};
    const Lines breadthFirst{">A", "A.x>B", "A.x>C", "B.x>D"};
};

struct KindNames {
    template <class Kind>
    static std::string GetName(int index) {
        return std::array{"Additive", "Composition",
                          "Subtractive"}[static_cast<std::size_t>(index)];
    }
};
using Kinds = testing::Types<Additive, Composition, Subtractive>;
TYPED_TEST_SUITE(AbstractTraversalTest, Kinds, KindNames);

// Running.

TYPED_TEST(AbstractTraversalTest, RunsInEachOrderOnABracedList) {
    const ModelElement a = this->m("A");
    const auto builder = this->make();
    EXPECT_EQ(linesOf(builder->depthFirst({a})), this->preOrder);
    EXPECT_EQ(linesOf(builder->depthFirstPostOrder({a})), this->postOrder);
    EXPECT_EQ(linesOf(builder->breadthFirst({a})), this->breadthFirst);
    EXPECT_EQ(linesOf(builder->run({a}, Algo::DepthFirstPreOrder)), this->preOrder);
    EXPECT_EQ(linesOf(builder->run({a}, Algo::DepthFirstPostOrder)), this->postOrder);
    EXPECT_EQ(linesOf(builder->run({a}, Algo::BreadthFirst)), this->breadthFirst);
}

TYPED_TEST(AbstractTraversalTest, RunsOnVectorsListsArraysAndViews) {
    const ModelElement a = this->m("A");
    const ModelElement e = this->m("E");
    const auto builder = this->make();
    const Lines expected = linesOf(builder->depthFirst({a, e}));
    const std::vector<ModelElement> vector{a, e};
    std::vector<ModelElement> changeable(vector);
    const std::list<ModelElement> list(vector.begin(), vector.end());
    const ModelElement array[] = {a, e};
    EXPECT_EQ(linesOf(builder->depthFirst(vector)), expected);
    EXPECT_EQ(linesOf(builder->depthFirst(changeable)), expected);
    EXPECT_EQ(linesOf(builder->depthFirst(std::vector<ModelElement>(vector))), expected);
    EXPECT_EQ(linesOf(builder->depthFirst(list)), expected);
    EXPECT_EQ(linesOf(builder->depthFirst(std::list<ModelElement>(list))), expected);
    EXPECT_EQ(linesOf(builder->depthFirst(array)), expected);
    EXPECT_EQ(linesOf(builder->depthFirst(std::array{a, e})), expected);
    EXPECT_EQ(linesOf(builder->run(list, Algo::DepthFirstPreOrder)), expected);
    EXPECT_EQ(linesOf(builder->breadthFirst(list)), linesOf(builder->breadthFirst(vector)));
    EXPECT_EQ(linesOf(builder->depthFirstPostOrder(list)),
              linesOf(builder->depthFirstPostOrder(vector)));
}

TYPED_TEST(AbstractTraversalTest, RunsOnALazyRangeOfThingsThatConvertToElements) {
    const auto builder = this->make();
    // Older clangs do not compile the adaptors of libstdc++, and their own library has none.
#if !defined(__clang__) || __clang_major__ >= 16
    const std::vector<std::string> names{"A", "E"};
    auto elements =
        names | std::views::transform([this](const std::string& name) { return this->m(name); });
    EXPECT_EQ(linesOf(builder->depthFirst(elements)),
              linesOf(builder->depthFirst({this->m("A"), this->m("E")})));
#endif
    const std::vector<Property> properties{this->m["Node.x"]};
    EXPECT_EQ(linesOf(builder->depthFirst(properties)).size(), 1U) << "a property is an element";
}

TYPED_TEST(AbstractTraversalTest, RunsOnOneElementWithoutBraces) {
    const auto builder = this->make();
    const ModelElement a = this->m("A");
    EXPECT_EQ(linesOf(builder->depthFirst(a)), this->preOrder);
    EXPECT_EQ(linesOf(builder->depthFirstPostOrder(a)), this->postOrder);
    EXPECT_EQ(linesOf(builder->breadthFirst(a)), this->breadthFirst);
    EXPECT_EQ(linesOf(builder->run(a, Algo::BreadthFirst)), this->breadthFirst);
    EXPECT_EQ(linesOf(builder->depthFirst(this->m("A"))), this->preOrder) << "a temporary";
}

/// Converts to an element, and is a list of two.
struct ElementAndList {
    ModelElement first;
    std::array<ModelElement, 2> both;
    operator ModelElement() const { return first; }  // NOLINT(google-explicit-constructor)
    const ModelElement* begin() const { return both.data(); }
    const ModelElement* end() const { return both.data() + both.size(); }
};

TYPED_TEST(AbstractTraversalTest, BracesAndRangesMeanListsAsBefore) {
    const auto builder = this->make();
    const ModelElement c = this->m("C");
    const ModelElement d = this->m("D");
    EXPECT_EQ(linesOf(builder->depthFirst({})), Lines{});
    EXPECT_EQ(linesOf(builder->depthFirst({d})), Lines{">D"});
    EXPECT_EQ(linesOf(builder->depthFirst({c, d})), (Lines{">C", ">D"}));
    EXPECT_EQ(linesOf(builder->depthFirst(ElementAndList{c, {d, c}})), (Lines{">D", ">C"}));
    EXPECT_EQ(linesOf(builder->breadthFirst(std::array{c, d})), (Lines{">C", ">D"}));
}

TYPED_TEST(AbstractTraversalTest, RunsWhereItIsHandedOutAsConstant) {
    const std::shared_ptr<const typename TypeParam::Impl> builder = this->make();
    const ModelElement a = this->m("A");
    EXPECT_EQ(linesOf(builder->depthFirst(a)), this->preOrder);
    EXPECT_EQ(linesOf(builder->depthFirst({a})), this->preOrder);
    EXPECT_EQ(linesOf(builder->depthFirstPostOrder(std::vector{a})), this->postOrder);
    EXPECT_EQ(linesOf(builder->breadthFirst(std::array{a})), this->breadthFirst);
    const typename TypeParam::Impl copy(*builder);
    EXPECT_EQ(linesOf(copy.run(a, Algo::DepthFirstPreOrder)), this->preOrder);
}

TYPED_TEST(AbstractTraversalTest, RunsAnyNumberOfTimesAndKeepsNoInputs) {
    const auto builder = this->make();
    std::vector<ModelElement> inputs{this->m("A")};
    const auto result = builder->depthFirst(inputs);
    inputs.clear();
    EXPECT_EQ(linesOf(result), this->preOrder);
    EXPECT_EQ(linesOf(builder->depthFirst({this->m("A")})), this->preOrder);
}

TYPED_TEST(AbstractTraversalTest, ResultOutlivesTheBuilder) {
    auto builder = this->make();
    const auto result = builder->depthFirst({this->m("A")});
    builder.reset();
    EXPECT_EQ(linesOf(result), this->preOrder);
}

// The initial pseudo-link.

TYPED_TEST(AbstractTraversalTest, LastPseudoLinkPolicyWinsAndReachesOnlyLaterResults) {
    const auto builder = this->make();
    const auto before = builder->depthFirst({this->m("D")});
    EXPECT_EQ(builder->includeInitialPseudoLink(ResultPolicy::Report), builder);
    EXPECT_EQ(builder->includeInitialPseudoLink(ResultPolicy::WalkOnly), builder);
    EXPECT_EQ(linesOf(builder->depthFirst({this->m("D")})), Lines{});
    EXPECT_EQ(linesOf(before), Lines{">D"});
    builder->includeInitialPseudoLink(ResultPolicy::Extended);
    EXPECT_EQ(linesOf(builder->depthFirst({this->m("D")})), Lines{">D"});
}

// setResultPolicy.

TYPED_TEST(AbstractTraversalTest, SetResultPolicyWithoutMatchersChangesNothing) {
    const auto builder = this->make();
    const auto rules = rulesOf(*builder).size();
    EXPECT_EQ(builder->setResultPolicy(std::vector<PropertyMatcher>{}, ResultPolicy::WalkOnly),
              builder);
    EXPECT_EQ(rulesOf(*builder).size(), rules);
    EXPECT_EQ(linesOf(builder->depthFirst({this->m("A")})), this->preOrder);
}

TYPED_TEST(AbstractTraversalTest, SetResultPolicyIgnoresAMatcherWithoutAProperty) {
    const auto builder = this->make();
    const auto rules = rulesOf(*builder).size();
    EXPECT_EQ(builder->setResultPolicy(PropertyMatcher(Property()), ResultPolicy::WalkOnly),
              builder);
    EXPECT_EQ(rulesOf(*builder).size(), rules);
}

// Copies.

TYPED_TEST(AbstractTraversalTest, CopyRunsWithTheSameRulesAndPseudoLinkPolicy) {
    const auto builder = this->make();
    builder->includeInitialPseudoLink(ResultPolicy::WalkOnly);
    typename TypeParam::Impl copy(*builder);
    EXPECT_EQ(linesOf(copy.depthFirst({this->m("A")})),
              linesOf(builder->depthFirst({this->m("A")})));
    EXPECT_EQ(linesOf(copy.breadthFirst(std::list<ModelElement>{this->m("A")})),
              linesOf(builder->breadthFirst({this->m("A")})));
}

TYPED_TEST(AbstractTraversalTest, FluentOperationsOfACopyThrowAfterTheirChange) {
    typename TypeParam::Impl copy(*this->make());
    EXPECT_THROW(copy.includeInitialPseudoLink(ResultPolicy::WalkOnly), std::bad_weak_ptr);
    EXPECT_EQ(linesOf(copy.depthFirst({this->m("D")})), Lines{});
    EXPECT_THROW(copy.setResultPolicy(PropertyMatcher(Property()), ResultPolicy::Report),
                 std::bad_weak_ptr);
    EXPECT_THROW(copy.setResultPolicy(std::vector<PropertyMatcher>{}, ResultPolicy::Report),
                 std::bad_weak_ptr);
}

TYPED_TEST(AbstractTraversalTest, CopyGoesItsOwnWay) {
    const auto builder = this->make();
    const typename TypeParam::Impl copy(*builder);
    builder->includeInitialPseudoLink(ResultPolicy::WalkOnly);
    typename TypeParam::Impl another(copy);
    EXPECT_EQ(linesOf(another.depthFirst({this->m("A")})), this->preOrder);
}

TYPED_TEST(AbstractTraversalTest, AssignmentTakesRulesAndPolicyButNotThePlaceInSharedOwnership) {
    const auto source = this->make();
    source->includeInitialPseudoLink(ResultPolicy::WalkOnly);
    const auto target = this->make();
    typename TypeParam::Impl& returned = (*target = *source);
    EXPECT_EQ(&returned, target.get());
    EXPECT_EQ(linesOf(target->depthFirst({this->m("A")})),
              linesOf(source->depthFirst({this->m("A")})));
    EXPECT_EQ(target->shared_from_this(), target);
    EXPECT_EQ(target.use_count(), 1);

    typename TypeParam::Impl unowned(*source);
    unowned = *target;
    EXPECT_THROW(unowned.includeInitialPseudoLink(ResultPolicy::Report), std::bad_weak_ptr);
}

TYPED_TEST(AbstractTraversalTest, CopiesAndAssignmentsKeepTheLoadFactorOfTheRules) {
    constexpr float sparse = 0.25F;
    const auto source = this->make();
    changeableRulesOf(*source).max_load_factor(sparse);
    const typename TypeParam::Impl copy(*source);
    EXPECT_EQ(rulesOf(copy).max_load_factor(), sparse);
    const auto target = this->make();
    EXPECT_NE(rulesOf(*target).max_load_factor(), sparse);
    *target = *source;
    EXPECT_EQ(rulesOf(*target).max_load_factor(), sparse);
    EXPECT_EQ(linesOf(target->depthFirst({this->m("A")})), this->preOrder);
}

TYPED_TEST(AbstractTraversalTest, SelfAssignmentLeavesTheRulesUntouched) {
    const auto builder = this->make();
    const auto rules = rulesOf(*builder).size();
    const auto& same = *builder;
    *builder = same;
    EXPECT_EQ(rulesOf(*builder).size(), rules);
    EXPECT_EQ(linesOf(builder->depthFirst({this->m("A")})), this->preOrder);
}

TEST(AbstractTraversalRulesTest, VectorOfSetResultPolicyFailsOnACopyAfterItsFirstMatcher) {
    const ModelBuilder m("Node; Node.x -> Node; Node.y -> Node");
    SubtractiveTraversalImpl copy(*Spec::subtractiveTraversal());
    EXPECT_THROW(copy.setResultPolicy({m["Node.x"], m["Node.y"]}, ResultPolicy::Report),
                 std::bad_weak_ptr);
    EXPECT_EQ(rulesOf(copy).size(), 1U);
    EXPECT_EQ(rulesOf(copy).count(m["Node.x"]), 1U);
}

TEST(AbstractTraversalRulesTest, LaterRulesDoNotReachEarlierResults) {
    const ModelBuilder m("Node; Node.x -> Node; Node.y -> Node", "A.x = B; A.y = C");
    const auto builder =
        Spec::subtractiveTraversal()->includeInitialPseudoLink(ResultPolicy::WalkOnly);
    const auto before = builder->depthFirst({m("A")});
    builder->prune(m["Node.x"]);
    const auto after = builder->depthFirst({m("A")});
    EXPECT_EQ(linesOf(before), (Lines{"A.x>B", "A.y>C"}));
    EXPECT_EQ(linesOf(after), Lines{"A.y>C"});
}

/// Follows x, and says by itself how its links are reported.
class OwnPolicies final : public PropertyProvider {
  public:
    OwnPolicies(MatchersMap rules, const Property& followed)
        : PropertyProvider(std::move(rules)), followed_(followed) {}
    std::vector<AssociationSetting> computeSettings(const Class& /*type*/) override {
        return {{followed_, ResultPolicy::Report}};
    }
    ResultPolicy getResultPolicy(const Class& /*type*/, const Property& /*property*/) override {
        return ++asked % 2 == 0 ? ResultPolicy::Report : ResultPolicy::WalkOnly;
    }
    int asked = 0;

  private:
    Property followed_;
};

class KindOfOwn final : public AbstractTraversal<SubtractiveTraversalImpl> {
  public:
    explicit KindOfOwn(std::shared_ptr<OwnPolicies> provider) : provider_(std::move(provider)) {}

  private:
    void doSetResultPolicy(const PropertyMatcher& /*matcher*/, ResultPolicy /*policy*/) override {}
    std::shared_ptr<PropertyProvider> createPropertyProvider() override { return provider_; }

    std::shared_ptr<OwnPolicies> provider_;
};

TEST(AbstractTraversalOfOwnKindTest, ProviderIsAskedForThePolicyOfEachLinkThatPredicatesDecide) {
    // Walks asked the rules themselves, and what the provider said was lost.
    const ModelBuilder m("Node; Node.x -> Node *", "A.x = B C");
    MatchersMap rules;
    CompositeMatcher matcher(CompositeMatcher::VisitMode::Visit);
    matcher.composeMatcher(
        m.type("Node"), [](const Class&) { return true; }, ResultPolicy::Report);
    rules.emplace(m["Node.x"], matcher);
    const auto provider = std::make_shared<OwnPolicies>(rules, m["Node.x"]);
    KindOfOwn kind(provider);
    EXPECT_EQ(linesOf(kind.depthFirst(std::vector<ModelElement>{m("A")})).size(), 2U)
        << "the input's own link, and the second of the two";
    EXPECT_EQ(provider->asked, 2);
}

}  // namespace
}  // namespace nuv::zero::traversal
