#include "traversal/internal/ProgressTable.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "tests/support/Failures.h"
#include "tests/support/ModelBuilder.h"
#include "tests/support/WalkLog.h"
#include "traversal/internal/LentLink.h"
#include "traversal/internal/PropertyProviders.h"

namespace nuv::zero::traversal::internal {
namespace {

using test::Lines;
using test::text;
using Discipline = ProgressTable::Discipline;

class ProgressTableTest : public testing::TestWithParam<Discipline> {
  protected:
    Link linkTo(const char* target) const { return {m("A"), m(target), m["Node.x"]}; }
    Link inputLinkTo(const char* target) const {
        return {ModelElement(), m(target), meta::Property()};
    }
    /// The cursor of the top, made where there is none.
    static ElementProgress* open(ProgressTable& table, const Link& top) {
        const bool isOpen = table.cursorOfTop() != nullptr || table.openTop(top, nullptr);
        return isOpen ? table.cursorOfTop() : nullptr;
    }
    static void enter(ProgressTable& table, const ModelElement& element,
                      TraversalProcessor* observer = nullptr) {
        auto meeting = table.meet(element);
        ASSERT_FALSE(meeting.hasEntered());
        table.prepareToEnter(meeting, element, observer);
        table.enter(meeting, element, observer);
    }

    test::ModelBuilder m{"Node; Node.x -> Node *", "A.x = B C; B.x = A; C.x = B"};
    std::shared_ptr<PropertyProvider> provider =
        makeSubtractiveProvider({}, Candidates::AllLinking);
    ProgressTable table{GetParam(), *provider, nullptr};
};

TEST_P(ProgressTableTest, ElementStaysEnteredOnceItWasEntered) {
    EXPECT_FALSE(table.hasEntered(m("A")));
    EXPECT_EQ(table.findUnfinished(m("A")), nullptr);
    ElementProgress* cursor = open(table, inputLinkTo("A"));
    ASSERT_NE(cursor, nullptr);
    EXPECT_TRUE(table.hasEntered(m("A")));
    cursor->pruneAllChildren();
    table.finishTop();
    EXPECT_TRUE(table.hasEntered(m("A")));
}

TEST_P(ProgressTableTest, InputThatWasFinishedBeforeHasNoCursor) {
    open(table, inputLinkTo("A"))->pruneAllChildren();
    table.finishTop();
    EXPECT_EQ(open(table, inputLinkTo("A")), nullptr);
}

TEST_P(ProgressTableTest, CursorOfTheTopStaysTheSameUntilItIsFinished) {
    ElementProgress* cursor = open(table, inputLinkTo("A"));
    EXPECT_EQ(text(cursor->advanceAndGetCurrent()), "A.x>B");
    EXPECT_EQ(open(table, inputLinkTo("A")), cursor);
    EXPECT_EQ(text(cursor->advanceAndGetCurrent()), "A.x>C");
}

TEST_P(ProgressTableTest, FindsTheCursorOfAnElementBelowTheTop) {
    ElementProgress* cursor = open(table, inputLinkTo("A"));
    EXPECT_EQ(table.findUnfinished(m("A")), cursor);
    enter(table, m("B"));
    EXPECT_EQ(table.findUnfinished(m("A")), cursor);
    ASSERT_NE(table.findUnfinished(m("B")), nullptr);
    EXPECT_NE(table.findUnfinished(m("B")), cursor);
    EXPECT_EQ(table.findUnfinished(m("C")), nullptr);
}

TEST_P(ProgressTableTest, PruningAnElementBeforeItsTurnIsKeptForItsTurn) {
    ElementProgress* cursor = open(table, inputLinkTo("A"));
    enter(table, m("B"));
    table.findUnfinished(m("B"))->pruneAllChildren();
    if (GetParam() == Discipline::BreadthFirst) {
        cursor->pruneAllChildren();
        table.finishTop();
    }
    EXPECT_TRUE(open(table, linkTo("B"))->processedAll());
}

TEST_P(ProgressTableTest, PreparingAloneEntersNothing) {
    auto meeting = table.meet(m("A"));
    EXPECT_FALSE(meeting.hasEntered());
    table.prepareToEnter(meeting, m("A"), nullptr);
    EXPECT_FALSE(table.hasEntered(m("A")));
    EXPECT_EQ(table.findUnfinished(m("A")), nullptr);
}

TEST_P(ProgressTableTest, FailureOfTheProviderLeavesTheElementAsIfItHadNeverBeenMet) {
    test::FailurePlan plan(1);
    std::unordered_map<Property, CompositeMatcher> rules;
    rules.try_emplace(m["Node.x"], CompositeMatcher::VisitMode::Prune)
        .first->second.composeMatcher(
            m.type("Node"),
            [&plan](const Class&) {
                plan.call("predicate");
                return false;
            },
            ResultPolicy::WalkOnly);
    const auto failing = makeSubtractiveProvider(rules, Candidates::AllLinking);
    ProgressTable failed(GetParam(), *failing, nullptr);
    EXPECT_THROW(open(failed, inputLinkTo("A")), test::PlannedFailure);
    EXPECT_FALSE(failed.hasEntered(m("A")));
    EXPECT_EQ(text(open(failed, inputLinkTo("A"))->advanceAndGetCurrent()), "A.x>B");
}

TEST_P(ProgressTableTest, CopyIsIndependent) {
    open(table, inputLinkTo("A"))->advanceAndGetCurrent();
    ProgressTable copy(table);
    enter(copy, m("B"));
    EXPECT_FALSE(table.hasEntered(m("B")));
    EXPECT_EQ(text(copy.findUnfinished(m("A"))->advanceAndGetCurrent()), "A.x>C");
    EXPECT_EQ(text(table.findUnfinished(m("A"))->advanceAndGetCurrent()), "A.x>C");
}

TEST_P(ProgressTableTest, EachElementKeepsTheObserverItWasEnteredUnder) {
    Lines lines;
    test::EventLog log(lines);
    ElementProgress* silent = open(table, inputLinkTo("A"));
    silent->advanceAndGetCurrent();
    enter(table, m("B"), &log);
    if (GetParam() == Discipline::BreadthFirst) {
        silent->pruneAllChildren();
        table.finishTop();
    }
    open(table, linkTo("B"))->advanceAndGetCurrent();
    EXPECT_EQ(lines, (Lines{"enter B", "enter B.x"}));
}

TEST_P(ProgressTableTest, NullElementIsEnteredLikeAnyOther) {
    EXPECT_FALSE(table.hasEntered(ModelElement()));
    const Link toNull;
    ElementProgress* cursor = open(table, toNull);
    ASSERT_NE(cursor, nullptr);
    EXPECT_TRUE(!cursor->advanceAndGetCurrent());
    table.finishTop();
    EXPECT_TRUE(table.hasEntered(ModelElement()));
    EXPECT_EQ(open(table, toNull), nullptr);
}

TEST_P(ProgressTableTest, KeepsWhatItWasShownAliveWithoutTheModel) {
    auto other = std::make_unique<test::ModelBuilder>("Node; Node.x -> Node *", "A.x = B C");
    ProgressTable keeping(GetParam(), *provider, nullptr);
    const Link link(ModelElement(), (*other)("A"), meta::Property());
    {
        const LentLink lent(link);
        open(keeping, lent.get());
    }
    ElementProgress* cursor = open(keeping, link);
    other.reset();
    EXPECT_TRUE(!cursor->advanceAndGetCurrent()) << "the values went with the model";
}

INSTANTIATE_TEST_SUITE_P(Disciplines, ProgressTableTest,
                         testing::Values(Discipline::DepthFirst, Discipline::BreadthFirst),
                         [](const auto& each) {
                             return each.param == Discipline::DepthFirst ? "DepthFirst"
                                                                         : "BreadthFirst";
                         });

TEST(ProgressTablePathTest, FindsCursorsFarUpALongPathWhileItShrinksAndGrows) {
    test::ModelBuilder m("Node; Node.x -> Node *");
    std::vector<ModelElement> chain;
    for (int i = 0; i < 300; ++i) chain.push_back(m.model.create(m.type("Node")));
    const auto provider = makeSubtractiveProvider({}, Candidates::AllLinking);
    ProgressTable table(Discipline::DepthFirst, *provider, nullptr);
    std::vector<ElementProgress*> cursors;
    const auto enterUpTo = [&](std::size_t count) {
        while (cursors.size() < count) {
            const ModelElement& element = chain[cursors.size()];
            auto meeting = table.meet(element);
            table.prepareToEnter(meeting, element, nullptr);
            table.enter(meeting, element, nullptr);
            cursors.push_back(table.cursorOfTop());
        }
    };
    enterUpTo(200);
    for (std::size_t i = 0; i < 200; i += 7) EXPECT_EQ(table.findUnfinished(chain[i]), cursors[i]);
    for (int i = 0; i < 100; ++i) table.finishTop();
    for (std::size_t i = 100; i < 200; ++i) EXPECT_EQ(table.findUnfinished(chain[i]), nullptr);
    // The places of the finished ones are taken by others.
    cursors.resize(100);
    for (std::size_t i = 200; i < 300; ++i) {
        auto meeting = table.meet(chain[i]);
        table.prepareToEnter(meeting, chain[i], nullptr);
        table.enter(meeting, chain[i], nullptr);
    }
    for (std::size_t i = 0; i < 100; i += 3) EXPECT_EQ(table.findUnfinished(chain[i]), cursors[i]);
    for (std::size_t i = 100; i < 200; ++i) EXPECT_EQ(table.findUnfinished(chain[i]), nullptr);
    for (std::size_t i = 200; i < 300; ++i) EXPECT_NE(table.findUnfinished(chain[i]), nullptr);
}

}  // namespace
}  // namespace nuv::zero::traversal::internal
