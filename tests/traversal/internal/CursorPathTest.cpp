#include "traversal/internal/CursorPath.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/ModelBuilder.h"
#include "tests/support/WalkLog.h"
#include "traversal/internal/Link.h"

namespace nuv::zero::traversal::internal {
namespace {

using test::text;

class CursorPathTest : public testing::Test {
  protected:
    CursorPathTest() { settings.emplace_back(m["Node.x"], ResultPolicy::Report); }

    Cursor& pushTo(CursorPath& end, const char* element) const {
        end.reserveOne();
        Cursor& cursor = end.push();
        cursor.restart(m(element), nullptr, settings);
        return cursor;
    }
    /// The link that the next step of a cursor finds.
    static std::string next(Cursor& cursor) {
        std::size_t budget = 100;
        if (cursor.step(budget) != Cursor::Step::Link) return "none";
        return text(Link(cursor.element(), cursor.target().get(), cursor.setting().property()));
    }

    test::ModelBuilder m{"Node; Node.x -> Node *; Node.y -> Node *", "A.x = B C; B.x = C"};
    Cursor::Settings settings;
    CursorPath path;
};

TEST_F(CursorPathTest, GrowsAndShrinksAtItsEnd) {
    EXPECT_TRUE(path.empty());
    pushTo(path, "A");
    pushTo(path, "B");
    EXPECT_EQ(path.size(), 2U);
    EXPECT_EQ(next(path.back()), "B.x>C");
    path.pop();
    EXPECT_EQ(next(path.back()), "A.x>B");
    path.pop();
    EXPECT_TRUE(path.empty());
}

TEST_F(CursorPathTest, CursorsStayWhereTheyAreWhileOthersComeAndGo) {
    const Cursor* first = &pushTo(path, "A");
    for (int i = 0; i < 1000; ++i) pushTo(path, "B");
    EXPECT_EQ(&path[0], first);
    const Cursor* middle = &path[500];
    while (path.size() > 501) path.pop();
    EXPECT_EQ(&path.back(), middle);
    for (int i = 0; i < 1000; ++i) pushTo(path, "B");
    EXPECT_EQ(&path[500], middle);
    EXPECT_EQ(&path[0], first);
}

TEST_F(CursorPathTest, CopyGoesOnByItselfAtEveryDepth) {
    for (int i = 0; i < 300; ++i) EXPECT_EQ(next(pushTo(path, "A")), "A.x>B");
    CursorPath copy(path);
    for (std::size_t depth = 300; depth > 0; --depth) {
        ASSERT_EQ(copy.size(), depth);
        EXPECT_EQ(next(copy.back()), "A.x>C") << depth;
        copy.pop();
    }
    for (std::size_t depth = 300; depth > 0; --depth) {
        EXPECT_EQ(next(path.back()), "A.x>C") << depth;
        path.pop();
    }
}

TEST_F(CursorPathTest, OriginalGoesOnByItselfWhileTheCopyStays) {
    for (int i = 0; i < 300; ++i) EXPECT_EQ(next(pushTo(path, "A")), "A.x>B");
    const CursorPath copy(path);
    while (path.size() > 10) path.pop();
    for (int i = 0; i < 300; ++i) pushTo(path, "B");
    path.at(5).pruneAllChildren();
    for (std::size_t index = 0; index < copy.size(); ++index) {
        EXPECT_EQ(copy[index].element(), m("A")) << index;
        EXPECT_FALSE(copy[index].isFinished()) << index;
    }
}

TEST_F(CursorPathTest, PruningFarUpReachesOneOfTwoCopies) {
    for (int i = 0; i < 300; ++i) pushTo(path, "A");
    CursorPath copy(path);
    copy.at(100).pruneAllChildren();
    EXPECT_TRUE(copy[100].isFinished());
    EXPECT_FALSE(path[100].isFinished());
}

TEST_F(CursorPathTest, CopiesLeadAlongTheSameLinksUntilOneGoesOn) {
    for (int i = 0; i < 100; ++i) next(pushTo(path, "A"));
    CursorPath copy(path);
    EXPECT_TRUE(path.leadsAlong(copy));
    pushTo(copy, "B");
    EXPECT_FALSE(path.leadsAlong(copy));
    pushTo(path, "C");
    EXPECT_FALSE(path.leadsAlong(copy)) << "as long, but to another element";
    copy.pop();
    path.pop();
    EXPECT_TRUE(copy.leadsAlong(path));
}

TEST_F(CursorPathTest, PathsAlongDifferentPropertiesDiffer) {
    m.extend("A.y = B");
    settings.emplace_back(m["Node.y"], ResultPolicy::Report);
    CursorPath other;
    EXPECT_EQ(next(pushTo(path, "A")), "A.x>B");
    Cursor& cursor = pushTo(other, "A");
    next(cursor);
    next(cursor);
    EXPECT_EQ(next(cursor), "A.y>B");
    pushTo(path, "B");
    pushTo(other, "B");
    EXPECT_FALSE(path.leadsAlong(other));
}

TEST_F(CursorPathTest, PlaceThatIsUsedAgainBeginsAnew) {
    EXPECT_EQ(next(pushTo(path, "A")), "A.x>B");
    path.pop();
    EXPECT_EQ(next(pushTo(path, "B")), "B.x>C");
}

TEST_F(CursorPathTest, CopyOfAnEmptyPathCanGrow) {
    CursorPath copy(path);
    pushTo(copy, "A");
    EXPECT_EQ(next(copy.back()), "A.x>B");
    EXPECT_TRUE(path.empty());
}

}  // namespace
}  // namespace nuv::zero::traversal::internal
