#include "platform/Platform.h"
#include "platform/WindowsText.h"
#include "support/StartedProgram.h"
#include "support/TemporaryDirectory.h"

#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>

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

TEST(RunProgram, StartsTheFileOfTheCurrentDirectoryAndWaitsForItsEnd)
{
    const TemporaryDirectory directory;
    std::ofstream("Tarn+Vexo show.bat") << "@echo ended> done\n";
    RunProgram("Tarn+Vexo show.bat");
    std::ifstream done("done");
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(done), {}), "ended\n");
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
