#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/ModelBuilder.h"
#include "tests/support/WalkLog.h"
#include "traversal/internal/ElementProgress.h"

/// Observers, filters and predicates that act on the walk that calls them, case by case.
namespace nuv::zero::traversal::internal {
namespace {

using test::Lines;
using test::ModelBuilder;
using test::text;
using Walk = TraversalResult::IterationContext;

using Action = std::function<void(Walk&)>;

/// Shows every event to what it is given.
class Events : public test::EventLog {
  public:
    explicit Events(std::function<void(const std::string&)> see)
        : EventLog(unused_), see_(std::move(see)) {}

  protected:
    void note(std::string line) override { see_(line); }

  private:
    std::function<void(const std::string&)> see_;
    Lines unused_;
};

/// A policy's predicate that copied the walk and pruned it, where the path had just grown into a
/// new block, left the link that was asked about with a source that was gone.
TEST(WalkCallbacksOnDeepPaths, PredicateThatCopiesAndPrunesLeavesTheLinkAsItIs) {
    for (const Algo order : test::everyOrder()) {
        ModelBuilder chain("Node; Node.x -> Node *", "A");
        ModelElement last = chain("A");
        for (int i = 0; i < 200; ++i) {
            const ModelElement next = chain.model.create(chain.type("Node"));
            chain.model.add(last, chain["Node.x"], next);
            last = next;
        }
        Walk walk;
        bool isAsking = false;
        const auto predicate = [&](const Class&) {
            if (isAsking && walk.getCurrent()) {
                const Walk copy = walk;
                walk.pruneChildren(Property());
                walk.pruneSiblings();
            }
            return true;
        };
        const auto result = Spec::additiveTraversal()
                                ->traverse(chain["Node.x"], predicate, ResultPolicy::Report)
                                ->run({chain("A")}, order);
        walk = result->prepare();
        isAsking = true;
        std::size_t count = 0;
        for (walk.advance(); !walk.hasEnded(); walk.advance()) {
            const Link link = walk.getCurrent();
            count += !link.getProperty() || link.getSource() ? 1 : 0;
        }
        EXPECT_EQ(count, 201U) << test::nameOf(order);
    }
}

class WalkCallbacksTest : public testing::Test {
  protected:
    explicit WalkCallbacksTest(const char* model = "D : Leaf; A.x = B C; B.x = D; B.y = E")
        : m("Node; Leaf < Node; Node.x -> Node *; Node.y -> Node *", model) {}

    /// The links of a walk from A, and of the events those of B. One callback acts, when it is
    /// called first: that of an event, or that of `filter B.x>D`, or of `asked about Leaf`.
    Lines acting(Algo order, const std::string& callback, const Action& action) {
        Lines lines;
        Walk walk;
        bool hasActed = false;
        const auto called = [&](const std::string& line) {
            if (std::exchange(hasActed, hasActed || line == callback) || !hasActed) return;
            action(walk);
        };
        Events observer([&](const std::string& line) {
            if (line.starts_with("enter B") || line.starts_with("exit B")) lines.push_back(line);
            called(line);
        });
        const auto predicate = [&](const Class& type) {
            called("asked about " + access::toUtf8(access::nameOf(type)));
            return false;
        };
        const auto result = Spec::subtractiveTraversal()
                                ->prune(m["Node.x"], predicate)
                                ->includeInitialPseudoLink(ResultPolicy::WalkOnly)
                                ->run({m("A")}, order);
        ResultSetup(result).observe(&observer).filter([&](const Link& link) {
            if (link.getProperty()) called("filter " + text(link));
            return ResultPolicy::Report;
        });
        for (walk = result->begin(); !!walk.getCurrent(); walk.advance()) {
            lines.push_back(text(walk.getCurrent()));
        }
        EXPECT_TRUE(hasActed) << callback << " never happened";
        return lines;
    }
    Lines preOrder(const std::string& callback, const Action& action) {
        return acting(Algo::DepthFirstPreOrder, callback, action);
    }
    Lines breadthFirst(const std::string& callback, const Action& action) {
        return acting(Algo::BreadthFirst, callback, action);
    }
    static void allChildren(Walk& walk) { walk.pruneAllChildren(); }
    static void siblings(Walk& walk) { walk.pruneSiblings(); }
    Action children(const char* property) {
        return [this, property](Walk& walk) { walk.pruneChildren(m[property]); };
    }

    ModelBuilder m;
    const Lines preOrderUnpruned{"A.x>B",     "enter B", "enter B.x", "B.x>D",  "exit B.x",
                                 "enter B.y", "B.y>E",   "exit B.y",  "exit B", "A.x>C"};
    const Lines breadthFirstUnpruned{"A.x>B",    "A.x>C",     "enter B", "enter B.x", "B.x>D",
                                     "exit B.x", "enter B.y", "B.y>E",   "exit B.y",  "exit B"};
};

// Pre-order, the walk stands on A.x>B while B is entered: B is the target, A the source.

TEST_F(WalkCallbacksTest, PruneAllChildrenWhileTheTargetIsEnteredLeavesOnlyItsOwnEvents) {
    EXPECT_EQ(preOrder("enter B", allChildren), (Lines{"A.x>B", "enter B", "exit B", "A.x>C"}));
}

TEST_F(WalkCallbacksTest, PruneAllChildrenWhileAPropertyIsEnteredGivesNoLinkAndNoExitOfIt) {
    EXPECT_EQ(preOrder("enter B.x", allChildren),
              (Lines{"A.x>B", "enter B", "enter B.x", "exit B", "A.x>C"}));
    EXPECT_EQ(preOrder("enter A.x", allChildren), preOrderUnpruned) << "it stands nowhere yet";
}

TEST_F(WalkCallbacksTest, PruneAllChildrenAfterALinkFromElsewhereLeavesTheElementAlone) {
    // The walk stands on B.x>D, of which B is the source.
    EXPECT_EQ(preOrder("exit B.x", allChildren), preOrderUnpruned);
    EXPECT_EQ(preOrder("enter B.y", allChildren), preOrderUnpruned);
    EXPECT_EQ(preOrder("exit B", allChildren), preOrderUnpruned);
    EXPECT_EQ(preOrder("done A", allChildren), preOrderUnpruned);
}

TEST_F(WalkCallbacksTest, PruneChildrenWhileTheTargetIsEnteredLeavesOutThePropertyThatIsFirst) {
    EXPECT_EQ(preOrder("enter B", children("Node.x")),
              (Lines{"A.x>B", "enter B", "enter B.y", "B.y>E", "exit B.y", "exit B", "A.x>C"}))
        << "with its events";
    EXPECT_EQ(preOrder("enter B", children("Node.y")),
              (Lines{"A.x>B", "enter B", "enter B.x", "B.x>D", "exit B.x", "enter B.y", "exit B.y",
                     "exit B", "A.x>C"}));
}

TEST_F(WalkCallbacksTest, PruneChildrenWhileAPropertyIsEnteredReachesOnlyLaterOnes) {
    EXPECT_EQ(preOrder("enter B.x", children("Node.x")), preOrderUnpruned)
        << "its values are read after the event";
    EXPECT_EQ(preOrder("enter B.x", children("Node.y")),
              (Lines{"A.x>B", "enter B", "enter B.x", "B.x>D", "exit B.x", "enter B.y", "exit B.y",
                     "exit B", "A.x>C"}));
}

TEST_F(WalkCallbacksTest, PruneSiblingsInAnEventOfTheTargetLeavesOutTheRestOfTheSources) {
    const Lines withoutC(preOrderUnpruned.begin(), preOrderUnpruned.end() - 1);
    EXPECT_EQ(preOrder("enter B", siblings), withoutC);
    EXPECT_EQ(preOrder("enter B.x", siblings), withoutC);
    EXPECT_EQ(preOrder("exit B", siblings), preOrderUnpruned) << "the walk stands on B.y>E";
}

TEST_F(WalkCallbacksTest,
       PruneSiblingsWhileThePropertyIsLeftOrTheNextIsEnteredComesTooLateOrEarly) {
    EXPECT_EQ(preOrder("exit B.x", siblings), preOrderUnpruned);
    EXPECT_EQ(preOrder("enter B.y", siblings), preOrderUnpruned);
}

TEST_F(WalkCallbacksTest, PruningInInputEventsFindsNothingLeft) {
    for (const Action& action :
         {Action(allChildren), Action(siblings), children("Node.x"), children("Node.y")}) {
        EXPECT_EQ(preOrder("input A", action), preOrderUnpruned);
        EXPECT_EQ(preOrder("done A", action), preOrderUnpruned);
        EXPECT_EQ(breadthFirst("input A", action), breadthFirstUnpruned);
        EXPECT_EQ(breadthFirst("done A", action), breadthFirstUnpruned);
    }
}

// A filter is asked about B.x>D, a predicate about D, while the walk still stands on A.x>B.

TEST_F(WalkCallbacksTest, PruneAllChildrenInAFilterOrPredicateKeepsTheLinkUnderWay) {
    const Lines expected{"A.x>B", "enter B", "enter B.x", "B.x>D", "exit B", "A.x>C"};
    EXPECT_EQ(preOrder("filter B.x>D", allChildren), expected);
    EXPECT_EQ(preOrder("asked about Leaf", allChildren), expected);
}

TEST_F(WalkCallbacksTest, PruneChildrenInAFilterOrPredicateEndsThePropertyUnderWay) {
    for (const char* callback : {"filter B.x>D", "asked about Leaf"}) {
        EXPECT_EQ(preOrder(callback, children("Node.x")), preOrderUnpruned) << "D is the last";
        EXPECT_EQ(preOrder(callback, children("Node.y")),
                  (Lines{"A.x>B", "enter B", "enter B.x", "B.x>D", "exit B.x", "enter B.y",
                         "exit B.y", "exit B", "A.x>C"}));
    }
}

TEST_F(WalkCallbacksTest, PruneSiblingsInAFilterOrPredicateActsOnTheLinkThatTheWalkStandsOn) {
    const Lines withoutC(preOrderUnpruned.begin(), preOrderUnpruned.end() - 1);
    EXPECT_EQ(preOrder("filter B.x>D", siblings), withoutC);
    EXPECT_EQ(preOrder("asked about Leaf", siblings), withoutC);
}

// Breadth-first, B waits while the walk stands on A.x>B.

TEST_F(WalkCallbacksTest, PruningInAFilterBreadthFirstActsOnTheElementThatWaits) {
    EXPECT_EQ(breadthFirst("filter A.x>C", allChildren), (Lines{"A.x>B", "A.x>C"}));
    EXPECT_EQ(breadthFirst("filter A.x>C", children("Node.x")),
              (Lines{"A.x>B", "A.x>C", "enter B", "enter B.y", "B.y>E", "exit B.y", "exit B"}));
    EXPECT_EQ(breadthFirst("filter A.x>C", siblings), breadthFirstUnpruned) << "C is the last";
}

TEST_F(WalkCallbacksTest, PruningInEventsBreadthFirstActsOnTheLinkThatTheWalkStandsOn) {
    // The walk stands on A.x>C when B's turn comes, and on B.y>E when B is done.
    for (const char* callback : {"enter B", "enter B.x"}) {
        EXPECT_EQ(breadthFirst(callback, allChildren), breadthFirstUnpruned);
        EXPECT_EQ(breadthFirst(callback, siblings), breadthFirstUnpruned);
    }
    EXPECT_EQ(breadthFirst("exit B.x", siblings), breadthFirstUnpruned);
}

class WalkCallbacksOnEmptyPropertyTest : public WalkCallbacksTest {
  protected:
    WalkCallbacksOnEmptyPropertyTest() : WalkCallbacksTest("A.x = B C; B.y = E") {}
};

TEST_F(WalkCallbacksOnEmptyPropertyTest, PropertyWithoutValuesIsLeftAtOnceWhateverIsPruned) {
    EXPECT_EQ(preOrder("enter B.x", allChildren),
              (Lines{"A.x>B", "enter B", "enter B.x", "exit B.x", "exit B", "A.x>C"}));
    EXPECT_EQ(preOrder("exit B.x", allChildren),
              (Lines{"A.x>B", "enter B", "enter B.x", "exit B.x", "exit B", "A.x>C"}));
    EXPECT_EQ(preOrder("enter B.y", allChildren),
              (Lines{"A.x>B", "enter B", "enter B.x", "exit B.x", "enter B.y", "exit B", "A.x>C"}));
}

/// Attaches an observer while an element of another class is entered.
TEST_F(WalkCallbacksTest, ObserverAttachedByAPredicateHearsTheElementThatIsBeingEntered) {
    for (const char* input : {"A", "D"}) {
        for (const Algo order : test::everyOrder()) {
            m.model.set(m("D"), m["Node.y"], std::vector<ModelElement>{m("E")});
            Lines lines;
            test::EventLog observer(lines);
            std::shared_ptr<TraversalResult> result;
            result = Spec::subtractiveTraversal()
                         ->prune(m["Node.x"],
                                 [&](const Class& type) {
                                     if (type == m.type("Leaf") && lines.empty()) {
                                         ResultSetup(result).observe(&observer);
                                     }
                                     return type == m.type("Leaf");
                                 })
                         ->run({m(input)}, order);
            for (Walk walk(result); !!walk.getCurrent(); walk.advance()) {
            }
            Lines ofD;
            for (const std::string& line : lines) {
                if (line.find(" D") != std::string::npos) ofD.push_back(line);
            }
            Lines expected{"enter D", "enter D.y", "exit D.y", "exit D"};
            if (input == std::string("D")) expected.emplace_back("done D");
            EXPECT_EQ(ofD, expected) << input << ' ' << test::nameOf(order);
        }
    }
}

TEST_F(WalkCallbacksTest, AssigningTheWalkToItselfChangesNothing) {
    const Action byCopy = [](Walk& walk) {
        const Walk& same = walk;
        walk = same;
    };
    const Action byMove = [](Walk& walk) {
        Walk& same = walk;
        walk = std::move(same);
    };
    EXPECT_EQ(preOrder("enter B", byCopy), preOrderUnpruned);
    EXPECT_EQ(preOrder("enter B", byMove), preOrderUnpruned);
}

TEST_F(WalkCallbacksTest, WalkOfNoResultIsRefused) {
    EXPECT_THROW(Walk(std::shared_ptr<TraversalResult>()), std::invalid_argument);
}

TEST_F(WalkCallbacksTest, CursorOverTheEmptyLinkReadsNothingAndHasNoLinks) {
    const auto settings = std::make_shared<std::vector<AssociationSetting>>();
    settings->emplace_back(m["Node.x"], ResultPolicy::Report);
    settings->emplace_back(m["Node.y"], ResultPolicy::Report);
    Lines lines;
    test::EventLog log(lines);
    for (TraversalProcessor* observer :
         {static_cast<TraversalProcessor*>(nullptr), static_cast<TraversalProcessor*>(&log)}) {
        ElementProgress cursor(Link(), observer, settings);
        EXPECT_FALSE(cursor.processedAll());
        EXPECT_TRUE(!cursor.advanceAndGetCurrent());
        EXPECT_TRUE(cursor.processedAll());
        EXPECT_TRUE(!cursor.advanceAndGetCurrent());
    }
    EXPECT_EQ(lines, (Lines{"enter null", "enter null.x", "exit null.x", "enter null.y",
                            "exit null.y", "exit null"}));
}

}  // namespace
}  // namespace nuv::zero::traversal::internal
