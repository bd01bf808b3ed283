#include "cli/DroppedModel.h"

#include "support/TemporaryDirectory.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace tarnvexo {
namespace {

using Words = std::vector<std::string>;

TEST(DroppedModel, IsSolvedWithTheResultsBesideIt)
{
    EXPECT_EQ(CommandForDroppedModel("wing.txt"), (Words{"solve", "wing.txt", "-o", "."}));
    EXPECT_EQ(CommandForDroppedModel("a b/翼.txt"), (Words{"solve", "a b/翼.txt", "-o", "a b"}));
}

TEST(DroppedModel, MayBeADirectoryWithTheModelInIt)
{
    const test::TemporaryDirectory directory;
    std::filesystem::create_directory("wing");
    EXPECT_EQ(CommandForDroppedModel("wing"), (Words{"solve", "wing", "-o", "wing"}));
}

} // namespace
} // namespace tarnvexo
