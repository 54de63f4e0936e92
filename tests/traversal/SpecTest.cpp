#include "traversal/Spec.h"

#include <gtest/gtest.h>

#include <type_traits>

#include "tests/support/BuilderRules.h"
#include "tests/support/ModelBuilder.h"
#include "tests/support/PrivateAccess.h"
#include "tests/support/WalkLog.h"

namespace nuv::zero::testing_support {

using traversal::AbstractTraversal;
using traversal::AdditiveTraversalImpl;
using traversal::CompositionTraversalImpl;
using traversal::SubtractiveTraversalImpl;

struct AdditivePseudoLinks {
    friend auto pointerTo(AdditivePseudoLinks);
};
struct CompositionPseudoLinks {
    friend auto pointerTo(CompositionPseudoLinks);
};
struct SubtractivePseudoLinks {
    friend auto pointerTo(SubtractivePseudoLinks);
};
template struct Expose<AdditivePseudoLinks,
                       &AbstractTraversal<AdditiveTraversalImpl>::initialPseudoLinkPolicy_>;
template struct Expose<CompositionPseudoLinks,
                       &AbstractTraversal<CompositionTraversalImpl>::initialPseudoLinkPolicy_>;
template struct Expose<SubtractivePseudoLinks,
                       &AbstractTraversal<SubtractiveTraversalImpl>::initialPseudoLinkPolicy_>;

}  // namespace nuv::zero::testing_support

namespace nuv::zero::traversal {
namespace {

using test::Lines;
using test::linesOf;

template <class Impl>
class SpecTest : public testing::Test {};

struct BuilderNames {
    template <class Impl>
    static std::string GetName(int /*index*/) {
        if (std::is_same_v<Impl, AdditiveTraversalImpl>) return "Additive";
        if (std::is_same_v<Impl, CompositionTraversalImpl>) return "Composition";
        return "Subtractive";
    }
};
using Builders =
    testing::Types<AdditiveTraversalImpl, CompositionTraversalImpl, SubtractiveTraversalImpl>;
TYPED_TEST_SUITE(SpecTest, Builders, BuilderNames);

template <class Impl>
std::shared_ptr<Impl> make() {
    if constexpr (std::is_same_v<Impl, AdditiveTraversalImpl>) return Spec::additiveTraversal();
    if constexpr (std::is_same_v<Impl, CompositionTraversalImpl>) {
        return Spec::compositionTraversal();
    }
    if constexpr (std::is_same_v<Impl, SubtractiveTraversalImpl>) {
        return Spec::subtractiveTraversal();
    }
}

TYPED_TEST(SpecTest, NewBuilderHasNoRulesAndReportsItsInputs) {
    const test::ModelBuilder m("Node", "A");
    const auto builder = make<TypeParam>();
    EXPECT_TRUE(test::rulesOf(*builder).empty());
    EXPECT_EQ(linesOf(builder->depthFirst({m("A")})), Lines{">A"});
}

TYPED_TEST(SpecTest, BuilderIsOwnedByThePointerThatIsReturned) {
    const auto builder = make<TypeParam>();
    EXPECT_EQ(builder.use_count(), 1);
    EXPECT_EQ(builder->shared_from_this(), builder);
    EXPECT_EQ(builder->includeInitialPseudoLink(ResultPolicy::Report), builder);
}

TYPED_TEST(SpecTest, EachCallMakesAnotherBuilder) {
    EXPECT_NE(make<TypeParam>(), make<TypeParam>());
}

/// Results only tell whether the policy is `WalkOnly`.
template <class Policy, class Impl>
void expectReportUntilAnotherPolicyIsGiven(const std::shared_ptr<Impl>& builder) {
    EXPECT_EQ((*builder).*pointerTo(Policy()), ResultPolicy::Report);
    builder->includeInitialPseudoLink(ResultPolicy::Extended);
    EXPECT_EQ((*builder).*pointerTo(Policy()), ResultPolicy::Extended);
}

TEST(SpecPseudoLinksTest, PolicyOfTheInputsOwnLinksIsReportUntilAnotherIsGiven) {
    using namespace testing_support;
    expectReportUntilAnotherPolicyIsGiven<AdditivePseudoLinks>(Spec::additiveTraversal());
    expectReportUntilAnotherPolicyIsGiven<CompositionPseudoLinks>(Spec::compositionTraversal());
    expectReportUntilAnotherPolicyIsGiven<SubtractivePseudoLinks>(Spec::subtractiveTraversal());
}

}  // namespace
}  // namespace nuv::zero::traversal
