#include "app/ResultFiles.h"

#include "app/SolveDriver.h"
#include "support/ChildProcess.h"
#include "support/TemporaryDirectory.h"

#include <csignal>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <sys/resource.h>

namespace tarnvexo {
namespace {

using test::TemporaryDirectory;

std::string FileText(const std::string& name)
{
    std::ifstream file(name, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
}

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

long EntriesOfDirectory()
{
    return std::distance(std::filesystem::directory_iterator("."), std::filesystem::directory_iterator());
}

// While one lives, files cannot grow beyond so many bytes: as on a full disk, writing fails in the middle.
class SmallFiles {
public:
    explicit SmallFiles(rlim_t bytes) : handler(std::signal(SIGXFSZ, SIG_IGN))
    {
        getrlimit(RLIMIT_FSIZE, &before);
        const rlimit small = {bytes, before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &small);
    }
    ~SmallFiles()
    {
        setrlimit(RLIMIT_FSIZE, &before);
        std::signal(SIGXFSZ, handler);
    }

    SmallFiles(const SmallFiles&) = delete;
    SmallFiles& operator=(const SmallFiles&) = delete;

private:
    void (*handler)(int);
    rlimit before;
};

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
    EXPECT_EQ(testing::internal::GetCapturedStderr(), ""); // the failure tells everything, and once
    return text;
}

TEST(ResultFiles, MakesTheDirectory)
{
    const TemporaryDirectory directory;
    ResultFiles files("a/b/c", {"result.txt"});
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
        FailureOf([] { ResultFiles files("run", {}); }).find("run: error: the directory for the results cannot be made: "),
        0u);
    EXPECT_EQ(FailureOf([] {
                  ResultFiles files("run/deeper", {});
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
    ResultFiles files("/proc/self/task", {"result.txt"});
    const std::string failure = FailureOf([&] { files.Write("result.txt", Writer("text")); });
    EXPECT_EQ(failure.find("/proc/self/task/result.txt: error: this file was not written: "), 0u) << failure;
    EXPECT_NE(failure.find("\n  expected: a place that may be written to and has room"), std::string::npos) << failure;
}

// The directory is under the last name: the files before it are not replaced either.
TEST(ResultFiles, ReplaceNothingWhenADirectoryBearsAName)
{
    const TemporaryDirectory directory;
    std::ofstream("first.txt") << "of an earlier run";
    std::filesystem::create_directories("result.txt/kept");
    {
        ResultFiles files(".");
        files.Write("first.txt", Writer("text"));
        files.Write("result.txt", Writer("text"));
        const std::string failure = FailureOf([&] { files.Commit(); });
        EXPECT_EQ(failure.find("./result.txt: error: this file was not written: Is a directory\n"), 0u) << failure;
    }
    EXPECT_EQ(FileText("first.txt"), "of an earlier run");
    EXPECT_TRUE(std::filesystem::is_directory("result.txt/kept"));
    EXPECT_EQ(EntriesOfDirectory(), 2);
}

TEST(ResultFiles, LeaveNothingNewWhenThereIsNoRoom)
{
    const TemporaryDirectory directory;
    std::ofstream("result.txt") << "of an earlier run";
    const SmallFiles limit(50000);
    {
        ResultFiles files(".");
        const std::string failure = FailureOf([&] { files.Write("result.txt", Writer(std::string(100000, 'x'))); });
        EXPECT_EQ(failure.find("./result.txt: error: this file was not written: File too large\n"), 0u) << failure;
    }
    EXPECT_EQ(FileText("result.txt"), "of an earlier run");
    EXPECT_EQ(EntriesOfDirectory(), 1);
}

// Two runs: the second has begun when the first ends.
TEST(ResultFiles, OfTwoRunsInOneDirectoryAreApart)
{
    const TemporaryDirectory directory;
    ResultFiles files(".");
    files.Write("a.txt", Writer("of the first"));
    const test::ChildResult second = test::RunInChild([] {
        ResultFiles others(".");
        others.Write("a.txt", Writer("of the second"));
        others.Commit();
    });
    EXPECT_EQ(second.exitCode, 0);
    EXPECT_EQ(FileText("a.txt"), "of the second");
    files.Commit();
    EXPECT_EQ(FileText("a.txt"), "of the first");
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
    EXPECT_EQ(EntriesOfDirectory(), 2);
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
    EXPECT_EQ(EntriesOfDirectory(), 1);
}

TEST(UnfinishedFile, FollowsALink)
{
    const TemporaryDirectory directory;
    std::ofstream("model.txt") << "old";
    std::filesystem::create_symlink("model.txt", "link.txt");
    WriteWhole("link.txt", Writer("new"));
    EXPECT_TRUE(std::filesystem::is_symlink("link.txt"));
    EXPECT_EQ(FileText("model.txt"), "new");
}

TEST(UnfinishedFile, WritesADeviceUnderItsName)
{
    WriteWhole("/dev/null", Writer("text"));
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
}

} // namespace
} // namespace tarnvexo
