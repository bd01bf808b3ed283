#include "platform/Browser.h"
#include "platform/Platform.h"
#include "platform/WindowsText.h"
#include "support/TemporaryDirectory.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <string>

namespace tarnvexo::platform {
namespace {

using test::TemporaryDirectory;

std::string SystemProgram(const char* name)
{
    return EnvironmentValue("SystemRoot") + "\\system32\\" + name;
}

void WaitFor(const char* file)
{
    for (int i = 0; i < 600 && !FileExists(file); ++i) { Sleep(50); }
    ASSERT_TRUE(FileExists(file));
}

TEST(ChildProgram, EndsWithAllThatItHasStarted)
{
    const TemporaryDirectory directory;
    // The shell stays, and so does the one that it starts; each has a file open.
    std::ofstream("inner.bat") << "@echo begun> inner\n@pause > held\n";
    std::ofstream("outer.bat") << "@start /b cmd /c inner.bat\n@pause > nul\n";
    ChildProgram child({SystemProgram("cmd.exe"), "/c", "outer.bat"}, "log");
    ASSERT_EQ(child.Reason(), "");
    WaitFor("inner");
    child.EndAll();
    EXPECT_TRUE(child.HasEnded());
    std::error_code error;
    for (const char* file : {"held", "log"}) {
        std::filesystem::remove(file, error); // nobody has it open any more
        EXPECT_FALSE(error) << file << ": " << error.message();
    }
}

TEST(ChildProgram, ThatIsNotThereSaysSo)
{
    const TemporaryDirectory directory;
    ChildProgram child({"none.exe"}, "log");
    EXPECT_NE(child.Reason(), "");
    EXPECT_TRUE(child.HasEnded());
    child.EndAll();
}

TEST(FindProgram, DoesNotLookIntoTheCurrentDirectory)
{
    const TemporaryDirectory directory;
    std::ofstream("planted-browser.exe") << "x";
    EXPECT_EQ(FindProgram({"planted-browser"}), "");
    const std::string named = std::filesystem::absolute("planted-browser.exe").string();
    EXPECT_EQ(FindProgram({named}), named);
    EXPECT_NE(FindProgram({"cmd"}), "");
}

} // namespace
} // namespace tarnvexo::platform
