#include "cli/DroppedModel.h"

#include "platform/FilePath.h"
#include "support/TemporaryDirectory.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace tarnvexo {
namespace {

std::string Generic(const std::string& path)
{
    return platform::PathOf(path).generic_string();
}

TEST(DroppedModel, OfTheUsualNameHasItsResultsBesideIt)
{
    EXPECT_EQ(ResultsOfDroppedModel("fem_solving.txt"), ".");
    EXPECT_EQ(Generic(ResultsOfDroppedModel("a b/fem_solving.txt")), "a b");
}

TEST(DroppedModel, OfAnotherNameHasADirectoryForItsResults)
{
    EXPECT_EQ(ResultsOfDroppedModel("wing.v2.txt"), "wing.v2 results");
    EXPECT_EQ(Generic(ResultsOfDroppedModel("a b/翼.txt")), "a b/翼 results");
}

TEST(DroppedModel, MayBeADirectoryWithTheModelInIt)
{
    const test::TemporaryDirectory directory;
    std::filesystem::create_directory("wing");
    EXPECT_EQ(ResultsOfDroppedModel("wing"), "wing");
}

} // namespace
} // namespace tarnvexo
