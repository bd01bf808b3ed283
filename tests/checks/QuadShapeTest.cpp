#include "checks/QuadShape.h"

#include "checks/Angles.h"
#include "elements/QuadGeometry.h"
#include "elements/ShellSetUp.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <gtest/gtest.h>

namespace tarnvexo {
namespace {

using Corners = std::array<Vector3, QuadNodeCount>;

// A distorted and warped quadrilateral without a corner that points inwards.
constexpr Corners Distorted = {{{0.0, 0.0, 0.1}, {2.1, 0.2, 0.0}, {1.7, 1.4, 0.3}, {-0.3, 1.1, 0.0}}};

QuadShape Measure(const Corners& corners)
{
    return MeasureQuad(corners.data());
}

double TaperOf(const Corners& corners)
{
    int corner = -1;
    return Taper(Measure(corners), corner);
}

std::array<double, QuadNodeCount> AnglesOf(const Corners& corners)
{
    std::array<double, QuadNodeCount> angles;
    QuadCornerAngles(Measure(corners), angles.data());
    return angles;
}

// Turned by a rotation about a skew axis (Rodrigues), scaled and moved.
Corners Moved(const Corners& corners, double scale)
{
    const Vector3 axis = Normalised({1.0, -2.0, 0.5});
    const double c = std::cos(0.7), s = std::sin(0.7);
    Corners moved;
    for (int i = 0; i < QuadNodeCount; ++i) {
        const Vector3& x = corners[i];
        const Vector3 turned = c * x + s * Cross(axis, x) + ((1.0 - c) * Dot(axis, x)) * axis;
        moved[i] = scale * (turned + Vector3{3.0, -1.0, 2.0});
    }
    return moved;
}

TEST(QuadShape, WarpingOfASquareWithCornersUpAndDownIsThatOfItsHalves)
{
    // Corners of a square of side 1 at z = +h, −h, +h, −h. Corner 2 lies 2h below the diagonal 1–3 and ½√2 beside it,
    // so does corner 4 on the other side: each half slopes by atan(2h/(½√2)).
    const double h = 0.05;
    const Corners square = {{{0, 0, h}, {1, 0, -h}, {1, 1, h}, {0, 1, -h}}};
    const double slope = std::atan(2.0 * h / std::sqrt(0.5));
    EXPECT_NEAR(WarpingAngle(Measure(square)), 2.0 * slope * DegreesPerRadian, 1e-12);
}

TEST(QuadShape, WarpingOfAFlatQuadrilateralIsZero)
{
    const Corners flat = {{{0, 0, 1}, {2.1, 0.2, 1}, {1.7, 1.4, 1}, {-0.3, 1.1, 1}}};
    EXPECT_EQ(WarpingAngle(Measure(flat)), 0.0);
}

TEST(QuadShape, WarpingTakesTheDiagonalWithTheLargerAngle)
{
    // A kite with corner 4 raised by h: the half 1-3-4 slopes by atan(h/1) against 1-2-3, those at the other diagonal
    // by less, as corners 1 and 3 are three times as far from it.
    const double h = 0.2;
    const Corners kite = {{{-3, 0, 0}, {0, -1, 0}, {3, 0, 0}, {0, 1, h}}};
    EXPECT_NEAR(WarpingAngle(Measure(kite)), std::atan(h) * DegreesPerRadian, 1e-12);
}

TEST(QuadShape, TaperOfATrapezoidIsDifferenceOverSumOfItsParallelSides)
{
    const Corners trapezoid = {{{0, 0, 0}, {3, 0, 0}, {2.4, 1.7, 0}, {1.4, 1.7, 0}}};
    EXPECT_NEAR(TaperOf(trapezoid), (3.0 - 1.0) / (3.0 + 1.0), 1e-15);
}

TEST(QuadShape, TaperOfATriangleWithANodeInASideIsOne)
{
    EXPECT_NEAR(TaperOf({{{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {0.5, 1.5, 0}}}), 1.0, 1e-15);
}

TEST(QuadShape, ParallelogramHasItsSkewAngleAndNoTaper)
{
    const double skew = 35.0 / DegreesPerRadian; // off the rectangle
    const Corners parallelogram = {
        {{0, 0, 0}, {2, 0, 0}, {2 + std::sin(skew), std::cos(skew), 0}, {std::sin(skew), std::cos(skew), 0}}};
    const auto angles = AnglesOf(parallelogram);
    for (int i = 0; i < QuadNodeCount; ++i) { EXPECT_NEAR(angles[i], i % 2 == 0 ? 55.0 : 125.0, 1e-12) << i; }
    EXPECT_NEAR(TaperOf(parallelogram), 0.0, 1e-15);
    EXPECT_NEAR(AspectRatio(Measure(parallelogram)), 2.0, 1e-15);
    EXPECT_NEAR(LeastJacobian(Measure(parallelogram)), 1.0, 1e-15);
}

TEST(QuadShape, CornerAnglesOfAnyQuadrilateralThatDoesNotCrossItselfAddUpTo360)
{
    const Corners dart = {{{0, 0, 0}, {2, 0, 0.1}, {0.5, 0.5, 0}, {0, 2, 0}}};
    for (const Corners& corners : {Distorted, dart}) {
        const auto angles = AnglesOf(corners);
        EXPECT_NEAR(angles[0] + angles[1] + angles[2] + angles[3], 360.0, 1e-12);
    }
}

TEST(QuadShape, CornerThatPointsInwardsHasMoreThan180Degrees)
{
    const auto angles = AnglesOf({{{0, 0, 0}, {2, 0, 0}, {0.5, 0.5, 0}, {0, 2, 0}}});
    EXPECT_NEAR(angles[2], 270.0 - 2.0 * std::atan(0.5 / 1.5) * DegreesPerRadian, 1e-12);
}

TEST(QuadShape, LeastJacobianIsThatOfTheElementAtItsIntegrationPoints)
{
    QuadShellElement element;
    QuadShellSetUp(element, Distorted.data(), QuadNodeCount, 1.0, 0.3, 1.0, 1.0);
    double x[QuadNodeCount], y[QuadNodeCount];
    for (int i = 0; i < QuadNodeCount; ++i) {
        x[i] = Dot(element.axes[0], Distorted[i]);
        y[i] = Dot(element.axes[1], Distorted[i]);
    }
    const double mean = EvaluateQuad(x, y, 0.0, 0.0).detJ;
    double least = 2.0;
    for (const double xi : QuadGaussPoints) {
        for (const double eta : QuadGaussPoints) { least = std::min(least, EvaluateQuad(x, y, xi, eta).detJ / mean); }
    }
    EXPECT_NEAR(LeastJacobian(Measure(Distorted)), least, 1e-14);
}

TEST(QuadShape, LeastJacobianIsZeroWhereTheInwardCornerReachesOneHalfOfSqrt3MinusOne)
{
    // 2·A3/A = 1 − √3 at the inward corner (c, c) of a dart with legs of 2: A3 = 2(c − 1), A = 2c, so c = 2/(1 + √3).
    const auto dart = [](double c) { return Measure({{{0, 0, 0}, {2, 0, 0}, {c, c, 0}, {0, 2, 0}}}); };
    const double c = 2.0 / (1.0 + std::sqrt(3.0));
    EXPECT_GT(LeastJacobian(dart(c + 1e-9)), 0.0);
    EXPECT_LT(LeastJacobian(dart(c - 1e-9)), 0.0);
}

TEST(QuadShape, OnlyABowTieCrossesItself)
{
    const Corners square = {{{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}}};
    const Corners symmetric = {{square[0], square[1], square[3], square[2]}}; // its parts cancel: no area
    const Corners oblique = {{{0, 0, 0}, {3, 0, 0.1}, {0, 1, 0}, {1, 1, 0}}};
    const Corners dart = {{{0, 0, 0}, {2, 0, 0}, {0.1, 0.1, 0}, {0, 2, 0}}};
    const Corners line = {{{0, 0, 0}, {1, 1, 0}, {3, 3, 0}, {2, 2, 0}}};
    EXPECT_FALSE(CrossesItself(Measure(square)));
    EXPECT_TRUE(CrossesItself(Measure(symmetric)));
    EXPECT_TRUE(CrossesItself(Measure(oblique)));
    EXPECT_FALSE(CrossesItself(Measure(dart)));
    EXPECT_FALSE(CrossesItself(Measure(line)));
    EXPECT_FALSE(CrossesItself(Measure(Distorted)));
}

TEST(QuadShape, MeasuresDoNotDependOnUnitsAndPosition)
{
    const QuadShape quad = Measure(Distorted);
    int corner = -1, movedCorner = -1;
    for (const double scale : {1e-6, 1.0, 1000.0, 1e9}) {
        const Corners movedCorners = Moved(Distorted, scale);
        const QuadShape moved = Measure(movedCorners);
        EXPECT_NEAR(WarpingAngle(moved), WarpingAngle(quad), 1e-12);
        EXPECT_NEAR(AspectRatio(moved), AspectRatio(quad), 1e-13);
        EXPECT_NEAR(LeastJacobian(moved), LeastJacobian(quad), 1e-13);
        EXPECT_NEAR(Taper(moved, movedCorner), Taper(quad, corner), 1e-13);
        EXPECT_EQ(movedCorner, corner);
        EXPECT_NEAR(moved.area / (scale * scale), quad.area, 1e-13);
        const auto angles = AnglesOf(Distorted), movedAngles = AnglesOf(movedCorners);
        for (int i = 0; i < QuadNodeCount; ++i) { EXPECT_NEAR(movedAngles[i], angles[i], 1e-11); }
    }
}

TEST(QuadShape, MeasuresDoNotDependOnTheFirstNodeAndTheSense)
{
    const QuadShape quad = Measure(Distorted);
    const QuadShape next = Measure({{Distorted[1], Distorted[2], Distorted[3], Distorted[0]}});
    const QuadShape reversed = Measure({{Distorted[3], Distorted[2], Distorted[1], Distorted[0]}});
    int corner = -1;
    const double taper = Taper(quad, corner);
    for (const QuadShape& other : {next, reversed}) {
        EXPECT_NEAR(WarpingAngle(other), WarpingAngle(quad), 1e-13);
        EXPECT_NEAR(AspectRatio(other), AspectRatio(quad), 1e-14);
        EXPECT_NEAR(Taper(other, corner), taper, 1e-14);
        EXPECT_NEAR(other.area, quad.area, 1e-14);
    }
}

} // namespace
} // namespace tarnvexo
