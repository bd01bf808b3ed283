#include "refine/NodeRenumbering.h"

#include "solver/BandOrdering.h"
#include "solver/SkylineProfile.h"
#include "support/MeshBuilder.h"
#include "support/SameModel.h"
#include "support/SmallModels.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <numeric>

namespace tarnvexo {
namespace {

using test::MeshBuilder;

constexpr Material Steel = {2.1e11, 0.3, 7850.0};

// Plate of columns × rows squares, clamped along its left edge and pressed, with a T beam along its lower edge.
ModelStore Plate(int columns, int rows)
{
    MeshBuilder mesh(Steel);
    const test::Grid grid = test::AddGrid(mesh, columns, rows, 0.01, test::Cell::Quad, [](int i, int j) {
        return Vector3{0.1 * i, 0.11 * j, 0.0};
    });
    for (int i = 0; i < columns; ++i) {
        mesh.AddTBeam(grid.At(i, 0), grid.At(i + 1, 0), {0.0, 0.0, 1.0}, {0.05, 0.004, 0.03, 0.004});
    }
    for (int j = 0; j <= rows; ++j) { mesh.Restrain(grid.At(0, j), {DX, DY, DZ, RX, RY, RZ}); }
    mesh.AddPressure(100.0);
    mesh.AddForce(grid.At(columns, rows), {3.0, 20.0, 10.0});
    return mesh.Model();
}

// 0, stride, 2·stride ... modulo count, which the stride must not share a factor with: neighbours are far apart.
std::vector<int> ScatteredNumbers(int count, int stride)
{
    std::vector<int> numbers(std::size_t(count), 0);
    for (int n = 1; n < count; ++n) { numbers[std::size_t(n)] = (numbers[std::size_t(n) - 1] + stride) % count; }
    return numbers;
}

bool IsPermutation(std::vector<int> numbers)
{
    std::sort(numbers.begin(), numbers.end());
    for (std::size_t n = 0; n < numbers.size(); ++n) {
        if (numbers[n] != int(n)) {
            return false;
        }
    }
    return true;
}

std::int64_t SkylineEntriesOf(ModelStore model)
{
    model.EquationCount = DofsPerNode * model.NPOIN;
    BuildSkylineProfile(model);
    return SkylineEntries(model.ColumnHeight);
}

TEST(NodeRenumbering, BringsABadlyNumberedPlateBackToTheBandOfAGoodNumbering)
{
    ModelStore plate = Plate(20, 6);
    const std::int64_t natural = SkylineEntriesOf(plate);
    PermuteNodes(plate, ScatteredNumbers(plate.NPOIN, 52));
    const std::int64_t scattered = SkylineEntriesOf(plate);
    RenumberNodes(plate);
    EXPECT_GT(scattered, 5 * natural);
    EXPECT_LT(double(SkylineEntriesOf(plate)), 1.05 * double(natural));
}

TEST(NodeRenumbering, CountsTheEntriesOfTheSkyline)
{
    ModelStore plate = Plate(9, 4);
    PermuteNodes(plate, ScatteredNumbers(plate.NPOIN, 17));
    const std::int64_t before = SkylineEntriesOf(plate);
    const Renumbering renumbering = RenumberNodes(plate);
    EXPECT_EQ(renumbering.skylineEntriesBefore, before);
    EXPECT_EQ(renumbering.skylineEntriesAfter, SkylineEntriesOf(plate));
}

TEST(NodeRenumbering, LeavesNumbersThatItCannotBetter)
{
    MeshBuilder chain(Steel);
    for (int n = 0; n < 6; ++n) { chain.AddNode({double(n), 0.0, 0.0}); }
    for (int n = 0; n < 5; ++n) { chain.AddTube(n, n + 1, {0.0, 0.0, 1.0}, {0.1, 0.01}); }
    const ModelStore before = chain.Model();
    const Renumbering renumbering = RenumberNodes(chain.Model());
    EXPECT_EQ(chain.Model().BeamConnectivity, before.BeamConnectivity);
    EXPECT_EQ(chain.Model().NodeCoordinates, before.NodeCoordinates);
    EXPECT_EQ(renumbering.newNumber, (std::vector<int>{0, 1, 2, 3, 4, 5}));
    EXPECT_EQ(renumbering.skylineEntriesAfter, renumbering.skylineEntriesBefore);
}

TEST(NodeRenumbering, DoesNotChangeTheSolution)
{
    ModelStore scattered = Plate(8, 3);
    PermuteNodes(scattered, ScatteredNumbers(scattered.NPOIN, 11));
    ModelStore renumbered = scattered;
    const std::vector<int> newNumber = RenumberNodes(renumbered).newNumber;
    test::SolveSupported(scattered);
    test::SolveSupported(renumbered);

    double largest[2] = {}; // translation, rotation
    for (int n = 0; n < scattered.NPOIN; ++n) {
        for (const Dof dof : {DX, DY, DZ, RX, RY, RZ}) {
            largest[dof / 3] = std::max(largest[dof / 3], std::fabs(test::Displacement(scattered, n, dof)));
        }
    }
    for (int n = 0; n < scattered.NPOIN; ++n) {
        for (const Dof dof : {DX, DY, DZ, RX, RY, RZ}) {
            EXPECT_NEAR(test::Displacement(renumbered, newNumber[std::size_t(n)], dof),
                        test::Displacement(scattered, n, dof), 1e-8 * largest[dof / 3]); // condition number 1e7
        }
    }
}

TEST(NodeRenumbering, BackAndForthGivesTheSameModel)
{
    const ModelStore model = test::StoreOf(test::OneOfEachKind());
    ModelStore turned = model;
    const std::vector<int> numbers = {3, 0, 4, 1, 2}, inverse = {1, 3, 4, 0, 2};
    PermuteNodes(turned, numbers);
    EXPECT_EQ(turned.Restraints[2].node, 1);
    EXPECT_EQ(turned.NodalForces[0].node, 2);
    EXPECT_EQ(test::DifferentTable(model, turned), "nodes");
    PermuteNodes(turned, inverse);
    EXPECT_EQ(test::DifferentTable(model, turned), "");
}

TEST(NodeRenumbering, GivesEveryNumberOnce)
{
    ModelStore plate = Plate(13, 7);
    PermuteNodes(plate, ScatteredNumbers(plate.NPOIN, 31));
    EXPECT_TRUE(IsPermutation(ReverseCuthillMcKee(BuildNodeGraph(plate))));
}

} // namespace
} // namespace tarnvexo
