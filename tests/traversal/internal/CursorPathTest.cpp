#include "traversal/internal/CursorPath.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "tests/support/ModelBuilder.h"
#include "tests/support/WalkLog.h"

namespace nuv::zero::traversal::internal {
namespace {

using test::Lines;
using test::text;

class CursorPathTest : public testing::Test {
  protected:
    CursorPathTest() { settings->emplace_back(m["Node.x"], ResultPolicy::Report); }

    ElementProgress& pushTo(CursorPath& end, const char* element) const {
        end.reserveOne();
        ElementProgress& cursor = end.push();
        cursor =
            ElementProgress(Link(ModelElement(), m(element), meta::Property()), nullptr, settings);
        return cursor;
    }

    test::ModelBuilder m{"Node; Node.x -> Node *", "A.x = B C; B.x = C"};
    std::shared_ptr<std::vector<AssociationSetting>> settings =
        std::make_shared<std::vector<AssociationSetting>>();
    CursorPath path;
};

TEST_F(CursorPathTest, GrowsAndShrinksAtItsEnd) {
    EXPECT_TRUE(path.empty());
    pushTo(path, "A");
    pushTo(path, "B");
    EXPECT_EQ(path.size(), 2U);
    EXPECT_EQ(text(path.back().advanceAndGetCurrent()), "B.x>C");
    path.pop();
    EXPECT_EQ(text(path.back().advanceAndGetCurrent()), "A.x>B");
    path.pop();
    EXPECT_TRUE(path.empty());
}

TEST_F(CursorPathTest, CursorsStayWhereTheyAreWhileOthersComeAndGo) {
    ElementProgress* first = &pushTo(path, "A");
    for (int i = 0; i < 1000; ++i) pushTo(path, "B");
    EXPECT_EQ(&path[0], first);
    ElementProgress* middle = &path[500];
    while (path.size() > 501) path.pop();
    EXPECT_EQ(&path.back(), middle);
    for (int i = 0; i < 1000; ++i) pushTo(path, "B");
    EXPECT_EQ(&path[500], middle);
    EXPECT_EQ(&path[0], first);
}

TEST_F(CursorPathTest, CopyIsIndependent) {
    pushTo(path, "A").advanceAndGetCurrent();
    for (int i = 0; i < 200; ++i) pushTo(path, "B");
    CursorPath copy(path);
    EXPECT_EQ(copy.size(), path.size());
    EXPECT_EQ(text(copy[0].advanceAndGetCurrent()), "A.x>C");
    EXPECT_EQ(text(path[0].advanceAndGetCurrent()), "A.x>C");
    EXPECT_EQ(text(copy.back().advanceAndGetCurrent()), "B.x>C");
    copy.pop();
    EXPECT_EQ(text(path.back().advanceAndGetCurrent()), "B.x>C");
}

TEST_F(CursorPathTest, CopyOfAnEmptyPathCanGrow) {
    CursorPath copy(path);
    pushTo(copy, "A");
    EXPECT_EQ(text(copy.back().advanceAndGetCurrent()), "A.x>B");
    EXPECT_TRUE(path.empty());
}

}  // namespace
}  // namespace nuv::zero::traversal::internal
