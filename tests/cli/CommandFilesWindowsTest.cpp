#include "app/RunFailure.h"
#include "cli/CommandFiles.h"

#include <gtest/gtest.h>
#include <string>

namespace tarnvexo {
namespace {

std::string FaultOfPlace(const std::string& file)
{
    try {
        RequirePlaceOf(file);
    } catch (const RunFailure& failure) {
        EXPECT_EQ(failure.exitCode, ExitFile);
        return failure.what();
    }
    return "";
}

TEST(PlaceOfAFile, IsNoDevice)
{
    EXPECT_EQ(FaultOfPlace("aux.json"),
              "aux.json: error: nothing can be written under this name: \"aux.json\" is a device in every folder of "
              "Windows\n"
              "  expected: a name that a file or folder can have\n"
              "  to do:    choose another name");
}

TEST(PlaceOfAFile, HasTheNameThatTheFileWillHave)
{
    EXPECT_EQ(
        FaultOfPlace("wing.txt."),
        "wing.txt.: error: nothing can be written under this name: Windows leaves out the full stop at the end of "
        "\"wing.txt.\"\n"
        "  expected: a name that a file or folder can have\n"
        "  to do:    choose another name");
    EXPECT_EQ(FaultOfPlace("wing.txt"), "");
}

} // namespace
} // namespace tarnvexo
