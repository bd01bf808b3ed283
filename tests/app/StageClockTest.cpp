#include "app/StageClock.h"

#include <gtest/gtest.h>

namespace tarnvexo {
namespace {

TEST(StageClock, EndsAStageWhenTheNextBegins)
{
    std::vector<std::string> told;
    StageClock clock({"first", "second"}, [&](const Progress& progress) {
        told.push_back(std::string(progress.stage) + (progress.ended ? " ends" : " begins"));
    });
    clock.Next();
    clock.Next();
    EXPECT_EQ(told, (std::vector<std::string>{"first begins", "first ends", "second begins"}));
    clock.End();
    clock.End(); // none is running any more
    EXPECT_EQ(told.size(), 4u);
    ASSERT_EQ(clock.Times().size(), 2u);
    EXPECT_EQ(clock.Times()[1].name, "second");
    EXPECT_LE(clock.Times()[0].seconds + clock.Times()[1].seconds, clock.Seconds());
    EXPECT_GT(clock.Times()[1].memoryGigabytes, 0.0);
}

TEST(StageClock, ExpectsWhatTheStagesThatHaveNotEndedTake)
{
    double left = -1.0;
    StageClock clock({"a", "b", "c"}, [&](const Progress& progress) { left = progress.secondsLeft; });
    clock.Expect("b", 10.0);
    clock.Next();
    EXPECT_EQ(left, 10.0);
    clock.Expect("c", 5.0);
    clock.Next();
    EXPECT_EQ(left, 15.0);
    clock.Expect("b", 20.0); // known better now
    clock.Expect("c", 1.0);
    clock.Next();
    EXPECT_EQ(left, 1.0);
    clock.End();
    EXPECT_EQ(left, 0.0);
}

TEST(StageClock, NeedsNoListener)
{
    StageClock clock({"only"}, {});
    clock.Next();
    clock.End();
    EXPECT_EQ(clock.Times().size(), 1u);
}

} // namespace
} // namespace tarnvexo
