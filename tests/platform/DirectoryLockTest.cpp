#include "platform/DirectoryLock.h"

#include "support/TemporaryDirectory.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace tarnvexo::platform {
namespace {

using test::TemporaryDirectory;

TEST(DirectoryLock, IsHeldByOneAtATimeAndLeavesNothingBehind)
{
    const TemporaryDirectory directory;
    {
        const DirectoryLock first(".");
        EXPECT_EQ(first.State(), LockState::Held);
        EXPECT_EQ(DirectoryLock(".").State(), LockState::Occupied);
    }
    EXPECT_EQ(DirectoryLock(".").State(), LockState::Held);
    EXPECT_TRUE(std::filesystem::is_empty("."));
}

TEST(DirectoryLock, OfAnotherDirectoryIsAnother)
{
    const TemporaryDirectory directory;
    std::filesystem::create_directory("a");
    std::filesystem::create_directory("b");
    const DirectoryLock first("a");
    EXPECT_EQ(DirectoryLock("b").State(), LockState::Held);
}

TEST(DirectoryLock, IsUnknownWhereThereIsNoDirectory)
{
    EXPECT_EQ(DirectoryLock("/not/there").State(), LockState::Unknown);
}

} // namespace
} // namespace tarnvexo::platform
