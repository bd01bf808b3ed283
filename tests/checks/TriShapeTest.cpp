#include "checks/TriShape.h"

#include <cmath>
#include <gtest/gtest.h>

namespace tarnvexo {
namespace {

TEST(TriShape, RightTriangleOfSides345HasItsAnglesAndArea)
{
    const Vector3 corners[TriNodeCount] = {{0, 0, 3}, {0, 4, 3}, {3, 0, 3}};
    const TriShape tri = MeasureTri(corners);
    EXPECT_NEAR(tri.area, 6.0, 1e-14);
    EXPECT_NEAR(AspectRatio(tri), 5.0 / 3.0, 1e-15);
    EXPECT_NEAR(tri.smallestAngle, std::asin(3.0 / 5.0) * 180.0 / 3.141592653589793, 1e-13);
    EXPECT_EQ(tri.smallestAngleCorner, 1);
    EXPECT_EQ(tri.shortestSideStart, 2); // from the third corner back to the first one
}

TEST(TriShape, EquilateralTriangleHasAnglesOf60DegreesInEveryUnitAndPosition)
{
    for (const double scale : {1e-6, 1.0, 1e6}) {
        const Vector3 corners[TriNodeCount] = {{scale, 0, 0}, {0, scale, 0}, {0, 0, scale}};
        const TriShape tri = MeasureTri(corners);
        EXPECT_NEAR(tri.smallestAngle, 60.0, 1e-12);
        EXPECT_NEAR(AspectRatio(tri), 1.0, 1e-15);
    }
}

} // namespace
} // namespace tarnvexo
