#include "output/TextFile.h"

#include "support/ChildProcess.h"
#include "support/TemporaryDirectory.h"

#include <cstdlib>
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
    std::ifstream file(name, std::ios::binary);
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

TEST(TextFile, OpenTellsWhyAFileCannotBeCreated)
{
    const auto run = RunInChild([] {
        const TemporaryDirectory directory;
        std::filesystem::create_directory("taken");
        TextFile file;
        if (file.Open("missing/result.txt") || file.Open("taken")) {
            std::exit(2);
        }
        file.Text().Text("goes nowhere");
        const FileResult result = file.Close();
        if (result.outcome != FileOutcome::NotCreated || result.bytes != 0) {
            std::exit(3);
        }
    });
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.error.find("missing/result.txt: error: the file cannot be created: No such file or directory\n"), 0u);
    EXPECT_NE(run.error.find("\ntaken: error: the file cannot be created: Is a directory\n"), std::string::npos);
}

TEST(TextFile, ReportsAFullDiskOnceAndTheRunGoesOn)
{
    const auto run = RunInChild([] {
        TextFile file;
        if (!file.Open("/dev/full")) {
            std::exit(2);
        }
        for (int i = 0; i < 1000000; ++i) { file.Text().Integer(i).EndLine(); }
        if (file.Close().outcome != FileOutcome::Incomplete) {
            std::exit(3);
        }
    });
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.error, "/dev/full: error: the file could not be written to its end: No space left on device\n"
                         "  expected: room for the whole file where it is written\n"
                         "  to do:    do not use this file; make room or choose another directory, then run again\n");
}

TEST(TextFile, ReportsAFullDiskOfAShortFileToo)
{
    const auto run = RunInChild([] {
        TextFile file;
        file.Open("/dev/full");
        file.Text().Text("short");
    });
    EXPECT_NE(run.error.find("/dev/full: error:"), std::string::npos) << run.error;
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
