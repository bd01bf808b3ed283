#include "support/TemporaryDirectory.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>

namespace tarnvexo {
namespace {

using test::TemporaryDirectory;

std::string FileText(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
}

// Position of the first difference, with what stands there in both texts; empty when they are the same.
std::string FirstDifference(const std::string& committed, const std::string& made)
{
    std::size_t i = 0;
    int line = 1;
    while (i < committed.size() && i < made.size() && committed[i] == made[i]) { line += committed[i++] == '\n'; }
    if (i == committed.size() && i == made.size()) {
        return {};
    }
    return "line " + std::to_string(line) + ": committed \"" + committed.substr(i, 40) + "\", made \"" +
           made.substr(i, 40) + "\"";
}

TEST(Examples, CommittedModelFilesAreWhatTheGeneratorWrites)
{
    const TemporaryDirectory directory;
    ASSERT_EQ(std::system("\"" TARNVEXO_MAKE_EXAMPLES "\" made >made.log"), 0);

    int models = 0;
    for (const auto& folder : std::filesystem::directory_iterator(TARNVEXO_SOURCE_DIR "/examples")) {
        if (!folder.is_directory()) {
            continue;
        }
        const std::string name = folder.path().filename().string();
        const std::string committed = FileText(folder.path() / "fem_solving.txt");
        const std::string made = FileText(directory.Path() / "made" / name / "fem_solving.txt");
        EXPECT_FALSE(committed.empty()) << name;
        EXPECT_EQ(FirstDifference(committed, made), "")
            << name << ": run make_examples examples, and look at what moved";
        ++models;
    }
    EXPECT_EQ(models, 4);
}

TEST(Examples, GeneratorWithoutDirectoryPrintsItsUsageAndFails)
{
    const TemporaryDirectory directory;
    EXPECT_NE(std::system("\"" TARNVEXO_MAKE_EXAMPLES "\" 2>usage.txt"), 0);
    EXPECT_NE(FileText("usage.txt").find("usage: make_examples DIR"), std::string::npos);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator("."), std::filesystem::directory_iterator()), 1);
}

} // namespace
} // namespace tarnvexo
