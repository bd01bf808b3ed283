#include "core/Console.h"

#include "support/ChildProcess.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <string>
#include <unistd.h>

namespace tarnvexo {
namespace {

using test::RunInChild;

TEST(Console, KeepsTheOrderOfStreamedAndFormattedText)
{
    const auto run = RunInChild([] {
        Console().Text("sumFX=").Number(-1.98524e-08).EndLine();
        PrintConsole("%2d%%Completed.", 7);
        PrintConsole("(Solution time:%.2lf seconds)\n", 1.005);
        PrintConsoleLine("end");
    });
    EXPECT_EQ(run.output, "sumFX=-1.98524e-08\n 7%Completed.(Solution time:1.00 seconds)\nend\n");
}

TEST(Console, WritesGbkBytes)
{
    EXPECT_EQ(RunInChild([] { PrintConsoleLine("错误!"); }).output, "\xB4\xED\xCE\xF3!\n");
}

TEST(Console, FormatsTextOfAnyLength)
{
    const std::string text(100000, 'x');
    EXPECT_EQ(RunInChild([&] { PrintConsole("<%s>", text.c_str()); }).output, "<" + text + ">");
    const std::string shortText(255, 'y');
    EXPECT_EQ(RunInChild([&] { PrintConsole("%s", shortText.c_str()); }).output, shortText);
    const std::string longerText(256, 'z');
    EXPECT_EQ(RunInChild([&] { PrintConsole("%s", longerText.c_str()); }).output, longerText);
}

TEST(Console, DoesNotSplitAChineseCharacterBetweenTwoWrites)
{
    std::string expected;
    const auto run = RunInChild([] {
        for (int i = 0; i < 5000; ++i) { Console().Text("错"); }
    });
    for (int i = 0; i < 5000; ++i) { expected += "\xB4\xED"; }
    EXPECT_EQ(run.output, expected);
}

TEST(Console, LineEndAndFlushHandOnEverythingWrittenSoFar)
{
    const auto run = RunInChild([] {
        PrintConsole("counter");
        EndConsoleLine();
        PrintConsole("flushed");
        FlushConsole();
        PrintConsole("kept back");
        _exit(0);
    });
    EXPECT_EQ(run.output, "counter\nflushed");
}

TEST(Console, PendingTextLeavesWhenTheProgramEnds)
{
    EXPECT_EQ(RunInChild([] { PrintConsole("pending"); }).output, "pending");
    const auto run = RunInChild([] {
        PrintConsole("pending");
        std::exit(4);
    });
    EXPECT_EQ(run.output, "pending");
    EXPECT_EQ(run.exitCode, 4);
}

} // namespace
} // namespace tarnvexo
