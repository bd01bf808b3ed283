#include "cli/ProgressDisplay.h"

#include "support/ChildProcess.h"

#include <gtest/gtest.h>

namespace tarnvexo {
namespace {

Progress Begin()
{
    Progress progress;
    progress.stage = "factorise";
    progress.number = 4;
    progress.stages = 11;
    return progress;
}

Progress End()
{
    Progress progress = Begin();
    progress.ended = true;
    progress.stageSeconds = 2.314;
    progress.memoryGigabytes = 1.2;
    progress.secondsLeft = 3.2;
    return progress;
}

const std::string EndLine = "[4/11]  factorise       2.31 s   1.20 GB   about 3 s left\n";

std::string Shown(ProgressStyle style, const std::vector<Progress>& stages)
{
    std::string text;
    {
        ProgressDisplay display(style, [&](std::string_view piece) { text += piece; });
        for (const Progress& stage : stages) { display.Show(stage); }
    }
    return text;
}

TEST(ProgressDisplay, WritesALineWhenAStageEnds)
{
    EXPECT_EQ(Shown(ProgressStyle::Lines, {Begin(), End()}), EndLine);
}

TEST(ProgressDisplay, RewritesTheLineOfAStageInPlace)
{
    EXPECT_EQ(Shown(ProgressStyle::InPlace, {Begin(), End()}), "\r\x1b[K[4/11]  factorise    …\r\x1b[K" + EndLine);
}

TEST(ProgressDisplay, TellsWhatIsLeftAlreadyWhenAStageBegins)
{
    Progress begin = Begin();
    begin.secondsLeft = 12.0;
    EXPECT_EQ(StageBeginText(begin), "[4/11]  factorise    …   about 12 s left");
}

TEST(ProgressDisplay, EndsTheLineOfAStageThatFailed)
{
    EXPECT_EQ(Shown(ProgressStyle::InPlace, {Begin()}), "\r\x1b[K[4/11]  factorise    …\n");
    EXPECT_EQ(Shown(ProgressStyle::Lines, {Begin()}), "");
}

TEST(ProgressDisplay, SaysNothingOfAnEstimateThatIsNotKnown)
{
    Progress end = End();
    end.secondsLeft = 0.0;
    EXPECT_EQ(StageEndText(end), "[4/11]  factorise       2.31 s   1.20 GB");
}

TEST(ProgressDisplay, WritesLinesToAStandardErrorThatIsNoTerminal)
{
    const test::ChildResult run = test::RunInChild([] {
        ProgressDisplay display(StyleOfStandardError(false));
        display.Show(Begin());
        display.Show(End());
    });
    EXPECT_EQ(run.error, EndLine);
    EXPECT_EQ(run.output, "");
}

TEST(ProgressDisplay, IsSilentWhenTheUserWantsQuiet)
{
    EXPECT_EQ(StyleOfStandardError(true), ProgressStyle::Silent);
    EXPECT_EQ(Shown(ProgressStyle::Silent, {Begin(), End()}), "");
}

} // namespace
} // namespace tarnvexo
