#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "tests/support/ModelBuilder.h"
#include "tests/support/WalkLog.h"

/// Different results over one unchanging model may be walked on different threads; meant to be run
/// under a thread sanitizer too.
namespace nuv::zero::traversal {
namespace {

using test::Lines;
using test::ModelBuilder;

class ThreadsTest : public testing::Test {
  protected:
    ThreadsTest() {
        for (int i = 0; i < 400; ++i) {
            const std::string from = "N" + std::to_string(i);
            for (int j = 1; j <= 3; ++j) {
                m.extend(from + ".x = N" + std::to_string((i * j + 7) % 400));
            }
            m.extend(from + ".y = N" + std::to_string((i * 3 + 1) % 400));
        }
    }

    ModelBuilder m{"Node; Node.x -> Node *; Node.y -> Node; Node.x <> Node.y"};
};

TEST_F(ThreadsTest, ResultsOverOneModelAreWalkedOnSeveralThreads) {
    const auto body = [this](Algo order, Lines& lines) {
        for (int round = 0; round < 3; ++round) {
            const auto result = Spec::subtractiveTraversal()->run({m("N0"), m("N5")}, order);
            ResultSetup(result).unique(UniquenessMode::UniqueLinks);
            auto walk = result->begin();
            const auto copy = walk;
            lines = test::rest(walk);
        }
    };
    std::vector<Lines> expected(3);
    std::vector<Lines> found(6);
    for (std::size_t i = 0; i < 3; ++i) body(test::everyOrder()[i], expected[i]);
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < 6; ++i) {
        threads.emplace_back([&, i] { body(test::everyOrder()[i % 3], found[i]); });
    }
    for (std::thread& thread : threads) thread.join();
    for (std::size_t i = 0; i < 6; ++i) EXPECT_EQ(found[i], expected[i % 3]);
}

TEST_F(ThreadsTest, ResultsMadeBeforehandByOneBuilderAreWalkedOnSeveralThreads) {
    const auto builder = Spec::additiveTraversal()->traverse(m["Node.x"], ResultPolicy::Report);
    std::vector<std::shared_ptr<TraversalResult>> results;
    std::vector<Lines> found(4);
    for (int i = 0; i < 4; ++i) results.push_back(builder->depthFirst({m("N1")}));
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < 4; ++i) {
        threads.emplace_back([&, i] { found[i] = test::linesOf(results[i]); });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(found, std::vector<Lines>(4, test::linesOf(builder->depthFirst({m("N1")}))));
}

TEST_F(ThreadsTest, DumpsAndTheEmptyLinkAreUsedOnSeveralThreads) {
    std::vector<std::thread> threads;
    std::vector<std::string> found(4);
    for (std::size_t i = 0; i < 4; ++i) {
        threads.emplace_back([&, i] {
            for (int j = 0; j < 100; ++j) {
                found[i] = dumpLink(Link::empty()) + dumpElement(m("N" + std::to_string(j)));
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(found,
              std::vector<std::string>(4, "Not an element-[pseudo]-Not an elementNode'N99'"));
}

}  // namespace
}  // namespace nuv::zero::traversal
