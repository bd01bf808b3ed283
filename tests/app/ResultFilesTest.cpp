#include "app/ResultFiles.h"

#include "app/SolveDriver.h"
#include "support/ChildProcess.h"
#include "support/TemporaryDirectory.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>

namespace tarnvexo {
namespace {

using test::TemporaryDirectory;

std::string FileText(const std::string& name)
{
    std::ifstream file(name, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
}

// Writes a text and tells so; standard error of failures goes nowhere.
std::function<FileResult(const std::string&)> Writer(const std::string& text)
{
    return [text](const std::string& path) {
        TextFile file;
        if (!file.Open(path)) {
            return file.Close();
        }
        file.Append(text);
        return file.Close();
    };
}

// Text of the failure; "" when there was none.
std::string FailureOf(const std::function<void()>& action)
{
    testing::internal::CaptureStderr();
    std::string text;
    try {
        action();
    } catch (const RunFailure& failure) {
        EXPECT_EQ(failure.exitCode, ExitFile);
        text = failure.what();
    }
    testing::internal::GetCapturedStderr();
    return text;
}

TEST(ResultFiles, MakesTheDirectory)
{
    const TemporaryDirectory directory;
    ResultFiles files("a/b/c");
    files.Write("result.txt", Writer("1 2 3\n"));
    files.Commit();
    EXPECT_EQ(FileText("a/b/c/result.txt"), "1 2 3\n");
    ASSERT_EQ(files.Written().size(), 1u);
    EXPECT_EQ(files.Written()[0].path, "a/b/c/result.txt");
    EXPECT_EQ(files.Written()[0].bytes, 6u);
}

TEST(ResultFiles, SayWhenAFileIsInTheWayOfTheDirectory)
{
    const TemporaryDirectory directory;
    std::ofstream("run") << "not a directory";
    EXPECT_EQ(
        FailureOf([] { ResultFiles files("run"); }).find("run: error: the directory for the results cannot be made: "),
        0u);
    EXPECT_EQ(FailureOf([] {
                  ResultFiles files("run/deeper");
              }).find("run/deeper: error: the directory for the results cannot be made: Not a directory\n"),
              0u);
    EXPECT_EQ(FileText("run"), "not a directory");
}

// Nobody may make files there, not even the administrator.
TEST(ResultFiles, SayWhenTheDirectoryCannotBeWritten)
{
    if (!std::filesystem::is_directory("/proc/self/task")) {
        GTEST_SKIP() << "no /proc here";
    }
    ResultFiles files("/proc/self/task");
    const std::string failure = FailureOf([&] { files.Write("result.txt", Writer("text")); });
    EXPECT_EQ(failure.find("/proc/self/task/result.txt: error: this result file was not written\n"), 0u) << failure;
    EXPECT_NE(failure.find("\n  expected: a directory with room for the results"), std::string::npos) << failure;
}

TEST(ResultFiles, LeaveNothingWhenADirectoryBearsTheName)
{
    const TemporaryDirectory directory;
    std::filesystem::create_directories("result.txt/kept");
    {
        ResultFiles files(".");
        files.Write("result.txt", Writer("text"));
        const std::string failure = FailureOf([&] { files.Commit(); });
        EXPECT_EQ(failure.find("./result.txt: error: this result file was not written: "), 0u) << failure;
    }
    EXPECT_TRUE(std::filesystem::is_directory("result.txt/kept"));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator("."), std::filesystem::directory_iterator()), 1);
}

TEST(ResultFiles, LeaveNothingNewWhenTheDiskIsFull)
{
    if (!std::filesystem::exists("/dev/full")) {
        GTEST_SKIP() << "no /dev/full here";
    }
    const TemporaryDirectory directory;
    std::ofstream("result.txt") << "of an earlier run";
    std::filesystem::create_symlink("/dev/full", "result.txt.unfinished");
    {
        ResultFiles files(".");
        const std::string failure = FailureOf([&] { files.Write("result.txt", Writer(std::string(100000, 'x'))); });
        EXPECT_EQ(failure.find("./result.txt: error: this result file was not written\n"), 0u) << failure;
    }
    EXPECT_EQ(FileText("result.txt"), "of an earlier run");
    EXPECT_FALSE(std::filesystem::is_symlink("result.txt.unfinished"));
}

// Until all files of a run are complete, those of an earlier one are still there.
TEST(ResultFiles, KeepEarlierFilesUntilAllNewOnesAreComplete)
{
    const TemporaryDirectory directory;
    std::ofstream("a.txt") << "of an earlier run";
    ResultFiles files(".");
    files.Write("a.txt", Writer("new"));
    files.Write("b.txt", Writer("new too"));
    EXPECT_EQ(FileText("a.txt"), "of an earlier run");
    EXPECT_FALSE(std::filesystem::exists("b.txt"));
    files.Commit();
    EXPECT_EQ(FileText("a.txt"), "new");
    EXPECT_EQ(FileText("b.txt"), "new too");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator("."), std::filesystem::directory_iterator()), 2);
}

TEST(ResultFiles, RemoveWhatARunThatFailedHasWritten)
{
    const TemporaryDirectory directory;
    std::ofstream("a.txt") << "of an earlier run";
    {
        ResultFiles files(".");
        files.Write("a.txt", Writer("new"));
    }
    EXPECT_EQ(FileText("a.txt"), "of an earlier run");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator("."), std::filesystem::directory_iterator()), 1);
}

} // namespace
} // namespace tarnvexo
