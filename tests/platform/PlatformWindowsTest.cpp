#include "platform/FilePath.h"
#include "platform/Platform.h"
#include "platform/WindowsText.h"
#include "support/StartedProgram.h"
#include "support/TemporaryDirectory.h"

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>
#include <thread>
#include <utility>

namespace tarnvexo::platform {
namespace {

using test::TemporaryDirectory;

TEST(WindowsText, GoesToUtf16AndBack)
{
    EXPECT_EQ(Wide("é错🚢"), L"\u00E9\u9519\xD83D\xDEA2");
    EXPECT_EQ(Utf8(L"\u00E9\u9519\xD83D\xDEA2"), "é错🚢");
    EXPECT_EQ(Wide(""), L"");
    EXPECT_EQ(Narrow(L"\u9519\xD83D\xDEA2", 936), "\xB4\xED??");
}

TEST(WindowsText, HasTheReasonsOfTheCLibraryWhereItHasThem)
{
    EXPECT_EQ(ReasonOfSystemError(ERROR_FILE_NOT_FOUND), "No such file or directory");
    EXPECT_EQ(ReasonOfSystemError(ERROR_ACCESS_DENIED), "Permission denied");
    EXPECT_EQ(ReasonOfSystemError(ERROR_DISK_FULL), "No space left on device");
    EXPECT_NE(ReasonOfSystemError(ERROR_BAD_EXE_FORMAT), "");
}

TEST(NameFault, IsThatOfDevices)
{
    EXPECT_EQ(NameFault("CON"), "\"CON\" is a device in every folder of Windows");
    for (const char* name : {"nul", "NUL.txt", "aux.tar.gz", "run\\Prn", "C:\\con\\a", "com1", "LPT9.dxf", "COM¹",
                             "conin$", "nul .txt", "C:aux"}) {
        EXPECT_NE(NameFault(name).find("is a device"), std::string::npos) << name;
    }
    for (const char* name : {"console", "com", "COM0", "com10", "lpt", "nulla.txt", "a.nul", "auxiliary/con1"}) {
        EXPECT_EQ(NameFault(name), "") << name;
    }
}

TEST(NameFault, IsThatOfCharactersThatAreLeftOutOrTakenForOthers)
{
    EXPECT_EQ(NameFault("run."), "Windows leaves out the full stop at the end of \"run.\"");
    EXPECT_EQ(NameFault("a /b"), "Windows leaves out the blank at the end of \"a \"");
    EXPECT_EQ(NameFault("C:\\a\\b:c"), "names of Windows have no \":\", as \"b:c\" has");
    EXPECT_NE(NameFault("wing?.txt"), "");
    EXPECT_NE(NameFault("..."), "");
}

TEST(NameFault, IsNotOfPathsThatWindowsTakesAsTheyAre)
{
    for (const char* name : {".", "..", "run\\", "C:\\", "C:", "..\\..\\a b\\机翼.txt", "\\\\computer\\share\\a",
                             "/a/./b", ".hidden", "\\\\?\\C:\\a.", ""}) {
        EXPECT_EQ(NameFault(name), "") << name;
    }
}

// The program that is started is a copy of this one, which writes what it has tested.
TEST(RunProgram, StartsTheFileOfTheCurrentDirectoryAndWaitsForItsEnd)
{
    const TemporaryDirectory directory;
    wchar_t own[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, own, MAX_PATH);
    std::filesystem::copy_file(own, L"Tarn+Vexo \u4E91\u56FE.exe");
    SetEnvironment("GTEST_FILTER", "WindowsText.GoesToUtf16AndBack");
    SetEnvironment("GTEST_OUTPUT", "xml:done.xml");
    RunProgram("Tarn+Vexo 云图.exe");
    std::ifstream done("done.xml");
    const std::string text(std::istreambuf_iterator<char>(done), {});
    EXPECT_NE(text.find("tests=\"1\" failures=\"0\""), std::string::npos) << text;
}

TEST(OpenFile, LetsOthersDeleteWhatIsBeingWritten)
{
    const TemporaryDirectory directory;
    std::FILE* const file = OpenFile("file", "wb");
    ASSERT_NE(file, nullptr);
    EXPECT_TRUE(DeleteFileW(L"file"));
    std::fclose(file);
    EXPECT_FALSE(FileExists("file"));
}

TEST(OpenFile, WritesAndReadsTextsAndBytes)
{
    const TemporaryDirectory directory;
    for (const auto& [mode, bytes] : {std::pair("w", "a\r\nb\r\n"), std::pair("wb", "a\nb\n")}) {
        std::FILE* const file = OpenFile("行.txt", mode);
        ASSERT_NE(file, nullptr);
        std::fputs("a\nb\n", file);
        std::fclose(file);
        std::FILE* const read = OpenFile("行.txt", "rb");
        char text[16] = {};
        std::fread(text, 1, sizeof text - 1, read);
        std::fclose(read);
        EXPECT_STREQ(text, bytes);
    }
}

TEST(OpenFile, TellsWhyItCannot)
{
    const TemporaryDirectory directory;
    EXPECT_EQ(OpenFile("none", "r"), nullptr);
    EXPECT_EQ(errno, ENOENT);
    EXPECT_EQ(OpenFile(".", "w"), nullptr);
    EXPECT_EQ(errno, EISDIR);
    std::ofstream("file") << "x";
    const HANDLE other = CreateFileW(L"file", GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    EXPECT_EQ(OpenFile("file", "r"), nullptr);
    EXPECT_EQ(ReasonOfFile(errno), FileIsOpenElsewhere);
    CloseHandle(other);
}

TEST(RenameFile, ReplacesAndSaysThatAProgramHasTheTargetOpen)
{
    const TemporaryDirectory directory;
    std::ofstream("new") << "2";
    std::ofstream("old") << "1";
    std::string reason;
    const HANDLE other = CreateFileW(L"old", GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
    EXPECT_FALSE(RenameFile("new", "old", reason));
    EXPECT_EQ(reason, FileIsOpenElsewhere);
    CloseHandle(other);
    EXPECT_TRUE(RenameFile("new", "old", reason));
    EXPECT_FALSE(FileExists("new"));
}

TEST(RenameFile, WaitsForAProgramThatIsAboutToCloseTheFile)
{
    const TemporaryDirectory directory;
    std::ofstream("new") << "2";
    const HANDLE other = CreateFileW(L"new", GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
    std::thread scanner([other] {
        Sleep(200);
        CloseHandle(other);
    });
    std::string reason;
    EXPECT_TRUE(RenameFile("new", "old", reason)) << reason;
    scanner.join();
}

TEST(MakeDirectories, KnowsDrives)
{
    const TemporaryDirectory directory;
    const std::string here = AbsoluteName(".");
    EXPECT_FALSE(MakeDirectories(here.substr(0, 2) + "on this drive/翼")); // "Z:name": from the current directory on
    EXPECT_TRUE(FileExists("on this drive/翼"));
    EXPECT_EQ(MakeDirectories("Q:\\x"), std::errc::no_such_file_or_directory);
}

TEST(AbsoluteName, BeginsWithTheDriveOrTheComputer)
{
    EXPECT_EQ(AbsoluteName("C:\\a\\..\\b c\\d.txt"), "C:/b c/d.txt");
    EXPECT_EQ(AbsoluteName("\\\\server\\share\\模型.txt"), "//server/share/模型.txt");
}

TEST(IsWriteProtected, IsTrueForAFileWithTheReadOnlyMark)
{
    const TemporaryDirectory directory;
    std::ofstream("file") << "x";
    EXPECT_FALSE(IsWriteProtected("file"));
    SetFileAttributesW(L"file", FILE_ATTRIBUTE_READONLY);
    EXPECT_TRUE(IsWriteProtected("file"));
    SetFileAttributesW(L"file", FILE_ATTRIBUTE_NORMAL);
}

TEST(Memory, IsToldInBytes)
{
    EXPECT_GT(AvailableMemory(), 1u << 20);
    EXPECT_GT(ResidentMemory(), 1u << 20);
    EXPECT_GE(PeakMemory(), ResidentMemory());
}

} // namespace
} // namespace tarnvexo::platform
