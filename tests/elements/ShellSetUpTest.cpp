#include "elements/ShellSetUp.h"

#include "support/ChildProcess.h"
#include "support/ElementTools.h"

#include <cmath>
#include <gtest/gtest.h>

namespace tarnvexo {
namespace {

using namespace test;

constexpr double E = 2.1e11, Mu = 0.3, T = 0.02, Density = 7850.0;

const std::array<Vector3, 4> Distorted = {{{0.3, 0.1, -0.2}, {2.2, 0.5, 0.4}, {1.9, 1.8, 1.1}, {0.1, 1.2, 0.9}}};

template <class Element> void ExpectAxesOfTheFirstThreeNodes(const Element& element)
{
    const Vector3 d12 = element.coordinates[1] - element.coordinates[0];
    const Vector3 d13 = element.coordinates[2] - element.coordinates[0];
    const Vector3* e = element.axes;
    EXPECT_NEAR(Dot(e[0], d12), Length(d12), 1e-15 * Length(d12));
    EXPECT_NEAR(Dot(e[2], d12), 0.0, 1e-15);
    EXPECT_NEAR(Dot(e[2], d13), 0.0, 1e-15);
    EXPECT_GT(Dot(e[1], d13), 0.0);
    for (int i = 0; i < 3; ++i) {
        EXPECT_NEAR(Dot(e[i], e[i]), 1.0, 1e-15);
        EXPECT_NEAR(Dot(e[i], e[(i + 1) % 3]), 0.0, 1e-15);
    }
    EXPECT_NEAR(Dot(Cross(e[0], e[1]), e[2]), 1.0, 1e-15);
}

TEST(QuadShellSetUp, UnitSquareInTheGlobalPlaneHasTheGlobalAxes)
{
    const auto quad = MakeQuad({{{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}}}, E, Mu, T);
    EXPECT_EQ(quad.axes[0], (Vector3{1.0, 0.0, 0.0}));
    EXPECT_EQ(quad.axes[1], (Vector3{0.0, 1.0, 0.0}));
    EXPECT_EQ(quad.axes[2], (Vector3{0.0, 0.0, 1.0}));
}

// From (0,0,0) over (1,0,0): the other way round the square below it. e1 stays, e2 and e3 turn over.
TEST(QuadShellSetUp, ClockwiseNodesTurnTheNormalAndTheSecondAxisOver)
{
    const auto quad = MakeQuad({{{0, 1, 0}, {1, 1, 0}, {1, 0, 0}, {0, 0, 0}}}, E, Mu, T);
    EXPECT_EQ(quad.axes[0], (Vector3{1.0, 0.0, 0.0}));
    EXPECT_EQ(quad.axes[1], (Vector3{0.0, -1.0, 0.0}));
    EXPECT_EQ(quad.axes[2], (Vector3{0.0, 0.0, -1.0}));
}

TEST(QuadShellSetUp, AxesFollowTheFirstEdgeAndTheFirstThreeNodes)
{
    ExpectAxesOfTheFirstThreeNodes(MakeQuad(Distorted, E, Mu, T));
}

TEST(QuadShellSetUp, FourthNodeOffThePlaneDoesNotTurnTheAxes)
{
    std::array<Vector3, 4> warped = Distorted;
    warped[3] = warped[3] + Vector3{0.4, -0.3, 0.8};
    const auto flat = MakeQuad(Distorted, E, Mu, T), quad = MakeQuad(warped, E, Mu, T);
    for (int i = 0; i < 3; ++i) { EXPECT_EQ(quad.axes[i], flat.axes[i]); }
}

TEST(QuadShellSetUp, StoresCoordinatesMaterialAndThickness)
{
    const auto quad = MakeQuad(Distorted, E, Mu, T, Density);
    for (int i = 0; i < QuadNodeCount; ++i) { EXPECT_EQ(quad.coordinates[i], Distorted[i]); }
    EXPECT_EQ(quad.E, E);
    EXPECT_EQ(quad.Mu, Mu);
    EXPECT_EQ(quad.thickness, T);
    EXPECT_EQ(quad.Density, Density);
}

TEST(QuadShellSetUp, ElementIsMadeOfSteelInTonnesPerCubicMillimetreBefore)
{
    EXPECT_EQ(QuadShellElement().Density, 7.85e-9);
}

TEST(QuadShellSetUp, WrongNodeCountIsReportedAndTheElementSetUpAllTheSame)
{
    const auto run = RunInChild([] {
        QuadShellElement quad;
        QuadShellSetUp(quad, Distorted.data(), 3, E, Mu, Density, T);
        std::exit(quad.coordinates[3] == Distorted[3] && quad.thickness == T && quad.axes[0][0] != 0.0 ? 7 : 8);
    });
    EXPECT_EQ(run.output, "\xB4\xED\xCE\xF3!\n");
    EXPECT_EQ(run.exitCode, 7);
}

TEST(QuadShellSetUp, RightNodeCountIsSilent)
{
    EXPECT_EQ(RunInChild([] { MakeQuad(Distorted, E, Mu, T); }).output, "");
}

TEST(QuadShellSetUp, CoincidentOrCollinearFirstNodesHaveNoAxes)
{
    const auto coincident = MakeQuad({{{1, 2, 3}, {1, 2, 3}, {2, 2, 3}, {2, 3, 3}}}, E, Mu, T);
    const auto collinear = MakeQuad({{{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {0, 1, 0}}}, E, Mu, T);
    EXPECT_FALSE(std::isfinite(coincident.axes[0][0]));
    EXPECT_FALSE(std::isfinite(collinear.axes[2][2]));
}

TEST(TriShellSetUp, AxesFollowTheRuleOfTheQuadrilateral)
{
    const auto tri = MakeTri({Distorted[0], Distorted[1], Distorted[2]}, E, Mu, T);
    const auto quad = MakeQuad(Distorted, E, Mu, T);
    ExpectAxesOfTheFirstThreeNodes(tri);
    for (int i = 0; i < 3; ++i) { EXPECT_EQ(tri.axes[i], quad.axes[i]); }
}

TEST(TriShellSetUp, StoresCoordinatesMaterialAndThickness)
{
    const auto tri = MakeTri({Distorted[0], Distorted[1], Distorted[2]}, E, Mu, T, Density);
    for (int i = 0; i < TriNodeCount; ++i) { EXPECT_EQ(tri.coordinates[i], Distorted[i]); }
    EXPECT_EQ(tri.E, E);
    EXPECT_EQ(tri.Mu, Mu);
    EXPECT_EQ(tri.thickness, T);
    EXPECT_EQ(tri.Density, Density);
}

TEST(TriShellSetUp, WrongNodeCountIsReported)
{
    const auto run = RunInChild([] {
        TriShellElement tri;
        TriShellSetUp(tri, Distorted.data(), 4, E, Mu, T, Density);
    });
    EXPECT_EQ(run.output, "\xB4\xED\xCE\xF3!\n");
}

} // namespace
} // namespace tarnvexo
