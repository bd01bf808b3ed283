#include "platform/FileReplacement.h"

#include "support/NamedFiles.h"
#include "support/TemporaryDirectory.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace tarnvexo::platform {
namespace {

using test::Files;
using test::FilesThere;
using test::TemporaryDirectory;
using test::Three;
using test::Write;

TEST(FileReplacement, GivesAllFilesTheirNames)
{
    const TemporaryDirectory directory;
    Write({{"a", "1"}, {"c", "1"}});
    FileReplacement replacement(Three());
    Write({{"a.new", "2"}, {"b.new", "2"}, {"c.new", "2"}});
    EXPECT_FALSE(replacement.Commit());
    EXPECT_EQ(FilesThere(), (Files{{"a", "2"}, {"b", "2"}, {"c", "2"}}));
}

TEST(FileReplacement, GivenUpRemovesTheNewFiles)
{
    const TemporaryDirectory directory;
    Write({{"a", "1"}});
    {
        const FileReplacement replacement(Three());
        Write({{"a.new", "2"}, {"b.new", "2"}});
    }
    EXPECT_EQ(FilesThere(), (Files{{"a", "1"}}));
}

TEST(FileReplacement, RefusesADirectoryThatBearsAName)
{
    const TemporaryDirectory directory;
    Write({{"a", "1"}, {"b", "1"}});
    std::filesystem::create_directory("c");
    {
        FileReplacement replacement(Three());
        Write({{"a.new", "2"}, {"b.new", "2"}, {"c.new", "2"}});
        const auto refusal = replacement.Commit();
        ASSERT_TRUE(refusal);
        EXPECT_EQ(refusal->file, 2u);
        EXPECT_EQ(refusal->reason, "Is a directory");
    }
    EXPECT_EQ(FilesThere(), (Files{{"a", "1"}, {"b", "1"}, {"c", "directory"}}));
}

// Someone has cleared up among the new files: what bears the name must not be taken for the one that is missing.
TEST(FileReplacement, KeepsAnEarlierFileWhoseNewOneIsMissing)
{
    const TemporaryDirectory directory;
    Write({{"a", "1"}, {"b", "1"}});
    {
        FileReplacement replacement(Three());
        Write({{"a.new", "2"}, {"c.new", "2"}});
        const auto refusal = replacement.Commit();
        ASSERT_TRUE(refusal);
        EXPECT_EQ(refusal->file, 1u);
        EXPECT_EQ(refusal->reason, "No such file or directory");
    }
    EXPECT_EQ(FilesThere(), (Files{{"a", "1"}, {"b", "1"}}));
}

// Refused at the third name, when two earlier files have been moved aside: a directory is where the third would go.
TEST(FileReplacement, PutsEarlierFilesBackWhenOneCannotBeMovedAside)
{
    const TemporaryDirectory directory;
    Write({{"a", "1"}, {"b", "1"}, {"c", "1"}});
    std::filesystem::create_directory("c.old");
    {
        FileReplacement replacement(Three());
        Write({{"a.new", "2"}, {"b.new", "2"}, {"c.new", "2"}});
        const auto refusal = replacement.Commit();
        ASSERT_TRUE(refusal);
        EXPECT_EQ(refusal->file, 2u);
    }
    EXPECT_EQ(FilesThere(), (Files{{"a", "1"}, {"b", "1"}, {"c", "1"}, {"c.old", "directory"}}));
}

// The third name is in a directory that is not there: two new files have been moved in by then.
TEST(FileReplacement, PutsEarlierFilesBackWhenANewOneCannotBeMovedIn)
{
    const TemporaryDirectory directory;
    Write({{"a", "1"}});
    {
        FileReplacement replacement({Three()[0], Three()[1], {"c.new", "c.old", "missing/c"}});
        Write({{"a.new", "2"}, {"b.new", "2"}, {"c.new", "2"}});
        const auto refusal = replacement.Commit();
        ASSERT_TRUE(refusal);
        EXPECT_EQ(refusal->file, 2u);
        EXPECT_EQ(refusal->reason, "No such file or directory");
        EXPECT_EQ(FilesThere(), (Files{{"a", "1"}, {"a.new", "2"}, {"b.new", "2"}, {"c.new", "2"}}));
    }
    EXPECT_EQ(FilesThere(), (Files{{"a", "1"}}));
}

// Tries again: what stood in the way has gone.
TEST(FileReplacement, CanBeCommittedAfterARefusal)
{
    const TemporaryDirectory directory;
    std::filesystem::create_directory("c");
    FileReplacement replacement(Three());
    Write({{"a.new", "2"}, {"b.new", "2"}, {"c.new", "2"}});
    EXPECT_TRUE(replacement.Commit());
    std::filesystem::remove("c");
    EXPECT_FALSE(replacement.Commit());
    EXPECT_EQ(FilesThere(), (Files{{"a", "2"}, {"b", "2"}, {"c", "2"}}));
}

} // namespace
} // namespace tarnvexo::platform
