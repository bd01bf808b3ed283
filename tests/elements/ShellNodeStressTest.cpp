#include "elements/ShellNodeStress.h"

#include "elements/QuadGeometry.h"
#include "support/ElementTools.h"

#include <cmath>
#include <gtest/gtest.h>
#include <vector>

namespace tarnvexo {
namespace {

using namespace test;

constexpr double E = 2.1e11, Mu = 0.3, T = 0.02;
const std::array<Vector3, 4> QuadPlane = {{{0.0, 0.0, 0.0}, {2.1, 0.2, 0.0}, {1.7, 1.4, 0.0}, {-0.3, 1.1, 0.0}}};

// The plane of the elements: a skew one, in which x and y are the first two axes.
const Frame Plane = SkewFrame();

QuadShellElement Quad()
{
    return MakeQuad({FromFrame(Plane, QuadPlane[0]), FromFrame(Plane, QuadPlane[1]), FromFrame(Plane, QuadPlane[2]),
                     FromFrame(Plane, QuadPlane[3])},
                    E, Mu, T);
}

TriShellElement Tri()
{
    return MakeTri({FromFrame(Plane, QuadPlane[0]), FromFrame(Plane, QuadPlane[1]), FromFrame(Plane, QuadPlane[2])}, E,
                   Mu, T);
}

// Displacements of the nodes for a motion given in the plane.
template <int Nodes>
std::vector<double> Displaced(const ShellElement<Nodes>& element,
                              const std::function<Motion(double x, double y)>& local)
{
    return Displacements({element.coordinates, element.coordinates + Nodes}, [&](const Vector3& point) {
        const Vector3 p = IntoFrame(Plane, point);
        const Motion motion = local(p[0], p[1]);
        return Motion{FromFrame(Plane, motion.u), FromFrame(Plane, motion.rotation)};
    });
}

// Stress with components sx, sy, sxy in the plane, in global components.
std::array<double, 6> Global(double sx, double sy, double sxy)
{
    const auto component = [&](int i, int j) {
        return sx * Plane[0][i] * Plane[0][j] + sy * Plane[1][i] * Plane[1][j] +
               sxy * (Plane[0][i] * Plane[1][j] + Plane[1][i] * Plane[0][j]);
    };
    return {component(0, 0), component(1, 1), component(2, 2), component(0, 1), component(2, 0), component(1, 2)};
}

void ExpectStress(const double stress[StressCount], const std::array<double, 6>& expected, double scale)
{
    for (int i = 0; i < StressCount; ++i) { EXPECT_NEAR(stress[i], expected[i], 1e-13 * scale) << i; }
}

// Uniaxial tension along x: εx = σ/E, εy = −ν·σ/E; shear τ by γ = τ/G as v = γ·x.
Motion Tension(double x, double y)
{
    const double s = 3e6 / E, g = 1e6 * 2.0 * (1.0 + Mu) / E;
    return {{s * x, -Mu * s * y + g * x, 0.0}, {0.0, 0.0, 0.5 * g}};
}

// κx = M/D in cylindrical bending of a plate that is free to curl: σ = ±6·M/t² along x only.
Motion Bending(double x, double y)
{
    const double k = 1e-3;
    return {{0.0, 0.0, -0.5 * k * x * x + 0.5 * Mu * k * y * y}, {Mu * k * y, k * x, 0.0}};
}
constexpr double BendingStress = E * 1e-3 * T / 2.0;

TEST(QuadNodeStress, OfConstantMembraneStrainIsTheSameOnBothFacesAtEveryNode)
{
    const auto quad = Quad();
    const auto d = Displaced(quad, Tension);
    for (int n = 0; n < QuadNodeCount; ++n) {
        double positive[StressCount], negative[StressCount];
        QuadNodeStress(quad, positive, negative, d.data(), QuadNodeXi[n], QuadNodeEta[n]);
        ExpectStress(positive, Global(3e6, 0.0, 1e6), 3e6);
        ExpectStress(negative, Global(3e6, 0.0, 1e6), 3e6);
    }
}

// κx = ∂θy/∂x > 0 pulls at the face z = +t/2.
TEST(QuadNodeStress, OfConstantCurvatureIsOppositeOnTheTwoFaces)
{
    const auto quad = Quad();
    const auto d = Displaced(quad, Bending);
    for (int n = 0; n < QuadNodeCount; ++n) {
        double positive[StressCount], negative[StressCount];
        QuadNodeStress(quad, positive, negative, d.data(), QuadNodeXi[n], QuadNodeEta[n]);
        ExpectStress(positive, Global(BendingStress, 0.0, 0.0), BendingStress);
        ExpectStress(negative, Global(-BendingStress, 0.0, 0.0), BendingStress);
    }
}

TEST(TriNodeStress, OfConstantMembraneStrainIsTheSameOnBothFacesAtEveryNode)
{
    const auto tri = Tri();
    const auto d = Displaced(tri, Tension);
    const double corners[3][3] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
    for (const double(&L)[3] : corners) {
        double positive[StressCount], negative[StressCount];
        TriNodeStress(tri, positive, negative, d.data(), L);
        ExpectStress(positive, Global(3e6, 0.0, 1e6), 3e6);
        ExpectStress(negative, Global(3e6, 0.0, 1e6), 3e6);
    }
}

TEST(TriNodeStress, OfConstantCurvatureIsOppositeOnTheTwoFaces)
{
    const auto tri = Tri();
    const auto d = Displaced(tri, Bending);
    const double corners[3][3] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
    for (const double(&L)[3] : corners) {
        double positive[StressCount], negative[StressCount];
        TriNodeStress(tri, positive, negative, d.data(), L);
        ExpectStress(positive, Global(BendingStress, 0.0, 0.0), BendingStress);
        ExpectStress(negative, Global(-BendingStress, 0.0, 0.0), BendingStress);
    }
}

TEST(ShellNodeStress, DrillingRotationsGiveNoStress)
{
    const auto quad = Quad();
    const auto d = Displaced(quad, [](double x, double y) { return Motion{{}, {0.0, 0.0, 1.0 + x * y}}; });
    double positive[StressCount], negative[StressCount];
    QuadNodeStress(quad, positive, negative, d.data(), 1.0, -1.0);
    ExpectStress(positive, {}, E);
    ExpectStress(negative, {}, E);
}

TEST(EquivalentStress, OfUniaxialTensionIsTheTensionInAnyAxes)
{
    const double alongX[6] = {-5.0, 0.0, 0.0, 0.0, 0.0, 0.0};
    EXPECT_DOUBLE_EQ(EquivalentStress(alongX), 5.0);
    EXPECT_NEAR(EquivalentStress(Global(-5.0, 0.0, 0.0).data()), 5.0, 1e-14);
}

TEST(EquivalentStress, OfPureShearIsRootThreeTimesTheShear)
{
    for (const int shear : {TXY, TZX, TYZ}) {
        double stress[6] = {};
        stress[shear] = -2.0;
        EXPECT_DOUBLE_EQ(EquivalentStress(stress), 2.0 * std::sqrt(3.0));
    }
}

TEST(EquivalentStress, OfPressureFromAllSidesIsZero)
{
    const double stress[6] = {-7.0, -7.0, -7.0, 0.0, 0.0, 0.0};
    EXPECT_EQ(EquivalentStress(stress), 0.0);
}

} // namespace
} // namespace tarnvexo
