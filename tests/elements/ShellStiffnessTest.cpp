#include "elements/ShellStiffness.h"

#include "elements/QuadShellMembrane.h"
#include "elements/QuadShellPlate.h"
#include "elements/ShellTransform.h"
#include "elements/TriShellMembrane.h"
#include "elements/TriShellPlate.h"
#include "support/Eigenvalues.h"
#include "support/ElementTools.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <vector>

namespace tarnvexo {
namespace {

using namespace test;

constexpr double E = 2.1, Mu = 0.3, T = 0.2; // thick, so that membrane and plate forces are of comparable size

using QuadNodes = std::array<Vector3, QuadNodeCount>;
using TriNodes = std::array<Vector3, TriNodeCount>;

const Vector3 Origin = {0.7, -0.4, 0.9};

template <std::size_t Nodes> std::array<Vector3, Nodes> Placed(std::array<Vector3, Nodes> nodes, const Frame& frame)
{
    for (Vector3& node : nodes) { node = Origin + FromFrame(frame, node); }
    return nodes;
}

const QuadNodes FlatPlane = {{{0.0, 0.0, 0.0}, {2.1, 0.2, 0.0}, {1.7, 1.4, 0.0}, {-0.3, 1.1, 0.0}}};
const QuadNodes Flat = Placed(FlatPlane, SkewFrame());
const TriNodes TriPlane = {{{0.2, 0.1, 0.0}, {2.3, 0.6, 0.0}, {0.9, 1.8, 0.0}}};
const TriNodes Tri = Placed(TriPlane, SkewFrame());

// Node 4 lifted off the plane of the others.
QuadNodes Warped(double height)
{
    QuadNodes nodes = Flat;
    nodes[3] = nodes[3] + height * SkewFrame()[2];
    return nodes;
}

std::vector<double> Stiffness(const QuadNodes& nodes)
{
    std::vector<double> K(QuadDofCount * QuadDofCount, -777.0);
    QuadShellStiffness(MakeQuad(nodes, E, Mu, T), reinterpret_cast<double(*)[QuadDofCount]>(K.data()));
    return K;
}

std::vector<double> Stiffness(const TriNodes& nodes)
{
    std::vector<double> K(TriDofCount * TriDofCount, -777.0);
    TriShellStiffness(MakeTri(nodes, E, Mu, T), reinterpret_cast<double(*)[TriDofCount]>(K.data()));
    return K;
}

template <std::size_t Nodes> std::vector<Vector3> Points(const std::array<Vector3, Nodes>& nodes)
{
    return {nodes.begin(), nodes.end()};
}

// The matrix of the element whose nodes stand in another order, sorted back: node order[i] of the first is node i of
// the second.
template <std::size_t Nodes>
std::vector<double> OfReorderedElement(const std::array<Vector3, Nodes>& nodes, const std::array<int, Nodes>& order)
{
    constexpr int n = static_cast<int>(Nodes) * DofsPerNode;
    std::array<Vector3, Nodes> reordered;
    for (std::size_t i = 0; i < Nodes; ++i) { reordered[i] = nodes[order[i]]; }
    const std::vector<double> K = Stiffness(reordered);
    std::vector<double> sorted(K.size());
    for (int i = 0; i < n; ++i) {
        for (int j = 0; j < n; ++j) {
            sorted[(6 * order[i / 6] + i % 6) * n + 6 * order[j / 6] + j % 6] = K[i * n + j];
        }
    }
    return sorted;
}

template <std::size_t Nodes> void ExpectSymmetric(const std::array<Vector3, Nodes>& nodes)
{
    constexpr int n = static_cast<int>(Nodes) * DofsPerNode;
    const std::vector<double> K = Stiffness(nodes);
    std::vector<double> transposed(K.size());
    for (int i = 0; i < n; ++i) {
        for (int j = 0; j < n; ++j) { transposed[j * n + i] = K[i * n + j]; }
    }
    EXPECT_LT(LargestDifference(K.data(), transposed.data(), n * n), 1e-15);
}

// The same motion of the same element in other axes.
template <std::size_t Nodes> void ExpectTheSameEnergyInOtherAxes(const std::array<Vector3, Nodes>& nodes)
{
    constexpr int n = static_cast<int>(Nodes) * DofsPerNode;
    const Frame frame = SkewFrame();
    std::array<Vector3, Nodes> turnedNodes = nodes;
    for (Vector3& node : turnedNodes) { node = FromFrame(frame, node); }
    std::vector<double> d(n), turned(n);
    for (int i = 0; i < n; ++i) { d[i] = std::sin(3.0 * i + 1.0); }
    VectorToGlobal<Nodes>(frame.data(), d.data(), turned.data());
    const double energy = StrainEnergy(Stiffness(nodes).data(), d.data(), n);
    EXPECT_NEAR(StrainEnergy(Stiffness(turnedNodes).data(), turned.data(), n), energy, 1e-13 * energy);
}

// Membrane (u, v, θz) and plate (w, θx, θy) at their places among the six DOFs of each node.
template <int Nodes> std::vector<double> LocalMatrix(const double (*Km)[3 * Nodes], const double (*Kb)[3 * Nodes])
{
    constexpr int n = Nodes * DofsPerNode;
    const int membrane[3] = {DX, DY, RZ}, plate[3] = {DZ, RX, RY};
    std::vector<double> K(n * n);
    for (int i = 0; i < 3 * Nodes; ++i) {
        for (int j = 0; j < 3 * Nodes; ++j) {
            const int row = i / 3 * DofsPerNode, column = j / 3 * DofsPerNode;
            K[(row + membrane[i % 3]) * n + column + membrane[j % 3]] = Km[i][j];
            K[(row + plate[i % 3]) * n + column + plate[j % 3]] = Kb[i][j];
        }
    }
    return K;
}

TEST(QuadShellStiffness, OfAUnitSquareInTheGlobalPlaneIsTheLocalMatrix)
{
    const double x[4] = {0.0, 1.0, 1.0, 0.0}, y[4] = {0.0, 0.0, 1.0, 1.0};
    double Km[12][12], Kb[12][12];
    QuadMembraneStiffness(x, y, E, Mu, T, Km);
    QuadPlateStiffness(x, y, E, Mu, T, Kb);
    EXPECT_EQ(Stiffness(QuadNodes{{{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}}}), LocalMatrix<4>(Km, Kb));
}

TEST(QuadShellStiffness, IsSymmetric)
{
    ExpectSymmetric(Flat);
}

TEST(QuadShellStiffness, RigidMotionsGiveNoForce)
{
    EXPECT_LT(RigidMotionForce(Stiffness(Flat).data(), Points(Flat)), 1e-14);
}

TEST(QuadShellStiffness, RotationsTurnedTheWrongWayGiveForces)
{
    EXPECT_GT(RigidMotionForce(Stiffness(Flat).data(), Points(Flat), -1.0), 0.1);
}

TEST(QuadShellStiffness, NoOtherMotionIsFreeOfForce)
{
    const std::vector<double> K = Stiffness(Flat);
    EXPECT_EQ(ZeroEigenvalues(K.data(), QuadDofCount), 6);
    EXPECT_GT(SmallestResistance(K.data(), QuadDofCount), 1e-4);
}

TEST(QuadShellStiffness, DoesNotDependOnTheHeightOfTheFourthNode)
{
    const std::vector<double> K = Stiffness(Flat), warped = Stiffness(Warped(0.5));
    EXPECT_LT(LargestDifference(K.data(), warped.data(), 576), 1e-14);
}

TEST(QuadShellStiffness, WarpedElementMovesRigidlyWithItsProjection)
{
    const std::vector<double> K = Stiffness(Warped(0.5));
    EXPECT_LT(RigidMotionForce(K.data(), Points(Flat)), 1e-14);
    EXPECT_EQ(ZeroEigenvalues(K.data(), QuadDofCount), 6);
}

// No warping correction: about the true position of node 4 a rotation is not free of force.
TEST(QuadShellStiffness, WarpedElementIsNotRigidAboutItsTrueNodes)
{
    EXPECT_GT(RigidMotionForce(Stiffness(Warped(0.5)).data(), Points(Warped(0.5))), 1e-2);
}

TEST(QuadShellStiffness, DoesNotDependOnTheNodeThatComesFirst)
{
    const std::vector<double> K = Stiffness(Flat);
    for (const auto& order : {std::array{1, 2, 3, 0}, {2, 3, 0, 1}, {3, 0, 1, 2}}) {
        EXPECT_LT(LargestDifference(K.data(), OfReorderedElement(Flat, order).data(), 576), 1e-13);
    }
}

TEST(QuadShellStiffness, DoesNotDependOnTheDirectionOfTheNodeOrder)
{
    const std::vector<double> K = Stiffness(Flat);
    EXPECT_LT(LargestDifference(K.data(), OfReorderedElement(Flat, std::array{0, 3, 2, 1}).data(), 576), 1e-13);
    EXPECT_LT(LargestDifference(K.data(), OfReorderedElement(Flat, std::array{2, 1, 0, 3}).data(), 576), 1e-13);
}

TEST(QuadShellStiffness, TurningTheAxesLeavesTheEnergyUnchanged)
{
    ExpectTheSameEnergyInOtherAxes(Flat);
}

// θz of a square: γ·∫Ni·Nj dA, and no coupling to the plate.
TEST(QuadShellStiffness, DrillingRowsCarryOnlyTheDrillingTerm)
{
    const double a = 2.0, penalty = 10.0 * E / (2.0 * (1.0 + Mu)) * T;
    const std::vector<double> K = Stiffness(QuadNodes{{{0, 0, 0}, {a, 0, 0}, {a, a, 0}, {0, a, 0}}});
    for (int n = 0; n < QuadNodeCount; ++n) {
        for (int m = 0; m < QuadNodeCount; ++m) {
            const double* row = &K[(6 * n + RZ) * QuadDofCount + 6 * m];
            const int apart = std::min((m - n + 4) % 4, (n - m + 4) % 4); // 0: same, 1: neighbour, 2: opposite
            EXPECT_NEAR(row[RZ], penalty * a * a / 9.0 / (1 << apart), 1e-14 * penalty * a * a) << n << "," << m;
            EXPECT_EQ(row[DZ], 0.0);
            EXPECT_EQ(row[RX], 0.0);
            EXPECT_EQ(row[RY], 0.0);
        }
    }
}

TEST(QuadShellStiffness, DegenerateElementGivesNonFiniteEntries)
{
    EXPECT_FALSE(std::isfinite(Stiffness(QuadNodes{{{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {0, 1, 0}}})[0]));
}

TEST(TriShellStiffness, OfATriangleInTheGlobalPlaneIsTheLocalMatrix)
{
    const double x[3] = {0.0, 2.0, 0.5}, y[3] = {0.0, 0.0, 1.5};
    double Km[9][9], Kb[9][9];
    TriMembraneStiffness(x, y, E, Mu, T, Km);
    TriPlateStiffness(x, y, E, Mu, T, Kb);
    EXPECT_EQ(Stiffness(TriNodes{{{0, 0, 0}, {2, 0, 0}, {0.5, 1.5, 0}}}), LocalMatrix<3>(Km, Kb));
}

TEST(TriShellStiffness, IsSymmetric)
{
    ExpectSymmetric(Tri);
}

TEST(TriShellStiffness, RigidMotionsGiveNoForce)
{
    EXPECT_LT(RigidMotionForce(Stiffness(Tri).data(), Points(Tri)), 1e-14);
}

TEST(TriShellStiffness, RotationsTurnedTheWrongWayGiveForces)
{
    EXPECT_GT(RigidMotionForce(Stiffness(Tri).data(), Points(Tri), -1.0), 0.1);
}

TEST(TriShellStiffness, NoOtherMotionIsFreeOfForce)
{
    const std::vector<double> K = Stiffness(Tri);
    EXPECT_EQ(ZeroEigenvalues(K.data(), TriDofCount), 6);
    EXPECT_GT(SmallestResistance(K.data(), TriDofCount), 1e-4);
}

TEST(TriShellStiffness, DoesNotDependOnTheOrderOfTheNodes)
{
    const std::vector<double> K = Stiffness(Tri);
    for (const auto& order : {std::array{1, 2, 0}, {2, 0, 1}, {0, 2, 1}, {2, 1, 0}, {1, 0, 2}}) {
        EXPECT_LT(LargestDifference(K.data(), OfReorderedElement(Tri, order).data(), 324), 1e-13);
    }
}

TEST(TriShellStiffness, TurningTheAxesLeavesTheEnergyUnchanged)
{
    ExpectTheSameEnergyInOtherAxes(Tri);
}

TEST(TriShellStiffness, DegenerateElementGivesNonFiniteEntries)
{
    EXPECT_FALSE(std::isfinite(Stiffness(TriNodes{{{0, 0, 0}, {1, 0, 0}, {2, 0, 0}}})[0]));
}

// States of constant strain, curvature and twist on a distorted patch in a skew plane: the motion is prescribed on the
// boundary and the inner nodes must follow.

Motion InSkewPlane(const Vector3& point, const std::function<Motion(double x, double y)>& local)
{
    const Frame frame = SkewFrame();
    const Vector3 p = IntoFrame(frame, point);
    const Motion motion = local(p[0], p[1]);
    return {FromFrame(frame, motion.u), FromFrame(frame, motion.rotation)};
}

// u = ux·x + uy·y, v = vx·x + vy·y, θz = ½·(vx − uy).
Motion Stretched(const Vector3& point)
{
    return InSkewPlane(point, [](double x, double y) {
        return Motion{{1.0 * x - 0.4 * y, 0.9 * x + 0.3 * y, 0.0}, {0.0, 0.0, 0.5 * (0.9 + 0.4)}};
    });
}

// w = ½·(kx·x² + ky·y²) + kxy·x·y and the rotations of its normal.
std::function<Motion(const Vector3&)> Bent(double kx, double ky, double kxy)
{
    return [=](const Vector3& point) {
        return InSkewPlane(point, [=](double x, double y) {
            return Motion{{0.0, 0.0, 0.5 * (kx * x * x + ky * y * y) + kxy * x * y},
                          {ky * y + kxy * x, -kx * x - kxy * y, 0.0}};
        });
    };
}

constexpr double PatchTolerance = 1e-10; // round-off times the ratio of membrane and bending stiffness, (1/t)²
constexpr double Thin = 0.01, Thick = 0.3;

TEST(PatchTest, QuadsReproduceConstantMembraneStrain)
{
    EXPECT_LT(PatchError(Turned(QuadPatch(), SkewFrame()), E, Mu, Thin, Stretched), PatchTolerance);
}

TEST(PatchTest, TrianglesReproduceConstantMembraneStrain)
{
    EXPECT_LT(PatchError(Turned(TriPatch(), SkewFrame()), E, Mu, Thin, Stretched), PatchTolerance);
}

TEST(PatchTest, QuadsAndTrianglesTogetherReproduceConstantMembraneStrain)
{
    EXPECT_LT(PatchError(Turned(MixedPatch(), SkewFrame()), E, Mu, Thin, Stretched), PatchTolerance);
}

TEST(PatchTest, MembraneStrainWithTheOppositeDrillingRotationIsNotReproduced)
{
    const auto wrong = [](const Vector3& point) {
        Motion motion = Stretched(point);
        motion.rotation = -motion.rotation;
        return motion;
    };
    EXPECT_GT(PatchError(Turned(QuadPatch(), SkewFrame()), E, Mu, Thin, wrong), 1e-2);
    EXPECT_GT(PatchError(Turned(TriPatch(), SkewFrame()), E, Mu, Thin, wrong), 1e-2);
}

TEST(PatchTest, QuadsReproduceConstantBending)
{
    for (const double t : {Thin, Thick}) {
        EXPECT_LT(PatchError(Turned(QuadPatch(), SkewFrame()), E, Mu, t, Bent(1.0, 0.0, 0.0)), PatchTolerance);
        EXPECT_LT(PatchError(Turned(QuadPatch(), SkewFrame()), E, Mu, t, Bent(0.3, -0.8, 0.0)), PatchTolerance);
    }
}

TEST(PatchTest, TrianglesReproduceConstantBending)
{
    EXPECT_LT(PatchError(Turned(TriPatch(), SkewFrame()), E, Mu, Thin, Bent(1.0, 0.0, 0.0)), PatchTolerance);
    EXPECT_LT(PatchError(Turned(TriPatch(), SkewFrame()), E, Mu, Thin, Bent(0.3, -0.8, 0.0)), PatchTolerance);
}

TEST(PatchTest, QuadsReproduceConstantTwist)
{
    for (const double t : {Thin, Thick}) {
        EXPECT_LT(PatchError(Turned(QuadPatch(), SkewFrame()), E, Mu, t, Bent(0.0, 0.0, 1.0)), PatchTolerance);
    }
}

TEST(PatchTest, TrianglesReproduceConstantTwist)
{
    EXPECT_LT(PatchError(Turned(TriPatch(), SkewFrame()), E, Mu, Thin, Bent(0.0, 0.0, 1.0)), PatchTolerance);
}

TEST(PatchTest, BendingWithARotationTheWrongWayIsNotReproduced)
{
    const auto wrong = [](const Vector3& point) {
        Motion motion = Bent(1.0, 0.5, 0.0)(point);
        motion.rotation = -motion.rotation;
        return motion;
    };
    EXPECT_GT(PatchError(Turned(QuadPatch(), SkewFrame()), E, Mu, Thin, wrong), 1e-2);
    EXPECT_GT(PatchError(Turned(TriPatch(), SkewFrame()), E, Mu, Thin, wrong), 1e-2);
}

// The same moment in every direction: no twisting moment along any edge between the two kinds of element.
TEST(PatchTest, QuadsAndTrianglesTogetherReproduceBendingAlikeInAllDirections)
{
    EXPECT_LT(PatchError(Turned(MixedPatch(), SkewFrame()), E, Mu, Thin, Bent(1.0, 1.0, 0.0)), PatchTolerance);
}

// Bending moments along and across the straight line between the two kinds of element.
TEST(PatchTest, QuadsAndTrianglesTogetherReproduceBendingAcrossAStraightJoint)
{
    const ShellMesh mesh = Turned(MixedPatchWithStraightJoint(), SkewFrame());
    EXPECT_LT(PatchError(mesh, E, Mu, Thin, Bent(1.0, 0.0, 0.0)), PatchTolerance);
    EXPECT_LT(PatchError(mesh, E, Mu, Thin, Bent(0.3, -0.8, 0.0)), PatchTolerance);
}

// Deliberate limit: a twisting moment along the joint gives moments at the nodes of the quads and corner forces at
// those of the triangles, which cannot be in balance.
TEST(PatchTest, QuadsAndTrianglesTogetherDoNotReproduceTwist)
{
    const ShellMesh mesh = Turned(MixedPatchWithStraightJoint(), SkewFrame());
    EXPECT_GT(PatchError(mesh, E, Mu, Thick, Bent(0.0, 0.0, 1.0)), 1e-3);
    EXPECT_LT(PatchError(mesh, E, Mu, Thick, Bent(1.0, 0.0, 0.0)), PatchTolerance);
}

} // namespace
} // namespace tarnvexo
