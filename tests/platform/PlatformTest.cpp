// What the same words say of every system; PlatformPosixTest.cpp and PlatformWindowsTest.cpp have the rest.
#include "platform/Platform.h"

#include "platform/FilePath.h"
#include "support/ChildProcess.h"
#include "support/TemporaryDirectory.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <thread>
#include <vector>

namespace tarnvexo::platform {
namespace {

using test::ChildResult;
using test::RunInChild;
using test::TemporaryDirectory;

TEST(PerformanceCounter, CountsAsManyPerSecondAsItsFrequencySays)
{
    const std::int64_t start = PerformanceCounter();
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    const std::int64_t end = PerformanceCounter();
    EXPECT_GE(static_cast<double>(end - start) / static_cast<double>(PerformanceFrequency()), 0.02);
}

TEST(StandardOutput, LeavesAsGbkBytesThroughAPipe)
{
    const ChildResult run = RunInChild([] { WriteStandardOutput("a错误!\n平衡前GLOAD：\n"); });
    EXPECT_EQ(run.output, "a\xB4\xED\xCE\xF3!\n\xC6\xBD\xBA\xE2\xC7\xB0GLOAD\xA3\xBA\n");
}

TEST(StandardOutput, HasLeftTheProcessOnReturn)
{
    const ChildResult run = RunInChild([] {
        WriteStandardOutput("seen");
        _exit(3);
    });
    EXPECT_EQ(run.output, "seen");
    EXPECT_EQ(run.exitCode, 3);
}

TEST(Utf8Output, IsWrittenAsItIs)
{
    const ChildResult run = RunInChild([] { EXPECT_TRUE(WriteUtf8Output("Σ 错 \n")); });
    EXPECT_EQ(run.output, "Σ 错 \n");
}

TEST(ErrorLines, CannotBeRewrittenInAFile)
{
    const ChildResult run = RunInChild([] { _exit(ErrorLinesCanBeRewritten() ? 1 : 0); });
    EXPECT_EQ(run.exitCode, 0);
}

// Any address and size will do: the hint concerns whole pages inside the array only.
TEST(PreferLargePages, LeavesArraysOfAnySizeUsable)
{
    for (const std::size_t size : {std::size_t(0), std::size_t(7), std::size_t(5000), std::size_t(3) << 20}) {
        std::vector<double> array;
        array.reserve(size);
        PreferLargePages(array.data(), size * sizeof(double));
        array.assign(size, 1.5);
        EXPECT_EQ(std::count(array.begin(), array.end(), 1.5), std::ptrdiff_t(size));
    }
}

TEST(MappedFile, HoldsTheBytesOfItsFile)
{
    const TemporaryDirectory directory;
    const std::string content = std::string(100000, 'x') + std::string("\0\r\n", 3);
    std::ofstream("data", std::ios::binary) << content;
    const MappedFile file("data");
    EXPECT_EQ(file.Bytes(), content);
}

TEST(MappedFile, OfAnEmptyFileADirectoryOrNothingIsEmpty)
{
    const TemporaryDirectory directory;
    std::ofstream("empty").close();
    std::filesystem::create_directory("directory");
    for (const char* name : {"empty", "directory", "missing"}) {
        EXPECT_TRUE(MappedFile(name).Bytes().empty()) << name;
    }
}

TEST(FileNames, AreUtf8WhateverCharactersTheyHave)
{
    const TemporaryDirectory directory;
    const std::string folder = "模型 é";
    const std::string name = folder + "/机翼 🚢.txt";
    std::filesystem::create_directory(PathOf(folder));
    std::FILE* const file = OpenFile(name.c_str(), "wb");
    ASSERT_NE(file, nullptr);
    std::fputs("text", file);
    std::fclose(file);
    EXPECT_TRUE(FileExists(name.c_str()));
    EXPECT_EQ(MappedFile(name.c_str()).Bytes(), "text");
    std::string bytes;
    EXPECT_TRUE(ReadStream(name.c_str(), AnySilence, nullptr, bytes));
    EXPECT_EQ(bytes, "text");
    EXPECT_EQ(std::filesystem::file_size(PathOf(name)), 4u);
    const auto found = std::filesystem::directory_iterator(PathOf(folder));
    EXPECT_EQ(found->path().filename().string(), "机翼 🚢.txt");
    std::string reason;
    EXPECT_TRUE(FlushToDisk(name, reason)) << reason;
    EXPECT_FALSE(IsWriteProtected(name));
}

TEST(FileNames, OfNothingAreToldByTheWordsOfTheCLibrary)
{
    const TemporaryDirectory directory;
    std::error_code error;
    std::filesystem::remove(PathOf("missing"), error);
    std::filesystem::create_directory(PathOf("missing/directory"), error);
    EXPECT_EQ(ReasonOf(error), "No such file or directory");
    std::string reason;
    EXPECT_FALSE(FlushToDisk("missing", reason));
    EXPECT_EQ(reason, "No such file or directory");
    errno = 0;
    EXPECT_EQ(OpenFile("missing/file", "w"), nullptr);
    EXPECT_EQ(errno, ENOENT);
}

TEST(Environment, KeepsWhatIsSet)
{
    EXPECT_EQ(EnvironmentValue("TARNVEXO_TEST_NAME"), "");
    SetEnvironmentDefault("TARNVEXO_TEST_NAME", "机翼");
    EXPECT_EQ(EnvironmentValue("TARNVEXO_TEST_NAME"), "机翼");
    SetEnvironmentDefault("TARNVEXO_TEST_NAME", "b");
    EXPECT_EQ(EnvironmentValue("TARNVEXO_TEST_NAME"), "机翼");
    SetEnvironment("TARNVEXO_TEST_NAME", "c");
    EXPECT_EQ(EnvironmentValue("TARNVEXO_TEST_NAME"), "c");
}

TEST(OwnConsole, IsNoneWhereTheStreamsAreFiles)
{
    const ChildResult run = RunInChild([] {
        PauseInOwnConsole(); // would take a key
        std::exit(HasOwnConsole() ? 1 : 0);
    });
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.output, "");
}

TEST(ErrorOutput, IsUtf8InAFile)
{
    EXPECT_EQ(RunInChild([] { WriteErrorOutput("Σ 错\n"); }).error, "Σ 错\n");
}

} // namespace
} // namespace tarnvexo::platform
