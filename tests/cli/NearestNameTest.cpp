#include "cli/NearestName.h"

#include <gtest/gtest.h>

namespace tarnvexo {
namespace {

TEST(EditDistance, CountsInsertionsDeletionsAndReplacements)
{
    EXPECT_EQ(EditDistance("", ""), 0u);
    EXPECT_EQ(EditDistance("", "abc"), 3u);
    EXPECT_EQ(EditDistance("abc", ""), 3u);
    EXPECT_EQ(EditDistance("kitten", "sitting"), 3u); // k→s, e→i, +g
    EXPECT_EQ(EditDistance("sitting", "kitten"), 3u);
}

TEST(NearestName, LooksPastHyphensCapitalsAndValues)
{
    EXPECT_EQ(NearestName("-Thread=4", {"--output", "--threads"}), "--threads");
}

TEST(NearestName, PrefersNamesThatBeginLikeIt)
{
    EXPECT_EQ(NearestName("re", {"solve", "refine"}), "refine");
    EXPECT_EQ(NearestName("--disp", {"--displacements", "--list"}), "--displacements");
}

TEST(NearestName, IsEmptyWhenNothingIsNear)
{
    EXPECT_EQ(NearestName("fast", {"--help", "--version"}), "");
    EXPECT_EQ(NearestName("", {"--help"}), "");
}

} // namespace
} // namespace tarnvexo
