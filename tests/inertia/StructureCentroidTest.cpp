#include "inertia/StructureCentroid.h"

#include "elements/BeamSection.h"
#include "support/ElementTools.h"
#include "support/MeshBuilder.h"

#include <cmath>
#include <gtest/gtest.h>

namespace tarnvexo {
namespace {

using namespace test;

const Material Steel = {2.1e11, 0.3, 7850.0};

// A corner point of the plane x, y at height z of the skew frame.
Vector3 Point(double x, double y, double z = 0.7)
{
    return FromFrame(SkewFrame(), {x, y, z});
}

void ExpectPoint(const Vector3& point, const Vector3& expected, double tolerance = 1e-14)
{
    for (int k = 0; k < 3; ++k) { EXPECT_NEAR(point[k], expected[k], tolerance) << k; }
}

QuadShellElement Quad(const Vector3& a, const Vector3& b, const Vector3& c, const Vector3& d)
{
    return MakeQuad({a, b, c, d}, 1.0, 0.3, 0.1);
}

const QuadShellElement Distorted = Quad(Point(0.0, 0.0), Point(2.1, 0.2), Point(1.7, 1.4), Point(-0.3, 1.1));

double TriangleArea(const Vector3& a, const Vector3& b, const Vector3& c)
{
    return 0.5 * Length(Cross(b - a, c - a));
}

TEST(QuadArea, IsThatOfItsTwoTriangles)
{
    const Vector3* X = Distorted.coordinates;
    EXPECT_NEAR(QuadArea(Distorted), TriangleArea(X[0], X[1], X[2]) + TriangleArea(X[0], X[2], X[3]), 1e-14);
}

TEST(QuadArea, OfAnArrowheadLeavesItsNotchOut)
{
    const auto arrow = Quad(Point(0.0, 0.0), Point(4.0, 0.0), Point(1.0, 1.0), Point(0.0, 4.0));
    EXPECT_NEAR(QuadArea(arrow), 4.0, 1e-14); // 8 − 4
}

TEST(QuadArea, OfAWarpedElementIsThatOfItsProjection)
{
    QuadShellElement warped = Distorted;
    warped.coordinates[3] = warped.coordinates[3] + 0.5 * warped.axes[2];
    EXPECT_NEAR(QuadArea(warped), QuadArea(Distorted), 1e-14);
}

TEST(TriArea, IsHalfTheBaseTimesTheHeightInAnyPlane)
{
    EXPECT_NEAR(TriArea(MakeTri({Point(1.0, 1.0), Point(4.0, 1.0), Point(2.0, 3.0)}, 1.0, 0.3, 0.1)), 3.0, 1e-14);
    EXPECT_NEAR(TriArea(MakeTri({Point(2.0, 3.0), Point(4.0, 1.0), Point(1.0, 1.0)}, 1.0, 0.3, 0.1)), 3.0, 1e-14);
}

TEST(QuadCentroid, IsThatOfItsTwoTriangles)
{
    const Vector3* X = Distorted.coordinates;
    const double lower = TriangleArea(X[0], X[1], X[2]), upper = TriangleArea(X[0], X[2], X[3]);
    const Vector3 expected =
        (lower / 3.0 * (X[0] + X[1] + X[2]) + upper / 3.0 * (X[0] + X[2] + X[3])) / (lower + upper);
    ExpectPoint(QuadCentroid(Distorted), expected);
}

TEST(QuadCentroid, AndAreaDoNotDependOnTheDirectionOfTheNodeOrder)
{
    const Vector3* X = Distorted.coordinates;
    const auto clockwise = Quad(X[0], X[3], X[2], X[1]);
    EXPECT_NEAR(QuadArea(clockwise), QuadArea(Distorted), 1e-14);
    ExpectPoint(QuadCentroid(clockwise), QuadCentroid(Distorted));
}

// Axes stored for the other direction make the local nodes clockwise; the sign of the area must cancel.
TEST(QuadCentroid, AndAreaHoldForClockwiseLocalNodes)
{
    QuadShellElement turned = Distorted;
    turned.axes[1] = -turned.axes[1];
    EXPECT_NEAR(QuadArea(turned), QuadArea(Distorted), 1e-14);
    ExpectPoint(QuadCentroid(turned), QuadCentroid(Distorted));
}

TEST(QuadCentroid, OfAWarpedElementLiesInThePlaneOfItsFirstNodes)
{
    QuadShellElement warped = Distorted;
    warped.coordinates[3] = warped.coordinates[3] + 0.5 * warped.axes[2];
    ExpectPoint(QuadCentroid(warped), QuadCentroid(Distorted));
}

TEST(StructureCentroid, OfOneQuadIsItsOwn)
{
    ModelStore model;
    model.QuadElements = {Distorted};
    ExpectPoint(StructureCentroid(model), QuadCentroid(Distorted));
}

TEST(StructureCentroid, OfOneTriangleIsTheMeanOfItsNodes)
{
    ModelStore model;
    model.TriElements = {MakeTri({Point(1.0, 1.0), Point(4.0, 1.0), Point(2.0, 3.0)}, 1.0, 0.3, 0.1)};
    ExpectPoint(StructureCentroid(model), Point(7.0 / 3.0, 5.0 / 3.0));
}

TEST(StructureCentroid, OfOneTubeIsTheMiddleOfItsAxis)
{
    MeshBuilder mesh(Steel);
    mesh.AddNode({1.0, 2.0, 3.0});
    mesh.AddNode({2.0, 4.0, -1.0});
    mesh.AddTube(0, 1, {1.0, 0.0, 0.0}, {0.1, 0.01});
    ExpectPoint(StructureCentroid(mesh.Model()), {1.5, 3.0, 1.0});
}

// Along global y with z' up: y' = −x.
TEST(StructureCentroid, OfABeamLiesAtTheCentroidOfItsSection)
{
    MeshBuilder mesh(Steel);
    mesh.AddNode({1.0, 0.0, 3.0});
    mesh.AddNode({1.0, 4.0, 3.0});
    mesh.AddLBeam(0, 1, {0.0, 0.0, 1.0}, {0.2, 0.01, 0.1, 0.02}, 0.05);
    const BeamSectionConstants& s = mesh.Model().BeamElements[0].section;
    ExpectPoint(StructureCentroid(mesh.Model()), {1.0 - s.ey, 2.0, 3.0 + s.ez});
}

TEST(StructureCentroid, LiesNearerToTheThickerOfTwoEqualShells)
{
    ModelStore model;
    const auto left = Quad({0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0});
    const auto right = Quad({4, 0, 0}, {5, 0, 0}, {5, 1, 0}, {4, 1, 0});
    model.QuadElements = {left, right};
    model.QuadElements[1].thickness = 0.3; // three times as thick
    ExpectPoint(StructureCentroid(model), {3.5, 0.5, 0.0});
}

TEST(StructureCentroid, DensityIsNoWeight)
{
    MeshBuilder mesh(Steel);
    for (const double x : {0.0, 4.0}) {
        mesh.AddNode({x, 0.0, 0.0});
        mesh.AddNode({x, 2.0, 0.0});
    }
    mesh.AddTube(0, 1, {0.0, 0.0, 1.0}, {0.1, 0.01});
    mesh.AddTube(2, 3, {0.0, 0.0, 1.0}, {0.1, 0.01});
    mesh.Model().BeamElements[1].Density *= 5.0;
    ExpectPoint(StructureCentroid(mesh.Model()), {2.0, 1.0, 0.0});
}

// Σ V·c / Σ V by hand.
TEST(StructureCentroid, WeighsEveryElementKindByItsVolume)
{
    MeshBuilder mesh(Steel);
    for (const Vector3& node : {Vector3{0, 0, 0}, {2, 0, 0}, {2, 2, 0}, {0, 2, 0}, {5, 0, 0}, {0, 0, 6}}) {
        mesh.AddNode(node);
    }
    mesh.AddQuad({0, 1, 2, 3}, 0.5);                            // volume 2 at (1, 1, 0)
    mesh.AddTri({1, 4, 2}, 1.0);                                // volume 3 at (3, 2/3, 0)
    mesh.AddTBeam(0, 5, {1.0, 0.0, 0.0}, {0.5, 1.0, 0.0, 0.0}); // volume 3 at (0.25, 0, 3)
    ExpectPoint(StructureCentroid(mesh.Model()), {(2.0 + 9.0 + 0.75) / 8.0, (2.0 + 2.0) / 8.0, 9.0 / 8.0});
}

TEST(StructureCentroid, WithoutElementsIsNotANumber)
{
    for (double coordinate : StructureCentroid(ModelStore())) { EXPECT_TRUE(std::isnan(coordinate)); }
}

ModelStore OneOfEach()
{
    MeshBuilder mesh(Steel);
    for (const Vector3& node : {Vector3{3, 1, 2}, {5, 0.2, 2.5}, {5.3, 2, 2}, {3, 2.4, 1}, {8, 1, 3}, {4, 0, 6}}) {
        mesh.AddNode(node);
    }
    mesh.AddQuad({0, 1, 2, 3}, 0.05);
    mesh.AddTri({1, 4, 2}, 0.02);
    mesh.AddLBeam(0, 5, {1.0, 0.5, 0.0}, {0.2, 0.01, 0.1, 0.02}, 0.05, true);
    return mesh.Model();
}

TEST(ShiftOrigin, ToTheCentroidPutsTheCentroidAtTheOrigin)
{
    ModelStore model = OneOfEach();
    ShiftOrigin(model, -StructureCentroid(model));
    ExpectPoint(StructureCentroid(model), {0.0, 0.0, 0.0}, 1e-15 * 8.0);
}

TEST(ShiftOrigin, MovesEveryStoredPoint)
{
    const ModelStore before = OneOfEach();
    ModelStore model = OneOfEach();
    const Vector3 shift = {1.0, -2.0, 4.0};
    ShiftOrigin(model, shift);
    for (int n = 0; n < model.NPOIN; ++n) { EXPECT_EQ(model.NodeCoordinates[n], before.NodeCoordinates[n] + shift); }
    for (int i = 0; i < QuadNodeCount; ++i) {
        EXPECT_EQ(model.QuadElements[0].coordinates[i], before.QuadElements[0].coordinates[i] + shift);
    }
    for (int i = 0; i < TriNodeCount; ++i) {
        EXPECT_EQ(model.TriElements[0].coordinates[i], before.TriElements[0].coordinates[i] + shift);
    }
    EXPECT_EQ(model.BeamElements[0].node1, before.BeamElements[0].node1 + shift);
    EXPECT_EQ(model.BeamElements[0].node2, before.BeamElements[0].node2 + shift);
    EXPECT_EQ(model.BeamElements[0].reference, before.BeamElements[0].reference + shift);
}

TEST(ShiftOrigin, LeavesTheFrameOfABeamAsItIs)
{
    ModelStore model = OneOfEach();
    Vector3 before[3], after[3];
    BeamFrame(model.BeamElements[0], before);
    ShiftOrigin(model, {0.3, -0.7, 1.1});
    BeamFrame(model.BeamElements[0], after);
    for (int i = 0; i < 3; ++i) { ExpectPoint(after[i], before[i]); }
}

TEST(ShiftOrigin, BackAgainRestoresTheCoordinatesButForTheLastBits)
{
    const ModelStore before = OneOfEach();
    ModelStore model = before;
    const Vector3 centroid = StructureCentroid(model);
    ShiftOrigin(model, -centroid);
    ShiftOrigin(model, centroid);
    for (int n = 0; n < model.NPOIN; ++n) {
        ExpectPoint(model.NodeCoordinates[n], before.NodeCoordinates[n], 1e-15 * 8.0);
    }
}

} // namespace
} // namespace tarnvexo
