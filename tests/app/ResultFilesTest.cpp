#include "app/ResultFiles.h"

#include "app/SolveDriver.h"
#include "support/ChildProcess.h"
#include "support/TemporaryDirectory.h"

#include <csignal>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <vector>

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
    EXPECT_EQ(FailureOf([] {
                  ResultFiles files("run", {});
              }).find("run: error: the directory for the results cannot be made: "),
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
    EXPECT_NE(failure.find("\n  to do:    "), std::string::npos) << failure;
}

// Before the run, which may last hours, has begun.
TEST(ResultFiles, RefuseADirectoryUnderANameAtOnce)
{
    const TemporaryDirectory directory;
    std::filesystem::create_directories("result.txt/kept");
    const std::string failure = FailureOf([] { ResultFiles files(".", {"first.txt", "result.txt"}); });
    EXPECT_EQ(failure.find("./result.txt: error: this file was not written: Is a directory\n"), 0u) << failure;
    EXPECT_EQ(EntriesOfDirectory(), 1);
}

// It came under the last name while the run went on: the files before it are not replaced either.
TEST(ResultFiles, ReplaceNothingWhenADirectoryHasComeUnderAName)
{
    const TemporaryDirectory directory;
    std::ofstream("first.txt") << "of an earlier run";
    {
        ResultFiles files(".", {"first.txt", "result.txt"});
        files.Write("first.txt", Writer("text"));
        files.Write("result.txt", Writer("text"));
        std::filesystem::create_directories("result.txt/kept");
        const std::string failure = FailureOf([&] { files.Commit(); });
        EXPECT_EQ(failure.find("./result.txt: error: this file was not written: Is a directory\n"), 0u) << failure;
    }
    EXPECT_EQ(FileText("first.txt"), "of an earlier run");
    EXPECT_TRUE(std::filesystem::is_directory("result.txt/kept"));
    EXPECT_EQ(EntriesOfDirectory(), 2);
}

TEST(ResultFiles, FailWhenTheirDirectoryHasVanished)
{
    const TemporaryDirectory directory;
    ResultFiles files("run", {"a.txt", "b.txt"});
    files.Write("a.txt", Writer("text"));
    std::filesystem::remove_all("run");
    EXPECT_EQ(FailureOf([&] { files.Write("b.txt", Writer("text")); }),
              "run/b.txt: error: this file was not written: No such file or directory\n"
              "  expected: a directory that is there\n"
              "  to do:    make the directory, or name another place, then run again");
    std::ofstream("run") << "now a file";
    EXPECT_NE(FailureOf([&] { files.Write("b.txt", Writer("text")); }), "");
    EXPECT_EQ(FileText("run"), "now a file");
}

// The file that was written into the first directory is gone: that of the second is not replaced alone.
TEST(ResultFiles, ReplaceNothingInADirectoryThatHasTakenThePlaceOfTheirs)
{
    const TemporaryDirectory directory;
    ResultFiles files("run", {"a.txt", "b.txt"});
    files.Write("a.txt", Writer("text"));
    std::filesystem::remove_all("run");
    std::filesystem::create_directory("run");
    std::ofstream("run/b.txt") << "of another run";
    files.Write("b.txt", Writer("text"));
    EXPECT_NE(FailureOf([&] { files.Commit(); }), "");
    EXPECT_EQ(FileText("run/b.txt"), "of another run");
    EXPECT_FALSE(std::filesystem::exists("run/a.txt"));
}

TEST(ResultFiles, LeaveNothingNewWhenThereIsNoRoom)
{
    const TemporaryDirectory directory;
    std::ofstream("result.txt") << "of an earlier run";
    const SmallFiles limit(50000);
    {
        ResultFiles files(".", {"result.txt"});
        const std::string failure = FailureOf([&] { files.Write("result.txt", Writer(std::string(100000, 'x'))); });
        EXPECT_EQ(failure.find("./result.txt: error: this file was not written: File too large\n"), 0u) << failure;
    }
    EXPECT_EQ(FileText("result.txt"), "of an earlier run");
    EXPECT_EQ(EntriesOfDirectory(), 1);
}

TEST(ResultFiles, RefuseASecondRunInTheDirectoryUntilTheFirstHasEnded)
{
    const TemporaryDirectory directory;
    {
        ResultFiles files("run", {"a.txt"});
        files.Write("a.txt", Writer("of the first"));
        EXPECT_EQ(FailureOf([] { ResultFiles others("run/../run", {"a.txt"}); }),
                  "run/../run: error: another run is writing its results into this directory\n"
                  "  expected: a directory for each of the runs that go on at once\n"
                  "  to do:    wait until that run has ended, or choose another directory with -o DIR");
        files.Commit();
    }
    ResultFiles others("run", {"a.txt"});
    others.Write("a.txt", Writer("of the second"));
    others.Commit();
    EXPECT_EQ(FileText("run/a.txt"), "of the second");
}

// Until all files of a run are complete, those of an earlier one are still there.
TEST(ResultFiles, KeepEarlierFilesUntilAllNewOnesAreComplete)
{
    const TemporaryDirectory directory;
    std::ofstream("a.txt") << "of an earlier run";
    ResultFiles files(".", {"a.txt", "b.txt"});
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
        ResultFiles files(".", {"a.txt"});
        files.Write("a.txt", Writer("new"));
    }
    EXPECT_EQ(FileText("a.txt"), "of an earlier run");
    EXPECT_EQ(EntriesOfDirectory(), 1);
}

// Neither what a link leads to is written nor a pipe that nobody reads waited for.
TEST(ResultFiles, TakeThePlaceOfLinksAndPipes)
{
    const TemporaryDirectory directory;
    std::ofstream("elsewhere.txt") << "not a result";
    std::filesystem::create_directory("run");
    std::filesystem::create_symlink("../elsewhere.txt", "run/link.txt");
    std::filesystem::create_symlink("../nowhere.txt", "run/dangling.txt");
    ASSERT_EQ(mkfifo("run/pipe.txt", 0600), 0);
    const std::vector<std::string> names = {"link.txt", "dangling.txt", "pipe.txt"};
    ResultFiles files("run", names);
    for (const std::string& name : names) { files.Write(name, Writer(name)); }
    files.Commit();
    for (const std::string& name : names) {
        EXPECT_TRUE(std::filesystem::is_regular_file(std::filesystem::symlink_status("run/" + name))) << name;
        EXPECT_EQ(FileText("run/" + name), name);
    }
    EXPECT_EQ(FileText("elsewhere.txt"), "not a result");
    EXPECT_FALSE(std::filesystem::exists("nowhere.txt"));
}

// A link in the way of the unfinished file is not this program's: it is not followed either.
TEST(ResultFiles, DoNotFollowALinkUnderTheUnfinishedName)
{
    const TemporaryDirectory directory;
    std::ofstream("elsewhere.txt") << "not a result";
    ResultFiles files("run", {"a.txt"});
    std::filesystem::create_symlink("../elsewhere.txt", NameBeside("run/a.txt", UnfinishedSuffix));
    files.Write("a.txt", Writer("new"));
    files.Commit();
    EXPECT_EQ(FileText("run/a.txt"), "new");
    EXPECT_EQ(FileText("elsewhere.txt"), "not a result");
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

// 255 characters are the most that usual file systems take.
TEST(UnfinishedFile, MayHaveTheLongestName)
{
    const TemporaryDirectory directory;
    const std::string name(255, 'n');
    WriteWhole(name, Writer("text"));
    EXPECT_EQ(FileText(name), "text");
    EXPECT_EQ(EntriesOfDirectory(), 1);
    EXPECT_NE(FailureOf([] { WriteWhole(std::string(256, 'n'), Writer("text")); }).find(": File name too long\n"),
              std::string::npos);
}

TEST(UnfinishedFile, WritesADeviceUnderItsName)
{
    WriteWhole("/dev/null", Writer("text"));
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
}

// Usual file systems take 255 bytes; what is cut off for the suffix may end at any byte of a character.
TEST(NameBeside, OfALongNameHasWholeCharacters)
{
    for (std::size_t before = 0; before < 3; ++before) {
        std::string name(before, 'a');
        while (name.size() < 246) { name += "页"; }
        const std::string beside = NameBeside(name, UnfinishedSuffix);
        EXPECT_NE(beside.front() & 0xC0, 0x80) << beside;
        EXPECT_LE(beside.size(), 255u);
        EXPECT_TRUE(beside.ends_with(UnfinishedSuffix)) << beside;
    }
}

} // namespace
} // namespace tarnvexo
