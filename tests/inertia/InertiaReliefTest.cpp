#include "inertia/InertiaRelief.h"

#include "core/Console.h"
#include "elements/BeamSection.h"
#include "inertia/MassProperties.h"
#include "inertia/Solve3x3.h"
#include "inertia/StructureCentroid.h"
#include "support/ElementTools.h"
#include "support/MeshBuilder.h"
#include "support/ProgramRun.h"

#include <cmath>
#include <gtest/gtest.h>
#include <iomanip>
#include <sstream>
#include <string>

namespace tarnvexo {
namespace {

using namespace test;

const Material Steel = {2.1e11, 0.3, 7850.0};

// Balances the model and returns what the console showed, as UTF-8.
std::string Balance(ModelStore& model)
{
    FlushConsole();
    testing::internal::CaptureStdout();
    BalanceByInertiaRelief(model);
    FlushConsole();
    return GbkToUtf8(testing::internal::GetCapturedStdout());
}

// The origin moves to the centroid and the nodal forces go to GLOAD, as in a run.
ModelStore Prepared(ModelStore model)
{
    ShiftOrigin(model, -StructureCentroid(model));
    model.EquationCount = DofsPerNode * model.NPOIN;
    model.GLOAD.assign(model.EquationCount, 0.0);
    for (const NodalForce& force : model.NodalForces) {
        for (int k = 0; k < DofsPerNode; ++k) { model.GLOAD[DofsPerNode * force.node + k] += force.components[k]; }
    }
    return model;
}

// Sum of the magnitudes that cancel in the resultants: forces, and forces times the distance of their nodes.
struct Terms {
    double force = 0.0;
    double moment = 0.0;
};
Terms TermsOf(const ModelStore& model)
{
    Terms terms;
    for (int n = 0; n < model.NPOIN; ++n) {
        const double* load = &model.GLOAD[DofsPerNode * n];
        const double force = Length({load[DX], load[DY], load[DZ]});
        terms.force += force;
        terms.moment += force * Length(model.NodeCoordinates[n]) + Length({load[RX], load[RY], load[RZ]});
    }
    return terms;
}

void ExpectBalanced(const ModelStore& model, double relative)
{
    const LoadResultant resultant = ResultantOfLoads(model);
    const Terms terms = TermsOf(model);
    for (int k = 0; k < 3; ++k) {
        EXPECT_NEAR(resultant.force[k], 0.0, relative * terms.force) << "force " << k;
        EXPECT_NEAR(resultant.moment[k], 0.0, relative * terms.moment) << "moment " << k;
    }
}

constexpr double RoundOff = 1e-14;

// Skew plate of 3 x 2 parallelograms and a triangular fin at its end, out of its plane; asymmetric forces and moments.
// `spread` pulls the inner nodes about, so that the parallelograms become distorted quadrilaterals.
ModelStore PlateWithFin(double spread, const Frame& f = SkewFrame())
{
    MeshBuilder mesh(Steel);
    const Grid grid = AddGrid(mesh, 3, 2, 0.02, Cell::Quad, [&](int i, int j) {
        const double pull = i > 0 && i < 3 && j == 1 ? spread * (i - 1.4) : 0.0;
        return FromFrame(f, {4.0 + 1.1 * i + 0.3 * j + pull, -2.0 + 0.2 * i + 0.8 * j - 0.6 * pull, 7.0});
    });
    const int top = mesh.AddNode(FromFrame(f, {8.4, -1.0, 8.1}));
    mesh.AddTri({grid.At(3, 0), grid.At(3, 1), top}, 0.03);
    mesh.AddTri({grid.At(3, 1), grid.At(3, 2), top}, 0.03);
    mesh.AddForce(grid.At(0, 0), FromFrame(f, {100.0, -250.0, 500.0}));
    mesh.AddForce(grid.At(2, 1), FromFrame(f, {0.0, 80.0, -900.0}), FromFrame(f, {30.0, -45.0, 60.0}));
    mesh.AddForce(top, FromFrame(f, {-40.0, 300.0, 20.0}));
    return Prepared(mesh.Model());
}

TEST(ResultantOfLoads, AddsForcesTheirMomentsAndMomentsWithoutAnArm)
{
    ModelStore model;
    model.NPOIN = 2;
    model.NodeCoordinates = {{1.0, 2.0, 3.0}, {-4.0, 0.5, 0.0}};
    model.GLOAD = {10.0, 20.0, 30.0, 1.0, 2.0, 3.0, -5.0, 0.0, 7.0, 100.0, 200.0, 300.0};
    const LoadResultant sum = ResultantOfLoads(model);
    EXPECT_EQ(sum.force, (Vector3{5.0, 20.0, 37.0}));
    // (2·30 − 3·20, 3·10 − 1·30, 1·20 − 2·10) and (0.5·7, −(−4)·7, 0.5·5)
    EXPECT_EQ(sum.moment, (Vector3{0.0 + 3.5 + 101.0, 0.0 + 28.0 + 202.0, 0.0 + 2.5 + 303.0}));
}

TEST(BalanceByInertiaRelief, BalancesParallelogramsAndTrianglesToRoundOff)
{
    ModelStore model = PlateWithFin(0.0);
    Balance(model);
    ExpectBalanced(model, RoundOff);
}

// The six-point rule puts the mass centre of a distorted quadrilateral 5e-8 beside its centroid, no more.
TEST(BalanceByInertiaRelief, BalancesDistortedQuadrilateralsToTheShortDecimalsOfTheRule)
{
    ModelStore model = PlateWithFin(0.2);
    Balance(model);
    ExpectBalanced(model, 1e-8);
}

TEST(BalanceByInertiaRelief, LeavesNoMomentAboutAnyPoint)
{
    ModelStore model = PlateWithFin(0.0);
    Balance(model);
    ShiftOrigin(model, {3.0, -8.0, 5.0});
    ExpectBalanced(model, RoundOff);
}

TEST(BalanceByInertiaRelief, LoadsOfAnUnbalancedModelAreFarFromBalance)
{
    const ModelStore model = PlateWithFin(0.0);
    EXPECT_GT(Length(ResultantOfLoads(model).force), 0.1 * TermsOf(model).force);
    EXPECT_GT(Length(ResultantOfLoads(model).moment), 0.1 * TermsOf(model).moment);
}

// A pair of opposite forces along the line between two nodes.
TEST(BalanceByInertiaRelief, LeavesLoadsInEquilibriumUnchanged)
{
    ModelStore model = PlateWithFin(0.2);
    const Vector3 pull = 3.0 * (model.NodeCoordinates[10] - model.NodeCoordinates[2]);
    std::fill(model.GLOAD.begin(), model.GLOAD.end(), 0.0);
    for (int k = 0; k < 3; ++k) {
        model.GLOAD[DofsPerNode * 10 + k] = pull[k];
        model.GLOAD[DofsPerNode * 2 + k] = -pull[k];
    }
    const std::vector<double> before = model.GLOAD;
    Balance(model);
    EXPECT_LT(LargestDifference(before.data(), model.GLOAD.data(), model.EquationCount), RoundOff);
}

// Square of side 2 about the origin, mass 4; forces at a node without an element in the middle.
ModelStore SquareWithLooseNode()
{
    MeshBuilder mesh({2.1e11, 0.3, 2.0});
    mesh.AddNode({-1.0, -1.0, 0.0});
    mesh.AddNode({1.0, -1.0, 0.0});
    mesh.AddNode({1.0, 1.0, 0.0});
    mesh.AddNode({-1.0, 1.0, 0.0});
    mesh.AddNode({0.0, 0.0, 0.0});
    mesh.AddQuad({0, 1, 2, 3}, 0.5);
    return Prepared(mesh.Model());
}

TEST(BalanceByInertiaRelief, SingleForceAcceleratesTheMassAlongIt)
{
    ModelStore model = SquareWithLooseNode();
    model.GLOAD[DofsPerNode * 4 + DZ] = 12.0; // a = F/M = 3
    const std::string report = Balance(model);
    EXPECT_NE(report.find("模型平动加速度向量:\n              0\n              0\n              3\n"),
              std::string::npos)
        << report;
    for (int n = 0; n < 4; ++n) { EXPECT_NEAR(model.GLOAD[DofsPerNode * n + DZ], -3.0, 1e-14); }
    ExpectBalanced(model, RoundOff);
}

// Jzz = 4·(2² + 2²)/12 = 8/3, so α = 3 and each corner (mass matrix 1/9·(4 2 1 2)) gets ∓α/3.
TEST(BalanceByInertiaRelief, PureMomentGivesAnAngularAccelerationOnly)
{
    ModelStore model = SquareWithLooseNode();
    model.GLOAD[DofsPerNode * 4 + RZ] = 8.0;
    const std::string report = Balance(model);
    EXPECT_NE(report.find("模型平动加速度向量:\n              0\n              0\n              0\n"),
              std::string::npos)
        << report;
    EXPECT_NE(report.find("模型转动加速度向量:\n              0\n              0\n              3\n"),
              std::string::npos)
        << report;
    const double expected[4][2] = {{-1.0, 1.0}, {-1.0, -1.0}, {1.0, -1.0}, {1.0, 1.0}}; // −(α × r)/3
    for (int n = 0; n < 4; ++n) {
        EXPECT_NEAR(model.GLOAD[DofsPerNode * n + DX], expected[n][0], 1e-7);
        EXPECT_NEAR(model.GLOAD[DofsPerNode * n + DY], expected[n][1], 1e-7);
    }
    ExpectBalanced(model, RoundOff);
}

TEST(BalanceByInertiaRelief, RestrainedDirectionsAreBalancedLikeTheOthers)
{
    ModelStore free = PlateWithFin(0.2), held = PlateWithFin(0.2);
    held.Restraints = {{{1, 1, 1, 1, 1, 1}, 0}, {{0, 1, 1, 0, 0, 0}, 3}};
    held.NRN = 2;
    Balance(free);
    Balance(held);
    EXPECT_EQ(held.GLOAD, free.GLOAD);
}

TEST(BalanceByInertiaRelief, TurnsWithTheStructure)
{
    const Frame global = {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
    ModelStore plain = PlateWithFin(0.2, global), turned = PlateWithFin(0.2);
    Balance(plain);
    Balance(turned);
    std::vector<double> expected(plain.GLOAD.size());
    for (std::size_t i = 0; i < expected.size(); i += 3) {
        const Vector3 v = FromFrame(SkewFrame(), {plain.GLOAD[i], plain.GLOAD[i + 1], plain.GLOAD[i + 2]});
        std::copy(v.begin(), v.end(), &expected[i]);
    }
    EXPECT_LT(LargestDifference(expected.data(), turned.GLOAD.data(), turned.EquationCount), 1e-13);
}

// Two skew beams with offset sections beside the plate, all of one density.
ModelStore PlateWithBeams()
{
    MeshBuilder mesh(Steel);
    const Grid grid = AddGrid(mesh, 2, 1, 0.01, Cell::Quad, [](int i, int j) {
        return Vector3{1.0 * i, 0.2 * i + 0.7 * j, 0.0};
    });
    const int foot = mesh.AddNode({0.3, -1.2, -1.5});
    mesh.AddLBeam(grid.At(0, 0), foot, {1.0, 0.3, 0.0}, {0.2, 0.01, 0.1, 0.02}, 0.05, true);
    mesh.AddTube(grid.At(2, 1), foot, {0.0, 1.0, 0.0}, {0.05, 0.01});
    mesh.AddForce(foot, {100.0, 250.0, -500.0}, {40.0, 10.0, -20.0});
    mesh.AddForce(grid.At(1, 0), {-30.0, 10.0, 90.0});
    return Prepared(mesh.Model());
}

// Beams carry their torsional inertia at xx instead of their inertia about x: the moment about x keeps the difference
// times the angular acceleration about x. Everything else vanishes.
TEST(BalanceByInertiaRelief, BeamsLeaveTheMomentAboutXOfTheirReplacedInertia)
{
    ModelStore model = PlateWithBeams();
    const Vector3 alpha = Solve3x3(RotationalMass(model, ShellInertia(model)), ResultantOfLoads(model).moment);
    double difference = 0.0;
    for (const BeamElement& beam : model.BeamElements) {
        Vector3 frame[3];
        BeamFrame(beam, frame);
        const Vector3 e = BeamCentroidOffset(beam, frame), p = beam.node1 + e, q = beam.node2 + e, m = 0.5 * (p + q);
        const auto acrossX = [](const Vector3& r) { return r[1] * r[1] + r[2] * r[2]; };
        const double L = BeamLength(beam), mass = beam.Density * beam.section.A * L;
        difference += L * beam.Density * beam.section.J - mass / 6.0 * (acrossX(p) + 4.0 * acrossX(m) + acrossX(q));
    }
    Balance(model);
    const LoadResultant rest = ResultantOfLoads(model);
    const Terms terms = TermsOf(model);
    for (int k = 0; k < 3; ++k) { EXPECT_NEAR(rest.force[k], 0.0, RoundOff * terms.force); }
    EXPECT_NEAR(rest.moment[0], difference * alpha[0], RoundOff * terms.moment);
    EXPECT_NEAR(rest.moment[1], 0.0, RoundOff * terms.moment);
    EXPECT_NEAR(rest.moment[2], 0.0, RoundOff * terms.moment);
    EXPECT_GT(std::fabs(rest.moment[0]), 1e-3 * terms.moment);
}

// The origin is the centroid of the volume. With the mass centre at c beside it, the inertial loads have the moment of
// −M·a at c, and the force −α × M·c.
TEST(BalanceByInertiaRelief, SeveralDensitiesLeaveTheMomentOfTheMassCentre)
{
    ModelStore model = PlateWithFin(0.0);
    for (TriShellElement& tri : model.TriElements) { tri.Density = 2.0 * Steel.Density; }
    Vector3 moment = {};
    for (const auto& quad : model.QuadElements) {
        moment = moment + quad.Density * quad.thickness * QuadArea(quad) * QuadCentroid(quad);
    }
    for (const auto& tri : model.TriElements) {
        const Vector3* X = tri.coordinates;
        moment = moment + tri.Density * tri.thickness * TriArea(tri) / 3.0 * (X[0] + X[1] + X[2]);
    }
    const LoadResultant applied = ResultantOfLoads(model);
    const Vector3 a = applied.force / TotalMass(model),
                  alpha = Solve3x3(RotationalMass(model, ShellInertia(model)), applied.moment);
    Balance(model);
    const LoadResultant rest = ResultantOfLoads(model);
    const Terms terms = TermsOf(model);
    const Vector3 force = -Cross(alpha, moment), turning = -Cross(moment, a);
    for (int k = 0; k < 3; ++k) {
        EXPECT_NEAR(rest.force[k], force[k], RoundOff * terms.force);
        EXPECT_NEAR(rest.moment[k], turning[k], RoundOff * terms.moment);
    }
    EXPECT_GT(Length(rest.moment), 1e-3 * terms.moment);
}

TEST(BalanceByInertiaRelief, WithoutMassGivesNonFiniteLoads)
{
    ModelStore model = SquareWithLooseNode();
    model.QuadElements[0].Density = 0.0;
    model.GLOAD[DofsPerNode * 4 + DZ] = 12.0;
    Balance(model);
    EXPECT_FALSE(std::isfinite(model.GLOAD[DZ]));
}

TEST(BalanceByInertiaRelief, ListsANodeWithoutElementInBothLoadVectors)
{
    ModelStore model = SquareWithLooseNode();
    model.GLOAD[DofsPerNode * 4 + DX] = 7.5;
    const std::string report = Balance(model);
    const std::string value = "            7.5\n";
    const std::size_t before = report.find("平衡前GLOAD："), after = report.find("平衡后GLOAD：");
    EXPECT_LT(report.find(value, before), after);
    EXPECT_NE(report.find(value, after), std::string::npos);
}

// Rows of numbers as a default stream writes them in fields of 15.
std::string Rows(const double* values, int rows, int columns)
{
    std::ostringstream text;
    for (int i = 0; i < rows; ++i) {
        for (int j = 0; j < columns; ++j) { text << std::setw(15) << values[i * columns + j]; }
        text << "\n";
    }
    return text.str();
}

std::string Sums(const LoadResultant& r)
{
    std::ostringstream text;
    text << "sumFX=" << r.force[0] << "\nsumFY=" << r.force[1] << "\nsumFZ=" << r.force[2] << "\n";
    text << "sumMX=" << r.moment[0] << "\nsumMY=" << r.moment[1] << "\nsumMZ=" << r.moment[2] << "\n";
    return text.str();
}

TEST(BalanceByInertiaRelief, ReportsMassAccelerationsLoadsAndResultantsInItsFixedLayout)
{
    ModelStore model = PlateWithBeams();
    const ModelStore before = model;
    const double mass = TotalMass(before);
    const double translational[9] = {mass, 0.0, 0.0, 0.0, mass, 0.0, 0.0, 0.0, mass};
    const Matrix3 rotational = RotationalMass(before, ShellInertia(before));
    const LoadResultant applied = ResultantOfLoads(before);
    const Vector3 a = applied.force / mass, alpha = Solve3x3(rotational, applied.moment);
    const std::string report = Balance(model);

    std::ostringstream expected;
    expected << "模型总质量=" << mass << "\n"
             << "模型平动质量阵:\n"
             << Rows(translational, 3, 3) << "模型平动载荷向量:\n"
             << Rows(applied.force.data(), 3, 1) << "模型平动加速度向量:\n"
             << Rows(a.data(), 3, 1) << "模型转动质量阵:\n"
             << Rows(&rotational[0][0], 3, 3) << "模型转动载荷向量:\n"
             << Rows(applied.moment.data(), 3, 1) << "模型转动加速度向量:\n"
             << Rows(alpha.data(), 3, 1) << "平衡前GLOAD：\n"
             << Rows(before.GLOAD.data(), before.EquationCount, 1) << "平衡前结构受到的集中力合力:\n"
             << Sums(applied) << "平衡后GLOAD：\n"
             << Rows(model.GLOAD.data(), model.EquationCount, 1) << "平衡后结构受到的集中力合力:\n"
             << Sums(ResultantOfLoads(model));
    EXPECT_EQ(report, expected.str());
}

} // namespace
} // namespace tarnvexo
