#include "inertia/BalanceSheet.h"

#include "core/Console.h"
#include "inertia/StructureCentroid.h"
#include "support/ElementTools.h"
#include "support/MeshBuilder.h"
#include "support/MixedStructure.h"

#include <cmath>
#include <gtest/gtest.h>
#include <vector>

namespace tarnvexo {
namespace {

using namespace test;

const Material Steel = {2.1e11, 0.3, 7850.0};
constexpr double RoundOff = 1e-13;

// The short decimals of the quadrilateral's rule leave 5e-8 of second moments.
constexpr double RuleError = 1e-7;

BalanceSheet Balance(ModelStore& model, BalanceKind kind = BalanceKind::Exact)
{
    return BalanceLoads(model, ShellInertia(model), kind);
}

MassSummary Summary(ModelStore model)
{
    MoveOriginToCentroid(model);
    return SummariseMass(model, MomentsOfMass(model, ShellInertia(model)));
}

void ExpectVector(const Vector3& v, const Vector3& expected, double tolerance)
{
    for (int k = 0; k < 3; ++k) { EXPECT_NEAR(v[k], expected[k], tolerance) << k; }
}

// Resultants are round-off of the loads before and after balancing, whichever is larger.
void ExpectBalanced(const ModelStore& model, const BalanceSheet& sheet)
{
    EXPECT_EQ(sheet.shortage, "");
    const LoadSizes balanced = SizesOfLoads(model);
    ExpectVector(sheet.remaining.force, {}, RoundOff * (sheet.forceSize + balanced.forces));
    ExpectVector(sheet.remaining.moment, {}, RoundOff * (sheet.momentSize + balanced.moments));
}

// Walls of a box a x b x c about its middle, along the frame, of one thickness.
ModelStore Box(const Frame& f, double a, double b, double c, const Vector3& middle)
{
    MeshBuilder mesh(Steel);
    const auto addWall = [&](const Vector3& centre, const Vector3& u, const Vector3& v) {
        AddGrid(mesh, 1, 1, 0.02, Cell::Quad,
                [&](int i, int j) { return middle + centre + (i - 0.5) * u + (j - 0.5) * v; });
    };
    for (const double side : {-0.5, 0.5}) {
        addWall(side * c * f[2], a * f[0], b * f[1]);
        addWall(side * a * f[0], b * f[1], c * f[2]);
        addWall(side * b * f[1], c * f[2], a * f[0]);
    }
    return mesh.Model();
}

const Frame Global = {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};

// 5/18·M·a² about every axis; the axes stay the global ones.
TEST(MassSummary, OfACubeOfWallsIsThatOfTheTextbook)
{
    const double a = 2.0, mass = 6.0 * a * a * 0.02 * Steel.Density;
    const MassSummary summary = Summary(Box(Global, a, a, a, {5.0, -3.0, 1.0}));
    EXPECT_NEAR(summary.mass, mass, 1e-14 * mass);
    ExpectVector(summary.volumeCentroid, {5.0, -3.0, 1.0}, 1e-14);
    ExpectVector(summary.centreOfGravity, {5.0, -3.0, 1.0}, 1e-14);
    for (int i = 0; i < 3; ++i) {
        EXPECT_NEAR(summary.principalMoments[i], 5.0 / 18.0 * mass * a * a, RuleError * mass * a * a);
    }
}

TEST(MassSummary, OfATurnedBoxHasItsEdgesAsPrincipalAxes)
{
    const Frame frame = SkewFrame();
    const MassSummary summary = Summary(Box(frame, 4.0, 2.0, 1.0, {5.0, -3.0, 1.0}));
    for (int i = 0; i < 3; ++i) { EXPECT_NEAR(std::fabs(Dot(summary.principalAxes[i], frame[i])), 1.0, 1e-14) << i; }
    const auto& [x, y, z] = summary.principalAxes;
    EXPECT_NEAR(Dot(Cross(x, y), z), 1.0, 1e-14);
    const MassSummary plain = Summary(Box(Global, 4.0, 2.0, 1.0, {}));
    ExpectVector(summary.principalMoments, plain.principalMoments, 1e-13 * plain.principalMoments[2]);
}

// Plates of 2 x 1 along x and 1 x 1 upright at its end, the upright one of three times the density: masses 2 : 3.
TEST(MassSummary, OfAnAngleOfTwoDensitiesIsThatByHand)
{
    MeshBuilder mesh(Steel);
    AddGrid(mesh, 2, 1, 0.1, Cell::Quad, [](int i, int j) { return Vector3{1.0 * i, 1.0 * j, 0.0}; });
    AddGrid(mesh, 1, 1, 0.1, Cell::Quad, [](int i, int j) { return Vector3{2.0, 1.0 * j, 1.0 * i}; });
    mesh.Model().QuadElements[2].Density *= 3.0;
    const double unit = 0.1 * Steel.Density; // mass of one square of the light plate
    const MassSummary summary = Summary(mesh.Model());
    EXPECT_NEAR(summary.mass, 5.0 * unit, 1e-13 * unit);
    ExpectVector(summary.volumeCentroid, {4.0 / 3.0, 0.5, 1.0 / 6.0}, 1e-14);
    ExpectVector(summary.centreOfGravity, {8.0 / 5.0, 0.5, 0.3}, 1e-14);
    // Own tensors and Steiner's terms: distances of the two centres 0.6, 0.3 and 0.4, 0.2 along x and z.
    const double xx = 2.0 / 12 + 2.0 * 0.09 + 3.0 * 2.0 / 12 + 3.0 * 0.04;
    const double yy = 2.0 * 4.0 / 12 + 2.0 * (0.36 + 0.09) + 3.0 / 12 + 3.0 * (0.16 + 0.04);
    const double zz = 2.0 * 5.0 / 12 + 2.0 * 0.36 + 3.0 / 12 + 3.0 * 0.16;
    const double xz = -(2.0 * 0.6 * 0.3 + 3.0 * 0.4 * 0.2);
    const double expected[9] = {xx, 0.0, xz, 0.0, yy, 0.0, xz, 0.0, zz};
    for (int i = 0; i < 9; ++i) {
        EXPECT_NEAR(summary.inertia[i / 3][i % 3], expected[i] * unit, RuleError * unit) << i;
    }
}

// Rods along x, y or z: M·L²/12 across, nothing along; the centre stands at the section's centroid.
TEST(MassSummary, OfATeeBeamIsThatOfARodThroughItsCentroids)
{
    for (int axis = 0; axis < 3; ++axis) {
        Vector3 end = {}, up = {};
        end[axis] = 3.0;
        up[(axis + 1) % 3] = 1.0;
        MeshBuilder mesh(Steel);
        mesh.AddNode({});
        mesh.AddNode(end);
        mesh.AddTBeam(0, 1, up, {0.3, 0.01, 0.2, 0.02}, 0.05);
        const BeamElement& beam = mesh.Model().BeamElements[0];
        const double mass = 3.0 * beam.section.A * Steel.Density;
        const MassSummary summary = Summary(mesh.Model());
        EXPECT_NEAR(summary.mass, mass, 1e-14 * mass);
        ExpectVector(summary.centreOfGravity, 0.5 * end + beam.section.ez * up, 1e-14);
        ExpectVector(summary.principalMoments, {0.0, mass * 9.0 / 12, mass * 9.0 / 12}, 1e-14 * mass);
        EXPECT_EQ(summary.principalAxes[0], end / 3.0);
    }
}

// −A·q of the moments is the resultant of the loads themselves.
TEST(InertialResultant, IsThatOfTheInertialLoads)
{
    ModelStore model = MixedStructure().Model();
    MoveOriginToCentroid(model);
    const std::vector<NodeInertia> inertia = ShellInertia(model);
    const RigidAcceleration q = {{1.5, -0.8, 2.0}, {0.7, -1.2, 0.4}};
    model.GLOAD.assign(std::size_t(DofsPerNode) * model.NPOIN, 0.0);
    AddInertialLoads(model, inertia, q, model.GLOAD);
    const LoadResultant expected = ResultantOfLoads(model);
    const LoadSizes sizes = SizesOfLoads(model);
    const LoadResultant resultant = InertialResultant(MomentsOfMass(model, inertia), q);
    ExpectVector(resultant.force, expected.force, 1e-14 * sizes.forces);
    ExpectVector(resultant.moment, expected.moment, 1e-14 * sizes.moments);
}

TEST(BalanceLoads, TheExactWayLeavesNothingWhateverTheStructureAndTheLoads)
{
    for (const unsigned seed : {1u, 2u, 3u, 4u, 5u}) {
        ModelStore model = MixedStructure().Model();
        MoveOriginToCentroid(model);
        LoadAtRandom(model, seed);
        const BalanceSheet sheet = Balance(model);
        ExpectBalanced(model, sheet);
        // The twin: the classic way leaves a good part.
        EXPECT_GT(Length(sheet.classicRemaining.moment), 1e-3 * sheet.momentSize);
    }
}

TEST(BalanceLoads, TheExactWayLeavesNoMomentAboutAnyPoint)
{
    ModelStore model = MixedStructure().Model();
    MoveOriginToCentroid(model);
    LoadAtRandom(model, 7);
    Balance(model);
    ShiftOrigin(model, {30.0, -8.0, 5.0});
    const LoadResultant rest = ResultantOfLoads(model);
    ExpectVector(rest.moment, {}, RoundOff * SizesOfLoads(model).moments);
}

// Axis by axis: unit forces and moments on beams along x, y, z and askew.
TEST(BalanceLoads, TheExactWayBalancesBeamsInAnyDirection)
{
    for (const Vector3& direction : {Vector3{1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {1, -2, 0.5}}) {
        MeshBuilder mesh(Steel);
        mesh.AddNode({});
        mesh.AddNode(2.0 * direction);
        mesh.AddNode({1.0, 1.0, 1.0});
        mesh.AddTBeam(0, 1, {0.3, 0.2, 1.1}, {0.3, 0.01, 0.2, 0.02}, 0.05);
        mesh.AddTBeam(1, 2, {0.3, -0.9, 0.1}, {0.3, 0.01, 0.2, 0.02}, 0.05);
        ModelStore model = mesh.Model();
        MoveOriginToCentroid(model);
        for (int k = 0; k < DofsPerNode; ++k) {
            model.GLOAD.assign(std::size_t(DofsPerNode) * model.NPOIN, 0.0);
            model.GLOAD[DofsPerNode + k] = 1.0;
            ExpectBalanced(model, Balance(model));
        }
    }
}

TEST(BalanceLoads, TheClassicWayAndWhatItLeavesAreThoseOfTheConsoleRun)
{
    ModelStore console = MixedStructure().Model();
    MoveOriginToCentroid(console);
    LoadAtRandom(console, 3);
    ModelStore classic = console, exact = console;
    testing::internal::CaptureStdout();
    BalanceByInertiaRelief(console);
    FlushConsole();
    testing::internal::GetCapturedStdout();
    const BalanceSheet sheet = Balance(classic, BalanceKind::Classic);
    EXPECT_EQ(classic.GLOAD, console.GLOAD);

    const LoadResultant rest = ResultantOfLoads(console);
    const LoadSizes sizes = SizesOfLoads(console);
    EXPECT_EQ(sheet.remaining.moment, rest.moment);
    for (const BalanceSheet& either : {sheet, Balance(exact)}) {
        ExpectVector(either.classicRemaining.force, rest.force, RoundOff * sizes.forces);
        ExpectVector(either.classicRemaining.moment, rest.moment, RoundOff * sizes.moments);
    }
    EXPECT_NEAR(sheet.relativeMoment, Length(rest.moment) / sheet.momentSize, 1e-15);
}

// Shells of one density, triangles and parallelograms: the volume's centroid is the centre of gravity.
TEST(BalanceLoads, TheExactAccelerationsOfShellsOfOneDensityAreTheClassicOnes)
{
    MeshBuilder mesh(Steel);
    const Grid grid = AddGrid(mesh, 3, 2, 0.02, Cell::TriAlternating, [](int i, int j) {
        return FromFrame(SkewFrame(), {4.0 + 1.1 * i, -2.0 + 0.2 * i * j + 0.8 * j, 7.0 + 0.3 * i * i});
    });
    ASSERT_EQ(grid.columns, 3);
    ModelStore model = mesh.Model();
    MoveOriginToCentroid(model);
    LoadAtRandom(model, 9);
    const BalanceSheet sheet = Balance(model);
    ExpectBalanced(model, sheet);
    ExpectVector(sheet.applied.a, sheet.classic.a, 1e-12 * Length(sheet.classic.a));
    ExpectVector(sheet.applied.alpha, sheet.classic.alpha, 1e-12 * Length(sheet.classic.alpha));
}

TEST(BalanceLoads, TheSheetTellsTheAppliedLoadsAboutCentroidAndOrigin)
{
    ModelStore model = MixedStructure().Model();
    model.GLOAD.assign(std::size_t(DofsPerNode) * model.NPOIN, 0.0);
    model.GLOAD[DofsPerNode * 2 + DY] = -3.0;
    const LoadResultant aboutOrigin = ResultantOfLoads(model);
    MoveOriginToCentroid(model);
    const LoadResultant aboutCentroid = ResultantOfLoads(model);
    const double arm = Length(model.NodeCoordinates[2]);
    const BalanceSheet sheet = Balance(model);
    EXPECT_EQ(sheet.appliedAboutCentroid.moment, aboutCentroid.moment);
    ExpectVector(sheet.appliedAboutOrigin.force, aboutOrigin.force, 0.0);
    ExpectVector(sheet.appliedAboutOrigin.moment, aboutOrigin.moment, 1e-14 * Length(aboutOrigin.moment));
    EXPECT_DOUBLE_EQ(sheet.forceSize, 3.0);
    EXPECT_DOUBLE_EQ(sheet.momentSize, 3.0 * arm);
}

// A straight line of beams: a force through it and a moment across are balanced, a moment about it cannot be.
TEST(BalanceLoads, AMomentAboutALineOfMassIsLeftAndReported)
{
    MeshBuilder mesh(Steel);
    for (int i = 0; i <= 3; ++i) { mesh.AddNode({1.0 * i, 2.0 * i, -0.5 * i}); }
    for (int i = 0; i < 3; ++i) { mesh.AddTube(i, i + 1, {0.0, 0.0, 1.0}, {0.05, 0.01}); }
    ModelStore model = mesh.Model();
    MoveOriginToCentroid(model);
    const Vector3 line = Normalised(Vector3{1.0, 2.0, -0.5}), across = Cross(line, Vector3{0.0, 0.0, 1.0});
    for (const double twist : {0.0, 1e-3}) {
        model.GLOAD.assign(std::size_t(DofsPerNode) * model.NPOIN, 0.0);
        model.GLOAD[DZ] = 5.0;
        for (int k = 0; k < 3; ++k) { model.GLOAD[DofsPerNode + RX + k] = 2.0 * across[k] + twist * line[k]; }
        const BalanceSheet sheet = Balance(model);
        EXPECT_EQ(sheet.shortage, "");
        EXPECT_NEAR(Dot(sheet.applied.alpha, line), 0.0, 1e-12 * Length(sheet.applied.alpha));
        if (twist == 0.0) {
            ExpectBalanced(model, sheet);
            EXPECT_EQ(sheet.aboutLine, "");
        } else {
            EXPECT_EQ(
                sheet.aboutLine.find("all mass stands on one line, and the loads turn about it with the moment 0.001"),
                0u)
                << sheet.aboutLine;
            EXPECT_NE(sheet.aboutLine.find("to do:"), std::string::npos);
            ExpectVector(sheet.remaining.force, {}, 1e-13 * sheet.forceSize);
            ExpectVector(sheet.remaining.moment, twist * line, 1e-13 * sheet.momentSize);
        }
    }
}

TEST(BalanceLoads, WithoutMassIsReportedUnlessThereIsNothingToBalance)
{
    ModelStore model = MixedStructure().Model();
    for (QuadShellElement& quad : model.QuadElements) { quad.Density = 0.0; }
    for (TriShellElement& tri : model.TriElements) { tri.Density = 0.0; }
    for (BeamElement& beam : model.BeamElements) { beam.Density = 0.0; }
    MoveOriginToCentroid(model);
    model.GLOAD.assign(std::size_t(DofsPerNode) * model.NPOIN, 0.0);
    EXPECT_EQ(Balance(model).shortage, "");
    model.GLOAD[DX] = 1.0;
    const BalanceSheet sheet = Balance(model);
    EXPECT_EQ(sheet.shortage.find("the structure has the mass 0, which cannot balance its loads"), 0u)
        << sheet.shortage;
    EXPECT_EQ(sheet.mass.centreOfGravity, sheet.mass.volumeCentroid);
    EXPECT_EQ(model.GLOAD[DX], 1.0);
}

} // namespace
} // namespace tarnvexo
