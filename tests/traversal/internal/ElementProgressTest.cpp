#include "traversal/internal/ElementProgress.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "tests/support/Failures.h"
#include "tests/support/ModelBuilder.h"
#include "tests/support/WalkLog.h"

namespace nuv::zero::traversal::internal {
namespace {

using meta::Property;
using test::Lines;
using test::text;

class ElementProgressTest : public testing::Test {
  protected:
    using Settings = std::shared_ptr<std::vector<AssociationSetting>>;

    Settings settings(const std::vector<std::string>& names) const {
        auto list = std::make_shared<std::vector<AssociationSetting>>();
        for (const std::string& name : names) {
            list->emplace_back(m["Node." + name], ResultPolicy::Report);
        }
        return list;
    }
    ElementProgress cursorOver(const std::vector<std::string>& names) {
        return {Link(ModelElement(), m("A"), Property()), &log, settings(names)};
    }
    /// Steps until nothing is left, writing links down between the events.
    void finish(ElementProgress& cursor) {
        while (!cursor.processedAll()) step(cursor);
    }
    void step(ElementProgress& cursor) { lines.push_back(text(cursor.advanceAndGetCurrent())); }

    test::ModelBuilder m{
        "Node; Node.x -> Node *; Node.y -> Node *; Node.one -> Node; Node.other -> Node; "
        "Node.two -> Node 2",
        "A.x = B C D; A.y = C; A.one = B"};
    Lines lines;
    test::EventLog log{lines};
};

TEST_F(ElementProgressTest, WalksPropertyByPropertyValueByValue) {
    ElementProgress cursor = cursorOver({"y", "one", "x"});
    finish(cursor);
    EXPECT_EQ(lines, (Lines{"enter A", "enter A.y", "A.y>C", "exit A.y", "enter A.one", "A.one>B",
                            "exit A.one", "enter A.x", "A.x>B", "A.x>C", "A.x>D", "exit A.x", "-",
                            "exit A"}));
}

TEST_F(ElementProgressTest, EmptySettingsEnterTheElementAndExitItOnce) {
    ElementProgress cursor = cursorOver({});
    EXPECT_FALSE(cursor.processedAll());
    step(cursor);
    EXPECT_TRUE(cursor.processedAll());
    EXPECT_TRUE(cursor.processedAll());
    EXPECT_EQ(lines, (Lines{"enter A", "-", "exit A"}));
}

TEST_F(ElementProgressTest, UnsetSingleValueAndEmptyCollectionSendTheirEventsWithoutALink) {
    ElementProgress cursor = cursorOver({"other", "two", "y"});
    finish(cursor);
    EXPECT_EQ(lines, (Lines{"enter A", "enter A.other", "exit A.other", "enter A.two", "exit A.two",
                            "enter A.y", "A.y>C", "exit A.y", "-", "exit A"}));
}

TEST_F(ElementProgressTest, SingleValueThatHoldsANullElementIsNoTarget) {
    m.model.set(m("A"), m["Node.one"], ModelElement());
    ElementProgress cursor = cursorOver({"one"});
    finish(cursor);
    EXPECT_EQ(lines, (Lines{"enter A", "enter A.one", "exit A.one", "-", "exit A"}));
}

TEST_F(ElementProgressTest, EveryUpperBoundButOneIsManyValued) {
    m.extend("A.two = C D");
    ElementProgress cursor = cursorOver({"two"});
    finish(cursor);
    EXPECT_EQ(lines,
              (Lines{"enter A", "enter A.two", "A.two>C", "A.two>D", "exit A.two", "-", "exit A"}));
}

TEST_F(ElementProgressTest, WithoutAnObserverTheLinksAreTheSame) {
    ElementProgress cursor(Link(ModelElement(), m("A"), Property()), nullptr, settings({"y"}));
    finish(cursor);
    EXPECT_EQ(lines, (Lines{"A.y>C", "-"}));
}

TEST_F(ElementProgressTest, ProducesCascadingLinksEvenForANoCascadeLinkToTheElement) {
    Link toA(ModelElement(), m("A"), Property());
    toA.setNoCascade();
    ElementProgress cursor(toA, nullptr, settings({"y"}));
    EXPECT_TRUE(cursor.advanceAndGetCurrent().shouldCascade());
}

TEST_F(ElementProgressTest, FinishedCursorStaysFinished) {
    ElementProgress cursor = cursorOver({"y"});
    finish(cursor);
    lines.clear();
    step(cursor);
    EXPECT_TRUE(cursor.processedAll());
    EXPECT_EQ(lines, Lines{"-"});
}

TEST_F(ElementProgressTest, ReportedSelfIsIndependentOfTheWalk) {
    ElementProgress cursor = cursorOver({"y"});
    EXPECT_FALSE(cursor.hasReportedSelf());
    finish(cursor);
    EXPECT_FALSE(cursor.hasReportedSelf());
    cursor.setReportedSelf();
    EXPECT_TRUE(cursor.hasReportedSelf());
}

TEST_F(ElementProgressTest, PlaceholderCanBeCopiedAndPrunedAndStepped) {
    ElementProgress placeholder;
    ElementProgress copy(placeholder);
    copy = placeholder;
    copy.pruneCurrentProperty();
    copy.pruneProperty(m["Node.x"]);
    EXPECT_TRUE(!copy.advanceAndGetCurrent());
    EXPECT_TRUE(copy.processedAll());
}

// Pruning.

TEST_F(ElementProgressTest, PruneAllChildrenBeforeTheStartSendsNeitherEnterNorExit) {
    ElementProgress cursor = cursorOver({"x"});
    cursor.pruneAllChildren();
    EXPECT_TRUE(cursor.processedAll());
    EXPECT_TRUE(!cursor.advanceAndGetCurrent());
    EXPECT_EQ(lines, Lines{});
}

TEST_F(ElementProgressTest, PruneAllChildrenInMidPropertySendsExitElementButNoExitProperty) {
    ElementProgress cursor = cursorOver({"x", "y"});
    step(cursor);
    cursor.pruneAllChildren();
    finish(cursor);
    EXPECT_EQ(lines, (Lines{"enter A", "enter A.x", "A.x>B", "exit A"}));
}

TEST_F(ElementProgressTest, PruneCurrentPropertyInMidPropertyGoesOnWithTheNextThatHasValues) {
    ElementProgress cursor = cursorOver({"x", "other", "y"});
    step(cursor);
    cursor.pruneCurrentProperty();
    finish(cursor);
    EXPECT_EQ(lines, (Lines{"enter A", "enter A.x", "A.x>B", "exit A.x", "enter A.other",
                            "exit A.other", "enter A.y", "A.y>C", "exit A.y", "-", "exit A"}));
}

TEST_F(ElementProgressTest, PruneCurrentPropertyBeforeTheStartSkipsTheFirstWithoutEvents) {
    ElementProgress cursor = cursorOver({"x", "y"});
    cursor.pruneCurrentProperty();
    finish(cursor);
    EXPECT_EQ(lines, (Lines{"enter A", "enter A.y", "A.y>C", "exit A.y", "-", "exit A"}));
}

TEST_F(ElementProgressTest, PruneCurrentPropertyOftenBeforeTheStartDoesNotRunPastTheEnd) {
    ElementProgress cursor = cursorOver({"x", "y"});
    for (int i = 0; i < 10; ++i) cursor.pruneCurrentProperty();
    cursor.pruneProperty(m["Node.x"]);
    finish(cursor);
    EXPECT_EQ(lines, (Lines{"enter A", "-", "exit A"}));
}

TEST_F(ElementProgressTest, PrunePropertyOfTheFirstBeforeTheStartSkipsItWithoutEvents) {
    ElementProgress cursor = cursorOver({"x", "y"});
    cursor.pruneProperty(m["Node.x"]);
    finish(cursor);
    EXPECT_EQ(lines, (Lines{"enter A", "enter A.y", "A.y>C", "exit A.y", "-", "exit A"}));
}

TEST_F(ElementProgressTest, PrunePropertyOfALaterOneSendsItsEventsWithoutReadingIt) {
    m.model.plant(m("A"), m["Node.y"], {meta::StandardTypes::stringMeta(), false, {}});
    ElementProgress cursor = cursorOver({"one", "y"});
    cursor.pruneProperty(m["Node.y"]);
    finish(cursor);
    EXPECT_EQ(lines, (Lines{"enter A", "enter A.one", "A.one>B", "exit A.one", "enter A.y",
                            "exit A.y", "-", "exit A"}));
}

TEST_F(ElementProgressTest, PrunePropertyOfTheCurrentOneActsAsPruneCurrentProperty) {
    ElementProgress cursor = cursorOver({"x", "y"});
    step(cursor);
    cursor.pruneProperty(m["Node.x"]);
    step(cursor);
    EXPECT_EQ(lines, (Lines{"enter A", "enter A.x", "A.x>B", "exit A.x", "enter A.y", "A.y>C"}));
}

TEST_F(ElementProgressTest, PrunePropertyOfAPassedOrUnknownOneChangesNothing) {
    ElementProgress cursor = cursorOver({"one", "y"});
    step(cursor);
    step(cursor);
    cursor.pruneProperty(m["Node.one"]);
    cursor.pruneProperty(m["Node.other"]);
    cursor.pruneProperty(Property());
    finish(cursor);
    EXPECT_EQ(lines, (Lines{"enter A", "enter A.one", "A.one>B", "exit A.one", "enter A.y", "A.y>C",
                            "exit A.y", "-", "exit A"}));
}

TEST_F(ElementProgressTest, PruningAFinishedCursorChangesNothing) {
    ElementProgress cursor = cursorOver({"y"});
    finish(cursor);
    const Lines before = lines;
    cursor.pruneAllChildren();
    cursor.pruneCurrentProperty();
    cursor.pruneProperty(m["Node.y"]);
    EXPECT_TRUE(cursor.processedAll());
    EXPECT_EQ(lines, before);
}

// Copies.

TEST_F(ElementProgressTest, CopyInMidPropertyIsIndependentPruneRequestsIncluded) {
    ElementProgress original = cursorOver({"x", "one", "y"});
    step(original);
    original.pruneProperty(m["Node.one"]);
    ElementProgress copy(original);
    copy.pruneProperty(m["Node.y"]);
    lines.clear();
    finish(copy);
    EXPECT_EQ(lines, (Lines{"A.x>C", "A.x>D", "exit A.x", "enter A.one", "exit A.one", "enter A.y",
                            "exit A.y", "-", "exit A"}));
    lines.clear();
    finish(original);
    EXPECT_EQ(lines, (Lines{"A.x>C", "A.x>D", "exit A.x", "enter A.one", "exit A.one", "enter A.y",
                            "A.y>C", "exit A.y", "-", "exit A"}));
}

TEST_F(ElementProgressTest, AssignmentTakesThePlaceOver) {
    ElementProgress original = cursorOver({"x"});
    step(original);
    original.setReportedSelf();
    ElementProgress assigned;
    assigned = original;
    const ElementProgress& same = assigned;
    assigned = same;
    EXPECT_TRUE(assigned.hasReportedSelf());
    lines.clear();
    step(assigned);
    EXPECT_EQ(lines, Lines{"A.x>C"});
}

TEST_F(ElementProgressTest, KeepsElementSettingsAndValuesAliveByItself) {
    auto other = std::make_unique<test::ModelBuilder>("Node; Node.x -> Node *", "A.x = B C");
    auto list = std::make_shared<std::vector<AssociationSetting>>();
    list->emplace_back((*other)["Node.x"], ResultPolicy::Report);
    ElementProgress cursor(Link(ModelElement(), (*other)("A"), Property()), nullptr, list);
    list.reset();
    EXPECT_EQ(text(cursor.advanceAndGetCurrent()), "A.x>B");
    other.reset();
    // The names went with the model; the values that stood there did not.
    EXPECT_TRUE(!!cursor.advanceAndGetCurrent());
    EXPECT_TRUE(!cursor.advanceAndGetCurrent());
}

TEST_F(ElementProgressTest, ValuesThatAreTakenAwayMeanwhileStillCome) {
    const ModelElement source = m.model.create(m.type("Node"));
    for (int i = 0; i < 3; ++i) m.model.add(source, m["Node.x"], m.model.create(m.type("Node")));
    ElementProgress cursor(Link(ModelElement(), source, Property()), nullptr, settings({"x"}));
    EXPECT_TRUE(!!cursor.advanceAndGetCurrent());
    m.model.set(source, m["Node.x"], std::vector<ModelElement>());
    for (int i = 0; i < 2; ++i) {
        const Link link = cursor.advanceAndGetCurrent();
        ASSERT_TRUE(link.getTarget());
        EXPECT_EQ(access::classOf(link.getTarget()), m.type("Node"));
    }
    EXPECT_TRUE(!cursor.advanceAndGetCurrent());
}

// Failures.

TEST_F(ElementProgressTest, ValueThatIsNoCollectionOfElementsFailsNamingItsTypeAndIsSteppedOver) {
    m.model.plant(m("A"), m["Node.x"], {meta::StandardTypes::stringMeta(), false, u"text"});
    ElementProgress cursor = cursorOver({"x", "y"});
    try {
        step(cursor);
        FAIL() << "nothing was thrown";
    } catch (const CannotCastIncompatibleTypes& error) {
        EXPECT_EQ(error.arguments(), std::vector<std::u16string>{u"String"});
    }
    EXPECT_EQ(lines, (Lines{"enter A", "enter A.x"}));
    finish(cursor);
    EXPECT_EQ(lines, (Lines{"enter A", "enter A.x", "exit A.x", "enter A.y", "A.y>C", "exit A.y",
                            "-", "exit A"}));
}

TEST_F(ElementProgressTest, FailureInALaterPropertyIsSteppedOverToo) {
    m.model.unset(m("A"), m["Node.x"]);
    ElementProgress cursor = cursorOver({"y", "x", "one"});
    step(cursor);
    EXPECT_THROW(step(cursor), CannotCastIncompatibleTypes);
    finish(cursor);
    EXPECT_EQ(lines, (Lines{"enter A", "enter A.y", "A.y>C", "exit A.y", "enter A.x", "exit A.x",
                            "enter A.one", "A.one>B", "exit A.one", "-", "exit A"}));
}

TEST_F(ElementProgressTest, FailureInTheLastPropertyLeavesAWalkThatEnds) {
    m.model.unset(m("A"), m["Node.x"]);
    ElementProgress cursor = cursorOver({"x"});
    EXPECT_THROW(step(cursor), CannotCastIncompatibleTypes);
    finish(cursor);
    EXPECT_EQ(lines, (Lines{"enter A", "enter A.x", "exit A.x", "-", "exit A"}));
}

TEST_F(ElementProgressTest, PrimitiveValuesUnsetSingleIsNoTargetEverythingElseFails) {
    const meta::Type string = meta::StandardTypes::stringMeta();
    const auto stepOver = [&](const char* property, memory::PlantedValue value) {
        m.model.plant(m("A"), m[property], std::move(value));
        const Property read = m[property];
        ElementProgress cursor = cursorOver({access::toUtf8(access::nameOf(read))});
        cursor.advanceAndGetCurrent();
    };
    EXPECT_NO_THROW(stepOver("Node.one", {string, false, {}}));
    EXPECT_THROW(stepOver("Node.one", {string, false, u"text"}), CannotCastIncompatibleTypes);
    EXPECT_THROW(stepOver("Node.x", {string, true, {}}), CannotCastIncompatibleTypes);
    EXPECT_THROW(stepOver("Node.x", {string, true, std::vector<std::u16string>{}}),
                 CannotCastIncompatibleTypes);
    EXPECT_THROW(stepOver("Node.x", {m.type("Node"), true, {}}), CannotCastIncompatibleTypes);
    EXPECT_NO_THROW(stepOver("Node.x", {m.type("Node"), true, std::vector<ModelElement>{}}));
}

/// Throws at one of its events, after writing it down.
class FailingLog : public test::EventLog {
  public:
    FailingLog(Lines& lines, std::string failing) : EventLog(lines), failing_(std::move(failing)) {}

  protected:
    void note(std::string line) override {
        const bool fails = line == failing_;
        EventLog::note(std::move(line));
        if (fails) {
            failing_.clear();
            throw test::PlannedFailure("event");
        }
    }

  private:
    std::string failing_;
};

class ElementProgressFailureTest : public ElementProgressTest {
  protected:
    /// All events and links of a walk over y and one whose observer throws once.
    Lines walkFailingAt(const std::string& event) {
        FailingLog failing(lines, event);
        ElementProgress cursor(Link(ModelElement(), m("A"), Property()), &failing,
                               settings({"other", "y"}));
        for (bool finished = false; !finished;) {
            try {
                finished = cursor.processedAll();
                if (!finished) step(cursor);
            } catch (const test::PlannedFailure&) {
                lines.push_back("failed");
            }
        }
        return lines;
    }
};

TEST_F(ElementProgressFailureTest, EnterElementThatThrowsIsSentAgain) {
    EXPECT_EQ(walkFailingAt("enter A"),
              (Lines{"enter A", "failed", "enter A", "enter A.other", "exit A.other", "enter A.y",
                     "A.y>C", "exit A.y", "-", "exit A"}));
}

TEST_F(ElementProgressFailureTest, ExitElementThatThrowsIsNotSentAgain) {
    EXPECT_EQ(walkFailingAt("exit A"),
              (Lines{"enter A", "enter A.other", "exit A.other", "enter A.y", "A.y>C", "exit A.y",
                     "-", "exit A", "failed"}));
}

TEST_F(ElementProgressFailureTest, EnterPropertyThatThrowsLosesTheProperty) {
    EXPECT_EQ(walkFailingAt("enter A.y"),
              (Lines{"enter A", "enter A.other", "exit A.other", "enter A.y", "failed", "exit A.y",
                     "-", "exit A"}));
    lines.clear();
    EXPECT_EQ(walkFailingAt("enter A.other"),
              (Lines{"enter A", "enter A.other", "failed", "exit A.other", "enter A.y", "A.y>C",
                     "exit A.y", "-", "exit A"}));
}

TEST_F(ElementProgressFailureTest, ExitPropertyThatThrowsIsSentAgain) {
    EXPECT_EQ(walkFailingAt("exit A.y"),
              (Lines{"enter A", "enter A.other", "exit A.other", "enter A.y", "A.y>C", "exit A.y",
                     "failed", "exit A.y", "-", "exit A"}));
    lines.clear();
    EXPECT_EQ(walkFailingAt("exit A.other"),
              (Lines{"enter A", "enter A.other", "exit A.other", "failed", "exit A.other",
                     "enter A.y", "A.y>C", "exit A.y", "-", "exit A"}));
}

}  // namespace
}  // namespace nuv::zero::traversal::internal
