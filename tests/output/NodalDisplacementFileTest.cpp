#include "output/NodalDisplacementFile.h"

#include "app/AssemblyDriver.h"
#include "platform/Platform.h"
#include "solver/SkylineSolver.h"
#include "support/ChildProcess.h"
#include "support/SmallModels.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>

namespace tarnvexo {
namespace {

using test::RunInChild;
using test::TemporaryDirectory;
using test::WrittenFile;

ModelStore Nodes(int count, std::vector<double> displacements)
{
    ModelStore model;
    model.NPOIN = count;
    model.NodeCoordinates.resize(std::size_t(count));
    model.EquationCount = DofsPerNode * count;
    model.GlobalDisplacement = std::move(displacements);
    return model;
}

std::string Written(const ModelStore& model)
{
    return WrittenFile("Node_Dis.txt", [&] { WriteNodalDisplacements(model, "Node_Dis.txt"); });
}

TEST(NodalDisplacementFile, OfOneNodeHasTwoLines)
{
    EXPECT_EQ(
        Written(Nodes(1, {1.0, -2.5, 0.125, 1e-7, 1234567.0, 3.0})),
        "           Node             dx             dy             dz             rx             ry             rz\n"
        "             0:              1           -2.5          0.125          1e-07    1.23457e+06              3\n");
}

TEST(NodalDisplacementFile, NumbersItsNodesFromZeroInOrder)
{
    std::vector<double> displacements(6 * 12);
    for (std::size_t i = 0; i < displacements.size(); ++i) { displacements[i] = double(i); }
    const std::string text = Written(Nodes(12, displacements));
    constexpr std::size_t line = 7 * 15 + 1;
    ASSERT_EQ(text.size(), 13 * line);
    EXPECT_EQ(
        text.substr(line, line),
        "             0:              0              1              2              3              4              5\n");
    EXPECT_EQ(
        text.substr(12 * line),
        "            11:             66             67             68             69             70             71\n");
}

TEST(NodalDisplacementFile, WritesZeroAsZeroAndOtherMagnitudesWithExponents)
{
    EXPECT_EQ(
        Written(Nodes(1, {0.0, 1.2345678e-5, 999999.5, -1e-300, 1.2345678e20, 0.0001})).substr(106),
        "             0:              0    1.23457e-05          1e+06        -1e-300    1.23457e+20         0.0001\n");
}

TEST(NodalDisplacementFile, OfNoNodesIsTheHeader)
{
    EXPECT_EQ(Written(Nodes(0, {})).size(), 106u);
}

// The penalty leaves load / 1e20 in a restrained direction, not an exact zero.
TEST(NodalDisplacementFile, ShowsTheTinyDisplacementOfRestrainedDirections)
{
    ModelStore model = test::StoreOf(test::OneOfEachKind());
    const std::string text = WrittenFile("Node_Dis.txt", [&] {
        RunInChild([&] { // keeps the solver's counter off the test program's output
            LayOutSkyline(model);
            AssembleStiffness(model);
            AssembleLoads(model);
            ApplyRestraints(model);
            SolveSkyline(model);
            WriteNodalDisplacements(model, "Node_Dis.txt");
        });
    });
    double dx = 0.0, dy = 0.0, dz = 0.0;
    ASSERT_EQ(std::sscanf(text.c_str() + 106, " 0: %lf %lf %lf", &dx, &dy, &dz), 3);
    for (double displacement : {dx, dy, dz}) {
        EXPECT_NE(displacement, 0.0);
        EXPECT_LT(std::fabs(displacement), 1e-15);
    }
}

TEST(NodalDisplacementFile, ReplacesAnOlderFile)
{
    const std::string text = WrittenFile("Node_Dis.txt", [] {
        std::ofstream("Node_Dis.txt") << std::string(1000, 'x');
        WriteNodalDisplacements(Nodes(0, {}), "Node_Dis.txt");
    });
    EXPECT_EQ(text.size(), 106u);
}

TEST(NodalDisplacementFile, TellsItsSize)
{
    const TemporaryDirectory directory;
    const FileResult file = WriteNodalDisplacements(Nodes(1, {1.0, -2.5, 0.125, 1e-7, 1234567.0, 3.0}), "any name.txt");
    EXPECT_EQ(file.outcome, FileOutcome::Written);
    EXPECT_EQ(file.bytes, 2 * (105 + platform::BytesOfLineEnd()));
    EXPECT_EQ(std::filesystem::file_size("any name.txt"), file.bytes);
}

TEST(NodalDisplacementFile, ThatCannotBeCreatedIsToldToTheCaller)
{
    const TemporaryDirectory directory;
    std::filesystem::create_directory("Node_Dis.txt");
    const FileResult file = WriteNodalDisplacements(Nodes(0, {}), "Node_Dis.txt");
    EXPECT_EQ(file.outcome, FileOutcome::NotCreated);
    EXPECT_EQ(file.reason, "Is a directory");
}

} // namespace
} // namespace tarnvexo
