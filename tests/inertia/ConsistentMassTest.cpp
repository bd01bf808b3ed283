#include "inertia/ConsistentMass.h"

#include "elements/BeamSection.h"
#include "elements/QuadGeometry.h"
#include "inertia/StructureCentroid.h"
#include "support/ElementTools.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>

namespace tarnvexo {
namespace {

using namespace test;

constexpr double T = 0.02, Density = 7850.0;
constexpr double X[4] = {0.0, 2.1, 1.7, -0.3}, Y[4] = {0.0, 0.2, 1.4, 1.1};

QuadShellElement Quad()
{
    const Frame frame = SkewFrame();
    return MakeQuad({FromFrame(frame, {X[0], Y[0], 0.7}), FromFrame(frame, {X[1], Y[1], 0.7}),
                     FromFrame(frame, {X[2], Y[2], 0.7}), FromFrame(frame, {X[3], Y[3], 0.7})},
                    1.0, 0.3, T, Density);
}

// The short decimals of the six-point rule leave 5e-8 of second moments.
constexpr double RuleError = 1e-7;

// 2 x 2 points integrate products of three bilinear functions exactly.
TEST(QuadMass, IsTheIntegralOfTheShapeFunctionsUpToTheShortDecimalsOfTheRule)
{
    double exact[4][4] = {}, m[4][4];
    for (double xi : QuadGaussPoints) {
        for (double eta : QuadGaussPoints) {
            const QuadPoint point = EvaluateQuad(X, Y, xi, eta);
            for (int i = 0; i < 4; ++i) {
                for (int j = 0; j < 4; ++j) { exact[i][j] += Density * T * point.detJ * point.N[i] * point.N[j]; }
            }
        }
    }
    QuadMass(Quad(), m);
    EXPECT_LT(LargestDifference(&exact[0][0], &m[0][0], 16), RuleError);
}

// Deliberate: 0.932469514, 0.661209386, 0.238619186 with 0.1713245, 0.3607616, 0.4679139. On a square of side 2 the
// entry of a node is the square of Σ w·¼(1 − x)².
constexpr double Abscissas[6] = {-0.932469514, -0.661209386, -0.238619186, 0.238619186, 0.661209386, 0.932469514};
constexpr double Weights[6] = {0.1713245, 0.3607616, 0.4679139, 0.4679139, 0.3607616, 0.1713245};

TEST(QuadMass, KeepsTheShortDecimalsOfTheRule)
{
    double sum = 0.0;
    for (int i = 0; i < 6; ++i) { sum += 0.25 * Weights[i] * (1.0 - Abscissas[i]) * (1.0 - Abscissas[i]); }
    double m[4][4];
    QuadMass(MakeQuad({{{0, 0, 0}, {2, 0, 0}, {2, 2, 0}, {0, 2, 0}}}, 1.0, 0.3, 1.0, 1.0), m);
    EXPECT_NEAR(m[0][0], sum * sum, 1e-15);
    EXPECT_GT(std::fabs(m[0][0] - 4.0 / 9.0), 1e-8); // the exact value is not what is used
}

// Convex; concave, det J changes its sign at one node; crossed, it changes it across the middle.
TEST(QuadMass, IsTheSumOverThePointsOfTheRuleWhetherTheDeterminantKeepsItsSignOrNot)
{
    const double xs[3][4] = {{0.0, 2.1, 1.7, -0.3}, {0.0, 2.0, 0.4, 0.0}, {0.0, 2.0, 0.0, 1.5}};
    const double ys[3][4] = {{0.0, 0.2, 1.4, 1.1}, {0.0, 0.0, 0.3, 2.0}, {0.0, 0.0, 1.3, 1.0}};
    const bool keepsSign[3] = {true, false, false};
    for (int shape = 0; shape < 3; ++shape) {
        SCOPED_TRACE(shape);
        const double *x = xs[shape], *y = ys[shape];
        double expected[4][4] = {}, m[4][4], smallest = 1.0, largest = -1.0;
        for (int p = 0; p < 6; ++p) {
            for (int q = 0; q < 6; ++q) {
                const QuadPoint point = EvaluateQuad(x, y, Abscissas[p], Abscissas[q]);
                smallest = std::min(smallest, point.detJ);
                largest = std::max(largest, point.detJ);
                const double weight = Density * T * std::fabs(point.detJ) * Weights[p] * Weights[q];
                for (int i = 0; i < 4; ++i) {
                    for (int j = 0; j < 4; ++j) { expected[i][j] += weight * point.N[i] * point.N[j]; }
                }
            }
        }
        QuadMass(MakeQuad({{{x[0], y[0], 0}, {x[1], y[1], 0}, {x[2], y[2], 0}, {x[3], y[3], 0}}}, 1.0, 0.3, T, Density),
                 m);
        EXPECT_EQ(smallest * largest > 0.0, keepsSign[shape]);
        EXPECT_LT(LargestDifference(&expected[0][0], &m[0][0], 16), 1e-14);
    }
}

TEST(QuadMass, AddsUpToTheMassOfTheElement)
{
    double m[4][4], sum = 0.0;
    QuadMass(Quad(), m);
    for (const auto& row : m) {
        for (double entry : row) { sum += entry; }
    }
    const double mass = Density * T * QuadArea(Quad());
    EXPECT_NEAR(sum, mass, 1e-14 * mass);
}

TEST(QuadMass, OfAWarpedElementIsThatOfItsProjection)
{
    QuadShellElement warped = Quad();
    warped.coordinates[3] = warped.coordinates[3] + 0.4 * warped.axes[2];
    double m[4][4], flat[4][4];
    QuadMass(warped, m);
    QuadMass(Quad(), flat);
    EXPECT_LT(LargestDifference(&flat[0][0], &m[0][0], 16), 1e-14);
}

TEST(QuadMass, ClockwiseLocalNodesHavePositiveMass)
{
    QuadShellElement turned = Quad();
    turned.axes[1] = -turned.axes[1];
    double m[4][4], plain[4][4];
    QuadMass(turned, m);
    QuadMass(Quad(), plain);
    EXPECT_LT(LargestDifference(&plain[0][0], &m[0][0], 16), 1e-14);
}

// ρ·t·A/12·(2 1 1 / 1 2 1 / 1 1 2)
TEST(TriMass, IsTheConsistentMassOfTheLinearTriangle)
{
    const auto tri = MakeTri({{{0.2, 0.1, 0.5}, {2.3, 0.6, -0.3}, {0.9, 1.8, 0.4}}}, 1.0, 0.3, T, Density);
    const double unit = Density * T * TriArea(tri) / 12.0;
    double m[3][3];
    TriMass(tri, m);
    for (int i = 0; i < 3; ++i) {
        for (int j = 0; j < 3; ++j) { EXPECT_NEAR(m[i][j], i == j ? 2.0 * unit : unit, 1e-15 * 12.0 * unit); }
    }
}

// ρ·A·L/6·(2 1 / 1 2)
TEST(BeamMass, IsTheConsistentMassOfATwoNodeBar)
{
    BeamElement beam;
    TubeBeamSetUp(beam, {1.0, 2.0, 3.0}, {2.0, 4.0, 5.0}, {1.0, 2.0, 9.0}, {1.0, 0.3, Density}, {0.05, 0.01}, 0.3);
    const double unit = Density * beam.section.A * 3.0 / 6.0;
    double m[2][2];
    BeamMass(beam, m);
    EXPECT_NEAR(m[0][0], 2.0 * unit, 1e-15 * unit);
    EXPECT_NEAR(m[1][1], 2.0 * unit, 1e-15 * unit);
    EXPECT_NEAR(m[0][1], unit, 1e-15 * unit);
    EXPECT_NEAR(m[1][0], unit, 1e-15 * unit);
}

} // namespace
} // namespace tarnvexo
