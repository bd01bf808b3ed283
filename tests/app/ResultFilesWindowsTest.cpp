#include "app/ResultFiles.h"
#include "app/RunFailure.h"
#include "support/TemporaryDirectory.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <string>

namespace tarnvexo {
namespace {

TEST(ResultFiles, GoIntoNoDirectoryThatIsADeviceOrWouldGetAnotherName)
{
    const test::TemporaryDirectory directory;
    for (const std::string name : {"CON", "nul", "COM1", "aux.d/run", "run.", "run "}) {
        try {
            ResultFiles files(name, {"a.txt"});
            ADD_FAILURE() << name;
        } catch (const RunFailure& failure) {
            EXPECT_EQ(failure.exitCode, ExitFile);
            const std::string begin = name + ": error: nothing can be written under this name: ";
            EXPECT_TRUE(std::string(failure.what()).starts_with(begin)) << failure.what();
        }
    }
    EXPECT_TRUE(std::filesystem::is_empty("."));
}

} // namespace
} // namespace tarnvexo
