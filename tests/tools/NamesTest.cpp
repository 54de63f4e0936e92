#include <gtest/gtest.h>

#include "tools/model-walk/Names.h"

namespace model_walk {
namespace {

TEST(EditDistance, CountsLettersPutInLeftOutAndReplaced) {
    EXPECT_EQ(editDistance("", ""), 0U);
    EXPECT_EQ(editDistance("port", "port"), 0U);
    EXPECT_EQ(editDistance("port", "ports"), 1U);
    EXPECT_EQ(editDistance("ports", "port"), 1U);
    EXPECT_EQ(editDistance("part", "port"), 1U);
    EXPECT_EQ(editDistance("", "abc"), 3U);
    EXPECT_EQ(editDistance("kitten", "sitting"), 3U);
}

TEST(Nearest, ShowsThreeNamesTheNearestFirst) {
    EXPECT_EQ(nearest("port", {"zebra", "part", "ports", "a", "part"}),
              "; nearest: part, ports, a");
    EXPECT_EQ(nearest("port", {"ab", "aa"}), "; nearest: aa, ab");
    EXPECT_EQ(nearest("port", {}), "");
}

}  // namespace
}  // namespace model_walk
