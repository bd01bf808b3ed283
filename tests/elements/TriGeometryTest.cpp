#include "elements/TriGeometry.h"

#include <cmath>
#include <gtest/gtest.h>

namespace tarnvexo {
namespace {

constexpr double X[3] = {0.2, 2.3, 0.9}, Y[3] = {0.1, 0.6, 1.8};
const double Area = 0.5 * ((X[1] - X[0]) * (Y[2] - Y[0]) - (X[2] - X[0]) * (Y[1] - Y[0]));

TEST(EvaluateTri, AreaIsThatOfTheTriangleAndPositiveEvenForClockwiseNodes)
{
    const double x[3] = {X[0], X[2], X[1]}, y[3] = {Y[0], Y[2], Y[1]};
    EXPECT_NEAR(EvaluateTri(X, Y).area, Area, 1e-15);
    EXPECT_NEAR(EvaluateTri(x, y).area, Area, 1e-15);
}

// ∂Li/∂x = (yj − yk)/(2A), ∂Li/∂y = (xk − xj)/(2A)
TEST(EvaluateTri, GradientOfALinearFunctionIsExact)
{
    const TriGeometry g = EvaluateTri(X, Y);
    double fx = 0.0, fy = 0.0;
    for (int i = 0; i < TriNodeCount; ++i) {
        const double f = 3.0 - 2.0 * X[i] + 5.0 * Y[i];
        fx += g.dLdx[i] * f;
        fy += g.dLdy[i] * f;
    }
    EXPECT_NEAR(fx, -2.0, 1e-14);
    EXPECT_NEAR(fy, 5.0, 1e-14);
}

TEST(EvaluateTri, CollapsedElementGivesNonFiniteDerivatives)
{
    const double x[3] = {0.0, 1.0, 2.0}, y[3] = {};
    EXPECT_FALSE(std::isfinite(EvaluateTri(x, y).dLdy[0]));
}

// ∫ Li² dA = A/6, ∫ Li·Lj dA = A/12
TEST(TriMidsides, IntegrateProductsOfAreaCoordinatesExactly)
{
    for (int i = 0; i < TriNodeCount; ++i) {
        for (int j = 0; j < TriNodeCount; ++j) {
            double mean = 0.0;
            for (const double(&L)[TriNodeCount] : TriMidsides) { mean += L[i] * L[j] / TriMidsideCount; }
            EXPECT_NEAR(mean, i == j ? 1.0 / 6.0 : 1.0 / 12.0, 1e-16) << i << "," << j;
        }
    }
}

} // namespace
} // namespace tarnvexo
