#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <memory>
#include <string>
#include <thread>
#include <vector>
#include <version>

#include "tests/support/ModelBuilder.h"
#include "tests/support/Threads.h"
#include "tests/support/WalkLog.h"

/// Different results over one unchanging model may be walked on different threads; meant to be run
/// under a thread sanitizer too.
namespace nuv::zero::traversal {
namespace {

using test::Lines;
using test::ModelBuilder;
using test::onThreads;
using Walk = TraversalResult::IterationContext;

class ThreadsTest : public testing::Test {
  protected:
    static std::string web() {
        std::string model;
        for (int i = 0; i < 400; ++i) {
            const std::string from = "N" + std::to_string(i);
            for (int j = 1; j <= 3; ++j) {
                model += from + ".x = N" + std::to_string((i * j + 7) % 400) + ';';
            }
            model += from + ".y = N" + std::to_string((i * 3 + 1) % 400) + ';';
        }
        return model;
    }

    /// A walk with everything to it: a copy half the way, an assignment, prunes, a filter, an
    /// observer and opposites.
    Lines walked(const std::shared_ptr<TraversalResult>& result) const {
        Lines lines;
        test::EventLog log(lines);
        ResultSetup(result)
            .observe(&log)
            .unique(UniquenessMode::UniqueLinks)
            .filter([](const Link& link) {
                return link.getProperty() ? ResultPolicy::Report : ResultPolicy::WalkOnly;
            });
        Walk walk = result->begin();
        for (int step = 0; !!walk.getCurrent(); ++step) {
            lines.push_back(test::text(walk.getCurrent()));
            if (step % 50 == 20) {
                Walk copy = walk;
                copy.advance();
                walk = copy;
            }
            if (step % 31 == 7) walk.pruneChildren(y);
            if (step % 37 == 11) walk.pruneSiblings();
            walk.advance();
        }
        ResultSetup(result).observe(nullptr);
        return lines;
    }

    ModelBuilder m{"Node; Node.x => Node *; Node.y -> Node; Node.x <> Node.y", web()};
    const Property x = m["Node.x"];
    const Property y = m["Node.y"];
    const std::vector<ModelElement> inputs{m("N0"), m("N5")};
};

TEST_F(ThreadsTest, ResultsOfDifferentBuildersAreWalkedAtTheSameTimeOverOneModel) {
    const auto body = [this](std::size_t i) {
        const Algo order = test::everyOrder()[i % 3];
        switch (i / 3 % 3) {
            case 0:
                return walked(Spec::subtractiveTraversal()->run(inputs, order));
            case 1:
                return walked(Spec::additiveTraversal()
                                  ->traverse({y, x}, ResultPolicy::Report)
                                  ->run(inputs, order));
            default:
                return walked(Spec::compositionTraversal()
                                  ->prune(y)
                                  ->setResultPolicy(x, ResultPolicy::Report)
                                  ->run(inputs, order));
        }
    };
    std::vector<Lines> expected(9);
    for (std::size_t i = 0; i < expected.size(); ++i) expected[i] = body(i);
    std::vector<Lines> found(expected.size());
    onThreads(found.size(), [&](std::size_t i) {
        for (int round = 0; round < 3; ++round) found[i] = body(i);
    });
    EXPECT_EQ(found, expected);
    for (const Lines& lines : expected) EXPECT_GT(lines.size(), 100U);
}

#ifdef __cpp_lib_jthread
/// What a window does while a thread of its own walks: it shows progress, and cancels.
TEST_F(ThreadsTest, WalkOnAThreadOfItsOwnIsCancelledFromHereAndGoesOnHere) {
    for (const Algo order : test::everyOrder()) {
        const auto builder = Spec::subtractiveTraversal();
        const Lines whole = test::linesOf(builder->run(inputs, order));
        auto walk = links(builder->run(inputs, order));
        Lines lines;
        std::atomic<std::size_t> shown = 0;
        const auto goOn = [&](const std::stop_token& cancelled) {
            for (std::size_t steps = 10; !cancelled.stop_requested(); steps = 10) {
                const Progress progress = walk.advanceWithin(steps);
                if (progress == Progress::Ended) return;
                if (progress == Progress::OnLink) lines.push_back(test::text(walk.getCurrent()));
                shown = walk.enteredCount();
                shown.notify_one();
            }
        };
        std::jthread worker(goOn);
        shown.wait(0);
        worker.request_stop();
        worker.join();
        EXPECT_GT(walk.enteredCount(), 0U);
        goOn(std::stop_token());
        EXPECT_EQ(lines, whole);
    }
}
#endif

TEST_F(ThreadsTest, ManyResultsOfOneBuilderAreWalkedAtTheSameTime) {
    std::atomic<int> asked = 0;
    const auto isNode = [&asked, type = m.type("Node")](const Class& other) {
        asked.fetch_add(1, std::memory_order_relaxed);
        return other == type;
    };
    const auto makeBuilder = [&] {
        return Spec::additiveTraversal()
            ->traverse(x, isNode, ResultPolicy::Report)
            ->traverse(y, isNode, ResultPolicy::Extended);
    };
    for (const Algo order : test::everyOrder()) {
        // Of another builder, so that nothing has been asked of this one before the threads do.
        asked = 0;
        const Lines expected = walked(makeBuilder()->run(inputs, order));
        const int askedByOne = asked.exchange(0);
        const auto builder = makeBuilder();
        std::vector<std::shared_ptr<TraversalResult>> results;
        for (int i = 0; i < 8; ++i) results.push_back(builder->run(inputs, order));
        std::vector<Lines> found(results.size());
        onThreads(results.size(), [&](std::size_t i) {
            found[i] = walked(results[i]);
            // The last owner of each result is the thread that walked it.
            results[i].reset();
        });
        EXPECT_EQ(found, std::vector<Lines>(found.size(), expected)) << test::nameOf(order);
        EXPECT_EQ(asked, 8 * askedByOne) << "the results share answers";
    }
}

TEST_F(ThreadsTest, RulesGivenToABuilderDoNotReachResultsThatAreBeingWalked) {
    const Lines expected = walked(Spec::subtractiveTraversal()->prune(y)->breadthFirst(inputs));
    const auto builder = Spec::subtractiveTraversal()->prune(y);
    std::vector<std::shared_ptr<TraversalResult>> results;
    for (int i = 0; i < 4; ++i) results.push_back(builder->breadthFirst(inputs));
    std::vector<Lines> found(results.size());
    onThreads(results.size() + 1, [&](std::size_t i) {
        if (i < results.size()) {
            found[i] = walked(results[i]);
            return;
        }
        for (int round = 0; round < 200; ++round) {
            builder->prune(x, [](const Class&) { return true; });
            builder->setResultPolicy(y, ResultPolicy::WalkOnly);
            builder->breadthFirst(inputs);
            const SubtractiveTraversalImpl copy(*builder);
        }
    });
    EXPECT_EQ(found, std::vector<Lines>(found.size(), expected));
}

TEST_F(ThreadsTest, AWalkMayBeAdvancedOnOneThreadAfterAnother) {
    for (const Algo order : test::everyOrder()) {
        const Lines expected = test::linesOf(Spec::subtractiveTraversal()->run(inputs, order));
        auto walk = std::make_unique<Walk>(Spec::subtractiveTraversal()->run(inputs, order));
        Lines lines;
        while (!!walk->getCurrent()) {
            std::thread([&] {
                // Copied there, and the one that came from another thread ends there.
                walk = std::make_unique<Walk>(*walk);
                for (int step = 0; step < 100 && !!walk->getCurrent(); ++step) {
                    lines.push_back(test::text(walk->getCurrent()));
                    walk->advance();
                }
            }).join();
        }
        EXPECT_EQ(lines, expected) << test::nameOf(order);
    }
}

TEST_F(ThreadsTest, LinksAndHandlesAreCopiedAndDroppedOnAllThreads) {
    std::vector<Link> links;
    for (const Link& link : traversal::links(Spec::subtractiveTraversal()->depthFirst(inputs))) {
        links.push_back(link);
    }
    Lines expected;
    for (const Link& link : links) expected.push_back(test::text(link));
    std::vector<Lines> found(6);
    onThreads(found.size(), [&](std::size_t i) {
        for (int round = 0; round < 20; ++round) {
            std::vector<Link> copies = links;
            std::rotate(copies.begin(), copies.begin() + static_cast<long>(i), copies.end());
            std::vector<ModelElement> elements;
            std::vector<Property> properties;
            std::vector<Class> classes;
            for (const Link& link : copies) {
                elements.push_back(link.getTarget());
                if (link.getProperty()) properties.push_back(link.getProperty());
                classes.push_back(access::classOf(link.getTarget()));
            }
            copies.clear();
        }
        for (const Link& link : links) found[i].push_back(test::text(link));
    });
    EXPECT_EQ(found, std::vector<Lines>(found.size(), expected));
}

TEST(ThreadsAndLifetimesTest, TheLastHandlesAndWalksOfAModelAreDroppedOnAllThreadsAtOnce) {
    for (int round = 0; round < 50; ++round) {
        std::vector<std::unique_ptr<Walk>> walks(4);
        std::vector<Link> links(4);
        std::vector<ModelElement> elements(4);
        std::vector<Property> properties(4);
        std::vector<Class> classes(4);
        {
            const ModelBuilder m("Node; Node.x -> Node *", "A.x = B C; B.x = A D; C.x = D");
            for (std::size_t i = 0; i < walks.size(); ++i) {
                const auto result =
                    Spec::subtractiveTraversal()->run({m("A")}, test::everyOrder()[i % 3]);
                walks[i] = std::make_unique<Walk>(result);
                walks[i]->advance();
                links[i] = walks[i]->getCurrent();
                elements[i] = m("D");
                properties[i] = m["Node.x"];
                classes[i] = m.type("Node");
            }
        }
        // The model is gone; what is left of it goes when the last of these threads lets go.
        std::vector<std::u16string> names(walks.size());
        onThreads(walks.size(), [&](std::size_t i) {
            const Link copy = links[i];
            links[i] = Link();
            names[i] = access::nameOf(classes[i]) + u"." + access::nameOf(properties[i]);
            if (i % 2 == 0) walks[i].reset();
            elements[i] = copy.getTarget();
            properties[i] = Property();
            classes[i] = access::classOf(elements[i]);
            walks[i].reset();
            elements[i] = ModelElement();
            classes[i] = Class();
        });
        EXPECT_EQ(names, std::vector<std::u16string>(names.size(), u"Node.x"));
    }
}

TEST_F(ThreadsTest, DumpsAndTheEmptyLinkAreUsedOnSeveralThreads) {
    std::vector<std::string> found(4);
    onThreads(found.size(), [&](std::size_t i) {
        for (int j = 0; j < 100; ++j) {
            found[i] = dumpLink(Link::empty()) + dumpElement(m("N" + std::to_string(j)));
        }
    });
    EXPECT_EQ(found,
              std::vector<std::string>(4, "Not an element-[pseudo]-Not an elementNode'N99'"));
}

}  // namespace
}  // namespace nuv::zero::traversal
