#include "platform/Platform.h"
#include "support/ChildProcess.h"
#include "support/TemporaryDirectory.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iostream>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace tarnvexo::platform {
namespace {

using test::ChildOutput;
using test::ChildResult;
using test::RunInChild;
using test::TemporaryDirectory;
using test::TerminalsAreAvailable;

// Shows what of standard input is still there.
void EchoRestOfInput()
{
    char c = 0;
    while (read(STDIN_FILENO, &c, 1) == 1) { WriteStandardOutput(std::string_view(&c, 1)); }
}

TEST(WarningBox, ShowsItsTextOnStandardErrorAndTakesExactlyOneLine)
{
    const ChildResult run = RunInChild(
        [] {
            ShowWarningBox("File Read Error!");
            EchoRestOfInput();
        },
        "any text\nnext line\n");
    EXPECT_EQ(run.error, "[Warning!] File Read Error!\nPress Enter to continue . . .");
    EXPECT_EQ(run.output, "next line\n");
    EXPECT_EQ(run.exitCode, 0);
}

TEST(WarningBox, GoesOnAtEndOfFile)
{
    const ChildResult empty = RunInChild([] { ShowWarningBox("x"); });
    EXPECT_EQ(empty.error, "[Warning!] x\nPress Enter to continue . . .\n");
    EXPECT_EQ(empty.exitCode, 0);

    const ChildResult unfinishedLine = RunInChild([] { ShowWarningBox("x"); }, "no line end");
    EXPECT_EQ(unfinishedLine.exitCode, 0);
}

TEST(WarningBox, GoesOnWhenStandardInputIsClosed)
{
    const ChildResult run = RunInChild([] {
        close(STDIN_FILENO);
        ShowWarningBox("x");
    });
    EXPECT_EQ(run.exitCode, 0);
}

TEST(Pause, ShowsItsTextOnStandardOutputAndTakesExactlyOneCharacter)
{
    const ChildResult run = RunInChild(
        [] {
            Pause();
            EchoRestOfInput();
        },
        "ab");
    EXPECT_EQ(run.output, "Press any key to continue . . . b");
    EXPECT_EQ(run.error, "");
}

TEST(Pause, GoesOnAtEndOfFile)
{
    const ChildResult run = RunInChild([] { Pause(); });
    EXPECT_EQ(run.output, "Press any key to continue . . . ");
    EXPECT_EQ(run.exitCode, 0);
}

TEST(WaitForKey, TakesExactlyOneCharacterAndShowsNothing)
{
    const ChildResult run = RunInChild(
        [] {
            WaitForKey();
            EchoRestOfInput();
        },
        "\nb");
    EXPECT_EQ(run.output, "b");
    EXPECT_EQ(run.error, "");
}

TEST(WaitForKey, GoesOnAtEndOfFile)
{
    EXPECT_EQ(RunInChild([] { WaitForKey(); }).exitCode, 0);
}

TEST(FileExists, IsTrueForFilesAndDirectoriesAndFalseForNothing)
{
    const TemporaryDirectory directory;
    std::ofstream("Tarn+Vexo_Contour.exe") << "viewer";
    std::ofstream("unreadable") << "x";
    std::filesystem::permissions("unreadable", std::filesystem::perms::none);
    EXPECT_TRUE(FileExists("Tarn+Vexo_Contour.exe"));
    EXPECT_TRUE(FileExists("unreadable"));
    EXPECT_TRUE(FileExists("."));
    EXPECT_FALSE(FileExists("missing"));
    EXPECT_FALSE(FileExists("missing/file"));
}

TEST(RunProgram, StartsTheFileOfTheCurrentDirectoryWhateverItsNameAndWaitsForItsEnd)
{
    const TemporaryDirectory directory;
    for (const char* name : {"Tarn+Vexo_Contour.exe", "it's $HOME; `x` \"y\"", "-n"}) {
        std::ofstream(name) << "#!/bin/sh\nsleep 0.2\necho \"$# $0\" > done\n";
        std::filesystem::permissions(name, std::filesystem::perms::owner_all);
        RunProgram(name);
        std::ifstream done("done");
        std::string line;
        std::getline(done, line);
        EXPECT_EQ(line, std::string("0 ./") + name);
        std::filesystem::remove("done");
    }
}

TEST(RunProgram, LetsTheShellReportAFileThatCannotRun)
{
    const TemporaryDirectory directory;
    std::ofstream("viewer") << "x";
    const ChildResult run = RunInChild([] { RunProgram("viewer"); });
    EXPECT_NE(run.error.find("./viewer: Permission denied"), std::string::npos) << run.error;
    EXPECT_EQ(run.exitCode, 0);
}

TEST(StandardOutput, PassesControlCharactersOnUnchanged)
{
    const std::string text("12%\b\b\r\n\0x", 9);
    EXPECT_EQ(RunInChild([&] { WriteStandardOutput(text); }).output, text);
}

TEST(StandardOutput, ReplacesWhatGbkLacksByAQuestionMark)
{
    const ChildResult run = RunInChild([] { WriteStandardOutput("<🚢><ñ><\xFF><\xE9\x94>错"); });
    EXPECT_EQ(run.output, "<?><?><?><?>\xB4\xED");
}

TEST(StandardOutput, IsUtf8OnATerminalWhoseCharacterSetIsUtf8)
{
    if (!TerminalsAreAvailable()) {
        GTEST_SKIP() << "this system has no pseudo-terminals (/dev/pts is not there)";
    }
    const ChildResult run = RunInChild(
        [] {
            setenv("LC_ALL", "C.UTF-8", 1);
            WriteStandardOutput("错误! 1.5");
        },
        "", ChildOutput::Terminal);
    EXPECT_EQ(run.output, "错误! 1.5");
}

TEST(StandardOutput, IsGbkOnATerminalOfAnotherCharacterSet)
{
    if (!TerminalsAreAvailable()) {
        GTEST_SKIP() << "this system has no pseudo-terminals (/dev/pts is not there)";
    }
    const ChildResult run = RunInChild(
        [] {
            setenv("LC_ALL", "C", 1);
            WriteStandardOutput("错误!");
        },
        "", ChildOutput::Terminal);
    EXPECT_EQ(run.output, "\xB4\xED\xCE\xF3!");
}

// A pipe holds 64 kB: most writes of this test are partial or find it full.
TEST(StandardOutput, IsCompleteThroughAPipeThatDoesNotBlock)
{
    std::string text;
    for (int i = 0; i < 200000; ++i) { text += std::to_string(i) + "\n"; }
    const ChildResult run = RunInChild([&] {
        fcntl(STDOUT_FILENO, F_SETFL, fcntl(STDOUT_FILENO, F_GETFL) | O_NONBLOCK);
        WriteStandardOutput(text);
    });
    EXPECT_TRUE(run.output == text) << run.output.size() << " of " << text.size() << " bytes";
}

TEST(StandardOutput, ReportsAFullDeviceOnceAndGoesOn)
{
    const ChildResult run = RunInChild([] {
        dup2(open("/dev/full", O_WRONLY), STDOUT_FILENO);
        WriteStandardOutput("a");
        WriteStandardOutput("b");
    });
    EXPECT_EQ(run.error, "standard output: error: console text cannot be written: No space left on device\n"
                         "  expected: a terminal, a pipe that is read, or a file with room for it\n"
                         "  to do:    send the output elsewhere; the run goes on without it\n");
    EXPECT_EQ(run.exitCode, 0);
}

TEST(StandardOutput, ReportsOnceThatTheSystemHasNoConverterToGbk)
{
    const ChildResult run = RunInChild([] {
        rlimit files;
        getrlimit(RLIMIT_NOFILE, &files);
        const rlimit noFurtherFile = {3, files.rlim_max}; // the converter module cannot be opened
        setrlimit(RLIMIT_NOFILE, &noFurtherFile);
        WriteStandardOutput("a错");
        setrlimit(RLIMIT_NOFILE, &files);
        WriteStandardOutput("误b");
    });
    EXPECT_EQ(run.output, "a??b");
    EXPECT_EQ(run.error, "standard output: error: Chinese console text cannot be converted to GBK and shows as \"?\"\n"
                         "  expected: the C library's converter module for GBK\n"
                         "  to do:    install it (package libc-gconv-modules-extra on newer Debian systems)\n");
}

TEST(Utf8Output, TellsWhenItCannotBeWritten)
{
    const ChildResult run = RunInChild([] {
        dup2(open("/dev/full", O_WRONLY), STDOUT_FILENO);
        _exit(WriteUtf8Output("a") ? 0 : 7);
    });
    EXPECT_EQ(run.exitCode, 7);
    EXPECT_EQ(run.error, "");
}

TEST(AvailableMemory, IsPositiveAndNotMoreThanTheMachineHas)
{
    const auto pages = static_cast<std::uint64_t>(sysconf(_SC_PHYS_PAGES));
    const auto pageSize = static_cast<std::uint64_t>(sysconf(_SC_PAGE_SIZE));
    EXPECT_GT(AvailableMemory(), 0u);
    EXPECT_LE(AvailableMemory(), pages * pageSize);
}

TEST(MappedFile, OfWhatCannotBeMappedIsEmpty)
{
    const TemporaryDirectory directory;
    std::ofstream("empty").close();
    std::filesystem::create_directory("directory");
    ASSERT_EQ(mkfifo("pipe", 0600), 0);
    for (const char* name : {"empty", "directory", "pipe", "missing"}) {
        EXPECT_TRUE(MappedFile(name).Bytes().empty()) << name;
    }
}

TEST(ReadStream, ReadsAPipeToItsEndHoweverLateAndInHoweverManyPieces)
{
    const TemporaryDirectory directory;
    ASSERT_EQ(mkfifo("pipe", 0600), 0);
    std::string content;
    for (int i = 0; i < 100000; ++i) { content += std::to_string(i) + "\n"; } // more than a pipe holds
    std::thread writer([&] { std::ofstream("pipe", std::ios::binary) << content; });
    std::string bytes;
    EXPECT_TRUE(ReadStream("pipe", AnySilence, nullptr, bytes));
    writer.join();
    EXPECT_TRUE(bytes == content);
}

TEST(ReadStream, GivesUpOnAPipeThatNobodyWritesInto)
{
    const TemporaryDirectory directory;
    ASSERT_EQ(mkfifo("pipe", 0600), 0);
    std::string bytes;
    EXPECT_FALSE(ReadStream("pipe", 0, nullptr, bytes));
    EXPECT_EQ(errno, ETIMEDOUT);
}

TEST(ReadStream, StopsAtAnEndlessStreamWhenTheJudgeHasEnough)
{
    static std::size_t judged;
    judged = 0;
    const StreamJudge isShort = [](std::string_view all, std::size_t newBytes) {
        judged += newBytes;
        return all.size() < 300000;
    };
    std::string bytes;
    EXPECT_TRUE(ReadStream("/dev/zero", AnySilence, isShort, bytes));
    EXPECT_GE(bytes.size(), 300000u);
    EXPECT_LT(bytes.size(), 3000000u);
    EXPECT_EQ(judged, bytes.size());
}

TEST(ReadStream, TellsWhyItCannotRead)
{
    const TemporaryDirectory directory;
    std::filesystem::create_directory("directory");
    std::string bytes;
    EXPECT_FALSE(ReadStream("missing", AnySilence, nullptr, bytes));
    EXPECT_EQ(errno, ENOENT);
    EXPECT_FALSE(ReadStream("directory", AnySilence, nullptr, bytes));
    EXPECT_EQ(errno, EISDIR);
    EXPECT_TRUE(bytes.empty());
}

} // namespace
} // namespace tarnvexo::platform
