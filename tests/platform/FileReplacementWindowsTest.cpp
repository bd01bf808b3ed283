// What other programs that have files open are in the way of.
#include "platform/FilePath.h"
#include "platform/FileReplacement.h"
#include "platform/Platform.h"
#include "platform/WindowsText.h"
#include "support/TemporaryDirectory.h"

#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>

namespace tarnvexo::platform {
namespace {

using test::TemporaryDirectory;

std::string Content(const std::string& name)
{
    std::ifstream file(name);
    return {std::istreambuf_iterator<char>(file), {}};
}

TEST(FileReplacement, PutsEarlierFilesBackWhenAnotherProgramHasOneOpen)
{
    const TemporaryDirectory directory;
    std::ofstream("a") << "1";
    std::ofstream("b") << "1";
    const HANDLE other = CreateFileW(L"b", GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
    {
        FileReplacement replacement({{"a.new", "a.old", "a"}, {"b.new", "b.old", "b"}});
        std::ofstream("a.new") << "2";
        std::ofstream("b.new") << "2";
        const auto refusal = replacement.Commit();
        ASSERT_TRUE(refusal);
        EXPECT_EQ(refusal->file, 1u);
        EXPECT_EQ(refusal->reason, FileIsOpenElsewhere);
        EXPECT_EQ(Content("a"), "1");
        CloseHandle(other);
        EXPECT_FALSE(replacement.Commit());
    }
    EXPECT_EQ(Content("a"), "2");
    EXPECT_EQ(Content("b"), "2");
}

} // namespace
} // namespace tarnvexo::platform
