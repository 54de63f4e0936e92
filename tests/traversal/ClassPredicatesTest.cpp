#include "traversal/ClassPredicates.h"

#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>
#include <string>

#include "tests/support/ModelBuilder.h"
#include "tests/support/Predicates.h"
#include "tests/support/WalkLog.h"

namespace nuv::zero::traversal {
namespace {

using test::Lines;

class ClassPredicatesTest : public testing::Test {
  protected:
    /// The names of the classes that a predicate accepts, and `null`.
    Lines accepted(const ClassPredicate& predicate) const {
        Lines names;
        for (const char* name : {"A", "B", "C", "D"}) {
            if (predicate(m.type(name))) names.emplace_back(name);
        }
        if (predicate(Class())) names.emplace_back("null");
        return names;
    }
    std::string errorOf(const std::function<void()>& call) {
        try {
            call();
        } catch (const std::invalid_argument& refused) {
            return refused.what();
        }
        return {};
    }

    // B and C are below A, D below B.
    test::ModelBuilder m{"A; B < A; C < A; D < B; A.x -> A *",
                         "a : A; b : B; c : C; d : D; a.x = b c d; b.x = a; c.x = a; d.x = a"};
    Class a = m.type("A");
    Class b = m.type("B");
    Class c = m.type("C");
    Class d = m.type("D");
};

TEST_F(ClassPredicatesTest, KindOfAcceptsTheClassAndItsSubclasses) {
    EXPECT_EQ(accepted(isKindOf(a)), (Lines{"A", "B", "C", "D"}));
    EXPECT_EQ(accepted(isKindOf(b)), (Lines{"B", "D"}));
    EXPECT_EQ(accepted(isKindOf(d)), Lines{"D"});
}

TEST_F(ClassPredicatesTest, ExactlyAcceptsTheClassAlone) {
    EXPECT_EQ(accepted(isExactly(b)), Lines{"B"});
}

TEST_F(ClassPredicatesTest, NullClassIsRefusedWhereThePredicateIsMade) {
    EXPECT_EQ(errorOf([] { isKindOf(Class()); }), "isKindOf needs a class, not a null handle.");
    EXPECT_EQ(errorOf([] { isExactly(Class()); }), "isExactly needs a class, not a null handle.");
}

TEST_F(ClassPredicatesTest, PredicatesCombine) {
    EXPECT_EQ(accepted(anyOf(isKindOf(b), isExactly(c))), (Lines{"B", "C", "D"}));
    EXPECT_EQ(accepted(noneOf(isKindOf(b), isExactly(c))), (Lines{"A", "null"}));
    EXPECT_EQ(accepted(allOf(isKindOf(a), noneOf(isExactly(a), isKindOf(d)))), (Lines{"B", "C"}));
    EXPECT_EQ(accepted(anyOf(allOf(isKindOf(b), isKindOf(d)), isExactly(a))), (Lines{"A", "D"}));
}

TEST_F(ClassPredicatesTest, WithoutPredicatesTheAnswerIsThatOfTheEmptySet) {
    EXPECT_EQ(accepted(anyOf()), Lines{});
    EXPECT_EQ(accepted(allOf()).size(), 5U);
    EXPECT_EQ(accepted(noneOf()).size(), 5U);
}

TEST_F(ClassPredicatesTest, CallersOwnPredicatesCombineWithThem) {
    const auto isC = [](const auto& type) { return type && access::nameOf(type) == u"C"; };
    int asked = 0;
    const auto counting = [&asked](const Class& /*type*/) { return ++asked > 0; };
    EXPECT_EQ(accepted(anyOf(isC, isExactly(d))), (Lines{"C", "D"}));
    EXPECT_EQ(accepted(allOf(test::always, noneOf(test::never, EveryClass()))), Lines{});
    EXPECT_TRUE(anyOf(isKindOf(a), counting)(b));
    EXPECT_FALSE(allOf(isExactly(a), counting)(b));
    EXPECT_FALSE(noneOf(isKindOf(a), counting)(b));
    EXPECT_EQ(asked, 0) << "the first answer that decides is the last that is asked for";
    EXPECT_TRUE(anyOf(std::ref(counting))(b));
    EXPECT_EQ(asked, 1);
}

TEST_F(ClassPredicatesTest, EmptyPredicateFailsWhenItIsAsked) {
    const ClassPredicate none;
    bool (*noFunction)(const Class&) = nullptr;
    EXPECT_THROW(anyOf(none)(a), std::bad_function_call);
    EXPECT_THROW(noneOf(noFunction)(a), std::bad_function_call);
    EXPECT_FALSE(allOf(isExactly(b), none)(a));
}

TEST_F(ClassPredicatesTest, RulesTakeThem) {
    const auto additive = Spec::additiveTraversal()->traverse(
        m["A.x"], anyOf(isExactly(a), isKindOf(d)), ResultPolicy::Report);
    EXPECT_EQ(test::linesOf(additive->depthFirst(m("a"))),
              (Lines{">a", "a.x>b", "a.x>c", "a.x>d", "d.x>a!"}));
    const auto subtractive = Spec::subtractiveTraversal()
                                 ->prune(m["A.x"], isKindOf(b))
                                 ->prune({m["A.x"], noneOf(isKindOf(c)), c});
    EXPECT_EQ(test::linesOf(subtractive->depthFirst({m("b"), m("c")})),
              (Lines{">b", ">c", "c.x>a"}));
}

}  // namespace
}  // namespace nuv::zero::traversal
