#include "elements/QuadGeometry.h"

#include <cmath>
#include <gtest/gtest.h>

namespace tarnvexo {
namespace {

constexpr double X[4] = {0.0, 2.1, 1.7, -0.3}, Y[4] = {0.0, 0.2, 1.4, 1.1};

TEST(EvaluateQuad, ShapeFunctionsAreOneAtTheirNodeAndZeroAtTheOthers)
{
    for (int j = 0; j < QuadNodeCount; ++j) {
        const QuadPoint point = EvaluateQuad(X, Y, QuadNodeXi[j], QuadNodeEta[j]);
        for (int i = 0; i < QuadNodeCount; ++i) { EXPECT_EQ(point.N[i], i == j ? 1.0 : 0.0) << i << "," << j; }
    }
}

TEST(EvaluateQuad, ShapeFunctionsAddUpToOneAndTheirDerivativesToZero)
{
    const QuadPoint point = EvaluateQuad(X, Y, 0.37, -0.61);
    double N = 0.0, dx = 0.0, dy = 0.0;
    for (int i = 0; i < QuadNodeCount; ++i) {
        N += point.N[i];
        dx += point.dNdx[i];
        dy += point.dNdy[i];
    }
    EXPECT_NEAR(N, 1.0, 1e-15);
    EXPECT_NEAR(dx, 0.0, 1e-15);
    EXPECT_NEAR(dy, 0.0, 1e-15);
}

TEST(EvaluateQuad, NaturalDerivativesAreThoseOfTheShapeFunctions)
{
    const double xi = 0.37, eta = -0.61;
    const QuadPoint point = EvaluateQuad(X, Y, xi, eta);
    const double dxi[4] = {-(1 - eta), 1 - eta, 1 + eta, -(1 + eta)};
    const double deta[4] = {-(1 - xi), -(1 + xi), 1 + xi, 1 - xi};
    for (int i = 0; i < QuadNodeCount; ++i) {
        EXPECT_NEAR(point.dNdxi[i], 0.25 * dxi[i], 1e-16);
        EXPECT_NEAR(point.dNdeta[i], 0.25 * deta[i], 1e-16);
    }
}

// Gradient of f = 3 − 2x + 5y interpolated on a distorted element.
TEST(EvaluateQuad, GradientOfALinearFunctionIsExact)
{
    const QuadPoint point = EvaluateQuad(X, Y, 0.37, -0.61);
    double fx = 0.0, fy = 0.0;
    for (int i = 0; i < QuadNodeCount; ++i) {
        const double f = 3.0 - 2.0 * X[i] + 5.0 * Y[i];
        fx += point.dNdx[i] * f;
        fy += point.dNdy[i] * f;
    }
    EXPECT_NEAR(fx, -2.0, 1e-14);
    EXPECT_NEAR(fy, 5.0, 1e-14);
}

TEST(EvaluateQuad, DeterminantOfASquareIsAQuarterOfItsAreaEverywhere)
{
    const double a = 3.0, x[4] = {1.0, 4.0, 4.0, 1.0}, y[4] = {-2.0, -2.0, 1.0, 1.0};
    for (double xi : QuadGaussPoints) {
        for (double eta : QuadGaussPoints) {
            EXPECT_NEAR(EvaluateQuad(x, y, xi, eta).detJ, a * a / 4.0, 1e-15 * a * a);
        }
    }
}

TEST(EvaluateQuad, DeterminantIsNegativeForClockwiseNodes)
{
    const double x[4] = {X[0], X[3], X[2], X[1]}, y[4] = {Y[0], Y[3], Y[2], Y[1]};
    EXPECT_NEAR(EvaluateQuad(x, y, 0.2, 0.5).detJ, -EvaluateQuad(X, Y, 0.5, 0.2).detJ, 1e-15);
}

TEST(EvaluateQuad, CollapsedElementGivesNonFiniteDerivatives)
{
    const double x[4] = {0.0, 1.0, 2.0, 3.0}, y[4] = {};
    EXPECT_FALSE(std::isfinite(EvaluateQuad(x, y, 0.0, 0.0).dNdx[0]));
}

} // namespace
} // namespace tarnvexo
