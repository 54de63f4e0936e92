#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "tests/support/ModelBuilder.h"
#include "tests/support/WalkLog.h"

/// A model that changes under a walk is outside the contract, but must do no harm: what the walk
/// has met stays alive, and the values of a property are those that stood there when it was
/// reached.
namespace nuv::zero::traversal {
namespace {

using test::Lines;
using test::ModelBuilder;
using test::text;
using Walk = TraversalResult::IterationContext;

constexpr auto nodeMetamodel = "Node; Node.x => Node *; Node.y -> Node *; Node.boss -> Node";
constexpr auto nodeModel =
    "A.x = B C D; A.y = D B; A.boss = C; B.x = E F; B.boss = A; C.x = G; C.y = A B; D.boss = D; "
    "E.x = H; G.boss = B";

class WalkOverEditedModelTest : public testing::TestWithParam<Algo> {
  protected:
    using Edit = std::function<void(ModelBuilder&, Walk&)>;

    /// Walks, editing the model once, at the given step; false when the walk was over before.
    bool walkEditingAt(std::size_t step, const Edit& edit) {
        auto m = std::make_unique<ModelBuilder>(nodeMetamodel, nodeModel);
        Walk walk = Spec::subtractiveTraversal()->run({(*m)("A"), (*m)("G")}, GetParam())->begin();
        for (std::size_t i = 0; i < step; ++i) {
            if (!walk.getCurrent()) return false;
            walk.advance();
        }
        if (!walk.getCurrent()) return false;
        const Walk copy(walk);
        edit(*m, walk);
        finish(walk);
        Walk second(copy);
        m.reset();
        finish(second);
        return true;
    }
    static void finish(Walk& walk) {
        for (int steps = 0; !!walk.getCurrent(); ++steps) {
            ASSERT_LT(steps, 1000) << "the walk does not end";
            // Whatever the walk stands on can be looked at.
            dumpLink(walk.getCurrent());
            try {
                walk.advance();
            } catch (const CannotCastIncompatibleTypes&) {
                // A collection that was unset.
            }
        }
    }
    void editEverywhere(const Edit& edit) {
        std::size_t step = 0;
        while (walkEditingAt(step, edit)) ++step;
        EXPECT_GT(step, 10U);
    }
    static void forEverything(ModelBuilder& m,
                              const std::function<void(const ModelElement&)>& edit) {
        for (const char* name : {"A", "B", "C", "D", "E", "F", "G", "H"}) edit(m(name));
    }
};

TEST_P(WalkOverEditedModelTest, SurvivesAddingAtEveryStep) {
    editEverywhere([](ModelBuilder& m, Walk&) {
        forEverything(m, [&m](const ModelElement& element) {
            const ModelElement added = m.model.create(m.type("Node"), u"new");
            for (int i = 0; i < 50; ++i) m.model.add(element, m["Node.x"], added);
            m.model.add(element, m["Node.y"], m("A"));
            m.model.set(element, m["Node.boss"], added);
        });
    });
}

TEST_P(WalkOverEditedModelTest, SurvivesClearingAtEveryStep) {
    editEverywhere([](ModelBuilder& m, Walk&) {
        forEverything(m, [&m](const ModelElement& element) {
            for (const char* property : {"Node.x", "Node.y", "Node.boss"}) {
                m.model.clear(element, m[property]);
            }
        });
    });
}

TEST_P(WalkOverEditedModelTest, SurvivesUnsettingAtEveryStep) {
    editEverywhere([](ModelBuilder& m, Walk&) {
        forEverything(m, [&m](const ModelElement& element) {
            for (const char* property : {"Node.x", "Node.y", "Node.boss"}) {
                m.model.unset(element, m[property]);
            }
        });
    });
}

TEST_P(WalkOverEditedModelTest, SurvivesMovingElementsAtEveryStep) {
    editEverywhere([](ModelBuilder& m, Walk&) {
        forEverything(m, [&m](const ModelElement& element) {
            m.model.set(element, m["Node.x"], std::vector<ModelElement>{m("H"), m("A"), element});
            m.model.set(element, m["Node.boss"], m("F"));
        });
    });
}

TEST_P(WalkOverEditedModelTest, SurvivesIllTypedValuesAtEveryStep) {
    editEverywhere([](ModelBuilder& m, Walk&) {
        forEverything(m, [&m](const ModelElement& element) {
            m.model.plant(element, m["Node.x"],
                          {meta::StandardTypes::stringMeta(), false, u"no elements"});
        });
    });
}

TEST_P(WalkOverEditedModelTest, SurvivesPruningAfterAnEditAtEveryStep) {
    editEverywhere([](ModelBuilder& m, Walk& walk) {
        forEverything(m,
                      [&m](const ModelElement& element) { m.model.clear(element, m["Node.x"]); });
        walk.pruneAllChildren();
        walk.pruneSiblings();
        walk.pruneChildren(m["Node.y"]);
    });
}

TEST_P(WalkOverEditedModelTest, SurvivesTheEndOfTheModelAtEveryStep) {
    for (std::size_t step = 0;; ++step) {
        auto m = std::make_unique<ModelBuilder>(nodeMetamodel, nodeModel);
        Walk walk = Spec::subtractiveTraversal()->run({(*m)("A")}, GetParam())->begin();
        for (std::size_t i = 0; i < step && !!walk.getCurrent(); ++i) walk.advance();
        if (!walk.getCurrent()) break;
        m.reset();
        Walk copy(walk);
        finish(walk);
        finish(copy);
    }
}

/// A copy that was all that was left of a walk read elements of a model that was gone.
TEST_P(WalkOverEditedModelTest, CopyKeepsTheModelsThatItsOriginalHasMet) {
    ModelBuilder m(nodeMetamodel, "A");
    auto elsewhere = std::make_unique<memory::Model>();
    m.model.add(m("A"), m["Node.x"], elsewhere->create(m.type("Node"), u"Far"));
    auto original = std::make_unique<Walk>(Spec::additiveTraversal()
                                               ->traverse(m["Node.x"], ResultPolicy::Report)
                                               ->run({m("A")}, GetParam()));
    while (!original->getCurrent().getProperty()) original->advance();
    Walk copy(*original);
    original.reset();
    m.model.clear(m("A"), m["Node.x"]);
    elsewhere.reset();
    EXPECT_EQ(dumpLink(copy.getCurrent()), "Node'A'-[x]-Node''");
    finish(copy);
}

/// A walk that had reported a link behind a boundary read its target in a model that was gone.
TEST_P(WalkOverEditedModelTest, WalkKeepsTheModelsBehindItsBoundaries) {
    ModelBuilder m("Node; Node.x -> Node", "A");
    auto elsewhere = std::make_unique<memory::Model>();
    m.model.set(m("A"), m["Node.x"], elsewhere->create(m.type("Node"), u"Far"));
    const auto result = Spec::additiveTraversal()
                            ->traverse(m["Node.x"], ResultPolicy::Report)
                            ->run({m("A")}, GetParam());
    ResultSetup(result).descend([](const Link&) { return false; });
    Walk walk = result->begin();
    while (!walk.getCurrent().getProperty()) walk.advance();
    std::size_t steps = 1;
    walk.advanceWithin(steps);
    const bool isStillThere = !!walk.getCurrent().getProperty();
    m.model.clear(m("A"), m["Node.x"]);
    elsewhere.reset();
    if (isStillThere) {
        EXPECT_EQ(dumpLink(walk.getCurrent()), "Node'A'-[x]-Node''");
    }
    finish(walk);
}

TEST_P(WalkOverEditedModelTest, SurvivesAnElementThatIsHeldByTheWalkAlone) {
    ModelBuilder m(nodeMetamodel, "A");
    {
        // An element of another model, known to nobody but the walked one.
        ModelBuilder other("Node; Node.x => Node *", "S.x = T");
        m.model.plant(m("A"), m["Node.x"],
                      {m.type("Node"), true, std::vector<ModelElement>{other("S"), other("T")}});
    }
    Walk walk = Spec::subtractiveTraversal()->run({m("A")}, GetParam())->begin();
    // On to the first link that leads there, so that the values were read.
    if (GetParam() != Algo::DepthFirstPostOrder) walk.advance();
    m.model.clear(m("A"), m["Node.x"]);
    finish(walk);
}

INSTANTIATE_TEST_SUITE_P(Orders, WalkOverEditedModelTest, testing::ValuesIn(test::everyOrder()),
                         [](const auto& each) { return test::nameOf(each.param); });

// Which values a walk sees.

class ValuesOfAWalkTest : public testing::Test {
  protected:
    Lines restAfter(const char* link, Algo order, const std::function<void()>& edit) {
        const auto result = Spec::subtractiveTraversal()
                                ->includeInitialPseudoLink(ResultPolicy::WalkOnly)
                                ->run({m("A")}, order);
        Lines lines;
        for (const Link& each : links(result)) {
            lines.push_back(text(each));
            if (lines.back() == link) edit();
        }
        return lines;
    }

    ModelBuilder m{nodeMetamodel, "A.x = B C; A.y = D; B.x = E; N"};
};

TEST_F(ValuesOfAWalkTest, PropertyBeingWalkedKeepsTheValuesThatStoodThereWhenItWasReached) {
    const Lines unedited{"A.y>D", "A.x>B", "B.x>E", "A.x>C"};
    EXPECT_EQ(restAfter("A.x>B", Algo::DepthFirstPreOrder,
                        [this] { m.model.clear(m("A"), m["Node.x"]); }),
              unedited);
}

TEST_F(ValuesOfAWalkTest, ValuesAddedToThePropertyBeingWalkedAreNotSeen) {
    EXPECT_EQ(restAfter("A.x>B", Algo::DepthFirstPreOrder,
                        [this] { m.model.add(m("A"), m["Node.x"], m("N")); }),
              (Lines{"A.y>D", "A.x>B", "B.x>E", "A.x>C"}));
}

TEST_F(ValuesOfAWalkTest, PropertyThatWasNotReachedYetIsSeenAsEdited) {
    const auto edit = [this] { m.extend("B.x = N; D.boss = N"); };
    EXPECT_EQ(restAfter("A.y>D", Algo::DepthFirstPreOrder, edit),
              (Lines{"A.y>D", "D.boss>N", "A.x>B", "B.x>E", "B.x>N!", "A.x>C"}));
}

TEST_F(ValuesOfAWalkTest, BreadthFirstQueuedLinksStayAndTheirTargetsAreReadLater) {
    EXPECT_EQ(restAfter("A.x>C", Algo::BreadthFirst,
                        [this] {
                            m.model.clear(m("A"), m["Node.x"]);
                            m.model.clear(m("B"), m["Node.x"]);
                            m.extend("C.boss = N");
                        }),
              (Lines{"A.y>D", "A.x>B", "A.x>C", "C.boss>N"}));
}

// Symptom: under the undefined-behaviour sanitizer a walk stopped at a list with a null entry; the
// look ahead computed the addresses of what lies behind it.
TEST_F(ValuesOfAWalkTest, NullEntriesOfAListAreWalkedAsElementsWithoutLinks) {
    m.model.plant(m("A"), m["Node.x"],
                  {m.type("Node"), true,
                   std::vector<ModelElement>{m("B"), ModelElement(), m("C"), ModelElement()}});
    const Lines depthFirst{"A.y>D", "A.x>B", "B.x>E", "A.x>null", "A.x>C", "A.x>null!"};
    EXPECT_EQ(restAfter("", Algo::DepthFirstPreOrder, [] {}), depthFirst);
    const Lines breadthFirst{"A.y>D", "A.x>B", "A.x>null", "A.x>C", "B.x>E", "A.x>null!"};
    EXPECT_EQ(restAfter("", Algo::BreadthFirst, [] {}), breadthFirst);
}

}  // namespace
}  // namespace nuv::zero::traversal
