#include "app/AssemblyDriver.h"

#include "elements/BeamLoadVector.h"
#include "elements/BeamStiffness.h"
#include "elements/ShellPressureLoad.h"
#include "elements/ShellStiffness.h"
#include "inertia/StructureCentroid.h"
#include "platform/Platform.h"
#include "solver/SkylineProfile.h"
#include "solver/SkylineSolver.h"
#include "support/ChildProcess.h"
#include "support/SmallModels.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <gtest/gtest.h>

namespace tarnvexo {
namespace {

using test::ChildResult;
using test::ModelText;
using test::RunInChild;
using test::StoreOf;
using test::TemporaryDirectory;

// Profile and zeroed matrix as LayOutSkyline leaves them, without its line on the console.
void LayOut(ModelStore& model)
{
    model.EquationCount = DofsPerNode * model.NPOIN;
    BuildSkylineProfile(model);
    model.SkylineSize = int(SkylineEntries(model.ColumnHeight));
    model.DiagonalAddress = DiagonalAddresses(model.ColumnHeight);
    model.GlobalStiffness.assign(std::size_t(model.SkylineSize), 0.0);
}

ModelStore Assembled(const ModelText& text)
{
    ModelStore model = StoreOf(text);
    LayOut(model);
    AssembleStiffness(model);
    AssembleLoads(model);
    return model;
}

double Entry(const ModelStore& model, int i, int j)
{
    const int row = std::min(i, j), column = std::max(i, j);
    if (column - row >= model.ColumnHeight[std::size_t(column)]) {
        return 0.0;
    }
    return model.GlobalStiffness[std::size_t(model.DiagonalAddress[std::size_t(column)] + column - row)];
}

double Diagonal(const ModelStore& model, int equation)
{
    return Entry(model, equation, equation);
}

// Two quads, two triangles and two beams around six nodes; reversed: the two records of each kind change places.
ModelText Patchwork(bool reversed)
{
    ModelText text;
    text.Material(2.1e11, 0.3, 7850.0);
    text.Thickness(0.02);
    text.TSection(0.2, 0.01, 0.1, 0.012);
    for (const Vector3& p : {Vector3{0, 0, 0}, {1.1, 0, 0}, {2, 0.1, 0}, {0, 1, 0}, {1, 1.2, 0}, {2.1, 1, 0.2}}) {
        text.Node(p[0], p[1], p[2]);
    }
    const std::vector<std::array<int, 4>> quads = {{0, 1, 4, 3}, {1, 2, 5, 4}};
    const std::vector<std::array<int, 3>> tris = {{0, 4, 3}, {1, 5, 4}};
    const std::vector<std::array<int, 2>> beams = {{0, 1}, {5, 1}};
    const auto at = [reversed](std::size_t i) { return reversed ? 1 - i : i; };
    for (std::size_t i : {0u, 1u}) { text.Quad(quads[at(i)]); }
    for (std::size_t i : {0u, 1u}) { text.Tri(tris[at(i)]); }
    for (std::size_t i : {0u, 1u}) { text.Beam(beams[at(i)], {0, 0, 1}, 0, TSection, 0); }
    return text;
}

// Dense sum of the element matrices, both triangles.
std::vector<double> DenseStiffness(const ModelStore& model)
{
    const auto n = std::size_t(model.EquationCount);
    std::vector<double> K(n * n, 0.0);
    const auto add = [&](const double* Ke, const int* map, int size) {
        for (int i = 0; i < size; ++i) {
            for (int j = 0; j < size; ++j) { K[std::size_t(map[i]) * n + std::size_t(map[j])] += Ke[i * size + j]; }
        }
    };
    for (std::size_t e = 0; e < model.QuadElements.size(); ++e) {
        double Ke[QuadDofCount][QuadDofCount];
        int map[QuadDofCount];
        QuadShellStiffness(model.QuadElements[e], Ke);
        ElementDofMap<QuadNodeCount>(model.QuadConnectivity[e].data(), map);
        add(&Ke[0][0], map, QuadDofCount);
    }
    for (std::size_t e = 0; e < model.TriElements.size(); ++e) {
        double Ke[TriDofCount][TriDofCount];
        int map[TriDofCount];
        TriShellStiffness(model.TriElements[e], Ke);
        ElementDofMap<TriNodeCount>(model.TriConnectivity[e].data(), map);
        add(&Ke[0][0], map, TriDofCount);
    }
    for (std::size_t e = 0; e < model.BeamElements.size(); ++e) {
        double Ke[BeamDofCount][BeamDofCount];
        int map[BeamDofCount];
        BeamStiffness(model.BeamElements[e], Ke);
        ElementDofMap<BeamNodeCount>(model.BeamConnectivity[e].data(), map);
        add(&Ke[0][0], map, BeamDofCount);
    }
    return K;
}

// ---- stiffness

TEST(AssembleStiffness, EqualsTheDenseSumOfElementMatricesWhateverTheNodeOrder)
{
    const ModelStore model = Assembled(Patchwork(false));
    const std::vector<double> K = DenseStiffness(model);
    const double largest = *std::max_element(K.begin(), K.end());
    for (int i = 0; i < model.EquationCount; ++i) {
        for (int j = 0; j < model.EquationCount; ++j) {
            EXPECT_NEAR(Entry(model, i, j), K[std::size_t(i * model.EquationCount + j)], 1e-14 * largest)
                << i << ", " << j;
        }
    }
}

TEST(AssembleStiffness, AddsElementsThatShareANodeIntoTheSameDiagonal)
{
    ModelText both, first, second;
    for (ModelText* text : {&both, &first, &second}) {
        text->Material(2.1e11, 0.3, 1.0);
        text->CSection(0.1, 0.01);
        text->Node(0.0, 0.0, 0.0);
        text->Node(1.0, 0.0, 0.0);
        text->Node(2.5, 0.0, 0.5);
    }
    for (ModelText* text : {&both, &first}) { text->Beam({0, 1}, {0, 0, 1}, 0, CSection, 0); }
    for (ModelText* text : {&both, &second}) { text->Beam({1, 2}, {0, 0, 1}, 0, CSection, 0); }
    const ModelStore sum = Assembled(both), a = Assembled(first), b = Assembled(second);
    for (int k = 0; k < DofsPerNode; ++k) {
        EXPECT_GT(Diagonal(a, 6 + k), 0.0);
        EXPECT_GT(Diagonal(b, 6 + k), 0.0);
        EXPECT_EQ(Diagonal(sum, 6 + k), Diagonal(a, 6 + k) + Diagonal(b, 6 + k));
    }
}

// No entry of this mesh has more than two terms of one element type, so the order changes the last bits at most.
TEST(AssembleStiffness, InAnotherElementOrderGivesTheSameMatrix)
{
    const ModelStore model = Assembled(Patchwork(false)), reversed = Assembled(Patchwork(true));
    ASSERT_EQ(model.DiagonalAddress, reversed.DiagonalAddress);
    const double largest = *std::max_element(model.GlobalStiffness.begin(), model.GlobalStiffness.end());
    for (std::size_t i = 0; i < model.GlobalStiffness.size(); ++i) {
        EXPECT_NEAR(model.GlobalStiffness[i], reversed.GlobalStiffness[i], 1e-15 * largest);
    }
}

TEST(AssembleStiffness, OfBeamsOnlyIsThatOfItsBeams)
{
    ModelText text;
    text.Material(2.1e11, 0.3, 1.0);
    text.CSection(0.1, 0.01);
    text.Node(0.0, 0.0, 0.0);
    text.Node(1.0, 2.0, 0.5);
    text.Beam({1, 0}, {0, 0, 1}, 0, CSection, 0);
    const ModelStore model = Assembled(text);
    double K[BeamDofCount][BeamDofCount];
    BeamStiffness(model.BeamElements[0], K);
    for (int i = 0; i < BeamDofCount; ++i) {
        for (int j = i; j < BeamDofCount; ++j) {
            EXPECT_EQ(Entry(model, (i + 6) % 12, (j + 6) % 12), K[i][j]) << i << ", " << j; // node 1 comes first
        }
    }
}

// ---- loads

TEST(AssembleLoads, AddsEveryRecordOfANode)
{
    ModelText text = Patchwork(false);
    text.Force(2, {1, 2, 3, 4, 5, 6});
    text.Force(4, {0, 0, -7, 0, 0, 0});
    text.Force(2, {10, 20, 30, 40, 50, 60});
    const ModelStore model = Assembled(text);
    for (int i = 0; i < model.EquationCount; ++i) {
        const double expected = i / 6 == 2 ? 11.0 * (i % 6 + 1) : i == 26 ? -7.0 : 0.0;
        EXPECT_EQ(model.GLOAD[std::size_t(i)], expected) << "equation " << i;
    }
}

TEST(AssembleLoads, AddsEveryRecordOfAnElementToTheForcesOfItsNodes)
{
    ModelText text = test::OneOfEachKind(); // force of 100 along z at node 4, loads on all three elements
    text.QuadLoad(0, -1.0, 2.0, 4.0);
    text.TriLoad(0, 1.0, 1.0, 2.0);
    text.BeamLoad(0, 5.0, -6.0);
    const ModelStore model = Assembled(text);
    std::vector<double> expected(30, 0.0);
    expected[26] = 100.0;
    const auto add = [&](const int* nodes, int nodeCount, const double* f) {
        for (int i = 0; i < nodeCount; ++i) {
            for (int k = 0; k < 6; ++k) { expected[std::size_t(6 * nodes[i] + k)] += f[6 * i + k]; }
        }
    };
    for (int record : {0, 1}) {
        double f[QuadDofCount];
        QuadShellPressureLoad(model.QuadElements[0], model.QuadDistributedLoads[std::size_t(record)], f);
        add(model.QuadConnectivity[0].data(), QuadNodeCount, f);
    }
    for (int record : {0, 1}) {
        double f[TriDofCount];
        TriShellPressureLoad(model.TriElements[0], model.TriDistributedLoads[std::size_t(record)], f);
        add(model.TriConnectivity[0].data(), TriNodeCount, f);
    }
    for (int record : {0, 1}) {
        double f[BeamDofCount];
        BeamLoadVector(model.BeamElements[0], model.BeamDistributedLoads[std::size_t(record)], f);
        add(model.BeamConnectivity[0].data(), BeamNodeCount, f);
    }
    for (std::size_t i = 0; i < expected.size(); ++i) { EXPECT_EQ(model.GLOAD[i], expected[i]) << "equation " << i; }
    EXPECT_NE(model.GLOAD[2], 0.0);
}

TEST(AssembleLoads, WithoutForcesAndDistributedLoadsGivesZeros)
{
    ModelStore model = StoreOf(Patchwork(false));
    LayOut(model);
    model.GLOAD.assign(3, 1.0);
    AssembleLoads(model);
    EXPECT_EQ(model.GLOAD, std::vector<double>(36, 0.0));
}

// Zero loads need no acceleration: they stay zero through inertia relief.
TEST(AssembleGlobalSystem, WithoutLoadsKeepsThemZeroThroughInertiaRelief)
{
    const TemporaryDirectory directory;
    std::ofstream("fem_solving.txt") << Patchwork(false).Text();
    const ChildResult run = RunInChild([] {
        ModelStore model;
        AssembleGlobalSystem(model);
        std::exit(int(std::count(model.GLOAD.begin(), model.GLOAD.end(), 0.0)));
    });
    EXPECT_EQ(run.exitCode, 36);
}

// ---- supports

TEST(ApplyRestraints, ReplacesTheDiagonalOfFlagsThatAreOneOnly)
{
    ModelText text = Patchwork(false);
    text.Restrain(1, {1, 2, 0, -1, 1, 11});
    ModelStore model = Assembled(text);
    const ModelStore before = model;
    ApplyRestraints(model);
    for (int i = 0; i < model.EquationCount; ++i) {
        for (int j = i; j < model.EquationCount; ++j) {
            const bool restrained = i == j && (i == 6 + DX || i == 6 + RY);
            EXPECT_EQ(Entry(model, i, j), restrained ? 1e20 : Entry(before, i, j)) << i << ", " << j;
        }
    }
}

TEST(ApplyRestraints, OfAFlagOfTwoLeavesTheDirectionFree)
{
    ModelText text = Patchwork(false);
    text.Restrain(3, {2, 2, 2, 2, 2, 2});
    ModelStore model = Assembled(text);
    const std::vector<double> before = model.GlobalStiffness;
    ApplyRestraints(model);
    EXPECT_EQ(model.GlobalStiffness, before);
}

TEST(ApplyRestraints, GivesADiagonalThatWasZeroThePenaltyToo)
{
    ModelText text = Patchwork(false);
    text.Node(9.0, 9.0, 9.0); // node 6, without element
    text.Restrain(6);
    ModelStore model = Assembled(text);
    for (int k = 0; k < DofsPerNode; ++k) { EXPECT_EQ(Diagonal(model, 36 + k), 0.0); }
    ApplyRestraints(model);
    for (int k = 0; k < DofsPerNode; ++k) { EXPECT_EQ(Diagonal(model, 36 + k), 1e20); }
}

TEST(ApplyRestraints, OfSeveralRecordsForANodeAllAct)
{
    ModelText text = Patchwork(false);
    text.Restrain(2, {1, 0, 0, 0, 0, 0});
    text.Restrain(2, {0, 0, 1, 0, 0, 0});
    ModelStore model = Assembled(text);
    ApplyRestraints(model);
    EXPECT_EQ(Diagonal(model, 12 + DX), 1e20);
    EXPECT_NE(Diagonal(model, 12 + DY), 1e20);
    EXPECT_EQ(Diagonal(model, 12 + DZ), 1e20);
}

// Loads stay as they are, so a load on a restrained direction moves it by load / 1e20.
TEST(ApplyRestraints, LetsALoadOnARestrainedDirectionMoveItByLoadOverPenalty)
{
    ModelText text;
    text.Material(2.1e11, 0.3, 1.0);
    text.CSection(0.1, 0.01);
    text.Node(0.0, 0.0, 0.0);
    text.Node(1.0, 0.0, 0.0);
    text.Beam({0, 1}, {0, 0, 1}, 0, CSection, 0);
    text.Restrain(0);
    text.Restrain(1);
    text.Force(0, {3e4, 0, 0, 0, 0, 0});
    ModelStore model = Assembled(text);
    ApplyRestraints(model);
    EXPECT_EQ(model.GLOAD[0], 3e4);
    std::vector<double> u(12);
    const SkylineView matrix = {12, model.ColumnHeight.data(), model.DiagonalAddress.data(),
                                model.GlobalStiffness.data()};
    FactoriseSkyline(matrix);
    ForwardReduce(matrix, model.GLOAD.data());
    BackSubstitute(matrix, model.GLOAD.data(), u.data());
    EXPECT_NEAR(u[0], 3e4 / 1e20, 1e-9 * 3e-16); // stiffness/penalty is 1e-11
}

TEST(ApplyRestraints, RemovesNoEquation)
{
    ModelText text = Patchwork(false);
    for (int n : {0, 1, 2, 3, 4, 5}) { text.Restrain(n); }
    ModelStore model = StoreOf(text);
    LayOut(model);
    EXPECT_EQ(model.EquationCount, 36);
    EXPECT_EQ(model.ColumnHeight.size(), 36u);
}

// ---- skyline

ModelStore Chain(int nodes)
{
    ModelStore model;
    model.NPOIN = nodes;
    model.NELEM_B = nodes - 1;
    for (int n = 1; n < nodes; ++n) { model.BeamConnectivity.push_back({0, n}); }
    return model;
}

TEST(LayOutSkyline, TellsTheMemoryOfTheMatrixAndZeroesIt)
{
    const ChildResult run = RunInChild([] {
        ModelStore model = Chain(2); // heights 1 ... 12
        LayOutSkyline(model);
        const bool right = model.EquationCount == 12 && model.SkylineSize == 78 &&
                           model.GlobalStiffness == std::vector<double>(78, 0.0) && model.DiagonalAddress[11] == 66;
        std::exit(right ? 0 : 1);
    });
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.output, "The global stiffness matrix will occupy 5.81145e-07 GB of memory space.\n");
}

TEST(LayOutSkyline, OfAModelWithoutNodesIsEmpty)
{
    const ChildResult run = RunInChild([] {
        ModelStore model;
        LayOutSkyline(model);
        std::exit(model.EquationCount == 0 && model.SkylineSize == 0 && model.ColumnHeight.empty() ? 0 : 1);
    });
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.output, "The global stiffness matrix will occupy 0 GB of memory space.\n");
}

// n equations, every column up to the first: n·(n + 1)/2 entries.
TEST(LayOutSkyline, EndsTheRunWhenAddressesWouldOverflow)
{
    const ModelStore model = Chain(10923); // 65538 equations: the smallest such model above 2^31 - 1 entries
    const ChildResult run = RunInChild([&] {
        ModelStore copy = model;
        LayOutSkyline(copy);
    });
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.output, "The global stiffness matrix will occupy 16.0012 GB of memory space.\n");
    EXPECT_EQ(run.error,
              "fem_solving.txt: error: the skyline of the stiffness matrix has 2147647491 entries (16 GB)\n"
              "  expected: at most 2147483647 entries (32-bit addresses)\n"
              "  to do:    number the nodes so that connected nodes have close numbers, or coarsen the mesh\n");
}

TEST(LayOutSkyline, EndsTheRunWhenMemoryCannotHoldTheMatrix)
{
    const double entriesOfFreeMemory = double(platform::AvailableMemory()) / sizeof(double);
    if (1.5 * entriesOfFreeMemory > double(SkylineLimit)) {
        GTEST_SKIP() << "this machine has room for the largest skyline";
    }
    const ModelStore model = Chain(int(std::sqrt(2.0 * 1.2 * entriesOfFreeMemory) / 6));
    const ChildResult run = RunInChild([&] {
        ModelStore copy = model;
        LayOutSkyline(copy);
    });
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.error.find("fem_solving.txt: error: the skyline of the stiffness matrix has "), std::string::npos);
    EXPECT_NE(run.error.find("GB, the memory that is free now\n"), std::string::npos);
}

// ---- the whole assembly

// The origin lies at the centroid of the volume afterwards, and the drawing shows it so.
TEST(AssembleGlobalSystem, LeavesTheModelAboutItsCentroidReadyToSolve)
{
    const TemporaryDirectory directory;
    std::ofstream("fem_solving.txt") << test::OneOfEachKind().Text();
    const ModelStore plain = Assembled(test::OneOfEachKind());
    const Vector3 centroid = StructureCentroid(plain);
    const ChildResult run = RunInChild([&] {
        ModelStore model;
        AssembleGlobalSystem(model);
        bool right = model.StructureCentroid == centroid && model.NodeCoordinates[0] == Vector3{} - centroid &&
                     model.QuadElements[0].coordinates[0] == Vector3{} - centroid && model.EquationCount == 30 &&
                     Diagonal(model, DX) == 1e20 && model.GLOAD.size() == 30 && model.GLOAD[26] != 100.0;
        std::exit(right ? 0 : 1);
    });
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_TRUE(std::ifstream("structure.dxf").good());
    EXPECT_FALSE(std::ifstream("deformation.dxf").good());
}

} // namespace
} // namespace tarnvexo
