#include "core/Failure.h"

#include "core/Console.h"
#include "support/ChildProcess.h"

#include <gtest/gtest.h>

namespace tarnvexo {
namespace {

using test::RunInChild;

TEST(Failure, WithPauseShowsTheMessageThenThePauseAndEndsWithCodeOne)
{
    const auto run = RunInChild(
        [] {
            PrintConsole("before ");
            FailWithPause("梁截面类型数字错误!");
        },
        "k");
    EXPECT_EQ(run.output, "before \xC1\xBA\xBD\xD8\xC3\xE6\xC0\xE0\xD0\xCD\xCA\xFD\xD7\xD6\xB4\xED\xCE\xF3!\n"
                          "Press any key to continue . . . ");
    EXPECT_EQ(run.error, "");
    EXPECT_EQ(run.exitCode, 1);
}

TEST(Failure, WithKeyShowsOnlyTheMessageAndEndsWithCodeOne)
{
    const auto run = RunInChild([] { FailWithKey("Release File Number error!"); }, "k");
    EXPECT_EQ(run.output, "Release File Number error!\n");
    EXPECT_EQ(run.error, "");
    EXPECT_EQ(run.exitCode, 1);
}

TEST(Failure, DoesNotWaitAtEndOfFile)
{
    EXPECT_EQ(RunInChild([] { FailWithPause("x"); }).exitCode, 1);
    EXPECT_EQ(RunInChild([] { FailWithKey("x"); }).exitCode, 1);
}

TEST(Failure, WithDiagnosticKeepsConsoleTextAndWritesToStandardErrorInUtf8)
{
    const auto run = RunInChild([] {
        PrintConsole("before");
        FailWithDiagnostic("model: error: 错误");
    });
    EXPECT_EQ(run.output, "before");
    EXPECT_EQ(run.error, "model: error: 错误\n");
    EXPECT_EQ(run.exitCode, 1);
}

TEST(FailureDeathTest, WithDiagnosticEndsWithCodeOne)
{
    EXPECT_EXIT(FailWithDiagnostic("fault"), testing::ExitedWithCode(1), "^fault\n$");
}

} // namespace
} // namespace tarnvexo
