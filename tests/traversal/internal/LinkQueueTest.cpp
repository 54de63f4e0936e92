#include "traversal/internal/LinkQueue.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/ModelBuilder.h"
#include "tests/support/WalkLog.h"

namespace nuv::zero::traversal::internal {
namespace {

using test::text;

class LinkQueueTest : public testing::Test {
  protected:
    LinkQueueTest() {
        for (int i = 0; i < 2000; ++i) targets.push_back(m.model.create(m.type("Node")));
    }
    void pushTo(LinkQueue& end, std::size_t target, bool cascade = true) const {
        end.reserveOne();
        end.push({m("A"), &setting, targets[target], cascade});
    }
    /// The numbers of the targets from front to back.
    std::vector<std::size_t> drained(LinkQueue& full) const {
        std::vector<std::size_t> numbers;
        for (; !full.empty(); full.pop()) {
            std::size_t number = 0;
            while (!(targets[number] == full.front().target())) ++number;
            numbers.push_back(number);
        }
        return numbers;
    }
    static std::vector<std::size_t> range(std::size_t begin, std::size_t end) {
        std::vector<std::size_t> numbers;
        for (; begin != end; ++begin) numbers.push_back(begin);
        return numbers;
    }

    test::ModelBuilder m{"Node; Node.x -> Node *", "A"};
    AssociationSetting setting{m["Node.x"], ResultPolicy::Report};
    std::vector<ModelElement> targets;
    LinkQueue queue;
};

TEST_F(LinkQueueTest, PlaceReadsAsTheLinkThatWasPushed) {
    pushTo(queue, 0);
    pushTo(queue, 1, false);
    EXPECT_TRUE(queue.front().link().get() == Link(m("A"), targets[0], m["Node.x"]));
    EXPECT_TRUE(queue.front().link().get().shouldCascade());
    EXPECT_EQ(queue.front().setting(), &setting);
    EXPECT_FALSE(queue[1].link().get().shouldCascade());
    EXPECT_EQ(queue[1].setting(), &setting);
}

TEST_F(LinkQueueTest, PlaceWithoutSettingIsAPseudoLink) {
    queue.reserveOne();
    queue.push({ModelElement(), nullptr, m("A"), true});
    EXPECT_TRUE(queue.front().link().get() == Link(ModelElement(), m("A"), meta::Property()));
}

TEST_F(LinkQueueTest, LinksComeOutInTheOrderInWhichTheyWentIn) {
    for (std::size_t i = 0; i < targets.size(); ++i) pushTo(queue, i);
    EXPECT_EQ(queue.size(), targets.size());
    EXPECT_EQ(queue[1999].target(), targets[1999]);
    EXPECT_EQ(drained(queue), range(0, 2000));
}

TEST_F(LinkQueueTest, QueueThatStaysShortRunsOn) {
    for (std::size_t i = 0; i < 2000; ++i) {
        pushTo(queue, i);
        if (i > 2) queue.pop();
    }
    EXPECT_EQ(drained(queue), range(1997, 2000));
}

TEST_F(LinkQueueTest, CopyAndOriginalGoOnByThemselves) {
    // The ends of blocks are where sharing shows, so every length around them.
    for (const std::size_t count : {1U, 255U, 256U, 257U, 511U, 512U, 700U}) {
        for (const std::size_t gone : {0U, 1U, 200U, 255U}) {
            if (gone > count) continue;
            LinkQueue original;
            for (std::size_t i = 0; i < count; ++i) pushTo(original, i);
            for (std::size_t i = 0; i < gone; ++i) original.pop();
            LinkQueue copy(original);
            EXPECT_TRUE(copy.hasSameLinks(original));
            for (std::size_t i = 0; i < 300; ++i) pushTo(original, 1000 + i);
            for (std::size_t i = 0; i < 300; ++i) pushTo(copy, 1500 + i);
            EXPECT_FALSE(copy.hasSameLinks(original));
            auto expected = range(gone, count);
            auto expectedOfCopy = expected;
            for (std::size_t i = 0; i < 300; ++i) expected.push_back(1000 + i);
            for (std::size_t i = 0; i < 300; ++i) expectedOfCopy.push_back(1500 + i);
            EXPECT_EQ(drained(original), expected) << count << ' ' << gone;
            EXPECT_EQ(drained(copy), expectedOfCopy) << count << ' ' << gone;
        }
    }
}

TEST_F(LinkQueueTest, CopyKeepsItsLinksWhileTheOriginalUsesItsRoomAgain) {
    for (std::size_t i = 0; i < 600; ++i) pushTo(queue, i);
    LinkQueue copy(queue);
    for (std::size_t i = 0; i < 1200; ++i) {
        queue.pop();
        pushTo(queue, 600 + i);
    }
    EXPECT_EQ(drained(copy), range(0, 600));
    EXPECT_EQ(drained(queue), range(1200, 1800));
}

TEST_F(LinkQueueTest, SameLinksIgnoreTheCascadeFlag) {
    LinkQueue other;
    pushTo(queue, 0);
    pushTo(other, 0, false);
    EXPECT_TRUE(queue.hasSameLinks(other));
    pushTo(queue, 1);
    pushTo(other, 2);
    EXPECT_FALSE(queue.hasSameLinks(other));
}

}  // namespace
}  // namespace nuv::zero::traversal::internal
