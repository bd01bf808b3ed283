// What a process of its own does for the program (platform/FileReplacement.h).
#include "platform/FileReplacement.h"
#include "support/ChildProcess.h"
#include "support/NamedFiles.h"
#include "support/TemporaryDirectory.h"

#include <csignal>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

namespace tarnvexo::platform {
namespace {

using test::Files;
using test::FilesThere;
using test::RunInChild;
using test::TemporaryDirectory;
using test::Three;
using test::Write;

// The program is gone without a word; its process takes a moment.
TEST(FileReplacement, RemovesTheNewFilesWhenTheProgramIsKilled)
{
    const TemporaryDirectory directory;
    Write({{"a", "1"}});
    const auto run = RunInChild([] {
        const FileReplacement replacement(Three());
        Write({{"a.new", "2"}, {"b.new", "2"}, {"c.new", "2"}});
        raise(SIGKILL);
    });
    EXPECT_EQ(run.exitCode, -1);
    for (int wait = 0; wait < 1000 && FilesThere().size() > 1; ++wait) { usleep(10000); }
    EXPECT_EQ(FilesThere(), (Files{{"a", "1"}}));
}

TEST(FileReplacement, DoesWithoutAProcess)
{
    const TemporaryDirectory directory;
    Write({{"a", "1"}});
    const auto run = RunInChild([] {
        rlimit open;
        getrlimit(RLIMIT_NOFILE, &open);
        const rlimit none = {0, open.rlim_max}; // no channel to a process can be had
        setrlimit(RLIMIT_NOFILE, &none);
        FileReplacement replacement(Three());
        setrlimit(RLIMIT_NOFILE, &open);
        Write({{"a.new", "2"}, {"b.new", "2"}, {"c.new", "2"}});
        EXPECT_FALSE(replacement.Commit());
        _exit(testing::Test::HasFailure() ? 1 : 0);
    });
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(FilesThere(), (Files{{"a", "2"}, {"b", "2"}, {"c", "2"}}));
}

} // namespace
} // namespace tarnvexo::platform
