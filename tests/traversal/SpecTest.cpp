#include "traversal/Spec.h"

#include <gtest/gtest.h>

#include <type_traits>

#include "tests/support/BuilderRules.h"
#include "tests/support/ModelBuilder.h"
#include "tests/support/WalkLog.h"

namespace nuv::zero::traversal {
namespace {

using test::Lines;
using test::linesOf;

// Only Spec makes builders: neither nothing, nor braces, nor anything else converts to the token.
template <class Impl>
concept MadeFromBraces = requires {
    Impl({});
};
template <class Impl>
concept MadeFromTwoBraces = requires {
    Impl({{}});
};

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

TYPED_TEST(SpecTest, NobodyElseCanMakeABuilder) {
    static_assert(!std::is_default_constructible_v<TypeParam>);
    static_assert(!MadeFromBraces<TypeParam> && !MadeFromTwoBraces<TypeParam>);
    static_assert(!std::is_constructible_v<TypeParam, int>);
    static_assert(std::has_virtual_destructor_v<TypeParam>);
    static_assert(std::is_base_of_v<std::enable_shared_from_this<TypeParam>, TypeParam>);
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

TEST(SpecClassTest, HoldsNothing) {
    static_assert(std::is_empty_v<Spec>);
    static_assert(std::is_copy_assignable_v<Spec> && std::is_move_assignable_v<Spec>);
}

}  // namespace
}  // namespace nuv::zero::traversal
