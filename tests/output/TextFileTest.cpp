#include "output/TextFile.h"

#include "support/ChildProcess.h"
#include "support/TemporaryDirectory.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>

namespace tarnvexo {
namespace {

using test::RunInChild;
using test::TemporaryDirectory;

std::string FileText(const char* name)
{
    std::ifstream file(name); // text: line ends are those of the system
    return std::string(std::istreambuf_iterator<char>(file), {});
}

TEST(TextFile, HoldsWhatWasWritten)
{
    const TemporaryDirectory directory;
    std::string expected;
    TextFile file;
    ASSERT_TRUE(file.Open("result.txt"));
    for (int i = 0; i < 100000; ++i) { // more than the buffer takes
        file.Text().Integer(i, 15).Text(":").Number(0.5 * i).EndLine();
        expected += std::string(15 - std::to_string(i).size(), ' ') + std::to_string(i) + ":";
        expected += std::to_string(i / 2) + (i % 2 == 0 ? "\n" : ".5\n");
    }
    EXPECT_EQ(file.Close().outcome, FileOutcome::Written);
    EXPECT_TRUE(FileText("result.txt") == expected);
}

TEST(TextFile, ReplacesAnOlderFile)
{
    const TemporaryDirectory directory;
    std::ofstream("result.txt") << "an older and longer text";
    TextFile file;
    ASSERT_TRUE(file.Open("result.txt"));
    file.Text().Text("new");
    EXPECT_EQ(file.Close().outcome, FileOutcome::Written);
    EXPECT_EQ(FileText("result.txt"), "new");
}

TEST(TextFile, IsCompleteWhenTheObjectIsDestroyed)
{
    const TemporaryDirectory directory;
    {
        TextFile file;
        ASSERT_TRUE(file.Open("result.txt"));
        file.Text().Text("rest");
    }
    EXPECT_EQ(FileText("result.txt"), "rest");
}

TEST(TextFile, TellsWhyAFileCannotBeCreated)
{
    const TemporaryDirectory directory;
    std::filesystem::create_directory("taken");
    TextFile file;
    EXPECT_FALSE(file.Open("missing/result.txt"));
    EXPECT_EQ(file.Close().reason, "No such file or directory");
    EXPECT_FALSE(file.Open("taken"));
    file.Text().Text("goes nowhere");
    const FileResult result = file.Close();
    EXPECT_EQ(result.outcome, FileOutcome::NotCreated);
    EXPECT_EQ(result.bytes, 0u);
    EXPECT_EQ(FileFault(result),
              "taken: error: the file cannot be created: Is a directory\n"
              "  expected: a directory that can be written, with no directory or protected file of this name\n"
              "  to do:    make room for it, or copy the model to another directory, then run again");
}

TEST(TextFile, TellsOfAFullDisk)
{
    for (const int lines : {1, 1000000}) {
        TextFile file;
        ASSERT_TRUE(file.Open("/dev/full"));
        for (int i = 0; i < lines; ++i) { file.Text().Integer(i).EndLine(); }
        const FileResult result = file.Close();
        EXPECT_EQ(result.outcome, FileOutcome::Incomplete);
        EXPECT_EQ(FileFault(result),
                  "/dev/full: error: the file could not be written to its end: No space left on device\n"
                  "  expected: room for the whole file where it is written\n"
                  "  to do:    do not use this file; make room or choose another directory, then run again");
    }
}

TEST(TextFile, PrintsNothing)
{
    const auto run = RunInChild([] {
        TextFile file;
        file.Open("missing/result.txt");
        file.Open("/dev/full");
        file.Text().Text("short");
    });
    EXPECT_EQ(run.error, "");
}

TEST(RequireCreated, TellsOfAnIncompleteFileAndGoesOn)
{
    const FileResult incomplete = {FileOutcome::Incomplete, 12, "result.txt", "No space left on device"};
    const auto run = RunInChild([&] { RequireCreated(incomplete, "message"); });
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.output, "");
    EXPECT_EQ(run.error, FileFault(incomplete) + "\n");
}

TEST(RequireCreated, EndsTheRunWithoutTheFile)
{
    const FileResult missing = {FileOutcome::NotCreated, 0, "result.txt", "Permission denied"};
    const auto run = RunInChild([&] { RequireCreated(missing, "message"); }, "k");
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.output, "message\n");
    EXPECT_EQ(run.error, FileFault(missing) + "\n");
}

TEST(RequireCreated, SaysNothingOfAGoodFile)
{
    const auto run = RunInChild([] { RequireCreated(FileResult(), "message"); });
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.output + run.error, "");
}

TEST(TextFile, CanBeUsedForOneFileAfterAnother)
{
    const TemporaryDirectory directory;
    TextFile file;
    ASSERT_TRUE(file.Open("first.txt"));
    file.Text().Text("first");
    ASSERT_TRUE(file.Open("second.txt"));
    file.Text().Text("second");
    EXPECT_EQ(file.Close().outcome, FileOutcome::Written);
    EXPECT_EQ(FileText("first.txt"), "first");
    EXPECT_EQ(FileText("second.txt"), "second");
}

} // namespace
} // namespace tarnvexo
