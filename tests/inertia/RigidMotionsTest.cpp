#include "inertia/RigidMotions.h"

#include "support/Eigenvalues.h"
#include "support/ElementTools.h"
#include "support/MeshBuilder.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <vector>

namespace tarnvexo {
namespace {

using namespace test;

const Material Steel = {2.1e11, 0.3, 7850.0};
const std::vector<Dof> AllTranslations = {DX, DY, DZ}, AllDofs = {DX, DY, DZ, RX, RY, RZ};

std::vector<PartMotions> Motions(const ModelStore& model, const std::vector<int>& holdNodes = {})
{
    return FindPartMotions(model, FindConnectedParts(model), RestrainedEquations(model), holdNodes);
}

// Skew plate of 4 x 3 cells.
MeshBuilder Plate(double scale = 1.0)
{
    MeshBuilder mesh(Steel);
    AddGrid(mesh, 4, 3, 0.02 * scale, Cell::Quad, [&](int i, int j) {
        return scale * FromFrame(SkewFrame(), {10.0 + 0.5 * i + 0.1 * j, 0.4 * j, 7.0});
    });
    return mesh;
}

// Straight line of tubes from the point, one unit per node along the direction.
void AddLine(MeshBuilder& mesh, const Vector3& start, const Vector3& direction, int tubes)
{
    for (int i = 0; i <= tubes; ++i) {
        const int node = mesh.AddNode(start + i * Normalised(direction));
        if (i > 0) {
            mesh.AddTube(node - 1, node, {0.3, 0.2, 1.0}, {0.05, 0.01});
        }
    }
}

// Largest movement that free motions leave in the restrained directions.
double MovementOfSupports(const ModelStore& model, const PartMotions& part)
{
    const std::vector<unsigned char> restrained = RestrainedEquations(model);
    double largest = 0.0;
    for (std::size_t i = 0; i < restrained.size(); ++i) {
        for (const MotionVector& q : part.free) {
            if (restrained[i] == 1) {
                const MotionVector motion = MotionAt(part, q, model.NodeCoordinates[i / DofsPerNode]);
                largest = std::max(largest, std::fabs(motion[i % DofsPerNode]));
            }
        }
    }
    return largest;
}

// The model with the holds of its parts as supports.
ModelStore Held(ModelStore model, const std::vector<PartMotions>& parts)
{
    for (const PartMotions& part : parts) {
        for (const int equation : part.holds) {
            Restraint& restraint = model.Restraints.emplace_back();
            restraint.node = equation / DofsPerNode;
            restraint.flags[equation % DofsPerNode] = 1;
            ++model.NRN;
        }
    }
    return model;
}

TEST(MotionAt, IsTranslationPlusRotationAboutTheReferencePoint)
{
    PartMotions part;
    part.reference = {1.0, 2.0, 3.0};
    part.size = 10.0;
    const MotionVector motion = MotionAt(part, {1.0, 0.0, -2.0, 0.0, 0.0, 5.0}, {4.0, 6.0, 3.0});
    EXPECT_EQ(motion, (MotionVector{1.0 - 5.0 * 4.0 / 10.0, 5.0 * 3.0 / 10.0, -2.0, 0.0, 0.0, 5.0}));
}

TEST(RestrainedEquations, AreThoseWithTheFlagOne)
{
    ModelStore model;
    model.NPOIN = 2;
    model.Restraints = {{{1, 0, 0, 0, 0, 2}, 1}, {{0, 1, 0, 0, 0, 0}, 1}};
    EXPECT_EQ(RestrainedEquations(model), (std::vector<unsigned char>{0, 0, 0, 0, 0, 0, 1, 1, 0, 0, 0, 0}));
}

TEST(PartMotions, OfAFreePartAreAllSixOrthonormal)
{
    MeshBuilder mesh = Plate();
    const auto parts = Motions(mesh.Model());
    ASSERT_EQ(parts.size(), 1u);
    ASSERT_EQ(parts[0].free.size(), 6u);
    EXPECT_EQ(parts[0].holds.size(), 6u);
    EXPECT_EQ(parts[0].restrainedDofs, 0);
}

TEST(PartMotions, OfAPartOnThreeTwoOneSupportsAreNone)
{
    MeshBuilder mesh = Plate();
    mesh.Restrain(0, AllTranslations);
    mesh.Restrain(16, {DY, DZ});
    mesh.Restrain(3, {DZ});
    const auto parts = Motions(mesh.Model());
    EXPECT_TRUE(parts[0].free.empty());
    EXPECT_TRUE(parts[0].holds.empty());
    EXPECT_EQ(parts[0].restrainedDofs, 6);
}

TEST(PartMotions, OfAPartWithAClampedNodeAreNone)
{
    MeshBuilder mesh = Plate();
    mesh.Restrain(7, AllDofs);
    EXPECT_TRUE(Motions(mesh.Model())[0].free.empty());
}

// Translations held at three nodes of a straight edge: nine supports of rank five.
TEST(PartMotions, OfAPartOnAHingeLineAreTheRotationAboutIt)
{
    MeshBuilder mesh = Plate();
    for (const int n : {0, 8, 16}) { mesh.Restrain(n, AllTranslations); }
    const auto parts = Motions(mesh.Model());
    ASSERT_EQ(parts[0].free.size(), 1u);
    EXPECT_EQ(parts[0].restrainedDofs, 9);
    EXPECT_LT(MovementOfSupports(mesh.Model(), parts[0]), 1e-14);
    const MotionVector& q = parts[0].free[0];
    const Vector3 axis = Normalised(Vector3{q[RX], q[RY], q[RZ]});
    EXPECT_NEAR(std::fabs(Dot(axis, SkewFrame()[0])), 1.0, 1e-14);
    // Held at the opposite edge, across the plate.
    ASSERT_EQ(parts[0].holds.size(), 1u);
    EXPECT_EQ(parts[0].holds[0] / DofsPerNode % 4, 3);
    EXPECT_LT(parts[0].holds[0] % DofsPerNode, RX);
}

// Seven supports, all along the plane's normal or through one point, leave the rotation about the normal.
TEST(PartMotions, AreFoundWhereManySupportsDependOnOneAnother)
{
    MeshBuilder mesh(Steel);
    AddGrid(mesh, 4, 3, 0.02, Cell::Quad, [](int i, int j) { return Vector3{1.0 * i, 1.0 * j, 0.0}; });
    mesh.Restrain(5, AllTranslations);
    for (const int n : {0, 3, 16, 19}) { mesh.Restrain(n, {DZ}); }
    const auto parts = Motions(mesh.Model());
    EXPECT_EQ(parts[0].restrainedDofs, 7);
    ASSERT_EQ(parts[0].free.size(), 1u);
    EXPECT_LT(MovementOfSupports(mesh.Model(), parts[0]), 1e-15);
    EXPECT_GT(std::fabs(parts[0].free[0][RZ]), 0.1);
}

// Three nodes that miss one line by the given share of the plate: above the tolerance they hold, below they do not.
TEST(PartMotions, OfSupportsNearlyOnOneLineFollowTheRankTolerance)
{
    for (const double offset : {1e-4, 1e-5, 1e-7, 0.0}) {
        MeshBuilder mesh(Steel);
        AddGrid(mesh, 4, 1, 0.02, Cell::Quad, [&](int i, int j) {
            return Vector3{1.0 * i, 1.0 * j + (i == 2 && j == 0 ? 5.0 * offset : 0.0), 0.0};
        });
        for (const int n : {0, 4, 8}) { mesh.Restrain(n, AllTranslations); }
        EXPECT_EQ(Motions(mesh.Model())[0].free.size(), offset > RankTolerance ? 0u : 1u) << offset;
    }
}

// Millions of restrained directions of lower rank must not pass for a full one.
TEST(PartMotions, DoNotDependOnTheNumberOfSupports)
{
    MeshBuilder mesh(Steel);
    AddGrid(mesh, 300, 1, 0.02, Cell::Quad, [](int i, int j) {
        return FromFrame(SkewFrame(), {0.1 * i, 0.1 * j, 0.0});
    });
    for (int i = 0; i <= 300; ++i) { mesh.Restrain(2 * i, AllTranslations); }
    EXPECT_EQ(Motions(mesh.Model())[0].free.size(), 1u);
}

TEST(PartMotions, DoNotDependOnTheUnitOfLength)
{
    for (const double scale : {1e-6, 1.0, 1e6}) {
        MeshBuilder mesh = Plate(scale);
        for (const int n : {0, 8, 16}) { mesh.Restrain(n, AllTranslations); }
        const auto parts = Motions(mesh.Model());
        EXPECT_EQ(parts[0].free.size(), 1u) << scale;
        MeshBuilder plain = Plate();
        for (const int n : {0, 8, 16}) { plain.Restrain(n, AllTranslations); }
        EXPECT_EQ(parts[0].holds, Motions(plain.Model())[0].holds) << scale;
    }
}

TEST(PartMotions, AreFoundForEveryPartOnItsOwn)
{
    MeshBuilder mesh = Plate();
    mesh.Restrain(0, AllDofs);
    mesh.AddNode({0.0, 0.0, 0.0}); // without elements
    AddLine(mesh, {50.0, 0.0, 0.0}, {1.0, 0.0, 0.0}, 3);
    const auto parts = Motions(mesh.Model());
    ASSERT_EQ(parts.size(), 2u);
    EXPECT_TRUE(parts[0].free.empty());
    EXPECT_EQ(parts[1].free.size(), 6u);
    for (const int equation : parts[1].holds) { EXPECT_GE(equation, DofsPerNode * 21); }
}

TEST(Holds, WithTheSupportsLeaveNoFreeMotion)
{
    for (const int supports : {0, 1, 2, 3, 4, 5}) {
        MeshBuilder mesh = Plate();
        const std::vector<Dof> dofs(AllDofs.begin(), AllDofs.begin() + supports);
        mesh.Restrain(2, dofs);
        const auto parts = Motions(mesh.Model());
        EXPECT_EQ(parts[0].free.size(), 6u - supports);
        EXPECT_EQ(parts[0].holds.size(), 6u - supports);
        for (const int equation : parts[0].holds) { EXPECT_EQ(RestrainedEquations(mesh.Model())[equation], 0); }
        EXPECT_TRUE(Motions(Held(mesh.Model(), parts))[0].free.empty());
    }
}

TEST(Holds, OfAShellAreTranslations)
{
    MeshBuilder mesh = Plate();
    const auto parts = Motions(mesh.Model());
    for (const int equation : parts[0].holds) { EXPECT_LT(equation % DofsPerNode, RX); }
}

// A straight line of beams in any direction: five translations, and one rotation about the line, for which no
// translation serves.
TEST(Holds, OfAStraightLineOfBeamsAreFiveTranslationsAndARotation)
{
    for (const Vector3& direction : {Vector3{1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {1, -2, 0.5}}) {
        MeshBuilder mesh(Steel);
        AddLine(mesh, {0.3, 0.7, -2.0}, direction, 10);
        const auto parts = Motions(mesh.Model());
        ASSERT_EQ(parts[0].holds.size(), 6u);
        for (int k = 0; k < 5; ++k) { EXPECT_LT(parts[0].holds[k] % DofsPerNode, RX); }
        const Dof along = std::fabs(direction[0]) == 1.0 && direction[1] == 0.0 ? RX : direction[1] != 0.0 ? RY : RZ;
        EXPECT_EQ(parts[0].holds[5] % DofsPerNode, along);
        EXPECT_TRUE(Motions(Held(mesh.Model(), parts))[0].free.empty());
    }
}

TEST(Holds, OfAPartWithoutExtentAreAllDofsOfANode)
{
    ModelStore model;
    model.NPOIN = 2;
    model.NodeCoordinates = {{5.0, 5.0, 5.0}, {5.0, 5.0, 5.0}};
    model.BeamConnectivity = {{0, 1}};
    std::vector<int> holds = Motions(model)[0].holds;
    std::sort(holds.begin(), holds.end());
    EXPECT_EQ(holds, (std::vector<int>{0, 1, 2, 3, 4, 5}));
}

// Box 20 x 1 x 1 without ends: holds at both ends, and no motion of length 1 that moves them little. Σ rowᵀ·row has six
// times the eigenvalue 1 at best.
TEST(Holds, OfALongBoxStandFarApart)
{
    MeshBuilder mesh(Steel);
    const double y[5] = {0, 1, 1, 0, 0}, z[5] = {0, 0, 1, 1, 0};
    AddGrid(mesh, 40, 4, 0.02, Cell::Quad, [&](int i, int j) { return Vector3{0.5 * i, y[j], z[j]}; });
    const PartMotions part = Motions(mesh.Model())[0];
    double low = 20.0, high = 0.0;
    double gram[6][6] = {};
    for (const int equation : part.holds) {
        const Vector3& node = mesh.Position(equation / DofsPerNode);
        low = std::min(low, node[0]);
        high = std::max(high, node[0]);
        for (const MotionVector& p : part.free) {
            for (const MotionVector& q : part.free) {
                gram[&p - part.free.data()][&q - part.free.data()] +=
                    MotionAt(part, p, node)[equation % DofsPerNode] * MotionAt(part, q, node)[equation % DofsPerNode];
            }
        }
    }
    EXPECT_EQ(low, 0.0);
    EXPECT_EQ(high, 20.0);
    // The motion they hold least is the turn about the long axis, with the lever 0.5·√2 / 10 of the corners.
    EXPECT_GT(SymmetricEigenvalues(&gram[0][0], 6)[0], 0.2 * 0.07 * 0.07);
}

TEST(Holds, StandOnThePreferredNodesAsFarAsTheyServe)
{
    MeshBuilder mesh = Plate();
    for (const std::vector<int>& nodes : {std::vector<int>{5, 6, 9}, {0, 3, 16}, {1, 2, 13, 10}}) {
        const auto parts = Motions(mesh.Model(), nodes);
        for (const int equation : parts[0].holds) {
            EXPECT_NE(std::find(nodes.begin(), nodes.end(), equation / DofsPerNode), nodes.end());
        }
        EXPECT_TRUE(Motions(Held(mesh.Model(), parts))[0].free.empty());
    }
    // Two nodes cannot hold the rotation about the line between them: a third one does.
    const auto parts = Motions(mesh.Model(), {0, 16});
    int elsewhere = 0;
    for (const int equation : parts[0].holds) { elsewhere += equation / DofsPerNode % 16 != 0 ? 1 : 0; }
    EXPECT_EQ(elsewhere, 1);
    EXPECT_TRUE(Motions(Held(mesh.Model(), parts))[0].free.empty());
}

} // namespace
} // namespace tarnvexo
