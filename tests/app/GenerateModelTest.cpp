#include "input/ModelFileReader.h"
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

int RunGenerateModel(const std::string& arguments)
{
    return std::system(("\"" TARNVEXO_GENERATE_MODEL "\" " + arguments + " >output.txt 2>error.txt").c_str());
}

std::string FileText(const char* name)
{
    std::ifstream file(name, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
}

TEST(GenerateModel, WritesAModelFileOfEveryKind)
{
    const TemporaryDirectory directory;
    for (const std::string kind : {"plate", "box", "ship", "barrel", "lattice"}) {
        ASSERT_EQ(RunGenerateModel(kind + " 3000 model.txt"), 0) << kind;
        ModelStore model;
        const ModelReading reading = ReadModelText(model, FileText("model.txt"), "model.txt");
        EXPECT_EQ(reading.end, ModelReading::End::Complete) << kind;
        EXPECT_EQ(reading.warnings, "") << kind;
        EXPECT_EQ(FileText("output.txt").find("model.txt: " + std::to_string(model.NPOIN) + " nodes, "), 0u) << kind;
    }
}

TEST(GenerateModel, WithoutArgumentsPrintsItsUsageAndFails)
{
    const TemporaryDirectory directory;
    EXPECT_NE(RunGenerateModel(""), 0);
    EXPECT_EQ(FileText("error.txt").find("usage: generate_model KIND EQUATIONS OUT\n"), 0u);
}

TEST(GenerateModel, TellsWhichArgumentItDoesNotUnderstand)
{
    const TemporaryDirectory directory;
    EXPECT_NE(RunGenerateModel("bridge 3000 model.txt"), 0);
    EXPECT_EQ(FileText("error.txt").find("error: \"bridge\" is no kind of structure\n"), 0u);
    for (const std::string number : {"0", "-5", "1e5", "99999999999"}) {
        EXPECT_NE(RunGenerateModel("plate " + number + " model.txt"), 0);
        EXPECT_EQ(FileText("error.txt")
                      .find("error: EQUATIONS is \"" + number + "\", expected a whole number from 1 to 100000000\n"),
                  0u);
    }
    EXPECT_FALSE(std::filesystem::exists("model.txt"));
}

TEST(GenerateModel, FailsWhenTheFileCannotBeWritten)
{
    const TemporaryDirectory directory;
    EXPECT_NE(RunGenerateModel("plate 3000 no/such/directory/model.txt"), 0);
    EXPECT_EQ(FileText("error.txt").find("no/such/directory/model.txt: error: the file cannot be created"), 0u);
}

} // namespace
} // namespace tarnvexo
