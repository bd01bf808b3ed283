#include "checks/ShellOrientation.h"

#include "support/MeshBuilder.h"

#include <cmath>
#include <gtest/gtest.h>
#include <numbers>

namespace tarnvexo {
namespace {

using test::MeshBuilder;

constexpr Material Steel = {2.1e11, 0.3, 7850.0};
constexpr double AnyFold = 180.0;

ShellOrientation OrientationOf(const ModelStore& model, double sharpestFold)
{
    return FindOrientation(model, ShellEdges(model, std::vector<char>(ShellCount(model), false)), sharpestFold);
}

// Two plates with the common edge x = 0, the second turned up by the angle of the fold, or laid down the other way
// round.
ModelStore Fold(double degrees, bool isOpposed)
{
    MeshBuilder mesh(Steel);
    const double angle = degrees * std::numbers::pi / 180.0, x = std::cos(angle), z = std::sin(angle);
    const int a = mesh.AddNode({0.0, 0.0, 0.0}), b = mesh.AddNode({0.0, 1.0, 0.1});
    const int c = mesh.AddNode({-1.0, 1.1, 0.0}), d = mesh.AddNode({-1.2, 0.0, 0.0});
    const int e = mesh.AddNode({x, 0.0, z}), f = mesh.AddNode({1.3 * x, 0.9, 1.3 * z});
    mesh.AddQuad({a, b, c, d}, 0.01);
    if (isOpposed) {
        mesh.AddQuad({a, b, f, e}, 0.01);
    } else {
        mesh.AddQuad({a, e, f, b}, 0.01);
    }
    return mesh.Model();
}

// Quads along a strip; those whose letter is '-' are laid down the other way round.
ModelStore Strip(const char* sides, bool isClosed = false, bool isTwisted = false)
{
    MeshBuilder mesh(Steel);
    const int count = static_cast<int>(std::char_traits<char>::length(sides));
    const int rows = isClosed ? count : count + 1;
    for (int i = 0; i < rows; ++i) {
        const double turn = isClosed ? 2.0 * std::numbers::pi * i / count : 0.0;
        const double half = isTwisted ? 0.5 * turn : 0.0; // the strip turns by 180 degrees on its way round
        const auto place = [&](double y) {
            const double out = 5.0 + y * std::cos(half);
            return isClosed ? Vector3{out * std::cos(turn), out * std::sin(turn), y * std::sin(half)}
                            : Vector3{double(i), y, 0.0};
        };
        mesh.AddNode(place(-0.5));
        mesh.AddNode(place(0.5));
    }
    for (int i = 0; i < count; ++i) {
        const bool isSeam = i + 1 == rows;
        int c = isSeam ? 0 : 2 * i + 2, d = isSeam ? 1 : 2 * i + 3;
        if (isSeam && isTwisted) {
            std::swap(c, d);
        }
        if (sides[i] == '-') {
            mesh.AddQuad({2 * i, 2 * i + 1, d, c}, 0.01);
        } else {
            mesh.AddQuad({2 * i, c, d, 2 * i + 1}, 0.01);
        }
    }
    return mesh.Model();
}

TEST(ShellOrientation, FoldIsOpposedByTheDirectionOfItsEdgeAtAnyAngle)
{
    for (const double degrees : {0.0, 10.0, 60.0, 90.0, 150.0, -30.0, -120.0}) {
        EXPECT_TRUE(OrientationOf(Fold(degrees, false), AnyFold).opposed.empty()) << degrees;
        EXPECT_EQ(OrientationOf(Fold(degrees, true), AnyFold).opposed.size(), 1u) << degrees;
    }
}

TEST(ShellOrientation, FoldSharperThanTheLimitIsNotJudged)
{
    EXPECT_EQ(OrientationOf(Fold(30.0, true), 45.0).opposed.size(), 1u);
    EXPECT_EQ(OrientationOf(Fold(-30.0, true), 45.0).opposed.size(), 1u);
    EXPECT_TRUE(OrientationOf(Fold(60.0, true), 45.0).opposed.empty());
    EXPECT_TRUE(OrientationOf(Fold(-60.0, true), 45.0).opposed.empty());
}

TEST(ShellOrientation, AngleOfAFoldIsThatBetweenThePlatesWhateverTheirOrder)
{
    for (const bool isOpposed : {false, true}) {
        const ModelStore model = Fold(60.0, isOpposed);
        const ShellEdges edges(model, std::vector<char>(2, false));
        edges.ForEach([&](const ShellEdge& edge) {
            if (JoinsTwoShells(edge)) {
                EXPECT_NEAR(FoldAngle(model, edge), 60.0, 8.0); // the common edge leans by 0.1
            }
        });
    }
}

TEST(ShellOrientation, JunctionOfThreeShellsIsNotJudged)
{
    for (int orders = 0; orders < 8; ++orders) {
        MeshBuilder mesh(Steel);
        const int a = mesh.AddNode({0.0, 0.0, 0.0}), b = mesh.AddNode({0.0, 1.0, 0.0});
        const Vector3 thirds[3] = {{1.0, 0.3, 0.0}, {-1.0, 0.4, 0.0}, {0.0, 0.5, 1.0}}; // T-shaped
        for (int i = 0; i < 3; ++i) {
            const int c = mesh.AddNode(thirds[i]);
            mesh.AddTri(orders >> i & 1 ? std::array{a, b, c} : std::array{b, a, c}, 0.01);
        }
        EXPECT_TRUE(OrientationOf(mesh.Model(), AnyFold).opposed.empty()) << orders;
    }
}

TEST(ShellOrientation, PatchesAreCountedAndTheFewerShellsAreToTurn)
{
    const ShellOrientation found = OrientationOf(Strip("+++--++-+"), AnyFold);
    EXPECT_EQ(found.opposed.size(), 4u);
    EXPECT_EQ(found.opposedPatches, 5);
    EXPECT_EQ(found.shellsToTurn, 3);
    const std::vector<char> turn = {0, 0, 0, 1, 1, 0, 0, 1, 0};
    EXPECT_EQ(found.turn, turn);
    EXPECT_EQ(found.patch[4], 3);
    EXPECT_EQ(found.patchSize[3], 2);
    EXPECT_EQ(found.twisted, 0);
}

TEST(ShellOrientation, FirstShellStaysWhenEitherHalfCouldBeTurned)
{
    const std::vector<char> turn = {0, 0, 1, 1};
    EXPECT_EQ(OrientationOf(Strip("--++"), AnyFold).turn, turn);
    EXPECT_EQ(OrientationOf(Strip("++--"), AnyFold).turn, turn);
}

TEST(ShellOrientation, ClosedStripIsSoundAndAStripWithOneSideIsNot)
{
    EXPECT_TRUE(OrientationOf(Strip("++++++++++++", true, false), AnyFold).opposed.empty());
    const ShellOrientation oneSided = OrientationOf(Strip("++++++++++++", true, true), AnyFold);
    EXPECT_EQ(oneSided.opposed.size(), 1u);
    EXPECT_EQ(oneSided.opposedPatches, 1);
    EXPECT_EQ(oneSided.twisted, 1);
}

} // namespace
} // namespace tarnvexo
